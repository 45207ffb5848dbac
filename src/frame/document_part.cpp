#include "frame/document_part.h"

#include "frame/working_period.h"

namespace brimley::frame {

bool DocumentPart::period_is_open() const {
    if (form_.cmbperiod.empty()) return refuse("please specify period");
    if (form_.cmbfyear.empty()) return refuse("please specify fiscal year");
    return frame::period_is_open(kernel(), form_.cmbfyear.text(),
                                 store::Value(form_.cmbperiod.text()).number());
}

}  // namespace brimley::frame
