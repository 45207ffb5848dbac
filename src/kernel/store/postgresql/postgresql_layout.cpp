#include "kernel/store/postgresql/postgresql_layout.h"

#include <fmt/format.h>

#include <sstream>
#include <unordered_map>

#include "kernel/store/dialect/flavour.h"
#include "kernel/store/postgresql/postgresql_flavour.h"
#include "kernel/store/postgresql/postgresql_handle.h"

namespace brimley::store {

namespace {

// As the server's own catalog names them.
const char* storage_of(FieldType type) {
    switch (type) {
        case FieldType::text:
            return "text";
        case FieldType::number:
            return "float8";
        case FieldType::integer:
            return "int8";
        case FieldType::date:
            return "date";
        case FieldType::datetime:
            return "timestamp";
        case FieldType::yes_no:
            break;
    }
    return "bool";
}

std::string column_definition(const Field& field) {
    std::string definition = fmt::format("{} {}", postgresql_name(field.name), storage_of(field.type));
    if (field.type == FieldType::text) definition += " COLLATE \"C\"";
    if (field.type == FieldType::yes_no && !field.nullable_flag) definition += " NOT NULL DEFAULT FALSE";
    return definition;
}

std::string table_definition(const Table& table) {
    std::string sql =
        fmt::format("CREATE TABLE {} ({} int8 PRIMARY KEY DEFAULT nextval('{}')", postgresql_name(table.name),
                    postgresql_name(dialect::kRowKeyColumn), kRowKeySequence);
    for (const Field& field : table.fields)
        sql += ", " + column_definition(field);
    return sql + ")";
}

std::string index_name(const Table& table, std::size_t number) {
    return postgresql_name(fmt::format("{}_index_{}", table.name, number));
}

// Nulls are smallest in the dialect, so they are in the indexes that its ORDER BY is to use.
std::string index_fields(const Index& index) {
    std::string fields;
    for (const std::string& field : index.fields)
        fields += (fields.empty() ? "" : ", ") + postgresql_name(field) + " NULLS FIRST";
    return fields;
}

std::string index_definition(const Table& table, const Index& index, std::size_t number) {
    std::string rows;
    for (const std::string& flag : index.only_where_false)
        rows += (rows.empty() ? " WHERE " : " AND ") + postgresql_name(flag) + " = FALSE";
    return fmt::format("CREATE {}INDEX {} ON {} ({}){}", index.unique ? "UNIQUE " : "",
                       index_name(table, number), postgresql_name(table.name), index_fields(index), rows);
}

struct Function {
    const char* name;
    std::string body;
};

std::string function_definition(const Function& function) {
    return fmt::format(
        "CREATE FUNCTION {}(given text) RETURNS float8 LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $${}$$",
        function.name, function.body);
}

// The number that the whole of a text is: the same texts that the store takes for numbers, and null for those
// beyond a floating number.
Function number_function() {
    return {kServerNumberFunction,
            " SELECT CASE WHEN length(given) <= 400 AND given ~ "
            "'^ *[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)([eE][+-]?[0-9]{1,3})? *$' "
            "THEN CASE WHEN abs(btrim(given)::numeric) > 1.7976931348623157e308 THEN NULL "
            "WHEN btrim(given)::numeric <> 0 AND abs(btrim(given)::numeric) < 5e-324 THEN NULL "
            "ELSE btrim(given)::numeric::float8 END END "};
}

Function leading_number_function() {
    return {kServerLeadingNumberFunction,
            fmt::format(" SELECT coalesce({}(substring(given FROM "
                        "'^ *(?:[+](?!-))?(-?(?:[0-9]+[.]?[0-9]*|[.][0-9]+))')), 0) ",
                        kServerNumberFunction)};
}

// One object of the schema: what it is, its name, and everything about it that matters, in one text.
struct Described {
    std::string kind;
    std::string name;
    std::string form;
};

// Everything in the schema, and what hangs on its tables from elsewhere, tables first. Storage parameters,
// statistics, owners and rights are the administrator's and left out. What costs a look at each table is
// avoided: an index is described by the numbers of its fields. So is what costs a look at every function of
// the server: what stands in a schema depends on it, and dependencies are found by an index.
constexpr const char* kDescription = R"(
WITH company AS (SELECT * FROM pg_class WHERE relnamespace = 'brimley'::regnamespace),
     tables AS (SELECT oid, relname FROM company WHERE relkind = 'r')
SELECT CASE relkind WHEN 'r' THEN 'table' WHEN 'S' THEN 'sequence' WHEN 'v' THEN 'view' ELSE 'relation' END,
       relname,
       CASE relkind
         WHEN 'r' THEN concat_ws('|', relpersistence, relrowsecurity, relforcerowsecurity, relispartition)
         WHEN 'S' THEN (SELECT concat_ws('|', seqtypid::regtype, seqincrement, seqcache, seqcycle)
                          FROM pg_sequence WHERE seqrelid = company.oid) END, ''
  FROM company WHERE relkind <> 'i'
UNION ALL
SELECT 'field', concat(relname, '.', attname),
       concat_ws('|', atttypid::int8, attcollation::int8, attnotnull, attgenerated, attidentity,
                 CASE WHEN atthasdef THEN (SELECT pg_get_expr(adbin, 0) FROM pg_attrdef
                                            WHERE adrelid = attrelid AND adnum = attnum) ELSE '' END),
       concat(attrelid, ' ', attnum)
  FROM tables JOIN pg_attribute ON attrelid = tables.oid WHERE attnum > 0 AND NOT attisdropped
UNION ALL
SELECT 'index', company.relname,
       concat_ws('|', indisvalid, indisunique, indnullsnotdistinct, relam::int8, indcollation, indoption,
                 NOT indclass::oid[] && ARRAY(SELECT oid FROM pg_opclass WHERE NOT opcdefault),
                 indexprs IS NULL,
                 CASE WHEN indpred IS NULL THEN '' ELSE replace(pg_get_expr(indpred, indrelid), '"', '') END),
       concat(indrelid, ' ', indkey)
  FROM company JOIN pg_index ON indexrelid = company.oid
UNION ALL
SELECT 'constraint', conname, concat(contype), concat(conrelid, ' ', array_to_string(conkey, ' '))
  FROM pg_constraint WHERE conrelid IN (SELECT oid FROM tables) OR confrelid IN (SELECT oid FROM tables)
UNION ALL
SELECT 'trigger', tgname, '', '' FROM pg_trigger WHERE tgrelid IN (SELECT oid FROM tables)
UNION ALL
SELECT 'rule', rulename, '', '' FROM pg_rewrite WHERE ev_class IN (SELECT oid FROM tables)
UNION ALL
SELECT 'policy', polname, '', '' FROM pg_policy WHERE polrelid IN (SELECT oid FROM tables)
UNION ALL
SELECT 'inheritance', inhrelid::regclass::text, '', '' FROM pg_inherits
 WHERE inhparent IN (SELECT oid FROM tables) OR inhrelid IN (SELECT oid FROM tables)
UNION ALL
SELECT 'function', proname,
       concat_ws('|', pg_get_function_identity_arguments(p.oid), prorettype::regtype, lanname, provolatile,
                 prosecdef, coalesce(array_to_string(proconfig, ','), ''), prosrc), ''
  FROM pg_depend JOIN pg_proc p ON p.oid = objid JOIN pg_language l ON l.oid = prolang
 WHERE refclassid = 'pg_namespace'::regclass AND refobjid = 'brimley'::regnamespace
   AND classid = 'pg_proc'::regclass
UNION ALL
SELECT o.type, o.identity, '', '' FROM pg_depend, pg_identify_object(classid, objid, 0) o
 WHERE refclassid = 'pg_namespace'::regclass AND refobjid = 'brimley'::regnamespace
   AND classid NOT IN ('pg_class'::regclass, 'pg_proc'::regclass, 'pg_default_acl'::regclass)
)";

// The server's own numbers, which are the same in every database.
constexpr int kCollationC = 950;
constexpr int kBtree = 403;
constexpr int kRowKeyType = 20;
// Nulls first, and not descending.
constexpr const char* kNullsFirst = "2";

int type_number(FieldType type) {
    switch (type) {
        case FieldType::text:
            return 25;
        case FieldType::number:
            return 701;
        case FieldType::integer:
            return kRowKeyType;
        case FieldType::date:
            return 1082;
        case FieldType::datetime:
            return 1114;
        case FieldType::yes_no:
            break;
    }
    return 16;
}

int collation_number(const Field& field) { return field.type == FieldType::text ? kCollationC : 0; }

std::string without_quotes(std::string text) {
    std::erase(text, '"');
    return text;
}

std::string form_of_field(const Field& field) {
    const bool flag = field.type == FieldType::yes_no && !field.nullable_flag;
    return fmt::format("{}|{}|{}|||{}", type_number(field.type), collation_number(field), flag ? 't' : 'f',
                       flag ? "false" : "");
}

std::string predicate_of(const Index& index) {
    std::string rows;
    for (const std::string& flag : index.only_where_false)
        rows += fmt::format("{}({} = false)", rows.empty() ? "" : " AND ", lower_case(flag));
    return index.only_where_false.size() > 1 ? '(' + rows + ')' : rows;
}

std::string form_of_index(const Table& table, const Index& index) {
    std::string collations;
    std::string options;
    std::string fields;
    for (const std::string& field : index.fields) {
        const char* const blank = fields.empty() ? "" : " ";
        collations += fmt::format("{}{}", blank, collation_number(table.fields[table.field_index(field)]));
        options += fmt::format("{}{}", blank, kNullsFirst);
        fields += fmt::format(" {}", lower_case(field));
    }
    return fmt::format("t|{}|f|{}|{}|{}|t|t|{} {}{}", index.unique ? 't' : 'f', kBtree, collations, options,
                       predicate_of(index), lower_case(table.name), fields);
}

void describe_table(const Table& table, std::vector<Described>& all) {
    const std::string name = lower_case(table.name);
    const std::string key(dialect::kRowKeyColumn);
    all.push_back({"table", name, "p|f|f|f"});
    all.push_back({"field", name + '.' + key,
                   fmt::format("{}|0|t|||nextval('{}'::regclass)", kRowKeyType, kRowKeySequence)});
    for (const Field& field : table.fields)
        all.push_back({"field", name + '.' + lower_case(field.name), form_of_field(field)});
    all.push_back({"index", name + "_pkey", fmt::format("t|t|f|{}|0|0|t|t| {} {}", kBtree, name, key)});
    for (std::size_t i = 0; i < table.indexes.size(); ++i)
        all.push_back(
            {"index", without_quotes(index_name(table, i + 1)), form_of_index(table, table.indexes[i])});
    all.push_back({"constraint", name + "_pkey", fmt::format("p {} {}", name, key)});
}

std::vector<Described> expected_objects(const Catalog& catalog) {
    std::vector<Described> all{{"sequence", kRowKeySequence, "bigint|1|1|f"}};
    for (const Function& function : {number_function(), leading_number_function()})
        all.push_back({"function", function.name, "given text|double precision|sql|i|f||" + function.body});
    for (const Table& table : catalog.tables())
        describe_table(table, all);
    return all;
}

// " line_table fkey pay_item" for "16389 2 4", the numbers of a table and of some of its fields.
std::string with_names(const std::string& numbers,
                       const std::unordered_map<std::string, std::string>& fields) {
    std::istringstream each(numbers);
    std::string table;
    std::string number;
    each >> table;
    std::string names;
    while (each >> number) {
        const auto found = fields.find(table + ' ' + number);
        const std::string name = found == fields.end() ? "?.?" : found->second;
        const std::size_t dot = name.find('.');
        if (names.empty()) names = ' ' + name.substr(0, dot);
        names += ' ' + name.substr(dot + 1);
    }
    return names;
}

// The rows of kDescription, with the names of fields for their numbers.
std::vector<Described> objects_in_schema(PGconn* connection) {
    const PostgresqlResult rows = run_sql(connection, kDescription);
    std::vector<Described> objects;
    objects.reserve(PQntuples(rows.get()));
    std::unordered_map<std::string, std::string> fields;  // "table.field" by the numbers of both
    for (int row = 0; row < PQntuples(rows.get()); ++row) {
        const auto text = [&](int column) { return std::string(PQgetvalue(rows.get(), row, column)); };
        Described object{text(0), text(1), text(2)};
        std::string numbers = text(3);
        if (object.kind == "field") {
            fields.emplace(std::move(numbers), object.name);
        } else if (!numbers.empty()) {
            object.form += with_names(numbers, fields);
        }
        objects.push_back(std::move(object));
    }
    return objects;
}

// "field line_table.created" is told as the catalog writes it: "Line_table.created".
std::string shown(const Catalog& catalog, const std::string& kind, const std::string& name) {
    const std::size_t dot = name.find('.');
    const Table* const table = catalog.find(name.substr(0, dot));
    std::string told = table ? table->name : name.substr(0, dot);
    if (dot != std::string::npos) {
        const int field = table ? table->field_index(name.substr(dot + 1)) : -1;
        told += '.' + (field < 0 ? name.substr(dot + 1) : table->fields[field].name);
    }
    return kind == "field" ? told : kind + ' ' + told;
}

std::string mark_of(const Catalog& catalog) {
    return fmt::format("COMMENT ON SCHEMA {} IS '{}{}'", kCompanySchema, kCompanyMark, catalog.layout());
}

std::string names_of_company_first() {
    return fmt::format("SET LOCAL search_path = {}, pg_catalog, pg_temp", kCompanySchema);
}

void add_tables(const Catalog& catalog, int after, std::vector<std::string>& statements) {
    for (const Table& table : catalog.tables()) {
        if (table.since <= after) continue;
        statements.push_back(table_definition(table));
        for (std::size_t i = 0; i < table.indexes.size(); ++i)
            statements.push_back(index_definition(table, table.indexes[i], i + 1));
    }
}

}  // namespace

