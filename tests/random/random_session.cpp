#include "random_session.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <regex>

#include "company/transaction.h"
#include "frame/form.h"
#include "kernel/money.h"
#include "kernel/tables/company_tables.h"

namespace brimley::testing {

namespace {

using frame::command::kEditMode;
using frame::command::kNew;
using store::RecordsetKind;

std::string quoted_word(const std::string& text) {
    std::string word = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') word += '\\';
        word += c;
    }
    return word + "\"";
}

frame::HostContext context_of(const std::string& company, const store::OpenCompany& open) {
    frame::HostContext context;
    context.dbe = open.workspace;
    context.abcdb = open.database;
    context.OPEN_DATABASE = company;
    context.BASE_CURRENCY = "USD";
    context.BRIMLEY_USER = "anna";
    context.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
    context.BRIMLEY_NO_PERIODS = "12";
    return context;
}

store::OpenCompany open(const std::string& company) {
    return store::open_company(company, kernel::company_tables());
}

}  // namespace

RandomSession::RandomSession(const std::string& company, std::uint64_t seed)
    : reader_(open(company)), chance_(seed), today_(*store::DateTime::from_ymd(2026, 1, 5)) {
    console_ = std::make_unique<console::Console>(context_of(company, open(company)), out_);
    vendors_ = column("SELECT vendor_no FROM Vendor_table ORDER BY vendor_no");
    accounts_ = column("SELECT accno FROM Account_master_table WHERE type = 'A' ORDER BY accno");
    tax_codes_ = column("SELECT tax_code FROM Tax_code_table ORDER BY tax_code");
    terms_ = column("SELECT term_name FROM Payment_term_table ORDER BY term_no");
    run("computer DESK-1");
    run("today 2026-01-05 09:00:00");
    run("call showform_APform_payment");
    run("call showform_APform_misc");
    run("call showform_APform_void_check");
    run("call showform_APform_prepayment");
    run("call showform_APform_creditcard_payment");
    run("call showform_APform_revalue");
    run("call showform_APform_invoice");
}

const std::vector<RandomSession::Act>& RandomSession::acts() {
    static const std::vector<Act> kActs{
        {"template", 6, &RandomSession::enter_template},
        {"new", 40, &RandomSession::enter_document},
        {"edit", 25, &RandomSession::edit_document},
        {"void", 8, &RandomSession::void_document},
        {"hold", 4, &RandomSession::hold_document},
        {"release", 4, &RandomSession::release_document},
        {"walk", 8, &RandomSession::walk},
        {"taxes", 2, &RandomSession::look_at_taxes},
        {"days", 6, &RandomSession::let_days_pass},
        {"reopen", 3, &RandomSession::close_and_open},
        {"pay", 30, &RandomSession::pay_items},
        {"void payment", 8, &RandomSession::void_payment},
        {"edit payment", 3, &RandomSession::edit_payment},
        {"void check of a payment", 4, &RandomSession::void_check},
        {"pay expenses", 10, &RandomSession::pay_expenses},
        {"void payment of expenses", 3, &RandomSession::void_expenses},
        {"edit payment of expenses", 1, &RandomSession::edit_expenses},
        {"prepay", 8, &RandomSession::prepay},
        {"edit prepayment", 3, &RandomSession::edit_prepayment},
        {"void prepayment", 2, &RandomSession::void_prepayment},
        {"pay card", 5, &RandomSession::pay_card},
        {"void card payment", 1, &RandomSession::void_card_payment},
        {"generate", 8, &RandomSession::generate_due},
        {"revalue", 8, &RandomSession::revalue},
        {"aging", 3, &RandomSession::look_at_aging},
        {"invoices", 3, &RandomSession::look_at_invoices},
        {"payments", 2, &RandomSession::look_at_payments},
    };
    return kActs;
}

const char* RandomSession::act() {
    const auto& table = acts();
    const int weights = std::accumulate(table.begin(), table.end(), 0,
                                        [](int sum, const Act& each) { return sum + each.weight; });
    int at = chance_.below(weights);
    const Act* chosen = table.data();
    while (at >= chosen->weight)
        at -= (chosen++)->weight;
    out_.str("");
    const bool is_payment = std::string_view(chosen->name).find("pay") != std::string_view::npos;
    if (!is_payment || !payments_left_out_) (this->*chosen->run)();
    count_messages();
    return chosen->name;
}

// --- what must hold ---

