#include "payments/misc/misc_save.h"

#include <fmt/format.h>

#include "kernel/money.h"
#include "payments/misc/apform_misc_payment.h"

namespace brimley::payments {

using kernel::money_value;
using store::Recordset;

namespace {

constexpr WayOfPayingRules kWays{.no_way = "please specify pay by",
                                 .bank_first = WayOfPayingRules::BankFirst::yes,
                                 .check_date = WayOfPayingRules::CheckDate::may_be_missing};

}  // namespace

MiscSave::MiscSave(APform_misc_payment& form) : NewPayment(form), form_(form) {}

// --- validation: one message at a time, and nothing is written before it ends ---

bool MiscSave::validate() {
    checks.begin();
    if (form_.txtremit.empty()) return refuse("please specify Remit-To");
    return validate_total() && checks.payment_date() && checks.currency_is_in_use() &&
           checks.exchange_rate(PaymentChecks::NoRate::is_refused) && validate_lines() &&
           validate_way_of_paying() && checks.period_is_open() && form_.lines.verify_detail();
}

// The total follows the lines and is locked: it is always a number.
bool MiscSave::validate_total() {
    if (form_.txttotal.empty()) return refuse("No payment");
    if (!kernel::is_numeric(form_.txttotal.text())) return refuse("Total payment is invalid");
    return money_value(form_.txttotal.text()) != 0 || refuse("Total payment is 0");
}

// A total other than 0 comes from a line with an amount.
bool MiscSave::validate_lines() {
    if (!form_.lines.has_any()) return refuse("No invoice records");
    return form_.lines.check_ifany_pay() || refuse("Please specify any payment/discount/write-off amount");
}

bool MiscSave::validate_way_of_paying() {
    return checks.way_of_paying(kWays, [this](const std::string& card) { return card_account(card); });
}

// By its name, which is the card's as typed. Empty after its message.
std::string MiscSave::card_account(const std::string& card) const {
    const std::string name = card + " PAYABLE";
    const auto account = kernel().read(
        fmt::format("SELECT accno FROM Account_master_table WHERE UCASE(accname) = {} AND type = 'A'",
                    store::quoted(name)));
    if (!account.at_eof()) return account.text("accno");
    tell("Account : " + name + " not found in Account master");
    return {};
}

// --- writing ---

void MiscSave::fill_header(Recordset& header) {
    NewPayment::fill_header(header);
    header.set("remit_to", form_.txtremit.text());
    header.set("payment_amount", money_value(form_.txttotal.text()));
}

bool MiscSave::write_lines(Recordset& header) {
    lines_ = form_.lines.read();
    auto rows = kernel().change("SELECT * FROM Payment_misc_transaction_table WHERE 1 = 2");
    for (const MiscLine& line : lines_) {
        rows.AddNew();
        if (!fill_line(rows, header, line)) return false;
        rows.Update();
    }
    return true;
}

bool MiscSave::fill_line(Recordset& row, const Recordset& header, const MiscLine& line) {
    copy_header(row, header, {"fkey", "docno", "company", "payment_date", "date_created", "time_created"});
    row.set("pay_item", line.pay_item);
    row.set("pay_amount", line.amount);
    row.set("account", line.account);
    row.set("include_tax", line.tax_included);
    row.set("tax_code", line.tax_code);
    row.set("tax_amount", line.tax);
    row.set("Reference", line.reference);
    row.set("computer_id", kernel().get_computer_name());
    return form_.taxes.store(row, line.pay_item);
}

bool MiscSave::post() { return form_.posting.insert_GL_record(checks.accno, lines_); }

}  // namespace brimley::payments
