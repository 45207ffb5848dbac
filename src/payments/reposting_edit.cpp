#include "payments/reposting_edit.h"

#include "kernel/money.h"
#include "payments/payment_form.h"

namespace brimley::payments {

using store::Recordset;
using store::Value;

RepostingEdit::RepostingEdit(PaymentForm& form) : DocumentPart(form), checks(form), form_(form) {}

bool RepostingEdit::Update_record() {
    bool valid = false;
    const bool checked = step("validate", [&] { valid = validate(); });
    if (checked && !valid) return false;
    const std::string posted = form_.txtglfkey.text();
    if (!checked || !in_transaction("Update_record", [this] { return write(); })) {
        form_.txtglfkey.set(posted);
        tell_failure("Update failed.");
        return false;
    }
    tell("Update complete.");
    form_.Recordx_fkey();
    return true;
}

std::string RepostingEdit::bank_accno() const { return form_.pay_by.is_by_bank() ? checks.accno : ""; }

// What is stored of the bank's account comes from an earlier edit: a new payment stores none.
bool RepostingEdit::moves_money(const Recordset& header) const {
    return header.text("payby") != form_.cmbpayby.text() || header.text("bank_accno") != bank_accno() ||
           kernel::Round(header.number("payment_amount") - payment_amount()) != 0;
}

bool RepostingEdit::write() {
    auto header = form_.header_to_edit();
    if (!header) return false;
    const bool moves = moves_money(*header);
    follow_change(*header);
    if (moves && !form_.insert_GL_reverse()) return false;
    fill_common_fields(*header);
    fill_header(*header, moves);
    header->Update();
    write_items();
    return !moves || repost(*header);
}

void RepostingEdit::fill_common_fields(Recordset& header) const {
    const auto text_or_null = [](const std::string& text) { return text.empty() ? Value() : Value(text); };
    const bool by_check = form_.pay_by.is_check();
    header.set("check_no", text_or_null(by_check ? form_.txtcheck.text() : ""));
    header.set("check_date", by_check ? Value(*checks.dates.check) : Value());
    header.set("bank_accno", text_or_null(bank_accno()));
    header.set("remark", form_.txtremark.text());
}

bool RepostingEdit::repost(Recordset& header) {
    if (!post()) return false;
    header.Edit();
    header.set("GLFKEY", form_.txtglfkey.text());
    header.Update();
    return true;
}

}  // namespace brimley::payments
