// Sessions in live windows: the acts are keys and clicks, and every box is opened and answered.
#include <QAbstractButton>
#include <QMessageBox>

#include "desktop/widget_actor.h"
#include "opening/command_line.h"
#include "sessions/session_player.h"

namespace brimley::testing {

namespace {

void answer(QMessageBox& box, bool yes) {
    const auto button = box.standardButtons().testFlag(QMessageBox::Ok) ? QMessageBox::Ok
                        : yes                                           ? QMessageBox::Yes
                                                                        : QMessageBox::No;
    box.button(button)->click();
}

}  // namespace

console::Status play_session(const std::string& company, const std::string& script,
                             const opening::HostOptions& options, std::ostream& out) {
    constexpr const char* kProgram = "brimley";
    const auto context = opening::open_or_tell(company, options, kProgram);
    if (!context) return console::kNotOpened;
    desktop::DesktopDesk screen;
    WidgetActor actor(screen);
    console::Console console(*context, out, actor, screen);
    console.allow_other_desk();
    screen.act_for(console.desk());
    screen.on_box = [&](QMessageBox& box) { answer(box, console.desk().answer_at_hand()); };
    return console::run_to_status(console, out, kProgram, [&] { console::run_script_file(console, script); });
}

}  // namespace brimley::testing
