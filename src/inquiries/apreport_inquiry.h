// APreport_inquiry: the items of invoices, by state, dates, vendor, numbers and amounts.
//
// "All" looks at the items themselves and leaves void ones out; the other states are those of the documents.
#pragma once

#include "inquiries/document_inquiry.h"

namespace brimley::inquiries {

class APreport_inquiry : public DocumentInquiry {
  public:
    APreport_inquiry(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    // --- controls ---
    controls::OptionButton opt_all{controls_, "opt_all", "All"};
    controls::OptionButton opt_paid{controls_, "opt_paid", "Paid"};
    controls::OptionButton opt_open{controls_, "opt_open", "Open"};
    controls::OptionButton opt_hold{controls_, "opt_hold", "Hold"};
    controls::TextField txtopenamt{controls_, "txtopenamt"};

    void SEL_record() override;

  protected:
    void show_first_values() override;
    void initform_control() override;
    void init_toolbar() override { add_inquiry_commands({}); }
    void clear_box() override;
    void save_recent_values() override;

  private:
    [[nodiscard]] std::string query_of_items() const;
    [[nodiscard]] const char* state_condition() const;
};

}  // namespace brimley::inquiries
