// The void of the check picked: one routine for payments of every kind, with the differences that CheckKind
// names.
#include "kernel/gl_reversal.h"
#include "kernel/money.h"
#include "kernel/owing_balance.h"
#include "payments/payment_void.h"
#include "payments/void_check/apform_void_check.h"

namespace brimley::payments {

using store::quoted;
using store::Recordset;

void APform_void_check::void_check() {
    const CheckKind* const kind = check_kind_listed_as(label_type.caption());
    if (kind == nullptr || !ask(kind->question)) return;
    if (!in_transaction(kind->routine, [&] { return write_void(*kind); })) {
        tell_failure(kind->failure);
        return;
    }
    tell("Check " + txtcheck.text() + " is void.");
    list_vendor_check();
    clear_box();
}

// Numbers repeat in other kinds and other years.
bool APform_void_check::is_picked(const Recordset& header) const {
    return check_kind_of(header.text("doctype")).payment_type == label_type.caption() &&
           header.text("payby") == "Check" && header.text("check_no") == txtcheck.text() &&
           kernel::format_money(header.number("payment_amount")) == txtchkamt.text() &&
           header.text("fyear") == cmbfyear.text() && !header.flag("void");
}

bool APform_void_check::write_void(const CheckKind& kind) {
    const std::string changed = "Check " + txtcheck.text() + " has changed since it was picked";
    auto header =
        kernel().find_to_change("Payment_header_table", {{"company", "1"}, {"docno", txtpaymentno.text()}});
    while (!header.at_eof() && !is_picked(header))
        header.MoveNext();
    if (header.at_eof()) return fail(changed);
    header.Edit();
    if (!is_picked(header)) return fail(changed);  // another desk was faster
    header.CancelUpdate();
    const std::string fkey = header.text("fkey");
    txtfkey.set(fkey);
    txtglfkey.set(header.text("GLFKEY"));

    if (kind.gives_back == GivesBack::items_and_owing) paid_items.give_back(fkey);
    const store::DateTime today = desk().now().date_only();
    mark_void(kernel(), kind.lines, fkey,
              kind.void_date == VoidDate::as_date ? store::date_value(today) : quoted(today.yyyymmdd()));
    if (!insert_GL_reverse(kind)) return false;
    if (kind.gives_back == GivesBack::items_and_owing) update_vendor_owing_balance(header.text("vendor_no"));
    if (kind.gives_back == GivesBack::waiting_order) give_up_order(kernel(), fkey);
    return true;
}

bool APform_void_check::insert_GL_reverse(const CheckKind& kind) {
    kernel::GlReversal reversal;
    reversal.fkey = txtglfkey.text();
    reversal.company = "1";
    reversal.Currency = cmbcurrency.text();
    reversal.period = cmbperiod.text();
    reversal.fyear = cmbfyear.text();
    reversal.source_docno = txtpaymentno.text();
    reversal.user = context().BRIMLEY_USER;
    return kernel::reverse_gl_document(kernel(), kernel::gl_rules_of_voided_check(kind.gl_form), reversal);
}

// The payment has lowered the balance already; its void here lowers it once more.
void APform_void_check::update_vendor_owing_balance(const std::string& vendor_no) {
    const auto paid = kernel().read(
        "SELECT SUM(pay_amount), SUM(discount_taken), SUM(writeoff) FROM Payment_transaction_table "
        "WHERE fkey = " +
        quoted(txtfkey.text()));
    const double sum = paid.column(0).number() + paid.column(1).number() + paid.column(2).number();
    kernel::change_owing_balance(kernel(), vendor_no, {0 - sum}, kernel::kOwingOfVoidedCheck);
}

}  // namespace brimley::payments
