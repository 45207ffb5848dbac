// What can be printed, in windows: PDF files, and the plain document of an "ActiveReport".
#pragma once

#include <QPdfDocument>
#include <QWidget>
#include <memory>

#include "kernel/store/database.h"

class QTextDocument;

namespace brimley::desktop {

// A PDF file to read page by page.
class PdfWindow : public QWidget {
  public:
    // `path` may have "\" between its folders, as the forms write them. A file that cannot be read is named
    // in the window.
    PdfWindow(const QString& path, const QString& title);
    ~PdfWindow() override;

    [[nodiscard]] int pages() const { return document_->pageCount(); }

  private:
    QPdfDocument* document_;
};

// The document of a query, on paper: what is the same in all rows on top, the lines below.
class ReportWindow : public QWidget {
  public:
    // `what` is the report's name, the document's number and whether the user may design it, separated by
    // commas. Throws store::Error when the query cannot be run.
    ReportWindow(store::Database& database, const std::string& query, const QString& what,
                 const QString& company_name, const std::string& date_format);

    [[nodiscard]] QTextDocument& document() { return *document_; }
    // Writes the document as a PDF file of its own, whole or not at all. Empty, or why it cannot be written.
    [[nodiscard]] QString save_pdf(const QString& path) const;
    // What the file is called unless the user says otherwise.
    [[nodiscard]] QString file_name() const;

  private:
    void add_buttons();

    QTextDocument* document_;
};

}  // namespace brimley::desktop
