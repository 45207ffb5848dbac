// Payments that were voided in the list of checks, not in their own form. That list does some things
// differently (docs/oddities.md); the lines of the reverse say that it was there.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "company/books.h"

namespace brimley::company {

class VoidedChecks {
  public:
    explicit VoidedChecks(const Books& books);

    [[nodiscard]] bool contains(const PaymentHeader& payment) const;

  private:
    [[nodiscard]] bool reverse_stands_in(const std::string& gl_docno, const PaymentHeader& payment) const;

    struct GlHeader {
        std::string docno;
        std::string remark;
    };
    std::unordered_map<std::string, GlHeader> gl_headers_;  // by fkey
    // Numbers of the GL documents that hold such a reverse, each with that of the payment.
    std::unordered_set<std::string> reverses_;
};

}  // namespace brimley::company
