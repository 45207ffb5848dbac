#include "desktop/text_menu.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <vector>

namespace brimley::desktop {

namespace {

// The line or note that was typed in last; the menu bar takes the focus while it is walked through by keys.
class TypedIn : public QObject {
  public:
    explicit TypedIn(QObject* parent) : QObject(parent) {
        connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, QWidget* now) { take(now); });
        take(QApplication::focusWidget());
    }
    [[nodiscard]] QLineEdit* line() const { return qobject_cast<QLineEdit*>(at_.data()); }
    [[nodiscard]] QPlainTextEdit* note() const { return qobject_cast<QPlainTextEdit*>(at_.data()); }

  private:
    void take(QWidget* now) {
        if (now == nullptr || now->inherits("QMenuBar") || now->inherits("QMenu")) return;
        at_ = now;
    }
    QPointer<QWidget> at_;
};

struct TextAct {
    const char* caption;  // and the key after a tab
    bool (*can_line)(const QLineEdit&);
    bool (*can_note)(const QPlainTextEdit&);
    void (*do_line)(QLineEdit&);
    void (*do_note)(QPlainTextEdit&);
};

bool is_anything_copied() { return !QApplication::clipboard()->text().isEmpty(); }

constexpr TextAct kTextActs[] = {
    {"&Undo\tCtrl+Z", [](const QLineEdit& line) { return !line.isReadOnly() && line.isUndoAvailable(); },
     [](const QPlainTextEdit& note) { return !note.isReadOnly() && note.document()->isUndoAvailable(); },
     [](QLineEdit& line) { line.undo(); }, [](QPlainTextEdit& note) { note.undo(); }},
    {"Cu&t\tCtrl+X", [](const QLineEdit& line) { return !line.isReadOnly() && line.hasSelectedText(); },
     [](const QPlainTextEdit& note) { return !note.isReadOnly() && note.textCursor().hasSelection(); },
     [](QLineEdit& line) { line.cut(); }, [](QPlainTextEdit& note) { note.cut(); }},
    {"&Copy\tCtrl+C", [](const QLineEdit& line) { return line.hasSelectedText(); },
     [](const QPlainTextEdit& note) { return note.textCursor().hasSelection(); },
     [](QLineEdit& line) { line.copy(); }, [](QPlainTextEdit& note) { note.copy(); }},
    {"P&aste\tCtrl+V", [](const QLineEdit& line) { return !line.isReadOnly() && is_anything_copied(); },
     [](const QPlainTextEdit& note) { return !note.isReadOnly() && is_anything_copied(); },
     [](QLineEdit& line) { line.paste(); }, [](QPlainTextEdit& note) { note.paste(); }},
    {"Select a&ll\tCtrl+A", [](const QLineEdit& line) { return !line.text().isEmpty(); },
     [](const QPlainTextEdit& note) { return !note.document()->isEmpty(); },
     [](QLineEdit& line) { line.selectAll(); }, [](QPlainTextEdit& note) { note.selectAll(); }},
};

}  // namespace

void add_text_acts(QMenu& menu) {
    auto* const typed_in = new TypedIn(&menu);
    if (!menu.isEmpty()) menu.addSeparator();
    std::vector<QAction*> entries;
    for (const TextAct& act : kTextActs)
        entries.push_back(menu.addAction(act.caption, &menu, [typed_in, &act] {
            if (QLineEdit* const line = typed_in->line()) act.do_line(*line);
            if (QPlainTextEdit* const note = typed_in->note()) act.do_note(*note);
        }));
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [typed_in, entries] {
        const QLineEdit* const line = typed_in->line();
        const QPlainTextEdit* const note = typed_in->note();
        for (std::size_t i = 0; i < entries.size(); ++i)
            entries[i]->setEnabled((line != nullptr && kTextActs[i].can_line(*line)) ||
                                   (note != nullptr && kTextActs[i].can_note(*note)));
    });
}

}  // namespace brimley::desktop
