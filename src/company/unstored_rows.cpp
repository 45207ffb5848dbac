#include "company/unstored_rows.h"

#include <algorithm>
#include <cmath>

namespace brimley::company {

namespace {

// Each row has a pay item, stored or not. That of the last row leaves no gap.
double unstored_rows(const Books& books, const std::string& fkey) {
    double stored = 0;
    double last = 0;
    store::Recordset rows =
        books.read("SELECT pay_item FROM AP_transaction_table WHERE fkey = " + store::quoted(fkey));
    for (; !rows.at_eof(); rows.MoveNext(), ++stored)
        last = std::max(last, rows.column(0).number());
    return std::max(0.0, last - stored) + 1;
}

}  // namespace

bool unstored_rows_make(double posted, const ApHeader& invoice, const Books& books) {
    if (invoice.currency == books.base_currency()) return false;
    return std::abs(posted) <= unstored_rows(books, invoice.fkey) * (kHalfCent * invoice.rate + kHalfCent);
}

}  // namespace brimley::company
