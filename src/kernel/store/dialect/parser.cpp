#include "kernel/store/dialect/parser.h"

#include "kernel/store/dialect/expression_parser.h"
#include "kernel/store/letter_case.h"

namespace brimley::store::dialect {

namespace {

constexpr int kNestedSelectsMax = 8;

class QueryParser {
  public:
    explicit QueryParser(std::string_view query) : tokens_(query), expressions_(tokens_) {}

    Select whole_select() {
        Select select = this->select();
        if (tokens_.accept_word("ORDER")) order_terms(select);
        tokens_.expect_end();
        return select;
    }

    Change whole_change() {
        if (!tokens_.is_word("UPDATE") && !tokens_.is_word("DELETE"))
            tokens_.refuse("UPDATE or DELETE expected");
        Change change = tokens_.is_word("UPDATE") ? Change(update()) : Change(delete_rows());
        tokens_.expect_end();
        return change;
    }

    ExpressionPtr whole_criteria() {
        ExpressionPtr criteria = expressions_.expression();
        tokens_.expect_end();
        return criteria;
    }

  private:
    Select select() {
        tokens_.expect_word("SELECT");
        if (++nested_ > kNestedSelectsMax) tokens_.refuse("nested too deep");
        Select select;
        do
            select.items.push_back(item());
        while (tokens_.accept_symbol(","));
        tokens_.expect_word("FROM");
        do
            source(select);
        while (tokens_.accept_symbol(","));
        if (tokens_.accept_word("WHERE")) select.conditions.push_back(expressions_.expression());
        return select;
    }

    SelectItem item() {
        SelectItem item;
        item.position = tokens_.peek().position;
        if (tokens_.accept_symbol("*")) {
            item.kind = SelectItem::Kind::everything;
        } else if (tokens_.is_symbol(".", 1) && tokens_.is_symbol("*", 2)) {
            item.kind = SelectItem::Kind::everything_of_table;
            item.table = take_name(tokens_, "a table name expected");
            tokens_.expect_symbol(".");
            tokens_.expect_symbol("*");
        } else {
            item.expression = expressions_.expression();
            if (tokens_.accept_word("AS")) item.alias = take_name(tokens_, "a name expected");
        }
        return item;
    }

    // One table or nested SELECT with what is joined to it. Joins are inner ones, so that they are the same
    // as a comma and one more condition.
    void source(Select& select) {
        joined(select);
        while (tokens_.is_word("INNER")) {
            tokens_.expect_word("INNER");
            tokens_.expect_word("JOIN");
            joined(select);
            tokens_.expect_word("ON");
            select.conditions.push_back(expressions_.expression());
        }
    }

    void joined(Select& select) {
        const std::size_t position = tokens_.peek().position;
        if (!tokens_.accept_symbol("(")) {
            select.sources.push_back({position, take_name(tokens_, "a table name expected")});
            return;
        }
        if (tokens_.is_word("SELECT")) {
            auto nested = std::make_unique<Select>(this->select());
            select.sources.push_back({position, {}, std::move(nested)});
        } else {
            if (++nested_ > kNestedSelectsMax) tokens_.refuse("nested too deep");
            source(select);
        }
        tokens_.expect_symbol(")");
    }

    void order_terms(Select& select) {
        tokens_.expect_word("BY");
        do {
            OrderTerm term{expressions_.expression()};
            term.descending = tokens_.is_word("DESC");
            if (tokens_.is_word("DESC") || tokens_.is_word("ASC")) tokens_.take();
            select.order.push_back(std::move(term));
        } while (tokens_.accept_symbol(","));
    }

    Source changed_table() {
        const std::size_t position = tokens_.peek().position;
        return {position, take_name(tokens_, "a table name expected")};
    }

    ExpressionPtr changed_rows() {
        return tokens_.accept_word("WHERE") ? expressions_.expression() : nullptr;
    }

    Update update() {
        tokens_.expect_word("UPDATE");
        Update update{changed_table(), {}, {}};
        tokens_.expect_word("SET");
        do {
            const std::size_t position = tokens_.peek().position;
            Assignment assignment{take_name(tokens_, "a field name expected"), position, {}};
            tokens_.expect_symbol("=");
            assignment.value = expressions_.expression();
            update.assignments.push_back(std::move(assignment));
        } while (tokens_.accept_symbol(","));
        update.where = changed_rows();
        return update;
    }

    Delete delete_rows() {
        tokens_.expect_word("DELETE");
        if (!tokens_.is_word("FROM")) tokens_.expect_symbol("*");
        tokens_.expect_word("FROM");
        Delete remove{changed_table(), {}};
        remove.where = changed_rows();
        return remove;
    }

    TokenStream tokens_;
    ExpressionParser expressions_;
    int nested_ = 0;
};

}  // namespace

Select parse_select(std::string_view query) { return QueryParser(query).whole_select(); }
Change parse_change(std::string_view statement) { return QueryParser(statement).whole_change(); }
ExpressionPtr parse_criteria(std::string_view criteria) { return QueryParser(criteria).whole_criteria(); }

}  // namespace brimley::store::dialect
