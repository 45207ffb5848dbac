// Invoices that were generated from templates, with their lines and their GL documents.
//
// Their keys have no "-" and are made of numbers that start again in every fiscal year. An invoice does not
// name its year, so its day tells two of one key apart; its GL document is the one of its number and its day.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "company/books.h"

namespace brimley::company {

struct GeneratedLine {
    std::string pay_item;
    std::string docno;
    std::string vendor_no;
    std::string currency;
    std::string month;
    std::string year;
    std::string ap_accno;
    std::string po_accno;
    double gross = 0;
    double taxable = 0;
    double tax = 0;
    bool is_void = false;
};

// The GL document of one.
struct GeneratedPosting {
    std::string fkey;
    std::string docno;
    std::string source_docno;
    std::string day;  // as 2026-01-15; empty for none
    std::string fyear;
    std::string period;
    std::vector<GlLine> lines;
};

struct GeneratedInvoice {
    std::string fkey;
    std::string docno;
    std::string company;
    std::string doctype;
    std::string vendor_no;
    std::string currency;
    std::string recurno;
    std::string month;
    std::string year;
    std::string day;  // as 2026-01-15; empty for none
    std::string last_modified;
    bool is_void = false;
    bool shares_key = false;  // with one of another year
    std::vector<GeneratedLine> lines;
    std::vector<const GeneratedPosting*> postings;  // one, unless something is wrong

    // As posting adds it up, rounding after each line.
    [[nodiscard]] double gross() const;
};

// "Invoice 1ip5", for findings.
[[nodiscard]] std::string name_of(const GeneratedInvoice& invoice);
// The payable account of the vendor, which the first line posts to; empty when the invoice comes to nothing,
// which posts no line.
[[nodiscard]] std::string payable_account(const GeneratedInvoice& invoice, const GeneratedPosting& posting);

class GeneratedInvoices {
  public:
    explicit GeneratedInvoices(const Books& books);
    GeneratedInvoices(const GeneratedInvoices&) = delete;
    GeneratedInvoices& operator=(const GeneratedInvoices&) = delete;

    [[nodiscard]] const std::vector<GeneratedInvoice>& invoices() const { return invoices_; }
    [[nodiscard]] const std::vector<GeneratedPosting>& postings() const { return postings_; }
    [[nodiscard]] bool any_of_key(const std::string& fkey) const { return keys_.contains(fkey); }
    // Whether another year has an invoice of the same key. The forms find both by it.
    [[nodiscard]] bool shared_key(const std::string& fkey) const { return shared_keys_.contains(fkey); }
    // Lines and GL lines whose key has a header, but of another day or year; for findings.
    [[nodiscard]] const Findings& strays() const { return strays_; }

  private:
    void read_headers(const Books& books);
    void read_lines(const Books& books);
    void read_postings(const Books& books);
    void read_posted_lines(const Books& books);
    void connect_postings();

    std::vector<GeneratedInvoice> invoices_;
    std::vector<GeneratedPosting> postings_;
    std::unordered_set<std::string> keys_;
    std::unordered_set<std::string> shared_keys_;
    Findings strays_;
};

// The number in "ip5" or "gl5", by the kind; empty for a number written in another way.
[[nodiscard]] std::optional<double> generated_number(const std::string& docno, const std::string& doctype);

}  // namespace brimley::company