std::vector<std::string> postgresql_layout(const Catalog& catalog) {
    std::vector<std::string> statements{fmt::format("CREATE SCHEMA {}", kCompanySchema),
                                        mark_of(catalog),
                                        names_of_company_first(),
                                        fmt::format("CREATE SEQUENCE {}", kRowKeySequence),
                                        function_definition(number_function()),
                                        function_definition(leading_number_function())};
    add_tables(catalog, 0, statements);
    return statements;
}

std::vector<std::string> postgresql_upgrade(const Catalog& catalog, int after) {
    std::vector<std::string> statements{mark_of(catalog), names_of_company_first()};
    add_tables(catalog, after, statements);
    return statements;
}

std::string difference_from_layout(PGconn* connection, const Catalog& catalog) {
    const std::vector<Described> expected = expected_objects(catalog);
    std::unordered_map<std::string, const Described*> missing;
    for (const Described& object : expected)
        missing[object.kind + ' ' + object.name] = &object;
    for (const Described& object : objects_in_schema(connection)) {
        const auto found = missing.find(object.kind + ' ' + object.name);
        if (found == missing.end())
            return shown(catalog, object.kind, object.name) + " does not belong to it";
        if (object.form != found->second->form)
            return shown(catalog, object.kind, object.name) + " is not as it should be";
        missing.erase(found);
    }
    for (const Described& object : expected)
        if (missing.contains(object.kind + ' ' + object.name))
            return shown(catalog, object.kind, object.name) + " is missing";
    return {};
}

}  // namespace brimley::store
