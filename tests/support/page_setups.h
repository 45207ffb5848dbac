// A page for reports, set up in the child form that Page Setup opens.
#pragma once

#include "frame/page_setup.h"

namespace brimley::testing {

// All margins 20; everything else stays as the child form shows it.
inline void save_page_setup(frame::Form_report_format& page_setup, const char* orientation = "Portrait") {
    page_setup.cmborient.set(orientation);
    for (controls::TextField* margin :
         {&page_setup.txttop, &page_setup.txtbottom, &page_setup.txtleft, &page_setup.txtright})
        margin->set("20");
    page_setup.cmdsave_Click();
}

}  // namespace brimley::testing
