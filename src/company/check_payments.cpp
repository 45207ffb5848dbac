// Payments and their lines and GL documents.
#include <fmt/format.h>

#include <map>
#include <unordered_map>
#include <unordered_set>

#include "company/check.h"
#include "company/shown_text.h"

namespace brimley::company {

namespace {

struct LineCount {
    bool is_void = false;
    int lines = 0;
    int void_lines = 0;
};

struct GlDocument {
    bool posted = false;  // it has lines: an empty one can be neither reversed nor not
    bool reversed = false;
};

std::unordered_map<std::string, GlDocument> gl_documents(const Books& books) {
    const auto posted = books.posted_documents();
    std::unordered_map<std::string, GlDocument> documents;
    store::Recordset rows = books.read("SELECT fkey,Reverse FROM GL_header_table");
    for (; !rows.at_eof(); rows.MoveNext())
        documents[rows.text("fkey")] = {posted.contains(rows.text("fkey")), rows.flag("Reverse")};
    return documents;
}

}  // namespace

void check_payment_documents(const Books& books, Findings& findings) {
    std::map<std::string, LineCount> payments;
    books.each_payment(
        [&](const PaymentHeader& payment) { payments[payment.fkey].is_void = payment.is_void; });
    books.each_payment_line([&](const PaymentLine& line) {
        const auto payment = payments.find(line.fkey);
        if (payment == payments.end()) {
            findings.push_back(fmt::format("Payment {} has a line but no header", shown_text(line.fkey)));
            return;
        }
        ++payment->second.lines;
        payment->second.void_lines += line.is_void ? 1 : 0;
    });
    for (const auto& [fkey, payment] : payments) {
        if (payment.void_lines != (payment.is_void ? payment.lines : 0))
            findings.push_back(fmt::format("Payment {} is {}void, but not all its lines are",
                                           shown_text(fkey), payment.is_void ? "" : "not "));
    }
}

void check_payment_postings(const Books& books, Findings& findings) {
    const auto documents = gl_documents(books);
    std::unordered_set<std::string> lined;
    books.each_payment_line([&](const PaymentLine& line) { lined.insert(line.fkey); });
    books.each_payment([&](const PaymentHeader& payment) {
        const std::string name = "Payment " + shown_text(payment.fkey);
        if (payment.gl_fkey.empty()) {
            if (payment.saved_here()) findings.push_back(name + " names no GL document");
            return;
        }
        const auto found = documents.find(payment.gl_fkey);
        if (found == documents.end()) {
            findings.push_back(
                fmt::format("{}: its GL document {} does not exist", name, shown_text(payment.gl_fkey)));
            return;
        }
        if (!payment.saved_here()) return;
        const GlDocument& document = found->second;
        if (document.posted && document.reversed != payment.is_void) {
            findings.push_back(fmt::format("{} is {}void, but its GL document {} is {}reversed", name,
                                           payment.is_void ? "" : "not ", shown_text(payment.gl_fkey),
                                           document.reversed ? "" : "not "));
        } else if (!document.posted && payment.is_void &&
                   (lined.contains(payment.fkey) || payment.of_misc_form())) {
            findings.push_back(name + " is void, but posted nothing that could be reversed");
        }
    });
}

}  // namespace brimley::company
