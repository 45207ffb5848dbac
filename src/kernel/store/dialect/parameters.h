// How the literals of a query text become the parameters of a statement.
//
// The translator notes for each parameter which literal it is and what is made of it; that is part of the
// translation and is kept. Binding then takes the literals of one query text and makes the values.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "kernel/store/dialect/lexer.h"
#include "kernel/store/dialect/statement_text.h"
#include "kernel/store/engine.h"

namespace brimley::store::dialect {

enum class LiteralUse {
    text,
    number,
    number_of_text,  // null when the text is no number: it equals nothing
    date_of_query,   // Datevalue
    date_of_digits,  // "20260115"
    flag_of_number,
    flag_of_text,  // null when the text says neither yes nor no
    stored,        // fitted to a field, as an assignment does
};

struct LiteralParameter {
    std::size_t literal = 0;
    LiteralUse use = LiteralUse::text;
    const Field* field = nullptr;  // of use stored
};

// The parameters of a statement that is being written, numbered from 1.
class ParameterList {
  public:
    // Numbering goes on after the kinds given, whose literals are not this list's.
    explicit ParameterList(const Flavour& flavour, std::vector<ParameterKind> before = {})
        : flavour_(flavour), kinds_(std::move(before)) {}

    // Gives the parameter's SQL.
    std::string add(LiteralParameter literal);
    // A parameter that is no literal: the store gives its value. Only after all literals.
    std::string add_row_key();
    [[nodiscard]] const std::vector<LiteralParameter>& literals() const { return literals_; }
    [[nodiscard]] const std::vector<ParameterKind>& kinds() const { return kinds_; }

  private:
    const Flavour& flavour_;
    std::vector<LiteralParameter> literals_;
    std::vector<ParameterKind> kinds_;
};

// The value that a parameter makes of a literal. Throws ErrorKind::conversion for what Datevalue or a field
// cannot take.
[[nodiscard]] Value value_of(const LiteralParameter& parameter, const Literal& literal);
[[nodiscard]] double number_of(const Literal& literal);

// Parameters with the memory that they point to. Texts that stand in the query text as they are bound are not
// copied: the query text must outlive this.
class BoundParameters {
  public:
    void add(std::span<const LiteralParameter> parameters, std::span<const Literal> literals);
    // The values must outlive this.
    void add(std::span<const Value> values);
    // Those of another, which must outlive this.
    void add(const BoundParameters& others) {
        for (const Parameter& parameter : others.span())
            add(parameter);
    }
    void add_row_key(RowKey key) { add(Parameter(key)); }
    [[nodiscard]] std::span<const Parameter> span() const {
        return many_.empty() ? std::span(few_.data(), count_) : std::span(many_);
    }

  private:
    void add(const Parameter& parameter) {
        if (count_ < few_.size()) {
            few_[count_++] = parameter;
            return;
        }
        if (many_.empty()) many_.assign(few_.begin(), few_.end());
        many_.push_back(parameter);
    }

    // Hardly a query has more than a few: they need no memory of their own.
    std::array<Parameter, 8> few_;
    std::size_t count_ = 0;
    std::vector<Parameter> many_;  // all of them, when they are too many
    std::vector<std::unique_ptr<Value>> owned_;
};

// The value must outlive it.
[[nodiscard]] inline Parameter parameter_of(const Value& value) {
    if (value.is_text()) return std::string_view(value.text_ref());
    if (value.is_number()) return value.number_ref();
    if (value.is_flag()) return value.flag();
    if (value.is_date()) return *value.date();
    return {};
}
// The parameter that takes the field's values.
[[nodiscard]] ParameterKind kind_of_field(const Field& field);

}  // namespace brimley::store::dialect
