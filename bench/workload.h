// The workload of the save benchmarks: one document with three taxed lines, saved through its form or by bare
// statements.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "bare_statements.h"

namespace brimley::bench {

// Both do the same row writes: counters, header, three lines, GL header, five GL lines, their balances and
// those of Current Earnings in both balance tables, and an invoice's vendor.
class FormSave {
  public:
    explicit FormSave(const std::string& company, BareDocument document = BareDocument::invoice);
    ~FormSave();
    // Types the document into the form, up to but without the Save command.
    void enter();
    void save();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

class BareSave {
  public:
    explicit BareSave(const std::string& company, BareDocument document = BareDocument::invoice);
    ~BareSave();
    void save(BareSums sums = BareSums::in_the_engine);
    // Copies the first stored document with its GL document until this many are stored, in one transaction.
    void fill_up_to(std::int64_t documents);
    // Moves the key counter of invoices behind the copies, so that the form walks through them.
    void count_copies();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace brimley::bench
