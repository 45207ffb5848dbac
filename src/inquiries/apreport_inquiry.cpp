#include "inquiries/apreport_inquiry.h"

#include <array>

namespace brimley::inquiries {

using frame::LineColumn;
using frame::Shown;

namespace {

constexpr frame::FormIdentity kInquiryIdentity{"APreport_inquiry", "Invoice Inquiry", ""};
constexpr frame::ReportNames kInquiryReport{"VENDOR INVOICES", "vendor_invoices", "Preview Vendor Invoices"};

constexpr const char* kDocumentNo = "document no";

constexpr std::array kInquiryColumns{
    LineColumn{kDocumentNo, "docno", Shown::text},
    LineColumn{"vendor invoice no", "invoice_no", Shown::text},
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"document date", "invoice_date", Shown::date},
    LineColumn{"due date", "due_date", Shown::date},
    LineColumn{"gross amount", "gross_amount", Shown::money},
    LineColumn{"open amount", "open_amount", Shown::money},
    LineColumn{"paid", "paid", Shown::flag},
    LineColumn{"hold", "hold", Shown::flag},
};

// All of it is shown as the item has it; a state other than "All" is the document's.
constexpr const char* kCells =
    "SELECT AP_transaction_table.vendor_no, AP_transaction_table.docno, AP_transaction_table.invoice_no, "
    "AP_transaction_table.pay_item, AP_transaction_table.invoice_date, AP_transaction_table.due_date, "
    "AP_transaction_table.gross_amount, AP_transaction_table.open_amount, AP_transaction_table.paid, "
    "AP_transaction_table.hold FROM ";
constexpr const char* kOfItems = "AP_transaction_table WHERE ";
constexpr const char* kOfDocuments =
    "AP_header_table, AP_transaction_table WHERE AP_header_table.fkey = AP_transaction_table.fkey AND ";

}  // namespace

APreport_inquiry::APreport_inquiry(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                                   frame::Desk& desk)
    : DocumentInquiry(kInquiryIdentity, kInquiryReport, std::move(context), std::move(kernel), desk,
                      kInquiryColumns, kDocumentNo) {
    controls::OptionButton::group({&opt_all, &opt_paid, &opt_open, &opt_hold});
}

void APreport_inquiry::show_first_values() {
    DocumentInquiry::show_first_values();
    opt_all.choose();
}

void APreport_inquiry::initform_control() {
    DocumentInquiry::initform_control();
    const std::string company = recent_value("cmbcompany");
    if (!company.empty()) cmbcompany.set(company);
}

// The choice of a state stays.
void APreport_inquiry::clear_box() {
    DocumentInquiry::clear_box();
    txtopenamt.set("");
}

void APreport_inquiry::save_recent_values() { save_recent_value("cmbcompany", cmbcompany.text()); }

void APreport_inquiry::SEL_record() {
    const auto gross = amount_condition(txtgross, "gross_amount", "gross amount is invalid");
    if (!gross) return;
    const auto open = amount_condition(txtopenamt, "open_amount", "openamt amount is invalid");
    if (!open) return;
    assign2_dbgrid1(query_of_items() + *gross + *open);
}

std::string APreport_inquiry::query_of_items() const {
    if (opt_all.is_set())
        return std::string(kCells) + kOfItems +
               conditions({"invoice_no", "docno", "vendor_no", "invoice_date"}) + " AND void = FALSE";
    return std::string(kCells) + kOfDocuments +
           conditions({"AP_header_table.invoice_no", "AP_header_table.docno", "AP_header_table.vendor_no",
                       "AP_header_table.invoice_date"}) +
           state_condition();
}

const char* APreport_inquiry::state_condition() const {
    if (opt_paid.is_set()) return " AND AP_header_table.paid = TRUE";
    if (opt_open.is_set()) return " AND AP_header_table.paid = FALSE AND AP_header_table.void = FALSE";
    return " AND AP_header_table.hold = TRUE";
}

}  // namespace brimley::inquiries
