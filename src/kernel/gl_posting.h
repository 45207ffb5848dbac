// Writing one GL document: the part that all posting forms share.
//
//   open()           draws the number and prepares the header row, which stays unsaved until the end
//   add()            gathers amounts by account and currency; the form's own part of the work
//   write_lines()    sorts them, spreads allocated accounts, writes each line and posts it to the balances
//   write_rounding() foreign documents: one more line for the cents that conversion lost
//   finish()         checks the balance and saves the header
//
// Each step returns false after its own message, if it has one, and the document is then given up: the caller
// rolls its transaction back. Amounts are signed on each account's own side. What differs between the forms
// stands in GlRules.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kernel/gl_rules.h"
#include "kernel/gl_writing.h"
#include "kernel/summaries.h"

namespace brimley::kernel {

// What a form says of the GL document that it posts.
struct GlDocument {
    std::string company;
    store::DateTime gldate;
    std::string source_docno;  // the number of the form's document
    std::string Currency;
    std::string base_currency;
    // Base units per unit of Currency; 1 for a base-currency document, empty for a foreign one without a
    // rate.
    std::optional<double> rate_doc_to_base = 1;
    std::string period;
    std::string fyear;
    std::string user;
    std::string vendor_no;     // goes on the rounding line
    std::string gain_account;  // for what conversion left over on the debit side
    std::string loss_account;  // and on the credit side

    std::optional<GlNumber> number{};  // drawn by the form; empty: the next one of the GL counters
    // In addition to the fields that every document has.
    std::vector<GlField> more_header_fields{};
    std::vector<GlField> more_line_fields{};

    [[nodiscard]] bool foreign() const { return Currency != base_currency; }
};

class GlPosting {
  public:
    GlPosting(ModuleG3& kernel, const GlRules& rules, GlDocument document);

    [[nodiscard]] bool open();
    // `amount` in the document's currency, `base_amount` already rounded.
    void add(std::string_view accno, double amount, double base_amount) {
        add(accno, amount, base_amount, document_.Currency);
    }
    // `amount` in this currency.
    void add(std::string_view accno, double amount, double base_amount, std::string_view currency);
    [[nodiscard]] bool write_lines();
    [[nodiscard]] bool write_rounding();
    [[nodiscard]] bool finish();

    [[nodiscard]] const std::string& fkey() const { return fkey_; }

  private:
    // What an account that is allocated passes on to another.
    struct Share {
        std::string accno;
        double percent = 0;
    };
    [[nodiscard]] std::vector<Share> shares_of(std::string_view accno);
    [[nodiscard]] bool draw_number();
    void add_header_row();
    void stamp_header();
    [[nodiscard]] std::string_view ledgertype_of(std::string_view currency) const;
    [[nodiscard]] std::vector<CurrencySum> ordered_summary() const;
    void prefetch(const CurrencySum& entry);
    [[nodiscard]] bool write_entry(const CurrencySum& entry);
    [[nodiscard]] bool write_allocated(const CurrencySum& entry, const std::vector<Share>& shares);
    [[nodiscard]] bool write_line(std::string_view accno, const CurrencySum& amounts);
    // On the account that the writer stands on.
    [[nodiscard]] GlLine new_line(const CurrencySum& amounts) const;

    ModuleG3& kernel_;
    GlRules rules_;
    GlDocument document_;
    std::string docno_;
    std::string fkey_;
    std::vector<CurrencySum> summary_;
    int next_lineno_ = 1;
    GlLineWriter lines_;
    store::Recordset header_row_;
    store::Recordset allocation_rows_;
};

}  // namespace brimley::kernel
