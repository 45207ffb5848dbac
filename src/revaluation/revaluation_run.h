// A run: which items the selection rows name, what each is worth at the new rate, and what that makes for the
// ledger. It changes no item.
//
//   gain or loss = what the item was entered at - what it is worth now, both in the base currency, to the
//   cent
//
// A higher rate makes a liability bigger: a loss, which is negative. Amounts have the sign of the item's open
// amount.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "frame/form_part.h"
#include "revaluation/account_pairs.h"
#include "revaluation/result_rows.h"

namespace brimley::revaluation {

class APform_revalue;

// A row of the selection as it is typed.
struct SelectionRow {
    std::string currency;
    std::string rate;
    bool every_vendor = false;
    std::string vendor_group;
    std::string vendor_no;

    // The items of one vendor are meant. A group stands for every vendor.
    [[nodiscard]] bool names_vendor() const { return !every_vendor && vendor_group.empty(); }
};

class RevaluationRun : public frame::FormPart {
  public:
    explicit RevaluationRun(APform_revalue& form);

    // The accounts for what no vendor or account has one of its own for.
    void read_default_accounts();
    // Values what the selection names and shows result and ledger summary. It stops at the first row that
    // does not say what it is for; the ledger summary is that of the run before then.
    void SEL_Result();
    // The items of a stored run, which are of this currency.
    void show_stored(store::Recordset& items, const std::string& currency);
    [[nodiscard]] SelectionRow selection_row(int row) const;

    // The rows in which the save looks for selections and items.
    ShortNumber highest_selection_row{0};
    ShortNumber last_result_row{0};

  private:
    // The accounts that the items of a vendor go to.
    struct Accounts {
        std::string payable;
        std::string gain;
        std::string loss;
    };

    // False when the run ends with this row, after its message, if there is one.
    [[nodiscard]] bool value_row(const SelectionRow& selected, const std::string& cut_off, int& result_row);
    [[nodiscard]] std::optional<store::Recordset> items_of(const SelectionRow& selected,
                                                           const std::string& cut_off) const;
    void assign2_dbgrid1_new(std::optional<store::Recordset> rs, int& row, double rate);
    void clear_result();
    void value_items(store::Recordset& items, int& row, double rate);
    [[nodiscard]] bool begin_vendor(ResultRows& result, const std::string& vendor_no,
                                    const std::string& currency);
    [[nodiscard]] bool find_accounts(const std::string& currency);
    void add_to_summaries(const std::string& currency, double gain);
    void show_summary_block(int row, const std::string& currency);
    void store_account_currency_gainloss(std::string_view accno, std::string_view currency, double amount) {
        payables_.add(accno, currency, amount);
    }
    void store_account_currency_unrealgain(std::string_view accno, std::string_view currency, double amount) {
        gains_.add(accno, currency, amount);
    }
    void store_account_currency_unrealloss(std::string_view accno, std::string_view currency, double amount) {
        losses_.add(accno, currency, amount);
    }

    APform_revalue& form_;
    Accounts default_accounts_;
    Accounts accounts_;                                         // of the vendor whose items are being valued
    std::unordered_map<std::string, Accounts> known_accounts_;  // by payable account, in the currency at hand
    AccountPairs payables_, gains_, losses_;
    ItemAmounts totals_;  // of what stands in the result, in the currency of the last selection row
};

}  // namespace brimley::revaluation
