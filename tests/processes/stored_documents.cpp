#include "stored_documents.h"

#include <fmt/format.h>

#include <set>

#include "company/check.h"
#include "company/transaction.h"

namespace brimley::testing {

namespace {

using store::RecordsetKind;

struct Told {
    const char* what;
    const char* documents;  // where they are
    bool may_repeat = false;
};

constexpr Told kTold[] = {
    {"invoice", "SELECT docno FROM AP_header_table"},
    {"void-invoice", "SELECT docno FROM AP_header_table WHERE void = TRUE"},
    {"payment", "SELECT docno FROM Payment_header_table"},
    {"void-payment", "SELECT docno FROM Payment_header_table WHERE void = TRUE"},
    {"void-check", "SELECT docno FROM Payment_header_table WHERE void = TRUE"},
    {"misc-payment", "SELECT docno FROM Payment_header_table WHERE doctype = 'mpy'"},
    {"void-misc-payment", "SELECT docno FROM Payment_header_table WHERE doctype = 'mpy' AND void = TRUE"},
    {"revaluation", "SELECT docno FROM AP_Revalue_header_table"},
    {"template", "SELECT recurno FROM AP_recur_header_table"},
    // Of each template of a run the first is told, and two desks may issue the same.
    {"generation", "SELECT recurno FROM AP_header_table", true},
    {"edit-prepayment", "SELECT docno FROM Payment_header_table WHERE doctype = 'pp'", true},
};

// The counters of the kinds that savers store, with where their documents are.
struct Counted {
    const char* doctype;
    const char* fkeys;
};

constexpr Counted kCounted[] = {
    {"ip", "SELECT fkey FROM AP_header_table"},
    {"py", "SELECT fkey FROM Payment_header_table WHERE doctype = 'py'"},
    {"mpy", "SELECT fkey FROM Payment_header_table WHERE doctype = 'mpy'"},
    {"pp", "SELECT fkey FROM Payment_header_table WHERE doctype = 'pp'"},
    {"pc", "SELECT fkey FROM Payment_header_table WHERE doctype = 'pc'"},
    {"apre", "SELECT fkey FROM AP_Revalue_header_table"},
    {"recur", "SELECT fkey FROM AP_recur_header_table"},
    {"gl", "SELECT fkey FROM GL_header_table"},
};

std::vector<std::string> column(store::Database& database, const std::string& query) {
    std::vector<std::string> values;
    for (auto rows = database.OpenRecordset(query, RecordsetKind::snapshot); !rows.at_eof(); rows.MoveNext())
        values.push_back(rows.column(0).text());
    return values;
}

// Generated documents have keys without "-", which this counter has not given.
std::vector<std::string> counted_keys(store::Database& database, const char* query) {
    std::vector<std::string> keys = column(database, query);
    std::erase_if(keys, [](const std::string& key) { return key.find('-') == std::string::npos; });
    return keys;
}

void check_numbers(store::Database& database, std::vector<std::string>& found) {
    for (const Counted& kind : kCounted) {
        const auto fkeys = counted_keys(database, kind.fkeys);
        const std::set<std::string> distinct(fkeys.begin(), fkeys.end());
        if (distinct.size() != fkeys.size())
            found.push_back(fmt::format("a key of {} came twice", kind.doctype));
        const auto next = column(
            database,
            fmt::format("SELECT fkeyno FROM Next_number_fkey_table WHERE company = 1 AND doctype = '{}'",
                        kind.doctype));
        if (next.size() != 1 || next[0] != std::to_string(distinct.size() + 1))
            found.push_back(fmt::format("{} keys of {} are stored, the next is {}", distinct.size(),
                                        kind.doctype, next.empty() ? "none" : next[0]));
    }
}

}  // namespace

bool StoredDocuments::take(const std::string& line) {
    const std::size_t blank = line.find(' ');
    const std::string what = line.substr(0, blank);
    for (const Told& told : kTold) {
        if (what != told.what) continue;
        documents_[what].push_back(line.substr(blank + 1));
        ++told_;
        return true;
    }
    return false;
}

std::vector<std::string> StoredDocuments::findings(const store::OpenCompany& company) const {
    const company::ReadingMoment moment(company);
    std::vector<std::string> found = company::check_company(*company.database);
    for (const Told& told : kTold) {
        const auto documents = documents_.find(told.what);
        if (documents == documents_.end()) continue;
        const auto rows = column(*company.database, told.documents);
        const std::set<std::string> stored(rows.begin(), rows.end());
        std::set<std::string> seen;
        for (const std::string& docno : documents->second) {
            if (!stored.contains(docno))
                found.push_back(fmt::format("{} {} was told and is not stored", told.what, docno));
            if (!seen.insert(docno).second && !told.may_repeat)
                found.push_back(fmt::format("{} {} was told twice", told.what, docno));
        }
    }
    check_numbers(*company.database, found);
    return found;
}

}  // namespace brimley::testing
