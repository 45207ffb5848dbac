#include "invoices/recurring_run/invoice_generation.h"

#include "invoices/document/kinds.h"
#include "invoices/document/payment_term.h"
#include "kernel/user_dates.h"

namespace brimley::invoices {

using store::Recordset;

namespace {

constexpr const char* kCompany = "1";
// A turn of the host at every invoice would cost more than the invoice.
constexpr std::size_t kInvoicesBetweenPauses = 20;

GeneratedLine read_line(const Recordset& line) {
    return {line.number("gross_amount"), line.number("taxable_amount"), line.number("tax_amount"),
            line.text("tax_code"),       line.flag("include_tax"),      line.text("po_accno")};
}

void copy_fields(const Recordset& from, std::initializer_list<const char*> fields, Recordset& to) {
    for (const char* field : fields)
        to.set(field, from.field(field));
}

void add_line(Recordset& lines, const Recordset& of_template) {
    lines.AddNew();
    copy_fields(of_template,
                {"pay_item", "Description", "gross_amount", "open_amount", "taxable_amount", "tax_amount",
                 "tax_code", "include_tax", "po_accno"},
                lines);
}

void fill_from_header(Recordset& lines, const Recordset& header) {
    copy_fields(header,
                {"docno", "gldate", "company", "fkey", "vendor_no", "Currency", "payment_term",
                 "date_created", "time_created", "Month", "Year"},
                lines);
}

void fill_terms(Recordset& lines, const Recordset& term, store::DateTime document_date) {
    copy_fields(term, {"duedays", "early_days", "early_discount"}, lines);
    const TermDates dates = term_dates(term, document_date);
    if (dates.due) lines.set("due_date", *dates.due);
    if (dates.discount) lines.set("discount_date", *dates.discount);
}

}  // namespace

// What the invoices of a run have in common.
struct InvoiceGeneration::Run {
    Recordset headers;
    Recordset lines;
    GeneratedPosting posting;
    store::DateTime now;
    std::optional<std::string> ap_accno{};  // of the first vendor; the rows of all others name it as well
};

bool InvoiceGeneration::generate(const std::vector<MarkedTemplate>& marked) {
    running_ = true;
    progress_.set(0);
    progress_.set_visible(true);
    const bool done = in_transaction("gen_invoice", [&] { return generate_all(marked); });
    progress_.set_visible(false);
    running_ = false;
    return done;
}

bool InvoiceGeneration::generate_all(const std::vector<MarkedTemplate>& marked) {
    Run run{kernel().change("SELECT * FROM AP_header_table WHERE 1 = 2"),
            kernel().change("SELECT * FROM AP_transaction_table WHERE 1 = 2"), GeneratedPosting(form_),
            desk().now()};
    for (std::size_t i = 0; i < marked.size(); ++i) {
        if (!generate_invoice(run, marked[i])) return false;
        note_progress(i + 1, marked.size());
    }
    return true;
}

bool InvoiceGeneration::generate_invoice(Run& run, const MarkedTemplate& row) {
    const auto recurring = kernel().find("AP_recur_header_table", {{"fkey", row.fkey}});
    if (recurring.at_eof()) return fail("The template is not there any more");
    if (!find_payable_account(run, row.vendor_no)) return false;
    const auto invoice = begin_invoice(row, recurring);
    if (!invoice) return false;
    add_header(run, *invoice, recurring);
    const std::vector<GeneratedLine> lines = add_lines(run, *invoice, row.fkey);
    run.headers.Update();
    return run.posting.insert_GL_record(*invoice, lines);
}

// Once in a run.
bool InvoiceGeneration::find_payable_account(Run& run, const std::string& vendor_no) const {
    if (run.ap_accno) return true;
    run.ap_accno = kernel().look_up_text("Vendor_table", {{"vendor_no", vendor_no}}, "ap_accno");
    return !run.ap_accno->empty() || refuse("Error : Payable account for " + vendor_no + " is empty");
}

std::optional<GeneratedInvoice> InvoiceGeneration::begin_invoice(const MarkedTemplate& row,
                                                                 const Recordset& recurring) const {
    const std::string& format = context().BRIMLEY_DATE_FORMAT;
    const auto date = kernel::parse_user_date(row.due_date, format, desk());
    if (!date) {
        tell("invoice date is invalid");
        return std::nullopt;
    }
    const auto period = kernel().get_period_of_date_text(row.due_date, format);
    if (!period) return std::nullopt;
    const auto number = draw_older_number(kernel(), kCompany, kInvoice.doctype, period->fyear);
    if (!number) return std::nullopt;
    return GeneratedInvoice{kCompany,
                            number->docno,
                            number->fkey,
                            *date,
                            *period,
                            recurring.text("vendor_no"),
                            recurring.text("Currency"),
                            recurring.text("payment_term")};
}

void InvoiceGeneration::add_header(Run& run, const GeneratedInvoice& invoice, const Recordset& recurring) {
    Recordset& header = run.headers;
    header.AddNew();
    header.set("docno", invoice.docno);
    header.set("gldate", invoice.gldate);
    header.set("doctype", kInvoice.doctype);
    header.set("company", invoice.company);
    header.set("fkey", invoice.fkey);
    copy_fields(recurring, {"vendor_no", "Currency", "payment_term", "remark", "recurno"}, header);
    header.set("Source", kGeneratedSource);
    header.set("date_created", run.now.yyyymmdd());
    header.set("time_created", run.now.time_text());
    header.set("Month", invoice.period.month);
    header.set("Year", invoice.period.year);
}

std::vector<GeneratedLine> InvoiceGeneration::add_lines(Run& run, const GeneratedInvoice& invoice,
                                                        const std::string& template_fkey) const {
    std::vector<GeneratedLine> lines;
    const auto term = kernel().find("Payment_term_table", {{"term_no", invoice.payment_term}});
    for (auto line = kernel().find("AP_recur_transaction_table", {{"fkey", template_fkey}}); !line.at_eof();
         line.MoveNext()) {
        add_line(run.lines, line);
        fill_from_header(run.lines, run.headers);
        if (!term.at_eof()) fill_terms(run.lines, term, invoice.gldate);
        run.lines.set("ap_accno", *run.ap_accno);
        run.lines.set("userid", context().BRIMLEY_USER);
        run.lines.set("form_name", "APform_invoice");
        run.lines.Update();
        lines.push_back(read_line(line));
    }
    return lines;
}

void InvoiceGeneration::note_progress(std::size_t done, std::size_t of) const {
    progress_.set(static_cast<int>(done * 100 / of));
    if (done % kInvoicesBetweenPauses == 0) desk().pump();
}

}  // namespace brimley::invoices
