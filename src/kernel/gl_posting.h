// Writing one GL document: the part that all posting forms share.
//
//   open()           draws the number and prepares the header row, which stays unsaved until the end
//   add()            gathers amounts by account and currency; the form's own part of the work
//   write_lines()    sorts them, spreads allocated accounts, writes each line and posts it to the balances
//   write_rounding() foreign documents: one more line for the cents that conversion lost
//   finish()         checks the balance and saves the header
//
// Each step returns false after its own message, if it has one, and the document is then given up: the caller
// rolls its transaction back. Amounts are signed on each account's own side. What differs between the kinds
// of documents stands in GlHeader.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kernel/gl_writing.h"
#include "kernel/summaries.h"

namespace brimley::kernel {

// What a form tells of the GL document that it posts.
struct GlHeader {
    std::string company;
    store::DateTime gldate;
    std::string remark;
    std::string Source;
    std::string source_docno;
    std::string source_form;
    std::string line_source_form;  // on the lines; empty: as on the header
    std::string Currency;
    std::string base_currency;
    double rate_doc_to_base = 1;  // base units per unit of Currency; 1 for a base-currency document
    std::string period;
    std::string fyear;
    std::string user;
    std::string vendor_no;     // goes on the rounding line
    std::string gain_account;  // for what conversion left over on the debit side
    std::string loss_account;  // and on the credit side

    // --- what payments do differently ---
    bool rates_from_amounts = false;      // a foreign line's rate is base amount by amount
    bool rounding_line_has_rate = false;  // the document's, though the line is in base currency
    ModuleG3::TooLongMessage too_long = ModuleG3::TooLongMessage::text_first;

    [[nodiscard]] bool foreign() const { return Currency != base_currency; }
};

class GlPosting {
  public:
    GlPosting(ModuleG3& kernel, GlHeader header);

    [[nodiscard]] bool open();
    // `amount` in the document's currency, `base_amount` already rounded.
    void add(std::string_view accno, double amount, double base_amount) {
        add(accno, amount, base_amount, header_.Currency);
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
    [[nodiscard]] std::string_view ledgertype_of(std::string_view currency) const {
        return currency == header_.base_currency ? "A" : "F";
    }
    void prefetch(const CurrencySum& entry);
    [[nodiscard]] bool write_entry(const CurrencySum& entry);
    [[nodiscard]] bool write_line(std::string_view accno, const CurrencySum& amounts);
    // On the account that the writer stands on.
    [[nodiscard]] GlLine new_line(const CurrencySum& amounts) const;

    ModuleG3& kernel_;
    GlHeader header_;
    std::string docno_;
    std::string fkey_;
    std::vector<CurrencySum> summary_;
    int next_lineno_ = 1;
    GlLineWriter lines_;
    store::Recordset header_row_;
    store::Recordset allocation_rows_;
};

}  // namespace brimley::kernel
