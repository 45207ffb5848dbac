// The smallest document form there can be, on the tables that a test chooses: what the frame does is seen on
// it without an invoice.
#pragma once

#include <string>
#include <vector>

#include "frame/document_save.h"
#include "support/recording_desk.h"
#include "support/sample_company.h"

namespace brimley::testing {

inline constexpr frame::FormIdentity kPlainIdentity{"APform_revalue", "Plain", "\\Help\\Plain.pdf"};
inline constexpr frame::WalkTables kPlainTables{"Payment_header_table", "Payment_transaction_table", "docno",
                                                "item_no"};
// No doctype in the header table.
inline constexpr frame::WalkTables kTablesOfOneKind{
    "AP_Revalue_header_table", "AP_Revalue_transaction_table", "docno", "fkey", "", false};

class PlainForm;

// Saves the number and a remark; what goes wrong is up to the test.
class PlainSave : public frame::DocumentSave {
  public:
    explicit PlainSave(PlainForm& form);

    bool valid = true;
    bool validation_fails = false;  // by an error of the store
    bool posts = true;

  protected:
    [[nodiscard]] bool validate() override;
    void set_doctype() override;
    [[nodiscard]] kernel::ModuleG3::TooLongMessage too_long_message() const override {
        return kernel::ModuleG3::TooLongMessage::text_first;
    }
    void fill_header(store::Recordset& header) override;
    [[nodiscard]] bool write_lines(store::Recordset& header) override;
    [[nodiscard]] bool post() override;
    void report_success() override { tell("saved"); }
    [[nodiscard]] std::string failure_message() const override { return "not saved"; }

  private:
    PlainForm& form_;
};

class PlainForm : public frame::DocumentForm {
  public:
    PlainForm(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk,
              const frame::WalkTables& tables, std::string doctype)
        : DocumentForm(kPlainIdentity, std::move(context), std::move(kernel), desk, tables),
          doctype_(std::move(doctype)) {}

    using DocumentForm::documents;
    using DocumentForm::in_transaction;
    using DocumentForm::open_only;
    using DocumentForm::recent_value;
    using DocumentForm::save_recent_value;
    using DocumentForm::show_child;

    void gencode_new() override {
        clear_box();
        txtdocno.set(frame::kNewDocno);
        ++entries_begun;
    }

    std::vector<std::string> kept;  // what was kept on leaving, in its order
    int entries_begun = 0;
    PlainSave save{*this};

  protected:
    void Form_Load() override { load_document_form(); }
    void init_toolbar() override {
        add_commands({}, {frame::command::kVendorMaster, frame::command::kItemMaster});
    }
    void initform_control() override { fill_common_combos(); }
    void init_grid() override { build_grids(); }
    void execute_own(int) override {}
    [[nodiscard]] std::string doctype_of_walk() override { return doctype_; }
    void clear_box() override {
        for (controls::TextField* field : {&txtdocno, &txtfkey, &txtglfkey, &txtremark})
            field->set("");
    }
    void assign2control(store::Recordset& header) override {
        txtdocno.set(header.text("docno"));
        txtfkey.set(header.text("fkey"));
        cmbfyear.set("2026");
        cmbcompany.set("1");
    }
    void assign2_dbgrid1(store::Recordset& lines) override {
        dbgrid1.array.dimension(static_cast<int>(lines.RecordCount()));
    }
    [[nodiscard]] bool insert_new_record() override { return save.insert_new_record(); }
    [[nodiscard]] bool Update_record() override { return true; }
    [[nodiscard]] std::string edit_refusal() override { return {}; }
    [[nodiscard]] bool entry_has_data() override { return false; }
    void save_recent_values() override { kept.emplace_back("recent values"); }
    void save_grid() override { kept.emplace_back("grid"); }

  private:
    std::string doctype_;
};

inline PlainSave::PlainSave(PlainForm& form) : DocumentSave(form), form_(form) {}

inline bool PlainSave::validate() {
    if (validation_fails) throw store::Error(store::ErrorKind::io, "a failure made by the test");
    return valid || refuse("not valid");
}

inline void PlainSave::set_doctype() { form_.txtdoctype.set("py"); }

inline void PlainSave::fill_header(store::Recordset& header) {
    header.set("docno", form_.txtdocno.text());
    header.set("fkey", form_.txtfkey.text());
    header.set("doctype", form_.txtdoctype.text());
    stamp_created(header);
}

inline bool PlainSave::write_lines(store::Recordset& header) {
    auto lines = kernel().change("SELECT * FROM Payment_transaction_table WHERE 1 = 2");
    lines.AddNew();
    lines.set("fkey", header.field("fkey"));
    lines.Update();
    return true;
}

inline bool PlainSave::post() {
    form_.txtglfkey.set("1gl-7");
    return posts;
}

// A host that has the form on a copy of the sample company. Nothing is stored in it yet.
class PlainHost {
  public:
    PlainHost() {
        context_.dbe = company.open().workspace;
        context_.abcdb = company.open().database;
        context_.BASE_CURRENCY = "USD";
        context_.BRIMLEY_USER = "anna";
        context_.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
        context_.BRIMLEY_NO_PERIODS = "12";
    }

    // With these numbers in store, of `issued` that the counter has given.
    std::shared_ptr<PlainForm> show(const std::vector<int>& stored, int issued,
                                    const frame::WalkTables& tables = kPlainTables,
                                    const std::string& doctype = "py") {
        for (const int number : stored) {
            const std::string fkey = "1" + doctype + "-" + std::to_string(number);
            if (tables.has_doctype) {
                company.add(tables.header, {{"docno", "N" + std::to_string(number)},
                                            {"fkey", fkey},
                                            {"company", "1"},
                                            {"doctype", doctype}});
            } else {
                company.add(tables.header,
                            {{"docno", "N" + std::to_string(number)}, {"fkey", fkey}, {"company", "1"}});
            }
        }
        company.db().Execute("UPDATE Next_number_fkey_table SET fkeyno = " + std::to_string(issued + 1) +
                             " WHERE doctype = '" + doctype + "'");
        auto form = make(tables, doctype);
        form->show();
        return form;
    }
    // Not shown yet.
    [[nodiscard]] std::shared_ptr<PlainForm> make(const frame::WalkTables& tables = kPlainTables,
                                                  const std::string& doctype = "py") {
        return std::make_shared<PlainForm>(context_, std::make_shared<kernel::ModuleG3>(context_.abcdb, desk),
                                           desk, tables, doctype);
    }
    [[nodiscard]] const frame::HostContext& context() const { return context_; }
    [[nodiscard]] std::vector<std::string> messages() { return desk.take_messages(); }

    CompanyCopy company{sample_original()};
    RecordingDesk desk;

  private:
    frame::HostContext context_;
};

}  // namespace brimley::testing
