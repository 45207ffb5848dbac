#include "inquiries/apreport_payhistory.h"

#include <fmt/format.h>

#include <array>

namespace brimley::inquiries {

using frame::LineColumn;
using frame::Shown;

namespace {

constexpr frame::FormIdentity kHistoryIdentity{"APreport_payhistory", "Payment History", ""};
constexpr frame::ReportNames kHistoryReport{"PAYMENT HISTORY", "payment_history", "Preview Payment History"};

constexpr const char* kEveryWay = "All";
constexpr const char* kInvoiceNo = "AP doc no";

constexpr std::array kPaymentColumns{
    LineColumn{"document no", "docno", Shown::text},
    LineColumn{"document type", "doctype", Shown::text},
    LineColumn{"invoice no", "invoice_no", Shown::text},
    LineColumn{kInvoiceNo, "ap_docno", Shown::text},
    LineColumn{"pay item", "pay_item", Shown::text},
    LineColumn{"date", "payment_date", Shown::date},
    LineColumn{"gross amount", "gross_amount", Shown::money},
    LineColumn{"open amount", "open_amount", Shown::money},
    LineColumn{"pay amount", "pay_amount", Shown::money},
    LineColumn{"balance", "balance", Shown::money},
    LineColumn{"discount", "discount_taken", Shown::money},
    LineColumn{"write-off", "writeoff", Shown::money},
    LineColumn{"check no", "check_no", Shown::text},
    LineColumn{"check date", "check_date", Shown::date},
    LineColumn{"total payment", "total_payment", Shown::money},
    LineColumn{"fee amount", "fee_amount", Shown::money},
};

constexpr const char* kPayments =
    "SELECT Payment_header_table.docno AS docno, Payment_header_table.check_no, "
    "Payment_header_table.check_date, Payment_header_table.doctype, Payment_header_table.fee_amount, "
    "Payment_transaction_table.vendor_no, invoice_no, ap_docno, pay_item, "
    "Payment_transaction_table.payment_date, gross_amount, open_amount, pay_amount, balance, discount_taken, "
    "writeoff, (pay_amount + discount_taken + writeoff) AS total_payment FROM (Payment_header_table INNER "
    "JOIN Payment_transaction_table ON Payment_header_table.fkey = Payment_transaction_table.fkey) WHERE ";

// The word that stands as the type of a document, and what the host is asked for.
struct Origin {
    const char* document_type;
    const char* request;
};
constexpr std::array kOrigins{
    Origin{"payment", "Payment Entry"},
    Origin{"credit card", "Credit Card Payment"},
    Origin{"prepayment", "A/P Prepayment"},
};

}  // namespace

APreport_payhistory::APreport_payhistory(frame::HostContext context, std::shared_ptr<kernel::ModuleG3> kernel,
                                         frame::Desk& desk)
    : DocumentInquiry(kHistoryIdentity, kHistoryReport, std::move(context), std::move(kernel), desk,
                      kPaymentColumns, kInvoiceNo) {}

// The boxes of the columns to print are built from the layout that a form of another module has.
const char* APreport_payhistory::layout_of(const controls::Grid& grid) const {
    return &grid == &print_columns.grid_sel ? "ARreport_inquiry" : DocumentInquiry::layout_of(grid);
}

void APreport_payhistory::show_first_values() {
    DocumentInquiry::show_first_values();
    cmbpayby.set(kEveryWay);
}

void APreport_payhistory::initform_control() {
    DocumentInquiry::initform_control();
    const auto cards = rows_of("SELECT card_name FROM Credit_card_master_table WHERE used = TRUE");
    cmbpayby.set_source([cards] {
        kernel::TextRows ways = cards();
        ways.insert(ways.begin(), {{kEveryWay}, {"Cash"}, {"Check"}});
        return ways;
    });
    cmbcurrency.set_source(rows_of("SELECT Currency FROM Working_currency_table"));
}

void APreport_payhistory::init_toolbar() {
    using Bars = std::vector<std::string>;
    add_inquiry_commands({{frame::command::kOrigin, "Origin Document", "Origin", "Origin Document",
                           Bars{"Link", "Standard"}}});
}

void APreport_payhistory::clear_box() {
    DocumentInquiry::clear_box();
    txtpayamt.set("");
    cmbpayby.set(kEveryWay);
    cmbcurrency.clear_choice();
}

void APreport_payhistory::execute_own(int id) {
    if (id == frame::command::kOrigin)
        origin_document();
    else
        DocumentInquiry::execute_own(id);
}

void APreport_payhistory::SEL_record() {
    const auto gross = amount_condition(txtgross, "gross_amount", "gross amount is invalid");
    if (!gross) return;
    const auto paid = amount_condition(txtpayamt, "pay_amount", "Pay amount is invalid");
    if (!paid) return;
    std::string query =
        kPayments +
        conditions({"Payment_transaction_table.invoice_no", "Payment_transaction_table.ap_docno",
                    "Payment_transaction_table.vendor_no", "Payment_transaction_table.payment_date"});
    if (cmbpayby.text() != kEveryWay)
        query += " AND Payment_header_table.payby = " + store::quoted(cmbpayby.text());
    assign2_dbgrid1(query + *gross + *paid);
}

void APreport_payhistory::show_invoice(const std::string& docno) {
    txtdocno.set(docno);
    get_match_history();
}

void APreport_payhistory::get_match_history() {
    fill.clear();
    step("get_match_history", [&] {
        const auto invoice =
            kernel().find("AP_header_table", {{"company", cmbcompany.text()}, {"docno", txtdocno.text()}});
        if (!invoice.at_eof()) assign2_control(invoice);
    });
    if (txtinvno.empty()) return;
    assign2_dbgrid1(
        fmt::format("{}Payment_transaction_table.company = {} AND "
                    "Payment_transaction_table.invoice_no = {} ORDER BY "
                    "Payment_transaction_table.docno, Payment_transaction_table.pay_item",
                    kPayments, store::quoted(cmbcompany.text()), store::quoted(txtinvno.text())));
}

void APreport_payhistory::assign2_control(const store::Recordset& invoice) {
    const std::string vendor_no = invoice.text("vendor_no");
    cmbvendor.set(vendor_no);
    cmbcurrency.set(invoice.text("Currency"));
    txtdocno.set(invoice.text("docno"));
    txtinvno.set(invoice.text("invoice_no"));
    cmbcompany.set(invoice.text("company"));
    cmbvendor_name.set(vendor_fields.name_of(vendor_no).value_or(""));
}

void APreport_payhistory::origin_document() {
    const std::string docno = dbgrid1.cell(dbgrid1.row(), "document no");
    if (docno.empty()) return;
    const std::string document_type = dbgrid1.cell(dbgrid1.row(), "document type");
    for (const Origin& origin : kOrigins)
        if (document_type == origin.document_type) return notify(origin.request, docno);
}

}  // namespace brimley::inquiries
