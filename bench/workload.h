// The workload of the save benchmark: one three-line taxed invoice, saved through the form or by bare
// statements.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "bare_statements.h"

namespace brimley::bench {

// Both do the same row writes: counters, header, three lines, GL header, five GL lines, their balances and
// those of Current Earnings in both balance tables, the vendor.
class FormSave {
  public:
    explicit FormSave(const std::string& company);
    ~FormSave();
    // Types the invoice into the form, up to but without the Save command.
    void enter();
    void save();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

class BareSave {
  public:
    explicit BareSave(const std::string& company);
    ~BareSave();
    void save(BareSums sums = BareSums::in_the_engine);
    // Copies the newest stored invoice with its GL document until this many are stored, in one transaction.
    void fill_up_to(std::int64_t invoices);
    // Moves the key counter of invoices behind the copies, so that the form walks through them.
    void count_copies();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace brimley::bench
