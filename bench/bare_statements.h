// The row writes of one save as bare statements, and their order: the same for every engine.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kernel/store/value.h"

namespace brimley::bench {

enum Bare {
    docno,
    fkey,
    header,
    line,
    gl_header,
    gl_line,
    balance,
    period,
    vendor,
    glfkey,
    misc_header,
    misc_line,
    payment_header,  // of a prepayment or a card payment
    payment_line,
    prepaid_item,
    waiting_order_gone,
    waiting_order,
    payment_glfkey,
    docno_read,  // a read is held until the end, where the engine holds rows
    fkey_read,
    balance_read,
    period_read,
    docno_set,
    fkey_set,
    balance_set,
    period_set,
    kBareStatements
};

// What is saved: an invoice of three taxed lines, a miscellaneous payment of them in cash, a prepayment in
// cash that waits for an order, a card payment in cash with a fee.
enum class BareDocument { invoice, misc_payment, prepayment, card_payment };

// How counters and balances are moved: within the UPDATE, or, as a program must that computes and rounds them
// itself, by reading the row first and writing all of its sums. For an invoice the first takes 32 statements,
// the second 52; for a miscellaneous payment, which has no vendor, 31 and 51; for a prepayment 18 and 26, for
// a card payment 19 and 31.
enum class BareSums { in_the_engine, read_first };

// In SQLite's spelling: parameters ?1, ?2 ... Every value that a document brings with it is one: a text that
// held it could not be prepared once for all documents.
[[nodiscard]] std::array<std::string, kBareStatements> bare_statements();

using BareValue = std::variant<std::string_view, double, bool, store::DateTime>;

class BareRunner {
  public:
    virtual ~BareRunner() = default;
    virtual void run(Bare statement, std::span<const BareValue> values) = 0;
    // The numbers of the one row that there is, null as 0; its key comes first.
    virtual std::vector<double> read(Bare statement, std::span<const BareValue> values) = 0;
};

// Moves both balances of an account, in March 2026.
void post(BareRunner& runner, BareSums sums, const char* accno, double amount);

// All writes of one save but its BEGIN and COMMIT. number: of the document.
void run_bare_save(BareRunner& runner, std::int64_t number, BareSums sums,
                   BareDocument document = BareDocument::invoice);

}  // namespace brimley::bench
