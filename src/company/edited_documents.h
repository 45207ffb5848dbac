// Invoices that were edited after they were posted, as the ledger knows them.
#pragma once

#include <string>
#include <unordered_set>

#include "company/books.h"

namespace brimley::company {

// The numbers of those that an invoice form has posted more than once: an edit reverses the posting and posts
// anew.
[[nodiscard]] std::unordered_set<std::string> edited_documents(const Books& books);

}  // namespace brimley::company
