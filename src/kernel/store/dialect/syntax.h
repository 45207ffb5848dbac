// A query text as a tree. Names are as written; what they mean is found out by the translator and the
// evaluator.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace brimley::store::dialect {

struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;

enum class ExpressionKind {
    text_literal,
    number_literal,
    date_literal,  // Datevalue of a text literal
    flag_literal,
    null_literal,
    column,
    negation,    // of a number
    arithmetic,  // + - * /
    comparison,  // = <> < <= > >=
    conjunction,
    disjunction,
    inversion,  // NOT
    null_test,  // IS NULL, or with flag set IS NOT NULL
    call,       // UCASE, VAL, MAX, MIN, SUM, COUNT
};

struct Expression {
    ExpressionKind kind = ExpressionKind::null_literal;
    std::size_t position = 0;
    std::size_t literal = 0;  // which literal of the query text, from 0
    int column = -1;          // of a column: its place, once an evaluator has looked it up
    bool flag = false;        // of a flag literal and a null test
    std::string name{};       // of a column; the sign of an operator; a function in upper case
    std::string qualifier{};  // the table before the column's dot, or empty
    std::vector<ExpressionPtr> operands{};
};

struct Select;

struct SelectItem {
    enum class Kind { everything, everything_of_table, expression };
    Kind kind = Kind::expression;
    std::size_t position = 0;
    std::string table{};  // of everything_of_table
    ExpressionPtr expression{};
    std::string alias{};
};

struct Source {
    std::size_t position = 0;
    std::string table{};
    std::unique_ptr<Select> nested{};  // instead of a table
};

struct OrderTerm {
    ExpressionPtr expression;
    bool descending = false;
};

struct Select {
    std::vector<SelectItem> items{};
    std::vector<Source> sources{};
    // The WHERE and every ON: all must hold.
    std::vector<ExpressionPtr> conditions{};
    std::vector<OrderTerm> order{};
};

struct Assignment {
    std::string field;
    std::size_t position = 0;
    ExpressionPtr value;
};

struct Update {
    Source table;
    std::vector<Assignment> assignments;
    ExpressionPtr where;
};

struct Delete {
    Source table;
    ExpressionPtr where;
};

using Change = std::variant<Update, Delete>;

}  // namespace brimley::store::dialect
