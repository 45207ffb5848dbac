#include "company/edited_documents.h"

namespace brimley::company {

std::unordered_set<std::string> edited_documents(const Books& books) {
    std::unordered_set<std::string> numbers;
    store::Recordset rows =
        books.read("SELECT source_docno FROM GL_header_table WHERE Source = 'AP-INVOICE' AND Reverse = TRUE");
    for (; !rows.at_eof(); rows.MoveNext())
        numbers.insert(rows.text("source_docno"));
    return numbers;
}

}  // namespace brimley::company
