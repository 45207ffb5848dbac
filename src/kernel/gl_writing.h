// What writing a GL document takes, whichever kind it is: its number, and its lines with everything that
// hangs on them. Used by GlPosting and by the reversal.
//
// A line that is written is posted to the balances at once and kept for the check at the end. Everything runs
// inside the caller's transaction; a false result has had its message, if there is one, and the caller gives
// the document up.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/gl_rules.h"

namespace brimley::kernel {

// A field that only some documents write.
struct GlField {
    std::string name;
    store::Value value;
};

// Who writes the lines, and for which document.
struct GlOrigin {
    std::string Source;  // "AP-INVOICE"
    std::string source_docno;
    std::string source_form;
    std::string user;
    std::string Currency;  // of the document: named when an account is not open for a foreign currency
    GlLineFields fields = GlLineFields::current;
    std::vector<GlField> more_fields{};
};

struct GlNumber {
    std::string docno;
    std::string fkey;
};

// The text of a rule with this number for its "{}".
[[nodiscard]] std::string filled_in(const char* text, const std::string& number);

// Draws the next GL number of the year. Empty when a counter could not be taken or the number is too long.
[[nodiscard]] std::optional<GlNumber> draw_gl_number(ModuleG3& kernel, const std::string& company,
                                                     const std::string& fyear,
                                                     ModuleG3::TooLongMessage too_long);

inline constexpr int kGlWriteRetries = 5;

// Carries out Edit or Update of one row, waiting for a row that somebody else holds. False when every try
// failed, with the last failure as the reason; one that spoils the transaction goes through, since waiting
// does not help.
template <class Write>
[[nodiscard]] bool with_retry(ModuleG3& kernel, Write&& write) {
    for (int tries = 0;; ++tries) {
        try {
            write();
            return true;
        } catch (const store::Error& failure) {
            if (failure.spoils_transaction()) throw;
            if (tries == kGlWriteRetries) return kernel.refuse(failure.what());
            kernel.outside().wait(kLockRetryWait);
        }
    }
}

// The lines of one GL document.
class GlLineWriter {
  public:
    GlLineWriter(ModuleG3& kernel, GlOrigin origin) : kernel_(kernel), origin_(std::move(origin)) {}

    void open();
    // Prefetches what find_account() and write() will ask for of a line of this key.
    void prefetch(const LedgerKey& key);
    // False when the chart has no such account; otherwise account() is its row.
    [[nodiscard]] bool find_account(std::string_view accno);
    [[nodiscard]] const store::Recordset& account() const { return account_rows_; }
    // Stores the line, opens its account for a foreign currency, posts it to both balance tables.
    [[nodiscard]] bool write(const GlLine& line);
    // Debit less credit in base currency over the lines written so far.
    [[nodiscard]] double base_difference() const { return base_difference_; }
    // After the last line: writes what they left to be written together, and checks the document.
    [[nodiscard]] bool finish() {
        return kernel_.write_current_earnings(earnings_) && kernel_.check_gl_document(written_);
    }

  private:
    void open_balances();
    void fill_row(const GlLine& line);
    void set_account_and_amounts(const GlLine& line);
    void set_year_and_user(const GlLine& line);
    [[nodiscard]] bool open_account_for_currency(const GlLine& line);

    ModuleG3& kernel_;
    GlOrigin origin_;
    std::vector<CheckedLine> written_;
    double base_difference_ = 0;
    store::Recordset line_rows_;
    store::Recordset balance_rows_;
    store::Recordset period_rows_;
    store::Recordset account_rows_;
    CurrentEarnings earnings_;
};

}  // namespace brimley::kernel
