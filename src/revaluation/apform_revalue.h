// APform_revalue: what is open in foreign currency, valued at new rates; the difference is posted to a period
// and taken back in the next.
//
//   apform_revalue.cpp   loading, modes, walking, commands, remembered values, the report
//   revaluation_run      the items of the selection, their values, gains and losses
//   result_rows          the rows of the result grid
//   account_pairs, ledger_summary   what the run makes for the ledger, by account and currency
//   revaluation_save     checks, and the save in one transaction
//   revaluation_posting  the ledger document of a run and its reversal
//
// A run is New until it is saved, and can then only be looked at: nothing edits, voids or posts it again.
#pragma once

#include <string>
#include <vector>

#include "frame/document_form.h"
#include "frame/report_printing.h"
#include "revaluation/ledger_summary.h"
#include "revaluation/revaluation_posting.h"
#include "revaluation/revaluation_run.h"
#include "revaluation/revaluation_save.h"

namespace brimley::revaluation {

class APform_revalue : public frame::DocumentForm {
  public:
    APform_revalue(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);

    // --- controls ---
    controls::TextField txtdesc{controls_, "txtdesc"};
    controls::DateField txtdate{controls_, "txtdate"};
    controls::DateField txtlastdate{controls_, "txtlastdate"};
    controls::Grid dbgridcmd{controls_, "dbgridcmd"};
    controls::Grid dbgrid2{controls_, "dbgrid2"};
    controls::TabControl TabControl{controls_, "TabControl", {"Result", "Account"}};
    controls::DropDown ddcurrency, ddvendor;

    // --- parts ---
    RevaluationRun run{*this};
    LedgerSummary ledger_summary{*this};
    RevaluationPosting posting{*this};
    RevaluationSave save{*this};

    void Recordx() override;
    void grid_readmode() override;
    void grid_newmode() override;
    void gencode_new() override;
    // True when the run was saved. Every failure has had its message, and nothing of it is left.
    [[nodiscard]] bool insert_new_record() override { return save.insert_new_record(); }
    // Writes both grids as a PDF file, by the user's page setup, and asks the host to show it. Does nothing
    // until the user has saved a page setup for this form.
    void create_acrobat();

  protected:
    void Form_Load() override;
    void init_toolbar() override;
    void initform_control() override { fill_common_combos(); }
    void init_grid() override { init_report(); }
    [[nodiscard]] std::vector<controls::Grid*> grids() override { return {&dbgrid1, &dbgrid2, &dbgridcmd}; }
    [[nodiscard]] bool can_do(int id) const override;
    void CommandBars1_Execute(int id) override;
    void execute_own(int id) override;
    void save_recent_values() override;
    [[nodiscard]] std::string doctype_of_walk() override;
    [[nodiscard]] bool nothing_stored_on_screen() const override;
    [[nodiscard]] bool opens_as_new() const override { return false; }
    void clear_box() override;
    void assign2control(store::Recordset& header) override;
    // The lines of a stored run are its items.
    void assign2_dbgrid1(store::Recordset& items) override;
    // A saved run is never changed.
    [[nodiscard]] bool Update_record() override { return false; }
    [[nodiscard]] std::string edit_refusal() override { return {}; }
    [[nodiscard]] bool entry_has_data() override;

  private:
    void init_report();
    void init_dropdown();
    void dbgridcmd_AfterColUpdate(int column);
    void ddvendor_chosen(int row);
    // Returns the currency of the last selection row.
    std::string assign2_dbgridcmd();
    void assign2_dbgrid2();
    void set_selection_editable(bool editable);
    [[nodiscard]] store::Recordset rows_of_run(const char* table, const char* order);
    [[nodiscard]] std::string remembered_date(const controls::DateField& field) const;

    frame::ReportPrinting report_{*this};
};

}  // namespace brimley::revaluation
