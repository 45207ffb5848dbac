// brimley-make-help TEXT.md FILE.pdf: sets a text of docs/help as a PDF file, with its pictures as wide as
// the page.
#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>
#include <cstdio>

namespace {

constexpr int kPointsPerInch = 72;
constexpr qreal kMargin = 50;  // points
constexpr qreal kTextSize = 10.5;

// Each picture takes the width of the page. False, after its message, when one is not there.
bool fit_pictures(QTextDocument& text, const QString& folder, qreal width) {
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            if (!format.isImageFormat()) continue;
            QTextImageFormat picture = format.toImageFormat();
            const QString path = QFileInfo(folder + '/' + picture.name()).canonicalFilePath();
            const QImage image(path);
            if (image.isNull()) {
                std::fprintf(stderr, "brimley-make-help: there is no picture %s\n",
                             qPrintable(picture.name()));
                return false;
            }
            text.addResource(QTextDocument::ImageResource, QUrl(picture.name()), image);
            const qreal shown = std::min<qreal>(width, image.width());
            picture.setWidth(shown);
            picture.setHeight(shown * image.height() / image.width());
            QTextCursor cursor(&text);
            cursor.setPosition(part.fragment().position());
            cursor.setPosition(part.fragment().position() + part.fragment().length(),
                               QTextCursor::KeepAnchor);
            cursor.setCharFormat(picture);
            break;  // the block has changed; it holds nothing but its picture
        }
    }
    return true;
}

void frame_tables(QTextFrame& frame) {
    for (QTextFrame* const child : frame.childFrames()) {
        if (auto* const table = qobject_cast<QTextTable*>(child)) {
            QTextTableFormat format = table->format();
            format.setBorder(0.5);
            format.setBorderCollapse(true);
            format.setCellPadding(4);
            table->setFormat(format);
        }
        frame_tables(*child);
    }
}

void print(QTextDocument& text, QPdfWriter& writer) {
    QPainter painter(&writer);
    const QSizeF page = text.pageSize();
    for (int number = 0; number < text.pageCount(); ++number) {
        if (number > 0) writer.newPage();
        painter.save();
        painter.translate(0, -number * page.height());
        text.drawContents(&painter, QRectF(0, number * page.height(), page.width(), page.height()));
        painter.restore();
        painter.drawText(QRectF(0, page.height() + 10, page.width(), 20), Qt::AlignHCenter,
                         QString::number(number + 1));
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: brimley-make-help TEXT.md FILE.pdf\n", stderr);
        return 2;
    }
    QFile file(QString::fromLocal8Bit(argv[1]));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "brimley-make-help: %s cannot be read\n", argv[1]);
        return 1;
    }
    QPdfWriter writer(QString::fromLocal8Bit(argv[2]));
    writer.setResolution(kPointsPerInch);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Point);
    writer.setTitle(QFileInfo(file).completeBaseName());
    writer.setCreator("Brimley AP");

    QTextDocument text;
    QFont font("Liberation Sans");
    font.setPointSizeF(kTextSize);
    text.setDefaultFont(font);
    text.documentLayout()->setPaintDevice(&writer);
    const QSizeF page(writer.width(), writer.height());
    text.setPageSize(page);
    text.setDocumentMargin(0);
    text.setMarkdown(QString::fromUtf8(file.readAll()), QTextDocument::MarkdownDialectGitHub);
    if (!fit_pictures(text, QFileInfo(file).path(), page.width())) return 1;
    frame_tables(*text.rootFrame());
    print(text, writer);
    return 0;
}
