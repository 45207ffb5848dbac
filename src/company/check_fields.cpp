// The fields of documents, by the rules of field_rules.h.
#include <fmt/format.h>

#include <cmath>

#include "company/check.h"
#include "company/field_rules.h"
#include "company/shown_text.h"
#include "company/stamps.h"

namespace brimley::company {

namespace {

using store::Value;

// One field by one rule, with the places of the columns.
struct PlacedRule {
    const FieldRule* rule;
    std::string field;
    int column;
    int owner_column = -1;
    int time_column = -1;
    int owner_time_column = -1;
    std::vector<std::string> allowed{};
};

bool same(const Value& one, const Value& other) {
    if (is_nothing(one) && is_nothing(other)) return true;
    if (one.is_number() && other.is_number()) return std::fabs(one.number_ref() - other.number_ref()) < 1e-9;
    return one.text() == other.text();
}

class RulesOfRows {
  public:
    RulesOfRows(Tables& tables, const RowRules& rules, Findings& findings)
        : rules_(rules), rows_(tables.rows(rules.table)), findings_(findings) {
        if (rules.owner_table != nullptr) {
            owners_ = &tables.rows(rules.owner_table);
            by_key_ = &tables.by_key(rules.owner_table, rules.owner_key);
            key_ = words_of(rules.key);
        }
        for (const FieldRule& rule : rules.rules)
            place(rule);
    }

    void check() {
        for (std::int64_t row = 0; row < rows_.count(); ++row)
            check_row(row);
    }

  private:
    void place(const FieldRule& rule) {
        for (const std::string& field : words_of(rule.fields)) {
            PlacedRule placed{&rule, field, rows_.column(field)};
            if (rule.rule == MustBe::as_there)
                placed.owner_column = owners_->column(rule.what != nullptr ? rule.what : field);
            if (rule.rule == MustBe::made_with_it) {
                placed.owner_column = owners_->column("date_created");
                placed.time_column = rows_.column("time_created");
                placed.owner_time_column = owners_->column("time_created");
            }
            if (rule.rule == MustBe::one_of) placed.allowed = words_of(rule.what, '|');
            placed_.push_back(std::move(placed));
        }
    }

    void check_row(std::int64_t row) {
        std::optional<std::int64_t> owner;
        if (owners_ != nullptr) owner = by_key_->find(rows_.key(row, key_));
        const RowInRules in_rules(rows_, row);
        const RowInRules owner_in_rules(owners_ != nullptr ? *owners_ : rows_, owner.value_or(0));
        if (owners_ != nullptr && !owner) return;  // whatever has no owner is a finding of its own
        if (!rules_.apply(in_rules, owner ? &owner_in_rules : nullptr)) return;
        for (const PlacedRule& rule : placed_)
            check_field(row, owner.value_or(0), rule);
    }

    void check_field(std::int64_t row, std::int64_t owner, const PlacedRule& placed) {
        const Value value = rows_.value(row, placed.column);
        switch (placed.rule->rule) {
            case MustBe::empty:
                if (!is_nothing(value)) report(row, placed, value, "which is never written");
                return;
            case MustBe::filled:
                if (is_nothing(value)) report(row, placed, value, "which is always written");
                return;
            case MustBe::one_of:
                if (std::ranges::find(placed.allowed, value.text()) == placed.allowed.end())
                    report(row, placed, value, fmt::format("and not {}", placed.rule->what));
                return;
            case MustBe::as_there:
                check_as_there(row, placed, value, owners_->value(owner, placed.owner_column));
                return;
            case MustBe::made_with_it:
                check_made_with(row, owner, placed, value);
                return;
            case MustBe::amount_above_or_0:
                if (value.number() < 0) report(row, placed, value, "below 0");
                return;
            case MustBe::percent:
                if (value.number() < 0 || value.number() > 100) report(row, placed, value, "no percentage");
                return;
        }
    }

    void check_as_there(std::int64_t row, const PlacedRule& placed, const Value& value, const Value& there) {
        if (!same(value, there))
            report(row, placed, value,
                   fmt::format("but that of {} is \"{}\"", rules_.owner, shown_text(there.text())));
    }

    void check_made_with(std::int64_t row, std::int64_t owner, const PlacedRule& placed, const Value& value) {
        const auto here = seconds_of(value, rows_.value(row, placed.time_column));
        const auto there = seconds_of(owners_->value(owner, placed.owner_column),
                                      owners_->value(owner, placed.owner_time_column));
        if (within_one_save(here, there)) return;
        report(row, placed, value, fmt::format("which is not when {} was made", rules_.owner));
    }

    void report(std::int64_t row, const PlacedRule& placed, const Value& value, const std::string& why) {
        const std::string fkey = rows_.text(row, rows_.has("fkey") ? "fkey" : words_of(rules_.key).front());
        std::string name = fmt::format("{} {}", rules_.noun, shown_text(fkey));
        if (rules_.item != nullptr) name += ", item " + shown_text(rows_.text(row, rules_.item));
        findings_.push_back(
            fmt::format("{}: {} is \"{}\", {}", name, placed.field, shown_text(value.text()), why));
    }

    const RowRules& rules_;
    const TableRows& rows_;
    const TableRows* owners_ = nullptr;
    const RowsByKey* by_key_ = nullptr;
    std::vector<std::string> key_;
    std::vector<PlacedRule> placed_;
    Findings& findings_;
};

}  // namespace

void check_fields(const Books& books, Findings& findings) {
    for (const auto& rules : {invoice_fields::rules(), payment_fields::rules(), ledger_fields::rules(),
                              revaluation_fields::rules()})
        for (const RowRules& each : rules)
            RulesOfRows(books.tables(), each, findings).check();
}

}  // namespace brimley::company
