// The save of a run: header, selection, items and ledger summary, then both ledger documents.
#pragma once

#include "frame/document_save.h"

namespace brimley::revaluation {

class APform_revalue;

class RevaluationSave : public frame::DocumentSave {
  public:
    explicit RevaluationSave(APform_revalue& form);

    // Does nothing, and returns false, for a run that is saved already.
    [[nodiscard]] bool insert_new_record();

  protected:
    [[nodiscard]] bool validate() override { return period_is_open(); }
    void set_doctype() override;
    [[nodiscard]] kernel::ModuleG3::TooLongMessage too_long_message() const override {
        return kernel::ModuleG3::TooLongMessage::text_first;
    }
    void fill_header(store::Recordset& header) override;
    [[nodiscard]] HeaderRow header_row() const override { return HeaderRow::before_lines; }
    [[nodiscard]] bool write_lines(store::Recordset& header) override;
    [[nodiscard]] bool post() override;
    void report_success() override { tell("Add new revaluation complete"); }
    [[nodiscard]] std::string failure_message() const override { return "Add new revaluation failed"; }

  private:
    // Throws when the text is not a date.
    [[nodiscard]] store::DateTime date_of(const controls::TextField& field) const;
    [[nodiscard]] store::Recordset new_rows(const char* table) const;
    void add_row(store::Recordset& rows) const;
    [[nodiscard]] bool write_selection();
    void write_result();
    void write_result_row(store::Recordset& rows, int row, const std::string& vendor_no);
    void write_summary();

    APform_revalue& form_;
};

}  // namespace brimley::revaluation