std::vector<std::string> RandomSession::findings() {
    std::vector<std::string> found;
    {
        const company::Transaction rolled_back(reader_);
        found = reader_.database->faults_of_trail();
        named_.take_back(*reader_.database);
        std::ranges::move(company::check_books(*reader_.database), std::back_inserter(found));
        // With these taken back, nothing is left that only a note could explain.
        company::note_owing_balances(company::Books(*reader_.database), found);
    }
    found.insert(found.end(), list_findings_.begin(), list_findings_.end());
    expect_remarks(found);
    expect_count("documents", "SELECT fkey FROM AP_header_table", tally_.saved + tally_.generated, found);
    expect_count("templates", "SELECT fkey FROM AP_recur_header_table", tally_.templates, found);
    expect_count("void documents", "SELECT fkey FROM AP_header_table WHERE void = TRUE", tally_.voided,
                 found);
    expect_count("documents on hold", "SELECT fkey FROM AP_header_table WHERE hold = TRUE",
                 static_cast<int>(on_hold_.size()), found);
    expect_count("revaluations", "SELECT fkey FROM AP_Revalue_header_table", tally_.revaluations, found);
    expect_count("GL documents of revaluations",
                 "SELECT fkey FROM GL_header_table WHERE Source = 'AP-REVALUE'", 2 * tally_.revaluations,
                 found);
    expect_count("payments", "SELECT fkey FROM Payment_header_table", tally_.payments, found);
    expect_count("void payments", "SELECT fkey FROM Payment_header_table WHERE void = TRUE",
                 tally_.payments_voided, found);
    if (pressed(kNew) && pressed(kEditMode)) found.push_back("New and Edit are both pressed");
    return found;
}

std::map<std::string, int> RandomSession::notes() {
    static const std::regex kNumbered("\\S*\\d\\S*");
    const company::ReadingMoment moment(reader_);
    std::map<std::string, int> counted;
    for (const std::string& note : company::books_notes(*reader_.database))
        ++counted[std::regex_replace(note, kNumbered, "N")];
    return counted;
}

// An edit of a payment keeps what was written last.
void RandomSession::expect_remarks(std::vector<std::string>& findings) {
    for (const auto& [fkey, remark] : remarks_) {
        const auto header = reader_.database->OpenRecordset(
            "SELECT remark FROM Payment_header_table WHERE fkey = '" + fkey + "'", RecordsetKind::snapshot);
        if (header.text("remark") != remark)
            findings.push_back(
                fmt::format("payment {}: remark {}, {} told", fkey, header.text("remark"), remark));
    }
}

void RandomSession::expect_count(const char* what, const std::string& query, int expected,
                                 std::vector<std::string>& findings) {
    const auto rows = reader_.database->OpenRecordset(query, RecordsetKind::snapshot);
    if (const auto stored = rows.RecordCount(); stored != expected)
        findings.push_back(fmt::format("{}: {} stored, {} told", what, stored, expected));
}

void RandomSession::count_messages() {
    auto& messages = console_->desk().happenings().messages;
    for (const std::string& message : messages) {
        const auto ends = [&](const char* text) { return message.ends_with(text); };
        if (count_payment_message(message) || count_revaluation_message(message)) continue;
        if (message.starts_with("Add new ")) {
            ++(ends(" complete") ? tally_.saved : tally_.refused);
            if (ends(" complete")) {
                docnos_.push_back(shown("txtdocno"));
                used_vendors_.push_back(shown("cmbvendor"));
            }
        }
        if (message == "Add Recurring invoice complete") ++tally_.templates;
        if (message == "Update complete") ++tally_.updated;
        if (message == "Update failed.") ++tally_.update_failed;
        if (ends(" is void.")) ++tally_.voided;
        // A document on hold may be held once more.
        if (ends(" was hold.")) {
            ++tally_.held;
            on_hold_.insert(shown("txtdocno"));
        }
        if (ends(" was released.")) {
            ++tally_.released;
            on_hold_.erase(shown("txtdocno"));
        }
    }
    console_->desk().happenings().clear();
}

// Each kind of payment has its own words, and its number tells which it is.
bool RandomSession::count_payment_message(const std::string& message) {
    static const std::regex kSaved("Add new (?:Payment|payment|Prepayment) (\\S+) complete");
    static const std::regex kFailed("Add new (payment|prepayment) failed");
    static const std::regex kVoidFailed("Void (Payment|Prepayment|check) failed");
    static const std::regex kVoided("((Payment |Prepayment )(PP|PC|MPY)|PY)-.* is void\\.");
    std::smatch found;
    if (std::regex_match(message, found, kSaved)) {
        ++tally_.payments;
        docnos_of_kind(found[1]).push_back(found[1]);
    } else if (std::regex_match(message, kFailed)) {
        ++tally_.payments_refused;
    } else if (std::regex_match(message, kVoidFailed)) {
        ++tally_.payment_voids_failed;
    } else if (std::regex_match(message, kVoided)) {
        ++tally_.payments_voided;
    } else if (message.starts_with("Check ") && message.ends_with(" is void.")) {
        ++tally_.payments_voided;
        ++tally_.checks_voided;
    } else {
        return false;
    }
    return true;
}

