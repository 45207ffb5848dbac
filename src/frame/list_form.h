// The frame of the report forms: a list that Find fills, the choice of the columns to print, the page setup,
// and the report as a PDF file.
//
// They have no modes and change nothing in the ledger. All that they store is how they look: layouts, the
// columns to print, and remembered values.
#pragma once

#include "frame/grid_form.h"
#include "frame/list_fill.h"
#include "frame/print_columns.h"
#include "frame/report_printing.h"

namespace brimley::frame {

class ListForm : public GridForm {
  public:
    // `report` must outlive it: a constant.
    ListForm(const FormIdentity& identity, const ReportNames& report, HostContext context,
             std::shared_ptr<kernel::ModuleG3> kernel, Desk& desk);

    PrintColumns print_columns{*this, dbgrid1};
    controls::ProgressBar Progress1{controls_, "Progress1"};

    // Find: fills the list anew.
    virtual void SEL_record() = 0;
    // Writes what stands in the list as a PDF file, by the user's page setup, and asks the host to show it.
    // Does nothing until the user has saved a page setup for this form.
    void create_acrobat();

  protected:
    // --- variable points ---

    // What the fields show when the form opens.
    virtual void show_first_values() = 0;
    // The lists of the form's fields.
    virtual void initform_control() = 0;
    // Empties the fields of the filter.
    virtual void clear_box() {}
    // A command that only this form has.
    virtual void execute_own(int /*id*/) {}

    // --- shared procedures ---

    // The form's own commands, and those that all report forms have.
    void add_list_commands(std::vector<controls::Command> own);

    void Form_Load() final;
    [[nodiscard]] bool can_do(int id) const final { return id != command::kPreview || rights().Print; }
    void CommandBars1_Execute(int id) final;
    void save_grid() final;
    [[nodiscard]] std::vector<controls::Grid*> grids() final { return {&dbgrid1, &print_columns.grid_sel}; }

    ListFill fill{*this, dbgrid1, Progress1};

  private:
    const ReportNames& names_;
    ReportPrinting report_{*this};
    [[nodiscard]] std::vector<printing::PrintedColumn> columns_to_print();
    void init_report() { build_grids(); }
};

}  // namespace brimley::frame
