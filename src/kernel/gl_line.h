// One line of a GL document in memory: what a posting writes to GL_transaction_table and hands to the
// balances.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "kernel/store/value.h"

namespace brimley::kernel {

// The key and the analysis segments that a GL line and a balance row copy from Account_master_table.
struct AccountSegments {
    std::string accno;
    store::Value acccode;
    std::array<store::Value, 5> subacc;  // subacc, subacc2 ... subacc5
};

inline constexpr std::array<const char*, 5> kSubaccFields{"subacc", "subacc2", "subacc3", "subacc4",
                                                          "subacc5"};

// Which rows of the balance tables an amount goes to.
struct LedgerKey {
    std::string_view company;
    std::string_view fyear;
    std::string_view ledgertype;
    std::string_view accno;
    std::string_view Currency;
};

struct GlLine {
    std::string company;
    std::string fkey;
    std::string docno;
    std::optional<store::DateTime> gldate;
    std::string period;  // "1" to "13", "AD", "CL"
    std::string fyear;
    int lineno = 0;
    AccountSegments account;
    // Signed on the account's own side: positive raises the account, whether debit- or credit-natured.
    double amount = 0;       // in Currency
    double base_amount = 0;  // in the base currency
    std::string Currency;
    std::string ledgertype;               // "A": base-currency ledger, "F": foreign-currency ledger
    std::optional<double> exchange_rate;  // base units per unit of Currency
    std::string vendor_no;                // empty: not written

    [[nodiscard]] LedgerKey key() const { return {company, fyear, ledgertype, account.accno, Currency}; }
};

}  // namespace brimley::kernel
