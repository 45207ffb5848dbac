// The matching of prepayments and a payment with invoices, in AP_matching_table. Nothing in the product calls
// what stands here; sister programs read the table, and know the routines by their names.
#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "kernel/money.h"
#include "payments/invoice_payment/apform_payment.h"

namespace brimley::payments {

using kernel::Round;
using store::quoted;
using store::Recordset;

namespace {

constexpr std::size_t kEntriesMax = 31;

struct Invoice {
    std::string docno, pay_item, date_yyyymmdd;
    double pay = 0, gross = 0, open = 0, discount = 0, writeoff = 0;
    std::string discount_accno, writeoff_accno;
};

// A prepayment in the list, or after all of them the payment itself, which has no document.
struct Credit {
    std::string docno, pay_item;
    double left = 0;  // negative
    double gross = 0, open = 0;
    bool is_payment = false;
};

template <class Entry>
void append(std::vector<Entry>& entries, Entry entry) {
    if (entries.size() == kEntriesMax) throw std::runtime_error("Subscript out of range: 31 entries at most");
    entries.push_back(std::move(entry));
}

class Matching : public frame::DocumentPart {
  public:
    Matching(APform_payment& form, std::string matching_no)
        : DocumentPart(form),
          form_(form),
          matching_no_(std::move(matching_no)),
          rows_(kernel().change("SELECT * FROM AP_matching_table WHERE 1 = 2")) {}

    void run() {
        split_list();
        credits_.push_back({"", "", 0 - kernel::money_value(form_.txttotal.text()), 0, 0, true});
        auto invoice = invoices_.begin();
        for (Credit& credit : credits_) {
            while (credit.left < 0 && invoice != invoices_.end()) {
                const bool invoice_finished = 0 - credit.left > invoice->pay;
                pair(*invoice, credit);
                if (!invoice_finished) break;  // the invoice keeps the rest for the next credit
                ++invoice;
            }
        }
        mark_documents();
    }

  private:
    void split_list() {
        for (const ListedItem& item : form_.items.paid()) {
            if (item.docno.empty() || item.amounts.pay == 0) continue;
            if (item.is_prepayment()) {
                append(credits_, Credit{item.docno, item.pay_item, item.amounts.pay, item.gross, item.open});
                continue;
            }
            append(invoices_, Invoice{item.docno, item.pay_item,
                                      item.invoice_date ? item.invoice_date->yyyymmdd() : std::string{},
                                      item.amounts.pay, item.gross, item.open, item.amounts.discount,
                                      item.amounts.writeoff, item.discount_accno, item.writeoff_accno});
        }
    }

    // Discount and write-off go with the first row of an invoice, and reduce its open amount.
    void take_reductions(Invoice& invoice) {
        if (invoice.discount != 0) {
            rows_.set("discount", invoice.discount);
            rows_.set("discount_account", invoice.discount_accno);
        }
        if (invoice.writeoff != 0) {
            rows_.set("writeoff", invoice.writeoff);
            rows_.set("writeoff_account", invoice.writeoff_accno);
        }
        invoice.open = Round(invoice.open - invoice.discount - invoice.writeoff);
        invoice.discount = 0;
        invoice.writeoff = 0;
    }

    void pair(Invoice& invoice, Credit& credit) {
        const double amount = std::min(invoice.pay, 0 - credit.left);
        rows_.AddNew();
        rows_.set("matching_no", matching_no_);
        rows_.set("matching_date", desk().now());
        rows_.set("lineno", ++lineno_);
        rows_.set("company", form_.cmbcompany.text());
        take_reductions(invoice);
        rows_.set("invoice_no", invoice.docno);
        rows_.set("invoice_date", invoice.date_yyyymmdd);
        rows_.set("pay_item", invoice.pay_item);
        rows_.set("invoice_gross", invoice.gross);
        rows_.set("invoice_open", invoice.open);
        rows_.set("invoice_pay", amount);
        invoice.open = Round(invoice.open - amount);
        invoice.pay = Round(invoice.pay - amount);
        rows_.set("invoice_balance", invoice.open);
        set_credit_fields(credit, amount);
        rows_.Update();
        update_item(invoice.docno, invoice.pay_item, invoice.open, amount, true);
        if (!credit.is_payment) update_item(credit.docno, credit.pay_item, credit.open, 0 - amount, false);
    }

