// Query texts: each is refused by the dialect itself or runs; the engine never sees one that it must refuse.
#include "fuzz.h"
#include "support/company_copy.h"

namespace brimley::testing {

namespace {

void require_told(const store::Error& error) {
    using store::ErrorKind;
    switch (error.kind()) {
        case ErrorKind::syntax:
        case ErrorKind::name:
        case ErrorKind::conversion:
        case ErrorKind::state:
            if (error.native_code() == 0) return;
            break;
        case ErrorKind::constraint:
            return;
        default:
            break;
    }
    throw Finding(std::string("the engine refused it: ") + error.what());
}

template <class Act>
void may_refuse(Act&& act) {
    try {
        std::forward<Act>(act)();
    } catch (const store::Error& error) {
        require_told(error);
    }
}

}  // namespace

const std::vector<std::string>& fuzz_words() {
    static const std::vector<std::string> kWords{" SELECT ",
                                                 " FROM ",
                                                 " WHERE ",
                                                 " ORDER BY ",
                                                 " DESC",
                                                 " AND ",
                                                 " OR ",
                                                 " NOT ",
                                                 "(",
                                                 ")",
                                                 "'",
                                                 "''",
                                                 "[",
                                                 "]",
                                                 "=",
                                                 "<>",
                                                 ",",
                                                 "*",
                                                 ".",
                                                 " INNER JOIN ",
                                                 " ON ",
                                                 " AS ",
                                                 "Datevalue('Jan 5, 2026')",
                                                 "MAX(",
                                                 "UCASE(",
                                                 "VAL(",
                                                 "TRUE",
                                                 "NULL",
                                                 " IS NOT NULL",
                                                 "DELETE * FROM ",
                                                 "UPDATE ",
                                                 " SET ",
                                                 "docno",
                                                 "fkey",
                                                 "AP_header_table",
                                                 "Vendor_table",
                                                 "1e308",
                                                 "-",
                                                 "/",
                                                 "0",
                                                 ";",
                                                 "--",
                                                 "/*",
                                                 "\"",
                                                 "\\",
                                                 "?1",
                                                 ":a",
                                                 "$1"};
    return kWords;
}

void fuzz_one(std::string_view input) {
    static CompanyCopy company;
    may_refuse([&] {
        auto rows = company.db().OpenRecordset(input, store::RecordsetKind::snapshot);
        while (!rows.at_eof())
            rows.MoveNext();
    });
    may_refuse([&] {
        auto rows = company.db().OpenRecordset(input, store::RecordsetKind::dynaset);
        if (!rows.at_eof()) rows.MoveLast();
    });
    may_refuse([&] {
        auto rows = company.db().OpenRecordset("SELECT * FROM Vendor_table", store::RecordsetKind::snapshot);
        rows.FindFirst(input);
    });
    company.workspace().BeginTrans();
    may_refuse([&] { static_cast<void>(company.db().Execute(input)); });
    company.workspace().Rollback();
}

}  // namespace brimley::testing
