// Payments: headers, lines and GL documents, and what the items say was paid of them.
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "company/check.h"
#include "company/edited_documents.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

using store::Recordset;

struct Payment {
    bool is_void = false;
    int lines = 0;
    int void_lines = 0;
};

std::map<std::string, Payment> payments(const Books& books) {
    std::map<std::string, Payment> by_fkey;
    Recordset rows = books.read("SELECT fkey,void FROM Payment_header_table");
    for (; !rows.at_eof(); rows.MoveNext())
        by_fkey[rows.text("fkey")].is_void = rows.flag("void");
    return by_fkey;
}

// GL documents that have lines, and whether they are reversed: an empty one can be neither.
std::unordered_map<std::string, bool> posted_gl_documents(const Books& books) {
    const auto posted = books.posted_documents();
    std::unordered_map<std::string, bool> reversed;
    Recordset rows = books.read("SELECT fkey,Reverse FROM GL_header_table");
    for (; !rows.at_eof(); rows.MoveNext()) {
        if (posted.contains(rows.text("fkey"))) reversed[rows.text("fkey")] = rows.flag("Reverse");
    }
    return reversed;
}

}  // namespace

void check_payment_documents(const Books& books, Findings& findings) {
    auto by_fkey = payments(books);
    Recordset lines = books.read("SELECT fkey,void FROM Payment_transaction_table ORDER BY fkey");
    for (; !lines.at_eof(); lines.MoveNext()) {
        const auto payment = by_fkey.find(lines.text("fkey"));
        if (payment == by_fkey.end()) {
            findings.push_back(
                fmt::format("Payment {} has a line but no header", shown_text(lines.text("fkey"))));
            continue;
        }
        ++payment->second.lines;
        payment->second.void_lines += lines.flag("void") ? 1 : 0;
    }
    for (const auto& [fkey, payment] : by_fkey) {
        if (payment.void_lines != (payment.is_void ? payment.lines : 0))
            findings.push_back(fmt::format("Payment {} is {}void, but not all its lines are",
                                           shown_text(fkey), payment.is_void ? "" : "not "));
    }
}

void check_payment_postings(const Books& books, Findings& findings) {
    const auto reversed = posted_gl_documents(books);
    const auto lined = [&] {
        std::unordered_set<std::string> fkeys;
        for (Recordset rows = books.read("SELECT fkey FROM Payment_transaction_table"); !rows.at_eof();
             rows.MoveNext())
            fkeys.insert(rows.text("fkey"));
        return fkeys;
    }();
    Recordset rows = books.read(
        "SELECT fkey,GLFKEY,void FROM Payment_header_table WHERE source_form = 'APform_payment' ORDER BY "
        "fkey");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const std::string name = "Payment " + shown_text(rows.text("fkey"));
        const auto gl_document = reversed.find(rows.text("GLFKEY"));
        if (rows.text("GLFKEY").empty()) {
            findings.push_back(name + " names no GL document");
        } else if (gl_document != reversed.end() && gl_document->second != rows.flag("void")) {
            findings.push_back(fmt::format("{} is {}void, but its GL document {} is {}reversed", name,
                                           rows.flag("void") ? "" : "not ", shown_text(rows.text("GLFKEY")),
                                           gl_document->second ? "" : "not "));
        } else if (gl_document == reversed.end() && rows.flag("void") && lined.contains(rows.text("fkey"))) {
            findings.push_back(name + " is void, but posted nothing that could be reversed");
        }
    }
}

// --- items ---

namespace {

// What the payments' lines say of one item.
struct PaidItem {
    double first_number = 0;   // of the first payment that names it
    double paid_before = 0;    // of the item, when that payment found it
    double settled = 0;        // by payments that stand
    double left_by_voids = 0;  // discounts and write-offs that a void leaves in the amount paid
    double discount = 0, writeoff = 0;
};

double key_number(const std::string& fkey) {
    double number = 0;
    const std::size_t dash = std::min(fkey.find('-'), fkey.size() - 1);
    std::from_chars(fkey.data() + dash + 1, fkey.data() + fkey.size(), number);
    return number;
}

// A discount or write-off below nothing is taken off by a void and was never added.
double counted(double amount, bool is_void) {
    return is_void ? 0 - std::min(amount, 0.0) : std::max(amount, 0.0);
}

void count_line(PaidItem& item, bool is_new, const Recordset& line) {
    const double number = key_number(line.text("fkey"));
    if (is_new || number < item.first_number) {
        item.first_number = number;
        item.paid_before = line.number("gross_amount") - line.number("open_amount");
    }
    const double discount = line.number("discount_taken");
    const double writeoff = line.number("writeoff");
    const bool is_void = line.flag("void");
    (is_void ? item.left_by_voids : item.settled) += discount + writeoff;
    if (!is_void) item.settled += line.number("pay_amount");
    item.discount += counted(discount, is_void);
    item.writeoff += counted(writeoff, is_void);
}

using PaidItems = std::unordered_map<std::string, PaidItem>;

std::string item_key(const std::string& docno, const std::string& pay_item) { return docno + "|" + pay_item; }

// A card's or a prepayment's own line names no item.
PaidItems paid_items(const Books& books) {
    PaidItems items;
    Recordset lines = books.read(
        "SELECT fkey,ap_docno,pay_item,gross_amount,open_amount,pay_amount,discount_taken,writeoff,void FROM "
        "Payment_transaction_table WHERE ap_docno <> ''");
    for (; !lines.at_eof(); lines.MoveNext()) {
        const auto [item, is_new] =
            items.try_emplace(item_key(lines.text("ap_docno"), lines.text("pay_item")));
        count_line(item->second, is_new, lines);
    }
    return items;
}

// Documents whose items were written anew by an edit, as if nothing had been paid, and numbers that came
// again: what was paid of their items cannot be told from the lines of payments.
std::unordered_set<std::string> untold_documents(const Books& books) {
    std::unordered_set<std::string> documents = edited_documents(books);
    std::unordered_set<std::string> seen;
    Recordset rows = books.read("SELECT docno,pay_item FROM AP_transaction_table");
    for (; !rows.at_eof(); rows.MoveNext()) {
        if (!seen.insert(item_key(rows.text("docno"), rows.text("pay_item"))).second)
            documents.insert(rows.text("docno"));
    }
    return documents;
}

}  // namespace

void check_paid_items(const Books& books, Findings& findings) {
    const PaidItems items = paid_items(books);
    const auto untold = untold_documents(books);
    Recordset rows = books.read(
        "SELECT docno,pay_item,gross_amount,open_amount,paid_amount,discount_taken,writeoff FROM "
        "AP_transaction_table ORDER BY docno,pay_item");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const auto found = items.find(item_key(rows.text("docno"), rows.text("pay_item")));
        if (found == items.end() || untold.contains(rows.text("docno"))) continue;
        const PaidItem& item = found->second;
        const auto compare = [&](const char* field, double expected) {
            if (!differ(rows.number(field), expected)) return;
            findings.push_back(fmt::format("Document {}, pay item {}: {} is {:.2f}, by its payments {:.2f}",
                                           shown_text(rows.text("docno")), shown_text(rows.text("pay_item")),
                                           field, rows.number(field), expected));
        };
        compare("open_amount", rows.number("gross_amount") - item.paid_before - item.settled);
        if (differ(item.paid_before, 0)) continue;  // what was paid elsewhere was told in its own way
        compare("paid_amount", item.settled + item.left_by_voids);
        compare("discount_taken", item.discount);
        compare("writeoff", item.writeoff);
    }
}

}  // namespace brimley::company
