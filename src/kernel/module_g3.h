// The ledger kernel: the routines that all forms share for periods, document numbers, balances and GL checks.
//
// One object per open database, shared by the forms of one host object; it lives as long as that database is
// open. There is no other state than what is looked up once: the Current Earnings account, and where columns
// stand.
//
// How routines fail: one that finds a fault shows its message through `outside` and returns false (or an
// empty result); the caller stops silently and, inside a transaction, makes the one Rollback. Those that run
// with errors ignored, or trap them, turn the store's errors into the same false result. All others let
// store::Error through.
//
// Transactions: every routine here runs inside the caller's and neither begins nor ends one.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/carry_on.h"
#include "kernel/current_earnings.h"
#include "kernel/gl_line.h"
#include "kernel/outside.h"
#include "kernel/period_columns.h"
#include "kernel/store/database.h"

namespace brimley::kernel {

struct FiscalPeriod {
    int period = 0;  // from 1
    std::string fyear;
};

struct PeriodOfDate {
    std::string period;
    std::string fyear;
    std::string month;  // "01" to "12"
    std::string year;
};

// What became of taking a row for editing.
enum class RowTaken { yes, somebody_has_it, there_is_none };

struct NextNumbers {
    std::int64_t nextdocno = 0;
    std::int64_t fkeyno = 0;
};

struct UserRights {
    bool Update = false;
    bool Print = false;
    bool form_design = false;
};

// What the check of a GL document looks at in a line and its account.
struct CheckedLine {
    std::string accno;
    double base_amount = 0;  // signed on the account's own side
    bool debit = false;
    bool inactive = false;
};

using TextRows = std::vector<std::vector<std::string>>;

class ModuleG3 {
  public:
    ModuleG3(std::shared_ptr<store::Database> database, Outside& outside)
        : database_(std::move(database)), outside_(outside) {}

    [[nodiscard]] store::Database& database() { return *database_; }
    [[nodiscard]] const std::shared_ptr<store::Database>& shared_database() const { return database_; }
    [[nodiscard]] Outside& outside() { return outside_; }
    // Why things were not done since this object exists, for whoever is asked.
    [[nodiscard]] Reasons& reasons() { return reasons_; }
    // Notes why, without a message, and returns false.
    [[nodiscard]] bool refuse(const std::string& why);

    // --- periods (periods.cpp) ---

    // Period and year of a date: calendar months counted from the start of the fiscal year that holds it, the
    // day of the month and Period_table ignored. No such year: message, empty.
    [[nodiscard]] std::optional<FiscalPeriod> get_fiscal_period(store::DateTime date);
    // Period and year by Period_table, for a date text in the user's format. Bad text or no period: message,
    // empty.
    [[nodiscard]] std::optional<PeriodOfDate> get_period_of_date_text(std::string_view date_text,
                                                                      std::string_view date_format);

    // --- document numbers (document_numbers.cpp) ---

    // Takes the next document number and the next key number. Waits for a row that another user holds, ten
    // tries for each counter. Empty when either could not be taken; a nextdocno taken before that is given
    // back by the caller's Rollback only.
    [[nodiscard]] std::optional<NextNumbers> get_next_number(std::string_view company,
                                                             std::string_view doctype,
                                                             std::string_view fiscal_year);
    // Takes the next document number alone, waiting likewise. Empty when it could not be taken; a year
    // without this counter has no message here, and what the store refuses is thrown.
    [[nodiscard]] std::optional<std::int64_t> next_docno(std::string_view company, std::string_view doctype,
                                                         std::string_view fiscal_year);
    // Shows the message that a year has no counter for this kind of document.
    void tell_missing_numbers(std::string_view doctype, std::string_view fiscal_year);
    // Empty for an unknown structure in Next_number_config_table.
    [[nodiscard]] std::string format_docno(std::string_view doctype, std::int64_t number,
                                           std::string_view fiscal_year);
    [[nodiscard]] bool fiscal_year_has_numbers(std::string_view fiscal_year);
    // "1ip-57".
    [[nodiscard]] static std::string make_fkey(std::string_view company, std::string_view doctype,
                                               std::int64_t fkeyno);
    // False, after its message, for a number of more than 30 characters. Payments name the number first.
    enum class TooLongMessage { text_first, number_first };
    [[nodiscard]] bool docno_fits(std::string_view docno,
                                  TooLongMessage message = TooLongMessage::text_first);

    // --- balances (balances.cpp, balance_periods.cpp) ---

    // Carries a written GL line into Balance_table. `balance_rows` is a changeable recordset of
    // Balance_table, `account_rows` one of Account_master_table, which is left on the line's account.
    // False for every failure; only some have a message. What moves Current Earnings is left in `earnings`,
    // which is one for all lines of a document.
    [[nodiscard]] bool post_balance(store::Recordset& balance_rows, const GlLine& line,
                                    store::Recordset& account_rows, CurrentEarnings& earnings);
    // Carries it into Balance_period_table. `account_row` stands on the line's account, where post_balance
    // left it.
    [[nodiscard]] bool post_balance_period(store::Recordset& period_rows, const GlLine& line,
                                           store::Recordset& account_row, CurrentEarnings& earnings);
    // After the last line. False for every failure, without a message.
    [[nodiscard]] bool write_current_earnings(CurrentEarnings& earnings);
    // Prefetch what posting a line of this key will ask for within the transaction.
    static void prefetch_balance(store::Recordset& balance_rows, const LedgerKey& key);
    static void prefetch_balance_period(store::Recordset& period_rows, const LedgerKey& key);
    // Makes the "F" and "E" rows of an account for a currency in all open fiscal years. False, with nothing
    // done to Balance_table, when the account's "F" row there exists already.
    [[nodiscard]] bool create_foreign_balance_rows(std::string_view accno, std::string_view currency);

