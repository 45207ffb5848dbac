// Keeps what is entered into a form's window (entries/), and offers what was left to whoever opens the form
// again.
//
// One belongs to each window of a form that has New or Edit, and goes with it. It asks before an entry is
// closed away; Exit asks nothing, and its entry can be taken up again.
#pragma once

#include <QObject>
#include <QTimer>
#include <optional>

#include "desktop/desktop_desk.h"
#include "desktop/form_window.h"
#include "entries/recorder.h"
#include "entries/replay.h"

namespace brimley::desktop {

class EntryKeeper : public QObject {
  public:
    // call_host: does once more what the host had done for the user, on this window's form.
    EntryKeeper(FormWindow& window, DesktopDesk& desk, entries::Place place, entries::CallHost call_host);

    [[nodiscard]] FormWindow& window() { return window_; }
    [[nodiscard]] entries::Recorder& recorder() { return recorder_; }
    // Shows the newest entry that was left, if there is one, above the fields.
    void offer();
    // Before the entry is closed away: the user may save it, keep it for later, drop it, or stay. False:
    // stays.
    [[nodiscard]] bool let_go();

    // For messages that nobody has to close.
    std::function<void(const QString& text)> tell;

  private:
    void take_up(const entries::KeptEntry& kept);
    [[nodiscard]] std::optional<entries::Replayed> replay(const entries::KeptEntry& kept);
    void drop(const entries::KeptEntry& kept);
    void tell_how_it_stands(const entries::Replayed& result);
    void put_pending(const entries::Pending& pending);
    void note_pending();
    [[nodiscard]] std::optional<entries::Pending> pending() const;
    [[nodiscard]] QString description(const entries::Entry& entry) const;

    FormWindow& window_;
    DesktopDesk& desk_;
    entries::Place place_;
    entries::CallHost call_host_;
    entries::Recorder recorder_;
    QTimer look_;  // for what is being typed
};

}  // namespace brimley::desktop
