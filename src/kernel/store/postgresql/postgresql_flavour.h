// The dialect as PostgreSQL spells it. Texts go byte by byte, dates are timestamps wherever they are computed
// with.
#pragma once

#include "kernel/store/dialect/flavour.h"

namespace brimley::store {

// Functions that stand in the schema of every company, for what PostgreSQL lacks.
inline constexpr const char* kServerNumberFunction = "brimley_number";
inline constexpr const char* kServerLeadingNumberFunction = "brimley_val";

class PostgresqlFlavour final : public dialect::Flavour {
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
    [[nodiscard]] std::string next_key() const override;
    [[nodiscard]] std::string chained_hash(std::string_view trail, const std::string& hash_before,
                                           const std::string& number, const std::string& rest) const override;
    [[nodiscard]] std::string name(std::string_view name) const override;
};

// The name in the quotes that make it a name wherever it stands, in lower case: so a name can be written in
// any case, and without the quotes where it is no word of SQL.
[[nodiscard]] std::string postgresql_name(std::string_view name);
// The same in its own case, for what users name: databases and roles.
[[nodiscard]] std::string postgresql_quoted(std::string_view name);
// A text as a constant of SQL.
[[nodiscard]] std::string postgresql_text(std::string_view text);

}  // namespace brimley::store
