// On which day a recurring template is due, and in which months an invoice of it counts as issued.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kernel/store/value.h"

namespace brimley::invoices {

// Months as texts "00", both included. They are compared as texts.
struct IssueMonths {
    std::string first;
    std::string last;
    std::string year;
    bool operator==(const IssueMonths&) const = default;
};

class DueRule {
  public:
    explicit DueRule(store::DateTime today) : today_(today.date_only()) {}

    // While the template has an invoice of these months it is not due. Empty: a template of this frequency
    // never is. A quarter begins with its March, and that of December lies beyond the year, so that a
    // quarterly template is always due in December.
    [[nodiscard]] std::optional<IssueMonths> months_of(std::string_view frequency) const;
    // 0 is today and 31 the last day of the month. Any other day counts from the first, also beyond the end
    // of the month. Empty for a template without a day.
    [[nodiscard]] std::optional<store::DateTime> due_date(const store::Value& recur_date) const;

  private:
    store::DateTime today_;
};

}  // namespace brimley::invoices
