// Revaluations with their rows and their GL documents: the one that a run names, and the one that takes it
// back.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "company/books.h"

namespace brimley::company {

struct RevaluationSelection {
    std::string docno;
    std::string currency;
    double rate = 0;
    bool every_vendor = false;
    std::string vendor_group;
    std::string vendor_no;
};

struct RevaluedItem {
    std::string docno;
    std::string document_no;
    std::string pay_item;
    std::string currency;
    double amount = 0;
    std::optional<double> original_rate;
    double original_base = 0;
    double gain = 0;  // a loss is negative
    double new_base = 0;
};

struct RevaluationSum {
    std::string docno;
    std::string accno;
    std::string currency;
    double amount = 0;  // debit is positive
};

struct RevaluationPosting {
    std::string fkey;
    std::string docno;
    std::string source_docno;
    std::string remark;
    std::string day;
    std::string made_on;  // the day
    std::string period;
    std::string fyear;
    std::vector<GlLine> lines;
};

struct Revaluation {
    std::string fkey;
    std::string docno;
    std::string day;
    std::string period;
    std::string fyear;
    std::string gl_fkey;
    std::vector<RevaluationSelection> selection;
    std::vector<RevaluedItem> items;
    std::vector<RevaluationSum> summary;
    const RevaluationPosting* posting = nullptr;
    const RevaluationPosting* reversal = nullptr;
};

// "Revaluation 1apre-1", for findings.
[[nodiscard]] std::string name_of(const Revaluation& run);

class Revaluations {
  public:
    explicit Revaluations(const Books& books);
    Revaluations(const Revaluations&) = delete;
    Revaluations& operator=(const Revaluations&) = delete;

    // By key.
    [[nodiscard]] const std::map<std::string, Revaluation>& runs() const { return runs_; }
    // All GL documents of runs, by key.
    [[nodiscard]] const std::map<std::string, RevaluationPosting>& postings() const { return postings_; }
    // Rows whose key has no header; for findings.
    [[nodiscard]] const Findings& strays() const { return strays_; }

  private:
    void read_headers(const Books& books);
    template <class Row>
    void read_rows(const Books& books, const char* query, const char* what,
                   std::vector<Row> Revaluation::*rows, Row (*read)(const store::Recordset&));
    void read_postings(const Books& books);
    void connect_postings();

    std::map<std::string, Revaluation> runs_;
    std::map<std::string, RevaluationPosting> postings_;
    Findings strays_;
};

}  // namespace brimley::company
