// Form_report_format: the page setup of one user for the report of one form. It opens in a pane of that form.
//
// It keeps what its controls show in Report_format_table, one row for each user and form; a form without a
// row is not printed.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "controls/combo_box.h"
#include "controls/fields.h"
#include "frame/form.h"

namespace brimley::frame {

class Form_report_format : public Form {
  public:
    // `report_form`: the name under which the report of the form is printed.
    Form_report_format(HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, Desk& desk,
                       std::string report_form);

    // --- controls ---
    controls::ComboBox cmbpaper{controls_, "cmbpaper"};
    controls::TextField txtwidth{controls_, "txtwidth"};
    controls::TextField txtheight{controls_, "txtheight"};
    controls::ComboBox cmbunit{controls_, "cmbunit"};
    controls::ComboBox cmborient{controls_, "cmborient"};
    controls::ComboBox cmbsplit_page{controls_, "cmbsplit_page"};
    controls::TextField txttop{controls_, "txttop"};  // the margins in millimetres
    controls::TextField txtbottom{controls_, "txtbottom"};
    controls::TextField txtleft{controls_, "txtleft"};
    controls::TextField txtright{controls_, "txtright"};
    controls::ComboBox cmbitfont_print{controls_, "cmbitfont_print"};
    controls::ComboBox cmbfont_size_print{controls_, "cmbfont_size_print"};
    controls::ComboBox cmbrow_hi{controls_, "cmbrow_hi"};
    controls::ComboBox cmbfont_color{controls_, "cmbfont_color", "0;1000;<;|1;2000;<;"};
    controls::ComboBox cmbback_color{controls_, "cmbback_color", "0;1000;<;|1;2000;<;"};
    controls::CheckBox chkdisable_even_row{controls_, "chkdisable_even_row", "Disable"};
    controls::CheckBox chkbold{controls_, "chkbold", "Bold"};
    controls::CheckBox chkuse_grid_font{controls_, "chkuse_grid_font", "Use font as display in detail grid"};
    controls::CheckBox chkcoldivider{controls_, "chkcoldivider", "Column Divider"};
    controls::PushButton cmdsave{controls_, "cmdsave", "Save"};

    void init_control();
    // Shows what is stored; without a row the controls keep what they show.
    void get_report_format();
    void cmbpaper_ItemSelect();
    // Stores what the controls show, or says why it cannot and stores nothing.
    void cmdsave_Click();

  protected:
    void Form_Load() override;
    void init_toolbar() override {}
    void CommandBars1_Execute(int /*id*/) override {}
    void save_grid() override {}

  private:
    [[nodiscard]] std::vector<std::pair<const char*, controls::TextField*>> typed_fields();
    [[nodiscard]] std::vector<std::pair<const char*, controls::ComboBox*>> chosen_fields();
    [[nodiscard]] std::vector<std::pair<const char*, controls::CheckBox*>> switches();
    void show(const store::Recordset& row);
    static void show_colour(controls::ComboBox& picker, const store::Value& stored);
    void store_format();
    static void store_colour(store::Recordset& row, const char* field, const controls::ComboBox& picker);

    const std::string report_form_;
};

}  // namespace brimley::frame
