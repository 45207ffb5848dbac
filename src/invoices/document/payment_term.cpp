#include "invoices/document/payment_term.h"

#include <fmt/format.h>

#include "invoices/apform_invoice.h"
#include "kernel/money.h"

namespace brimley::invoices {

namespace {

constexpr std::int64_t kTermDaysMax = 36525;  // a century
constexpr const char* kNoDueDate = "00";      // the payment_term of a term without a due date

store::DateTime days_after(store::DateTime date, double days) {
    return date.plus_days(static_cast<int>(kernel::whole_number(days, -kTermDaysMax, kTermDaysMax)));
}

}  // namespace

TermDates term_dates(const store::Recordset& term, store::DateTime document_date) {
    TermDates dates;
    if (term.text("payment_term") != kNoDueDate)
        dates.due = days_after(document_date, kernel::money_value(term.text("duedays")));
    const double early_days = term.number("early_days");
    if (early_days > 0) dates.discount = days_after(document_date, early_days);
    return dates;
}

PaymentTerm::PaymentTerm(APform_invoice& form) : DocumentPart(form), form_(form) {
    form_.cmbterm.on_item_select = [this] { cmbterm_ItemSelect(); };
}

void PaymentTerm::fill() {
    form_.cmbterm.set_source(rows_of(
        "SELECT term_name, term_no FROM Payment_term_table WHERE term_no <> '00' ORDER BY term_no DESC"));
}

void PaymentTerm::take_default() {
    if (!form_.cmbterm.empty()) return;
    step("select the term", [&] {
        const auto term = kernel().read("SELECT * FROM Payment_term_table WHERE [default] = TRUE");
        if (!term.at_eof()) form_.cmbterm.set(term.text("Description"));
    });
}

// The list leaves "00" out, so a document with that term shows none.
void PaymentTerm::show(const std::string& term_no) {
    const auto term = kernel().read(
        fmt::format("SELECT term_name FROM Payment_term_table WHERE term_no = {} AND term_no <> '00'",
                    store::quoted(term_no)));
    if (!term.at_eof()) form_.cmbterm.set_row({term.text("term_name"), term_no});
}

std::optional<store::Recordset> PaymentTerm::chosen() const {
    auto term = kernel().find("Payment_term_table", {{"term_no", form_.cmbterm.chosen(1).value_or("")}});
    if (!term.at_eof()) return term;
    tell("payment term is invalid");
    return std::nullopt;
}

void PaymentTerm::cmbterm_ItemSelect() {
    if (!entering() || form_.cmbterm.empty()) return;
    step("cmbterm_ItemSelect", [&] {
        const auto term_no = form_.cmbterm.chosen(1);
        if (!term_no) return;
        const auto term = kernel().find("Payment_term_table", {{"term_no", *term_no}});
        if (!term.at_eof()) compute_dates(term);
    });
}

void PaymentTerm::compute_dates(const store::Recordset& term) {
    form_.txtterm.set(term.text("duedays"));
    const auto invoice_date = date_in(form_.txtinvdate);
    const TermDates dates = invoice_date ? term_dates(term, *invoice_date) : TermDates{};
    form_.txtduedate.set(dates.due ? date_text(*dates.due) : "");
    form_.txtdiscdate.set(dates.discount ? date_text(*dates.discount) : "");
    form_.txtearlyterm.set(term.number("early_days") > 0 ? term.text("early_days") : "0");
}

}  // namespace brimley::invoices
