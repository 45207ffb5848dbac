// Documents whose lines an edit has written anew.
#pragma once

#include <string>
#include <unordered_set>

#include "company/books.h"

namespace brimley::company {

// The numbers of invoices that have reversed a GL document. A void of one payment lets a document count as
// unpaid though another stands; it can be edited then, and its new lines know nothing of what was paid. When
// the other payment is voided as well, they get back what never came off them.
[[nodiscard]] std::unordered_set<std::string> edited_documents(const Books& books);

}  // namespace brimley::company
