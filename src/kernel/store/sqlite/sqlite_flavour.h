// The dialect as SQLite spells it. Dates are Julian day numbers, flags 0 and 1.
#pragma once

#include "kernel/store/dialect/flavour.h"

namespace brimley::store {

class SqliteFlavour final : public dialect::Flavour {
  public:
    [[nodiscard]] std::string parameter(std::size_t number, dialect::ParameterKind kind) const override;
    [[nodiscard]] std::string flag(bool value) const override;
    [[nodiscard]] std::string number_of_text(const std::string& text) const override;
    [[nodiscard]] std::string leading_number(const std::string& text) const override;
    [[nodiscard]] std::string upper_case(const std::string& text) const override;
    [[nodiscard]] std::string days_between(const std::string& later,
                                           const std::string& earlier) const override;
    [[nodiscard]] std::string plus_days(const std::string& date, const std::string& days) const override;
    [[nodiscard]] std::string quotient(const std::string& dividend,
                                       const std::string& divisor) const override;
    [[nodiscard]] std::string nulls_first(bool descending) const override;
    [[nodiscard]] std::string key_order(const std::string& key) const override;
    [[nodiscard]] bool rows_come_singly() const override;
    [[nodiscard]] std::string row_lock() const override;
    [[nodiscard]] std::string lock_to_change() const override;
    [[nodiscard]] bool draws_keys() const override;
    [[nodiscard]] std::string name(std::string_view name) const override;
};

}  // namespace brimley::store
