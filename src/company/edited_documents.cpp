#include "company/edited_documents.h"

namespace brimley::company {

using store::Recordset;

std::unordered_set<std::string> edited_documents(const Books& books) {
    std::unordered_set<std::string> posted;
    std::unordered_set<std::string> again;
    Recordset rows =
        books.read("SELECT source_docno,remark FROM GL_header_table WHERE Source = 'AP-INVOICE'");
    for (; !rows.at_eof(); rows.MoveNext()) {
        const std::string number = rows.column(0).text();
        if (rows.column(1).text().starts_with("Reverse GL ")) continue;
        if (!posted.insert(number).second) again.insert(number);
    }
    return again;
}

}  // namespace brimley::company
