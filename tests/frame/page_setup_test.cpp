// What no bookkeeper can do to a page setup by hand.
#include "frame/page_setup.h"

#include <gtest/gtest.h>

#include "plain_form.h"

namespace brimley::testing {

TEST(PageSetup, ChoosingNoPaperLeavesTheTypedSizeOpen) {
    PlainHost host;
    frame::Form_report_format page(host.context(),
                                   std::make_shared<kernel::ModuleG3>(host.context().abcdb, host.desk),
                                   host.desk, "APreport_aging");
    page.ensure_loaded();
    ASSERT_EQ(page.cmbpaper.type("User defined paper size"), controls::Refusal::none);
    ASSERT_EQ(page.cmbpaper.pick(-1), controls::Refusal::none);
    EXPECT_TRUE(page.cmbpaper.empty());
    EXPECT_FALSE(page.txtwidth.locked());
    EXPECT_FALSE(page.txtheight.locked());
    EXPECT_EQ(page.txtwidth.text(), "8.5");
}

}  // namespace brimley::testing