std::vector<std::string>& RandomSession::docnos_of_kind(const std::string& docno) {
    if (docno.starts_with("MPY-")) return misc_docnos_;
    if (docno.starts_with("PP-")) return prepayment_docnos_;
    return docno.starts_with("PC-") ? card_docnos_ : payment_docnos_;
}

// --- acts ---

void RandomSession::enter_document() {
    static const std::vector<std::string> kKinds{"Invoice", "Invoice", "Invoice", "Debit Note",
                                                 "Credit Note"};
    static const std::vector<std::string> kForeign{"EUR", "THB"};
    press(kNew);
    if (!pressed(kNew)) return;
    set("cmbdoctype", chance_.one_of(kKinds));
    set("cmbvendor", chance_.one_of(vendors_));
    set("txtinvdate", date());
    if (chance_.percent(70)) set("cmbterm", chance_.one_of(terms_));
    const bool foreign = chance_.percent(20);
    set("cmbcurrency", foreign ? chance_.one_of(kForeign) : "USD");
    if (foreign && chance_.percent(50))
        set("cmbexrate", fmt::format("{}.{:03}", chance_.below(3), chance_.below(1000)));
    if (chance_.percent(30)) set("txtremark", "Order " + std::to_string(chance_.below(10000)));
    const int lines = chance_.between(1, 5);
    for (int row = 0; row < lines; ++row)
        enter_line(row);
    if (chance_.percent(10)) change_line(chance_.below(lines));
    const double total = kernel::money_value(shown("txttotal"));
    press(101);
    if (!pressed(kNew)) note_owed(total - stored_total(shown("txtfkey")));
    leave_without_saving(kNew);
}

// What the lines of a document come to as they are stored, added up as on the screen: half a cent is shown up
// or down by the last digit of a double.
double RandomSession::stored_total(const std::string& fkey) {
    double taxable = 0;
    double tax = 0;
    auto lines = reader_.database->OpenRecordset(
        "SELECT taxable_amount,tax_amount FROM AP_transaction_table WHERE fkey = '" + fkey +
            "' ORDER BY pay_item",
        RecordsetKind::snapshot);
    for (; !lines.at_eof(); lines.MoveNext()) {
        taxable += lines.column(0).number();
        tax += lines.column(1).number();
    }
    return kernel::money_value(kernel::format_money(taxable + tax));
}

// Of the document on screen, which was just saved. Nothing is owed for a template.
void RandomSession::note_owed(double beyond_documents) {
    if (shown("txtdoctype") == "recur") return;
    const bool credit_note = shown("txtfkey").find("vcn") != std::string::npos;
    named_.owed_beyond_documents(shown("cmbvendor"), credit_note ? 0 - beyond_documents : beyond_documents);
}

void RandomSession::enter_template() {
    press(kNew);
    if (!pressed(kNew)) return;
    run("check chkrecur");
    set("txtrecurname", "Rent " + std::to_string(chance_.below(100)));
    set("cmbvendor", chance_.one_of(vendors_));
    set("cmbterm", chance_.one_of(terms_));
    if (chance_.percent(90)) set("cmbcurrency", "USD");
    press(1011);
    set("cmbfreq", chance_.percent(50) ? "monthly" : "quarterly");
    set("txtrecurdate", std::to_string(chance_.below(33)));
    set("txteffectdate", chance_.percent(70) ? "01/01/2026" : date());
    set("txtexpiredate", chance_.percent(70) ? "31/12/2027" : date());
    const int lines = chance_.between(1, 3);
    for (int row = 0; row < lines; ++row)
        enter_line(row);
    press(101);
    leave_without_saving(kNew);
    press(1002);
}

void RandomSession::edit_document() {
    if (!go_to_some_document()) return;
    press(kEditMode);
    if (!pressed(kEditMode)) return;
    const double loaded = kernel::money_value(shown("txttotal"));
    const double stored = stored_total(shown("txtfkey"));
    const int changes = chance_.below(4);
    for (int i = 0; i < changes; ++i)
        change_line(chance_.below(6));
    if (chance_.percent(30)) set("txtremark", "Changed " + std::to_string(chance_.below(10000)));
    if (chance_.percent(20)) set("cmbterm", chance_.one_of(terms_));
    const double total = kernel::money_value(shown("txttotal"));
    if (chance_.percent(85)) press(101);
    if (!pressed(kEditMode)) note_owed(total - loaded - stored_total(shown("txtfkey")) + stored);
    leave_without_saving(kEditMode);
}

void RandomSession::void_document() {
    if (go_to_some_document()) press(1008);
}

