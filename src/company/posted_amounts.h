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

// Of a document that was reversed by lines of its own.
enum class Reversed { counted, left_out };

class PostedAmounts {
  public:
    explicit PostedAmounts(const Books& books, Reversed reversed = Reversed::counted);

    // Whether the document has any line.
    [[nodiscard]] bool any(const std::string& gl_fkey) const { return sums_.contains(gl_fkey); }
    // Nothing for an account that it has not posted to.
    [[nodiscard]] PostedAmount on(const std::string& gl_fkey, const std::string& accno) const;

  private:
    std::unordered_map<std::string, std::unordered_map<std::string, PostedAmount>> sums_;
};

}  // namespace brimley::company
