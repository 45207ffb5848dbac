// What a new company is started with by country: a chart of accounts that all of them share, and the taxes on
// purchases of one. They are CSV files (data/countries), as import reads them.
#pragma once

#include <string>
#include <vector>

#include "kernel/store/database.h"

namespace brimley::company {

struct Country {
    std::string folder;    // "de"
    std::string name;      // "Germany"
    std::string currency;  // "EUR"
};

// By name. Throws std::exception when the files are not there or broken.
[[nodiscard]] std::vector<Country> countries();

// The chart, with a balance in the base currency for each account, and the country's taxes. Inside the
// caller's transaction. Throws UnusableValue for a country that is none, CsvError, store::Error.
void add_country(store::Database& database, const std::string& folder, const std::string& base_currency);

}  // namespace brimley::company
