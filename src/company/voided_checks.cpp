#include "company/voided_checks.h"

namespace brimley::company {

namespace {

constexpr std::string_view kReversedBy = "Reversed by ";

std::string reverse_key(const std::string& gl_docno, const std::string& payment_docno) {
    return gl_docno + "|" + payment_docno;
}

}  // namespace

VoidedChecks::VoidedChecks(const Books& books) {
    store::Recordset lines = books.read(
        "SELECT docno,source_docno FROM GL_transaction_table WHERE source_form = 'APform_void_check'");
    for (; !lines.at_eof(); lines.MoveNext())
        reverses_.insert(reverse_key(lines.column(0).text(), lines.column(1).text()));
    if (reverses_.empty()) return;
    store::Recordset headers = books.read("SELECT fkey,docno,remark FROM GL_header_table");
    for (; !headers.at_eof(); headers.MoveNext())
        gl_headers_[headers.column(0).text()] = {headers.column(1).text(), headers.column(2).text()};
}

bool VoidedChecks::reverse_stands_in(const std::string& gl_docno, const PaymentHeader& payment) const {
    return reverses_.contains(reverse_key(gl_docno, payment.docno));
}

// The reverse stands in the payment's own GL document, or in the one that its remark names.
bool VoidedChecks::contains(const PaymentHeader& payment) const {
    const auto found = gl_headers_.find(payment.gl_fkey);
    if (!payment.is_void || found == gl_headers_.end()) return false;
    const GlHeader& header = found->second;
    return reverse_stands_in(header.docno, payment) ||
           (header.remark.starts_with(kReversedBy) &&
            reverse_stands_in(header.remark.substr(kReversedBy.size()), payment));
}

}  // namespace brimley::company
