// One SELECT of a translation, with the SELECTs nested in it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kernel/store/dialect/expression_writer.h"
#include "kernel/store/dialect/translator.h"

namespace brimley::store::dialect {

class SelectTranslator {
  public:
    SelectTranslator(std::string_view query, const Catalog& catalog, const Flavour& flavour)
        : query_(query), catalog_(catalog), flavour_(flavour), parameters_(flavour) {}

    [[nodiscard]] SelectTranslation translate(const Select& select);

  private:
    struct WrittenColumn {
        ResultColumn shown;
        std::string sql;
    };
    struct WrittenSelect {
        std::vector<WrittenColumn> columns;
        bool aggregate = false;
    };

    void add_sources(const Select& select, Scope& scope, std::string& from);
    [[nodiscard]] std::string add_nested(const Select& nested, Scope& scope);
    [[nodiscard]] WrittenSelect write_items(const Select& select, const Scope& scope);
    void write_fields(const ScopeSource& source, std::vector<WrittenColumn>& columns) const;
    [[nodiscard]] WrittenColumn write_item(const SelectItem& item, ExpressionWriter& writer) const;
    [[nodiscard]] std::string write_conditions(const Select& select, const Scope& scope,
                                               std::vector<ConstantTest>* constants);
    [[nodiscard]] std::string write_order(const Select& select, const Scope& scope,
                                          const std::vector<WrittenColumn>& columns);
    [[nodiscard]] std::string order_term(const OrderTerm& term, ExpressionWriter& writer, const Scope& scope,
                                         const std::vector<WrittenColumn>& columns) const;

    // The statements of a SELECT whose rows have keys. rest: its text from FROM on.
    void write_keyed(SelectTranslation& result, std::string_view key, std::string_view rest) const;

    std::string_view query_;
    const Catalog& catalog_;
    const Flavour& flavour_;
    ParameterList parameters_;
};

}  // namespace brimley::store::dialect
