// How one engine writes what the dialect means: the translator asks a flavour for every piece of SQL that
// engines spell differently. All arguments and results are pieces of SQL, complete in themselves.
#pragma once

#include <string>
#include <string_view>

namespace brimley::store::dialect {

enum class ParameterKind { text, number, integer, flag, date, row_key };

// The hidden column of every table that holds its row key. No table of a catalog has a field of that name.
inline constexpr std::string_view kRowKeyColumn = "row_id";

class Flavour {
  public:
    virtual ~Flavour() = default;

    // The n-th parameter, from 1.
    [[nodiscard]] virtual std::string parameter(std::size_t number, ParameterKind kind) const = 0;
    [[nodiscard]] virtual std::string flag(bool value) const = 0;
    // The number that the whole of a text is, else null.
    [[nodiscard]] virtual std::string number_of_text(const std::string& text) const = 0;
    // VAL: the number that a text begins with, 0 when there is none or the text is null.
    [[nodiscard]] virtual std::string leading_number(const std::string& text) const = 0;
    // UCASE.
    [[nodiscard]] virtual std::string upper_case(const std::string& text) const = 0;
    // Two dates, one minus the other, in days with fractions.
    [[nodiscard]] virtual std::string days_between(const std::string& later,
                                                   const std::string& earlier) const = 0;
    [[nodiscard]] virtual std::string plus_days(const std::string& date, const std::string& days) const = 0;
    // As floating numbers; null when the divisor is 0.
    [[nodiscard]] virtual std::string quotient(const std::string& dividend,
                                               const std::string& divisor) const = 0;
    // What follows an ORDER BY term so that nulls are smallest.
    [[nodiscard]] virtual std::string nulls_first(bool descending) const = 0;
    // A row key to order those rows by that meet a condition, so that the engine looks them up by the
    // condition and not by walking the table in the order of its keys.
    [[nodiscard]] virtual std::string key_order(const std::string& key) const = 0;
    // Whether rows come while the engine finds them, so that the reader may stop and a limit only costs. Else
    // a statement says how many rows it wants.
    [[nodiscard]] virtual bool rows_come_singly() const = 0;
    // What follows the SELECT of a single row that is to be held until the transaction ends: a row that
    // somebody else holds is then none. Empty where a transaction that may write holds every row.
    [[nodiscard]] virtual std::string row_lock() const = 0;
    // What follows the SELECT of rows that are about to be changed, which are held from then on: somebody
    // else's lock is waited for as by the change itself. Empty where row_lock() is.
    [[nodiscard]] virtual std::string lock_to_change() const = 0;
    // Whether the engine hands the key of a new row in with its fields, instead of learning it afterwards.
    [[nodiscard]] virtual bool draws_keys() const = 0;
    // The key of a new row, for a statement that is not handed one. Empty unless the engine draws keys.
    [[nodiscard]] virtual std::string next_key() const { return {}; }
    // The hash of an entry of the trail (row_digest.h): hash_before is that of the entry before it, number
    // its own, and rest a text that holds the bytes of its other fields in hexadecimal digits. Empty where
    // the caller computes it.
    [[nodiscard]] virtual std::string chained_hash(std::string_view /*trail*/,
                                                   const std::string& /*hash_before*/,
                                                   const std::string& /*number*/,
                                                   const std::string& /*rest*/) const {
        return {};
    }
    // Names of tables and fields.
    [[nodiscard]] virtual std::string name(std::string_view name) const = 0;
};

}  // namespace brimley::store::dialect