void RandomSession::hold_document() {
    if (go_to_some_document()) press(1009);
}

void RandomSession::release_document() {
    if (on_hold_.empty()) return;
    const std::vector<std::string> held(on_hold_.begin(), on_hold_.end());
    run("enter txtdocno " + chance_.one_of(held));
    press(1010);
}

void RandomSession::walk() {
    static const std::vector<int> kWays{107, 107, 108, 109, 136, 1005, 1002, 1003, 1004, 1012, 1013};
    const int steps = chance_.between(1, 4);
    for (int i = 0; i < steps; ++i)
        press(chance_.one_of(kWays));
}

void RandomSession::look_at_taxes() {
    press(131);
    press(132);
}

void RandomSession::let_days_pass() {
    static const store::DateTime kLast = *store::DateTime::from_ymd(2027, 11, 30);
    today_ = std::min(today_.plus_days(chance_.between(1, 12)), kLast);
    run("today " + today_.iso() + " 09:00:00");
}

void RandomSession::close_and_open() {
    press(100);
    run("call showform_APform_invoice");
}

// --- the user's hands ---

void RandomSession::run(const std::string& line) {
    script_.push_back(line);
    console_->run(line, "random:" + std::to_string(script_.size()));
}

// Whatever is asked has its answer; what is not asked for is taken back.
void RandomSession::press(int id) {
    run(chance_.percent(80) ? "answer yes" : "answer no");
    run("press " + std::to_string(id));
    run("answer none");
}

void RandomSession::set(const char* control, const std::string& value) {
    run(fmt::format("set {} {}", control, quoted_word(value)));
}

void RandomSession::cell(int row, const char* caption, const std::string& value) {
    run(fmt::format("cell dbgrid1 {} {} {}", row, quoted_word(caption), quoted_word(value)));
}

void RandomSession::enter_line(int row) {
    static const std::vector<std::string> kUsual{"5000", "5300", "5400", "6300", "1200", "5900"};
    cell(row, "purchase account", chance_.percent(90) ? chance_.one_of(kUsual) : chance_.one_of(accounts_));
    if (chance_.percent(60)) cell(row, "tax code", chance_.one_of(tax_codes_));
    if (chance_.percent(20)) cell(row, "description", "Bags of 60 kg");
    const std::string sign = chance_.percent(4) ? "-" : "";
    cell(row, chance_.percent(60) ? "gross amount" : "taxable amount", sign + amount());
}

void RandomSession::change_line(int row) {
    switch (chance_.below(6)) {
        case 0:
            cell(row, "gross amount", amount());
            break;
        case 1:
            cell(row, "gross amount", "");
            break;
        case 2:
            cell(row, "purchase account", chance_.one_of(accounts_));
            break;
        case 3:
            cell(row, "tax code", chance_.one_of(tax_codes_));
            break;
        case 4:
            run(fmt::format("visit dbgrid1 {} \"gross amount\"", row));
            press(chance_.percent(50) ? 110 : 111);
            break;
        default:
            enter_line(row);
    }
}

// Pressed once more, the button asks whether to save; here the entry is to be dropped.
void RandomSession::leave_without_saving(int mode_command) {
    if (!pressed(mode_command)) return;
    run("answer no");
    run("press " + std::to_string(mode_command));
    run("answer none");
}

bool RandomSession::pressed(int id) {
    frame::Form* const form = console_->desk().current_form();
    return form && form->CommandBars1().pressed(id);
}

std::string RandomSession::shown(const std::string& control) {
    return console_->desk().current_form()->controls().find(control)->shown();
}

bool RandomSession::go_to_some_document() {
    if (docnos_.empty()) return false;
    run("enter txtdocno " + chance_.one_of(docnos_));
    return true;
}

std::string RandomSession::amount() {
    static const std::vector<std::string> kOdd{"0", "-5", "0.005", "1e3", "12,345.67", "0.01", "99999999.99"};
    if (chance_.percent(5)) return chance_.one_of(kOdd);
    return fmt::format("{}.{:02}", chance_.below(2000), chance_.below(100));
}

std::string RandomSession::date() {
    const int year = chance_.percent(85) ? 2026 : chance_.percent(80) ? 2027 : 2025;
    return fmt::format("{:02}/{:02}/{}", chance_.between(1, chance_.percent(95) ? 28 : 31),
                       chance_.between(1, 12), year);
}

std::vector<std::string> RandomSession::column(const std::string& query) {
    std::vector<std::string> values;
    for (auto rows = reader_.database->OpenRecordset(query, RecordsetKind::snapshot); !rows.at_eof();
         rows.MoveNext())
        values.push_back(rows.column(0).text());
    return values;
}

}  // namespace brimley::testing
