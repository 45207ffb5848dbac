#include "desktop/command_icons.h"

#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>
#include <map>

namespace brimley::desktop {

namespace {

constexpr int kField = 24;  // of the strokes
const QColor kProgramColour(38, 103, 173);
constexpr int kSide = 72;  // of the program's picture, so that it stays sharp on a dense screen

// By the names of the lines.
std::map<QString, QString> read_strokes() {
    std::map<QString, QString> strokes;
    QFile file(":/looks/icons.txt");
    if (!file.open(QIODevice::ReadOnly)) return strokes;
    for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
        if (line.isEmpty() || line.startsWith('#')) continue;
        const qsizetype blank = line.indexOf(' ');
        strokes[line.left(blank)] = line.mid(blank + 1);
    }
    return strokes;
}

void draw_letters(QPainter& painter, QPointF middle, QString text) {
    QFont font("Arial");
    font.setPixelSize(17);
    font.setBold(text.startsWith('*'));
    font.setItalic(text.startsWith('/'));
    if (font.bold() || font.italic()) text.remove(0, 1);
    painter.setFont(font);
    painter.drawText(QRectF(middle.x() - 12, middle.y() - 12, 24, 24), Qt::AlignCenter, text);
}

void draw_strokes(QPainter& painter, const QString& strokes) {
    const QStringList words = strokes.split(' ', Qt::SkipEmptyParts);
    QPainterPath path;
    for (qsizetype i = 0; i + 2 < words.size();) {
        const QString act = words[i];
        const QPointF at(words[i + 1].toDouble(), words[i + 2].toDouble());
        i += 3;
        if (act == "M") path.moveTo(at);
        if (act == "L") path.lineTo(at);
        if (act == "O" && i < words.size()) {
            const double radius = words[i++].toDouble();
            path.addEllipse(at, radius, radius);
        }
        if (act == "T" && i < words.size()) draw_letters(painter, at, words[i++]);
    }
    painter.drawPath(path);
}

class StrokedIcon : public QIconEngine {
  public:
    explicit StrokedIcon(const QString& strokes) : strokes_(strokes) {}

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State /*state*/) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(place.topLeft());
        painter->scale(place.width() / double{kField}, place.height() / double{kField});
        painter->setPen(QPen(QApplication::palette().color(group, QPalette::ButtonText), 1.6, Qt::SolidLine,
                             Qt::RoundCap, Qt::RoundJoin));
        draw_strokes(*painter, strokes_);
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect({}, size), mode, state);
        return picture;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new StrokedIcon(strokes_); }

  private:
    QString strokes_;
};

}  // namespace

QIcon stroked_icon(const QString& strokes) { return QIcon(new StrokedIcon(strokes)); }

QIcon program_icon() {
    QPixmap picture(kSide, kSide);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(double{kSide} / kField, double{kSide} / kField);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kProgramColour);
    painter.drawRoundedRect(QRectF(1, 1, 22, 22), 5, 5);
    painter.setPen(Qt::white);
    draw_letters(painter, QPointF(12, 12), "*B");
    return picture;
}

QIcon command_icon(const QString& form, int command, const QString& caption) {
    static const std::map<QString, QString> kStrokes = read_strokes();
    const QString id = QString::number(command);
    for (const QString& name : {form + '.' + id, id})
        if (const auto found = kStrokes.find(name); found != kStrokes.end())
            return stroked_icon(found->second);
    return stroked_icon("T 12 12 " + caption.left(1));
}

}  // namespace brimley::desktop
