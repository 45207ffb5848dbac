// What each GL document has posted to each account, in the account's own sign.
#pragma once

#include <string>
#include <unordered_map>

#include "company/books.h"

namespace brimley::company {

struct PostedAmount {
    double amount = 0;  // in the currencies of its lines, added up as they are
    double base_amount = 0;
};

class PostedAmounts {
  public:
    explicit PostedAmounts(const Books& books);

    // Whether the document has any line.
    [[nodiscard]] bool any(const std::string& gl_fkey) const { return sums_.contains(gl_fkey); }
    // Nothing for an account that it has not posted to.
    [[nodiscard]] PostedAmount on(const std::string& gl_fkey, const std::string& accno) const;

  private:
    std::unordered_map<std::string, std::unordered_map<std::string, PostedAmount>> sums_;
};

}  // namespace brimley::company
