// What a master is, as data: the rows of one table that documents are made with, and how a person keeps them.
//
// Every master has the same form (master_form.h). What differs stands here: which fields it has, what they
// are called, which rows they must name, and who uses a row, so that nobody takes it away.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/form.h"

namespace brimley::masters {

// The rows of another table, one of which a field names.
struct Known {
    const char* table;
    const char* field;
    const char* name_field;  // shown beside it in the list; empty: none
    const char* what;        // "currency": in messages
};

struct Field {
    // choice: one of `choices`. known: a row of another table, or nothing.
    enum class Kind { text, long_text, number, date, flag, choice, known };

    const char* name;     // in the table
    const char* caption;  // on the form and in the list
    Kind kind = Kind::text;
    bool key = false;       // names the row, with the other keys; cannot be changed later
    bool required = false;  // must not be empty
    bool listed = false;    // is a column of the list
    bool computed = false;  // shown, and never typed
    bool lasting = false;   // cannot be changed any more once a row of `posted_in` uses the row
    bool rising = false;    // a number that never becomes less
    Known of = {};
    std::vector<const char*> choices = {};
};

// Rows of another table that hold the first key of a row in this field, and its second one in the other, if
// that is named, use the row.
struct Use {
    const char* table;
    const char* field;
    const char* by;  // "invoices": in messages
    const char* second_field = nullptr;
};

// What a person has entered, by the names of the table's fields.
class Entered {
  public:
    virtual ~Entered() = default;
    [[nodiscard]] virtual std::string text(std::string_view field) const = 0;
    // 0 for what is no number.
    [[nodiscard]] virtual double number(std::string_view field) const = 0;
    // Empty for what is no date.
    [[nodiscard]] virtual std::optional<store::DateTime> date(std::string_view field) const = 0;
};

struct Master {
    frame::FormIdentity identity;
    const char* table;
    const char* one;  // "vendor": in messages
    std::vector<Field> fields;
    std::vector<Use> used_by = {};
    // Why a row cannot be like this, as a sentence; empty: it can.
    std::function<std::string(const Entered&)> fault = {};
    // Those that a lasting field must not change any more for.
    std::vector<Use> posted_in = {};
    // What belongs to a row that was added, or is taken away, within the same transaction. False, after its
    // message or a reason: nothing is stored.
    std::function<bool(kernel::ModuleG3&, const Entered&)> added = {};
    std::function<bool(kernel::ModuleG3&, const Entered&)> removed = {};
    // Why the company cannot be left like this after a change, as a sentence; empty: it can.
    std::function<std::string(kernel::ModuleG3&)> fault_of_company = {};
    // Makes a row and all that belongs to it, where a row alone would not do; what can be typed is stored
    // into it afterwards. Throws company::Refusal and company::UnusableValue.
    std::function<void(kernel::ModuleG3&, const Entered&)> make = {};
    // Rows are never taken away.
    bool stays = false;
    // There is one row, which is neither added nor taken away, and no key.
    bool single = false;
    // Nobody writes here: the rows come with others.
    bool shown_only = false;
    // The rows are numbered by company, too, of which there is one.
    bool of_company = false;
    // Only who keeps the company's rights may write, whatever a right on the form says.
    bool for_administrators = false;
};

// All of them, in the order in which they are offered.
[[nodiscard]] const std::vector<Master>& all_masters();
// By the name of its form's class, such as Master_vendor. Null when there is none.
[[nodiscard]] const Master* find_master(std::string_view class_name);

}  // namespace brimley::masters
