// APreport_aging: what is still to be paid, vendor by vendor, in columns by how long it has been due.
//
// The as-of date only moves the age: open amounts are those of today, and what was invoiced after that date
// is listed as well.
#pragma once

#include <string>

#include "frame/fields/vendor_fields.h"
#include "frame/list_form.h"

namespace brimley::inquiries {

class APreport_aging : public frame::ListForm {
  public:
    APreport_aging(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    // --- controls ---
    controls::ComboBox cmbvendor{controls_, "cmbvendor", "0;1500;^;Vendor no|1;3000;<;Name"};
    controls::ComboBox cmbvendor_name{controls_, "cmbvendor_name", "0;3000;<;Vendor name|1;1500;^;No"};
    controls::DateField txtdate{controls_, "txtdate"};
    controls::CheckBox chkoverdue{controls_, "chkoverdue", "Overdue"};

    void SEL_record() override;
    // What is overdue today, whatever the fields say.
    void show_overdue();

    frame::VendorFields vendor_fields{*this, cmbvendor, cmbvendor_name,
                                      frame::VendorFields::Unknown::empties_the_other,
                                      frame::VendorFields::BlankEntry::first};

  protected:
    void show_first_values() override;
    void initform_control() override;
    void init_toolbar() override { add_list_commands({}); }
    void save_recent_values() override;

  private:
    [[nodiscard]] std::string query_of_items(store::DateTime as_of) const;
    void assign2_dbgrid1(const std::string& query);
};

}  // namespace brimley::inquiries