    void set_credit_fields(Credit& credit, double amount) {
        const double open = credit.is_payment ? credit.left : credit.open;
        credit.left = Round(credit.left + amount);
        credit.open = Round(open + amount);
        const auto set = [&](const char* field, double value) {
            rows_.set(std::string(credit.is_payment ? "receipt_" : "deposit_") + field, value);
        };
        if (credit.is_payment) {
            rows_.set("receipt_no", form_.txtdocno.text());
        } else {
            rows_.set("deposit_no", credit.docno);
            rows_.set("deposit_payitem", credit.pay_item);
            rows_.set("deposit_gross", credit.gross);
        }
        set("open", open);
        set("pay", 0 - amount);
        set("balance", credit.open);
    }

    void update_item(const std::string& docno, const std::string& pay_item, double balance, double amount,
                     bool remember) {
        auto item = kernel().find_to_change("AP_transaction_table", {{"company", "1"}, {"docno", docno}});
        item.FindFirst("[pay_item] = " + pay_item);
        if (item.NoMatch()) return;
        item.Edit();
        item.set("open_amount", balance);
        item.set("paid_amount", Round(item.number("paid_amount") + amount));
        if (balance == 0) item.set("paid", true);
        item.Update();
        if (!remember) return;
        documents_.insert(item.text("fkey"));
        if (!item.text("source_docno").empty())
            sources_.emplace(item.text("source_docno"), item.text("fkey"));
        if (documents_.size() > kEntriesMax || sources_.size() > kEntriesMax)
            throw std::runtime_error("Subscript out of range: 31 entries at most");
    }

    void mark(const std::string& table, const std::string& criteria, const std::string& fkey) {
        const auto flags = [&] { return flags_when_paid(kernel(), fkey); };
        write_flags(kernel(), flags, [&](std::string_view set) {
            kernel().database().Execute(fmt::format("UPDATE {} SET {} WHERE {}", table, set, criteria));
        });
    }

    void mark_documents() {
        for (const std::string& fkey : documents_)
            mark("AP_header_table", "fkey = " + quoted(fkey), fkey);
        for (const auto& [docno, fkey] : sources_)
            mark("PO_invoice_header_table", "company = 1 AND docno = " + quoted(docno), fkey);
    }

    APform_payment& form_;
    std::string matching_no_;
    Recordset rows_;
    int lineno_ = 0;
    std::vector<Invoice> invoices_;
    std::vector<Credit> credits_;
    std::set<std::string> documents_;                        // keys of the invoices met
    std::set<std::pair<std::string, std::string>> sources_;  // where they came from, with their keys
};

}  // namespace

bool APform_payment::matching() {
    bool matched = false;
    step("matching", [&] {
        auto counter = kernel().find_to_change(
            "Docno_master_table",
            {{"company", cmbcompany.text()}, {"doctype", "mp"}, {"fiscalyear", cmbfyear.text()}});
        if (counter.at_eof()) {
            kernel().tell_missing_numbers("mp", cmbfyear.text());
            return;
        }
        counter.Edit();
        const auto number = static_cast<std::int64_t>(counter.number("nextdocno"));
        counter.set("nextdocno", static_cast<double>(number + 1));
        counter.Update();
        const std::string matching_no = kernel().format_docno("mp", number, cmbfyear.text());
        if (!kernel().docno_fits(matching_no, kernel::ModuleG3::TooLongMessage::number_first)) return;
        Matching(*this, matching_no).run();
        matched = true;
    });
    return matched;
}

void APform_payment::set_invoice() {
    struct Receivable {
        const char* docno;
        double open_amount;
    };
    for (const Receivable& receivable :
         {Receivable{"ar1", 760}, Receivable{"dp1", -250}, Receivable{"dp2", -250}}) {
        step("set_invoice", [&] {
            auto row = kernel().find_to_change("AR_transaction_table", {{"docno", receivable.docno}});
            if (row.at_eof()) return;
            row.Edit();
            row.set("open_amount", receivable.open_amount);
            row.Update();
        });
    }
}

void APform_payment::chkselect_click(bool on_due_only) {
    if (mode() != frame::Mode::new_entry) return;
    if (!on_due_only) {
        list_vendor_invoice(cmbvendor.text());
        return;
    }
    items.keep_what_is_on_due();
}

void APform_payment::update_discount_taken(const std::string& ap_docno, const std::string& pay_item,
                                           double discount) {
    auto item = kernel().find_to_change("AP_transaction_table",
                                        {{"company", "1"}, {"docno", ap_docno}, {"pay_item", pay_item}});
    if (item.at_eof()) return;
    item.Edit();
    item.set("discount_taken", Round(item.number("discount_taken") + discount));
    item.Update();
}

}  // namespace brimley::payments
