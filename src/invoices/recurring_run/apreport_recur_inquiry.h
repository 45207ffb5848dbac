// APreport_recur_inquiry: the recurring templates that are due, and the run that turns those that are marked
// into invoices.
//
// Listing marks every template that is due. Find lists all templates of the filter, without the marks.
#pragma once

#include <vector>

#include "frame/fields/vendor_fields.h"
#include "frame/list_form.h"
#include "invoices/recurring_run/invoice_generation.h"

namespace brimley::invoices {

inline constexpr int kListDue = 1001;
inline constexpr int kGenerate = 1002;

class DueRule;

class APreport_recur_inquiry : public frame::ListForm {
  public:
    APreport_recur_inquiry(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                           frame::Desk& desk);

    // --- controls ---
    controls::ComboBox cmbvendor{controls_, "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox cmbvendor_name{controls_, "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};

    void listdue_recur();
    void SEL_record() override;
    void gen_invoice();

    frame::VendorFields vendor_fields{*this, cmbvendor, cmbvendor_name,
                                      frame::VendorFields::Unknown::empties_the_other,
                                      frame::VendorFields::BlankEntry::first};

  protected:
    void show_first_values() override {}
    void initform_control() override { vendor_fields.fill(); }
    void init_toolbar() override;
    void clear_box() override;
    void execute_own(int id) override;

  private:
    void mark_expired(const std::string& today);
    void show_due_column(bool shown);
    // `rule` may be null: see TemplateListing.
    void assign2_dbgrid1(const std::string& query, const DueRule* rule);
    [[nodiscard]] std::vector<MarkedTemplate> marked_templates() const;

    InvoiceGeneration generation_{*this, Progress1};
};

}  // namespace brimley::invoices
