// Expressions written as an engine's SQL.
//
// A literal gets its type from what it meets: the '1' in [company] = '1' becomes a number when company is
// one. So literals stay open until their partner is known; settle() closes those that have none.
//
// Text and number compare by value, on the number's side: a text that is no number equals none. The field
// that has the literal's own type stays bare, so that its index can be used.
#pragma once

#include <string>
#include <string_view>

#include "kernel/store/dialect/parameters.h"
#include "kernel/store/dialect/scope.h"
#include "kernel/store/dialect/syntax.h"

namespace brimley::store::dialect {

enum class OperandType { text, number, date, flag, null };

struct Operand {
    std::string sql;
    OperandType type = OperandType::null;
    const Expression* open_literal = nullptr;  // a text or number literal without SQL yet
    const ScopeColumn* column = nullptr;       // when it is a field and nothing else
};

class ExpressionWriter {
  public:
    ExpressionWriter(const Scope& scope, ParameterList& parameters, const Flavour& flavour)
        : scope_(scope), parameters_(parameters), flavour_(flavour) {}

    [[nodiscard]] Operand operand(const Expression& expression);
    // As operand(), with every literal closed.
    [[nodiscard]] Operand settled(const Expression& expression);
    // Something that is true or false. Throws ErrorKind::syntax for anything else.
    [[nodiscard]] std::string condition(const Expression& expression);
    // What UPDATE stores into the field.
    [[nodiscard]] std::string assigned(const Expression& expression, const Field& field);

    // Aggregates are refused unless they have been allowed.
    void allow_aggregates(bool allowed) { aggregates_allowed_ = allowed; }
    [[nodiscard]] int aggregates_written() const { return aggregates_written_; }
    // Fields that stand outside every aggregate.
    [[nodiscard]] int single_fields_written() const { return single_fields_written_; }

  private:
    [[nodiscard]] Operand column(const Expression& expression);
    [[nodiscard]] Operand negation(const Expression& expression);
    [[nodiscard]] Operand arithmetic(const Expression& expression);
    [[nodiscard]] Operand date_arithmetic(const Expression& expression, const Operand& left,
                                          const Operand& right);
    [[nodiscard]] Operand comparison(const Expression& expression);
    [[nodiscard]] Operand differs_by_value(const Operand& left, const Operand& right,
                                           const Expression& where);
    [[nodiscard]] Operand chain(const Expression& expression, std::string_view word);
    [[nodiscard]] Operand null_test(const Expression& expression);
    [[nodiscard]] Operand call(const Expression& expression);
    [[nodiscard]] Operand aggregate(const Expression& expression);

    [[nodiscard]] Operand settle(Operand operand);
    [[nodiscard]] std::string literal(const Operand& open, LiteralUse use);
    [[nodiscard]] std::string as_number(const Operand& operand, const Expression& where);
    [[nodiscard]] std::string as_flag(const Operand& operand, const Expression& where);
    [[nodiscard]] std::string as_date(const Operand& operand, const Expression& where);
    [[nodiscard]] std::string summand(const Operand& operand, const Expression& where);
    [[noreturn]] void refuse(const Expression& expression, std::string_view why) const;

    const Scope& scope_;
    ParameterList& parameters_;
    const Flavour& flavour_;
    bool aggregates_allowed_ = false;
    int aggregates_written_ = 0;
    int single_fields_written_ = 0;
    int aggregate_depth_ = 0;
};

[[nodiscard]] OperandType operand_type(FieldType type);
// The type of a result column that is computed.
[[nodiscard]] FieldType result_type(OperandType type);

}  // namespace brimley::store::dialect
