// The plain document that is printed of an "ActiveReport": made from the query that the form sends, whatever
// its fields are.
#pragma once

#include <QString>
#include <string>

#include "kernel/store/database.h"

class QTextDocument;

namespace brimley::desktop {

// Throws store::Error when the query cannot be run. The caller owns the document.
[[nodiscard]] QTextDocument* report_document(store::Database& database, const std::string& query,
                                             const QString& what, const QString& company_name,
                                             const std::string& date_format);

}  // namespace brimley::desktop
