#include "desktop/entry_keeper.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "desktop/field_views.h"
#include "desktop/grid_view.h"
#include "kernel/user_dates.h"

namespace brimley::desktop {

namespace {

constexpr int kLookEvery = 700;  // milliseconds

QPushButton* button(const QString& caption, const char* name) {
    auto* const made = new QPushButton(caption);
    made->setObjectName(name);
    return made;
}

}  // namespace

EntryKeeper::EntryKeeper(FormWindow& window, DesktopDesk& desk, entries::Place place,
                         entries::CallHost call_host)
    : QObject(&window),
      window_(window),
      desk_(desk),
      place_(std::move(place)),
      call_host_(std::move(call_host)),
      recorder_(window.form(), place_, [&desk] { return desk.now(); }) {
    recorder_.on_left = [this] { offer(); };
    recorder_.on_trouble = [this](const std::string& why) {
        if (tell) tell("What is being entered cannot be kept: " + shown(why));
    };
    window_.may_be_closed = [this] { return let_go(); };
    connect(&look_, &QTimer::timeout, this, [this] { note_pending(); });
    look_.start(kLookEvery);
}

// --- what is being typed ---
std::optional<entries::Pending> EntryKeeper::pending() const {
    const QWidget* const at = QApplication::focusWidget();
    if (at == nullptr || !window_.isAncestorOf(at)) return std::nullopt;
    if (const auto* const note = qobject_cast<const QPlainTextEdit*>(at))
        return note->document()->isModified()
                   ? std::optional(
                         entries::Pending{typed(note->objectName()), -1, -1, typed(note->toPlainText())})
                   : std::nullopt;
    const auto* const line = qobject_cast<const QLineEdit*>(at);
    if (line == nullptr || !line->isModified()) return std::nullopt;
    for (const QWidget* around = line->parentWidget(); around != nullptr; around = around->parentWidget())
        if (const auto* const grid = dynamic_cast<const GridView*>(around))
            return entries::Pending{typed(grid->objectName()), grid->currentIndex().row(),
                                    grid->currentIndex().column(), typed(line->text())};
    return entries::Pending{typed(line->objectName()), -1, -1, typed(line->text())};
}

void EntryKeeper::note_pending() { recorder_.note_pending(pending()); }

void EntryKeeper::put_pending(const entries::Pending& pending) {
    const controls::Control* const control = window_.form().controls().find(pending.control);
    QWidget* const field = control == nullptr ? nullptr : window_.widget(*control);
    if (field == nullptr) return;
    field->setFocus(Qt::OtherFocusReason);
    if (auto* const note = dynamic_cast<NoteView*>(field)) {
        note->setPlainText(shown(pending.text));
        note->document()->setModified(true);
    } else if (auto* const entry = dynamic_cast<EntryView*>(field)) {
        entry->put_typed(shown(pending.text));
    } else if (auto* const grid = dynamic_cast<GridView*>(field)) {
        grid->put_typed(pending.row, pending.column, shown(pending.text));
    }
}

// --- what was left ---
QString EntryKeeper::description(const entries::Entry& entry) const {
    const QString when =
        shown(kernel::user_date_text(entry.head.begun, window_.form().context().BRIMLEY_DATE_FORMAT)) + " " +
        shown(entry.head.begun.time_text()).left(5);
    QString text = entry.head.edit ? "A change of " + shown(entry.head.document) : QString("A new entry");
    for (const char* const name : {"cmbvendor_name", "txtremit"}) {
        const auto stood = entry.stood.find(name);
        if (stood == entry.stood.end() || stood->second.empty()) continue;
        text += " for " + shown(stood->second);
        break;
    }
    text += ", begun on " + when + ", was not saved.";
    if (entry.save_in_doubt)
        text +=
            " The program ended while it was being saved: look whether it is stored before you save it "
            "again.";
    return text;
}

void EntryKeeper::offer() {
    const auto left =
        entries::kept_entries(place_.folder, place_.company, window_.form().context().BRIMLEY_USER,
                              window_.form().identity().class_name);
    if (left.empty()) return window_.show_band(nullptr);
    auto* const band = new QWidget;
    band->setObjectName("entry_band");
    auto* const line = new QHBoxLayout(band);
    line->setContentsMargins(6, 2, 6, 2);
    const QString more = left.size() == 1 ? QString() : QString(" (%1 more after it)").arg(left.size() - 1);
    line->addWidget(new QLabel(description(left.front().entry) + more));
    QPushButton* const take = button("&Resume it", "take_up");
    QPushButton* const drop_it = button("&Drop it", "drop");
    for (QPushButton* const each : {take, drop_it})
        line->addWidget(each);
    line->addStretch(1);
    // The band goes while its button is being clicked.
    connect(
        take, &QPushButton::clicked, this, [this, kept = left.front()] { take_up(kept); },
        Qt::QueuedConnection);
    connect(
        drop_it, &QPushButton::clicked, this, [this, kept = left.front()] { drop(kept); },
        Qt::QueuedConnection);
    window_.show_band(band);
}

void EntryKeeper::take_up(const entries::KeptEntry& kept) {
    if (recorder_.entry_is_open()) return desk_.message("Save or drop the entry that is open first.");
    const auto result = replay(kept);
    if (result) tell_how_it_stands(*result);
    offer();
    if (result && result->ended_because.empty() && kept.entry.pending) put_pending(*kept.entry.pending);
}

// Nothing when another window has taken it up or dropped it.
std::optional<entries::Replayed> EntryKeeper::replay(const entries::KeptEntry& kept) {
    const entries::EntryClaim claim(kept);
    if (!claim.is_held()) return std::nullopt;
    recorder_.takes_from(kept.path.filename().string());
    entries::Replayed result = entries::take_up(
        window_.form(), kept.entry, [this](const auto& act) { return window_.gate().run(act); }, call_host_,
        [this](entries::StandIn* stand_in) { desk_.stand_in(stand_in); });
    window_.settle();
    if (result.ended_because.empty()) entries::remove_entry(kept.path);
    recorder_.taken();
    return result;
}

void EntryKeeper::tell_how_it_stands(const entries::Replayed& result) {
    if (result.stands_as_it_stood()) {
        if (tell) tell("The entry is restored.");
        return;
    }
    if (!result.ended_because.empty()) {
        desk_.message("The entry could be restored only in part. " + result.ended_because +
                      " You see the part before that; the whole entry is still kept.");
        return;
    }
    QStringList names;
    for (const std::string& name : result.differences)
        if (const controls::Control* const control = window_.form().controls().find(name))
            names.append(window_.caption_of(*control));
    names.removeDuplicates();
    desk_.message(
        "The entry is restored, but the company has changed since. Check: " + typed(names.join(", ")) + ".");
}

void EntryKeeper::drop(const entries::KeptEntry& kept) {
    QMessageBox box(QMessageBox::Question, "Drop", "Drop this entry? It cannot be brought back.",
                    QMessageBox::Yes | QMessageBox::No, &window_);
    box.setDefaultButton(QMessageBox::No);
    if (desk_.show_box(box) != QMessageBox::Yes) return;
    if (entries::EntryClaim(kept).is_held()) entries::remove_entry(kept.path);
    offer();
}

bool EntryKeeper::let_go() {
    note_pending();
    if (!recorder_.entry_is_open()) return true;
    QMessageBox box(QMessageBox::Question, window_.windowTitle(), "What you entered here is not saved yet.",
                    QMessageBox::NoButton, &window_);
    const QPushButton* const save = box.addButton("&Save", QMessageBox::AcceptRole);
    const QPushButton* const keep = box.addButton("&Keep for later", QMessageBox::AcceptRole);
    const QPushButton* const drop_it = box.addButton("&Drop", QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(QMessageBox::Cancel));
    desk_.show_box(box);
    if (box.clickedButton() == save) {
        window_.press(frame::command::kSave);
        return !recorder_.entry_is_open();
    }
    if (box.clickedButton() == drop_it) recorder_.drop();
    return box.clickedButton() == keep || box.clickedButton() == drop_it;
}

}  // namespace brimley::desktop