    // --- checks and account currencies (gl_checks.cpp) ---

    // Tests that base amounts balance and that no account is inactive. An empty document passes. Moves
    // both recordsets.
    [[nodiscard]] bool check_gl_document(store::Recordset& gl_lines, store::Recordset& account_rows);
    // The same for lines that the caller has just written and still holds.
    [[nodiscard]] bool check_gl_document(const std::vector<CheckedLine>& lines);
    [[nodiscard]] bool account_currency_exists(std::string_view accno, std::string_view currency);
    // Opens the account for the currency. A row that exists is refreshed: its description becomes a blank,
    // revalue true.
    [[nodiscard]] bool add_account_currency(std::string_view accno, std::string_view currency);

    // --- rights, parameters (user_stores.cpp) ---

    // No row: Update and Print become false, form_design stays as it was.
    void get_user_rights(std::string_view form, std::string_view userid, UserRights& rights);
    // The account of Account_Parameters_table marked default; empty when there is none.
    [[nodiscard]] std::string parameter_account(std::string_view module, std::string_view parameter_name);

    [[nodiscard]] std::string get_computer_name() { return outside_.computer_name(); }
    // Lets the host handle its events, then shows the message, which is also noted as a reason.
    void tell(const std::string& text);

    // --- queries (lookups.cpp) ---

    // A snapshot of a query.
    [[nodiscard]] store::Recordset read(std::string_view query);
    // The same for a list that may be long: the host gets turns while it is read.
    [[nodiscard]] store::Recordset read_long(std::string_view query);
    // A changeable recordset.
    [[nodiscard]] store::Recordset change(std::string_view query);
    // The rows of a table in which each field holds its value: find("Vendor_table", {{"vendor_no", vendor}}).
    // Look-ups in the same fields share one prepared statement. A value that holds a single quote is
    // ErrorKind::syntax, as in every query.
    [[nodiscard]] store::Recordset find(std::string_view table, store::FieldValues fields);
    [[nodiscard]] store::Recordset find_to_change(std::string_view table, store::FieldValues fields);
    // One field of the first of these rows: look_up("Vendor_table", {{"vendor_no", vendor}}, "ap_accno").
    // Empty when there is no row.
    [[nodiscard]] std::optional<store::Value> look_up(std::string_view table, store::FieldValues fields,
                                                      std::string_view wanted);
    // As text; empty also when there is no row or the field is null.
    [[nodiscard]] std::string look_up_text(std::string_view table, store::FieldValues fields,
                                           std::string_view wanted);
    [[nodiscard]] bool exists(std::string_view table, store::FieldValues fields);
    // All rows of a query as texts, in the order of its columns: what lists and drop-downs show.
    [[nodiscard]] TextRows rows_of(std::string_view query);

  private:
    // Takes the number in `field` of the counter's row and moves the counter on. The number is only given
    // when the row was taken.
    [[nodiscard]] RowTaken take_number(const char* query, store::FieldValues counter, const char* field,
                                       std::int64_t& number);
    [[nodiscard]] RowTaken take_docno(std::string_view company, std::string_view doctype,
                                      std::string_view fiscal_year, std::int64_t& number);
    [[nodiscard]] bool post_to_account(store::Recordset& balance_rows, const GlLine& line);
    [[nodiscard]] bool post_current_earnings(EarningsRow& balance, const GlLine& line, bool debit);
    [[nodiscard]] bool post_period_earnings(EarningsRow& period, const GlLine& line, bool debit);
    [[nodiscard]] bool resolve_current_earnings();
    void tell_missing_balance(const GlLine& line);
    [[nodiscard]] const PeriodColumns& period_columns(const store::Recordset& period_rows);
    bool add_balance_row(const AccountSegments& account, std::string_view currency);
    void add_period_rows(const AccountSegments& account, std::string_view currency, int first_year,
                         int last_year);

    std::shared_ptr<store::Database> database_;
    Outside& outside_;
    Reasons reasons_;
    std::string Current_Earnings_accno_;
    std::optional<PeriodColumns> period_columns_;
};

// Takes the first row in which each field holds its value for editing, pessimistically. While another
// workspace holds it, waits and tries again, at most `retries` times; a row that goes away meanwhile counts
// as held. Any failure but a lock is thrown: waiting would not help.
[[nodiscard]] RowTaken edit_first_with_retry(store::Recordset& rows, store::FieldValues fields,
                                             Outside& outside, int retries);
// Why nothing is posted to an account that the chart does not have.
[[nodiscard]] std::string no_account(std::string_view accno);
// The account that the row of Account_master_table names, with its segments.
[[nodiscard]] AccountSegments segments_of(const store::Recordset& account_row);
// 1 for a debit-natured account, -1 for the others.
[[nodiscard]] inline double side_of(bool debit) { return debit ? 1.0 : -1.0; }

}  // namespace brimley::kernel
