#include "desktop/paper_windows.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QPdfPageRenderer>
#include <QPdfView>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSaveFile>
#include <QTextBrowser>
#include <QTextDocument>
#include <QVBoxLayout>
#include <filesystem>
#include <stdexcept>

#include "company/data_folder.h"
#include "desktop/model_view.h"
#include "desktop/report_document.h"
#include "frame/platform_path.h"

namespace brimley::desktop {

// --- PDF files ---
namespace {

// The file that is meant. Help lies beside the company where somebody has put it there; otherwise it is the
// program's own.
QString file_of(const QString& path) {
    const std::filesystem::path file = frame::platform_path(typed(path));
    const bool is_help = file.parent_path().filename() == "Help";
    if (!is_help || std::filesystem::exists(file)) return shown(file.string());
    try {
        const std::filesystem::path own = company::data_folder("Help") / file.filename();
        return shown((std::filesystem::exists(own) ? own : file).string());
    } catch (const std::runtime_error&) {
        return shown(file.string());  // it is said that it was not found
    }
}

}  // namespace

PdfWindow::PdfWindow(const QString& path, const QString& title) : document_(new QPdfDocument(this)) {
    setWindowTitle(title);
    const QString file = file_of(path);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    if (document_->load(file) != QPdfDocument::Error::None) {
        const bool exists = QFileInfo::exists(file);
        auto* const fault =
            new QLabel(file + (exists ? " cannot be shown: it is not a PDF file." : " was not found."));
        fault->setAlignment(Qt::AlignCenter);
        fault->setWordWrap(true);
        layout->addWidget(fault);
    } else {
        auto* const view = new QPdfView(this);
        view->setDocument(document_);
        view->setPageMode(QPdfView::PageMode::MultiPage);
        view->setZoomMode(QPdfView::ZoomMode::FitToWidth);
        layout->addWidget(view);
    }
    resize(760, 620);
}

// The renderer works on a thread of its own, which ends and is freed when the renderer is set to draw without
// it.
PdfWindow::~PdfWindow() {
    for (auto* const renderer : findChildren<QPdfPageRenderer*>())
        renderer->setRenderMode(QPdfPageRenderer::RenderMode::SingleThreaded);
}

// --- reports ---
ReportWindow::ReportWindow(store::Database& database, const std::string& query, const QString& what,
                           const QString& company_name, const std::string& date_format)
    : document_(report_document(database, query, what, company_name, date_format)) {
    document_->setParent(this);
    setWindowTitle(what.section(',', 0, 0) + " " + what.section(',', 1, -2));
    auto* const layout = new QVBoxLayout(this);
    auto* const paper = new QTextBrowser;
    paper->setDocument(document_);
    paper->setWordWrapMode(QTextOption::WordWrap);
    // Paper is white, whatever the windows around it are.
    QPalette white = paper->palette();
    white.setColor(QPalette::Base, Qt::white);
    white.setColor(QPalette::Text, Qt::black);
    paper->setPalette(white);
    layout->addWidget(paper, 1);
    add_buttons();
    resize(760, 620);
}

void ReportWindow::add_buttons() {
    auto* const buttons = new QDialogButtonBox;
    const QPushButton* const print = buttons->addButton("&Print...", QDialogButtonBox::ActionRole);
    const QPushButton* const save = buttons->addButton("Save as &PDF...", QDialogButtonBox::ActionRole);
    connect(print, &QPushButton::clicked, this, [this] {
        QPrinter printer(QPrinter::HighResolution);
        QPrintDialog dialog(&printer, this);
        if (dialog.exec() == QDialog::Accepted) document_->print(&printer);
    });
    connect(save, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getSaveFileName(this, {}, file_name(), "PDF (*.pdf)");
        if (path.isEmpty()) return;
        if (const QString fault = save_pdf(path); !fault.isEmpty())
            QMessageBox::warning(this, "Save as PDF", path + " cannot be written: " + fault);
    });
    layout()->addWidget(buttons);
}

// "A/P Invoice" is no folder "A".
QString ReportWindow::file_name() const {
    QString name = windowTitle();
    for (const char letter : {'/', '\\', ':', '*', '?', '"', '<', '>', '|'})
        name.replace(letter, '-');
    return name + ".pdf";
}

QString ReportWindow::save_pdf(const QString& path) const {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return file.errorString();
    QPdfWriter writer(&file);
    document_->print(&writer);
    return file.commit() ? QString() : file.errorString();
}

}  // namespace brimley::desktop
