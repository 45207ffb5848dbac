#include "desktop/look.h"

#include <QFile>
#include <QRegularExpression>
#include <algorithm>

namespace brimley::desktop {

namespace {

// The words of a line; those in quotes keep their blanks, and their first quote sets them apart from a name.
QStringList words_of(const QString& line) {
    static const QRegularExpression kWord("\"[^\"]*\"|#.*|[^\\s\"#]+");
    QStringList words;
    for (auto found = kWord.globalMatch(line); found.hasNext();) {
        const QString word = found.next().captured();
        if (word.startsWith('#')) break;
        words.append(word);
    }
    return words;
}

QString unquoted(QString word) { return word.startsWith('"') ? word.mid(1, word.size() - 2) : word; }

class Parser {
  public:
    Look parse(const QString& text) {
        for (const QString& line : text.split('\n')) {
            ++line_number_;
            words_ = words_of(line);
            if (!words_.isEmpty()) take_line();
        }
        return std::move(look_);
    }

  private:
    [[noreturn]] void fail(const QString& what) const {
        throw LookFault(QString("line %1: %2").arg(line_number_).arg(what).toStdString());
    }
    QString next(const char* what) {
        if (words_.isEmpty()) fail(QString(what) + " is missing");
        return unquoted(words_.takeFirst());
    }
    int next_number(const char* what) {
        bool good = false;
        const int number = next(what).toInt(&good);
        if (!good) fail(QString(what) + " is no number");
        return number;
    }
    bool take_if(const char* word) {
        if (words_.isEmpty() || words_.first() != word) return false;
        words_.removeFirst();
        return true;
    }
    LookPart& part() {
        if (look_.parts.empty()) fail("a field stands in no column");
        return look_.parts.back();
    }

    void take_line() {
        if (take_if("title")) {
            look_.title = next("TITLE");
            if (!words_.isEmpty()) look_.title_control = next("CONTROL");
        } else if (take_if("menus")) {
            look_.menus = words_;
            words_.clear();
        } else if (take_if("column")) {
            look_.parts.push_back({});
        } else if (take_if("foot")) {
            look_.parts.push_back({LookPart::Kind::foot});
        } else if (take_if("pane")) {
            take_pane();
        } else if (take_if("tabs")) {
            look_.parts.push_back({LookPart::Kind::tabs, next("TABS")});
        } else if (take_if("grid")) {
            take_grid();
        } else {
            take_row();
        }
        if (!words_.isEmpty()) fail("too many words: " + words_.first());
    }

    void take_pane() {
        LookPart pane{LookPart::Kind::pane};
        pane.name = next("FRAME");
        pane.place = next("PLACE");
        if (take_if("rows")) pane.rows = next_number("ROWS");
        look_.parts.push_back(pane);
    }

    void take_grid() {
        const QString name = next("GRID");
        if (!look_.parts.empty() && part().holds_grids()) {
            part().grids.append(name);
        } else {
            LookPart grid{LookPart::Kind::grid, name};
            if (take_if("rows")) grid.rows = next_number("ROWS");
            look_.parts.push_back(grid);
        }
    }

    void take_row() {
        LookRow row;
        const QString first = words_.first();
        if (first.startsWith('"') || first.startsWith('@')) row.caption = next("CAPTION");
        row.fields.push_back(take_field());
        while (take_if("+")) {
            const bool captioned = !words_.isEmpty() && words_.first().startsWith('"');
            const QString caption = captioned ? next("CAPTION") : QString();
            row.fields.push_back(take_field());
            row.fields.back().caption = caption;
        }
        part().fields.push_back(row);
    }

    LookField take_field() {
        LookField field;
        field.control = next("CONTROL");
        if (!words_.isEmpty() && words_.first().at(0).isDigit()) field.width = next_number("WIDTH");
        if (take_if("lines")) field.lines = next_number("LINES");
        if (take_if("amount")) field.amount = true;
        return field;
    }

    Look look_;
    QStringList words_;
    int line_number_ = 0;
};

}  // namespace

bool Look::names(const QString& control) const {
    const auto same = [&](const QString& name) { return name.compare(control, Qt::CaseInsensitive) == 0; };
    return std::any_of(parts.begin(), parts.end(), [&](const LookPart& part) {
        return same(part.name) || std::any_of(part.grids.begin(), part.grids.end(), same) ||
               std::any_of(part.fields.begin(), part.fields.end(), [&](const LookRow& row) {
                   return same(row.caption.mid(1)) ||
                          std::any_of(row.fields.begin(), row.fields.end(),
                                      [&](const LookField& field) { return same(field.control); });
               });
    });
}

Look parse_look(const QString& text) { return Parser().parse(text); }

std::optional<Look> look_of(const QString& class_name) {
    QFile file(":/looks/" + class_name + ".look");
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    return parse_look(QString::fromUtf8(file.readAll()));
}

}  // namespace brimley::desktop
