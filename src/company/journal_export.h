// Writes the ledger as a plain-text journal, which hledger, ledger and their kin read.
//
// Each GL document is one transaction in base currency, debits positive; an account is called by its number
// and its name. What accounts were brought in with, without any line, is the first transaction, so that every
// account ends at what Balance_table holds. Current Earnings is left out as far as posting moves it by
// itself: a reader of the journal closes the accounts of the income statement itself.
#pragma once

#include <filesystem>

#include "kernel/store/database.h"

namespace brimley::company {

// The file appears whole or not at all, in place of one that stands there. Reads inside the caller's
// ReadingMoment or transaction. Throws store::Error, and std::system_error when it cannot be written.
void export_journal(store::Database& database, const std::filesystem::path& file);

}  // namespace brimley::company
