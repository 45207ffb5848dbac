// Keeps what the user enters into a form, act by act, in a file; and knows when the entry is over.
//
//   New or Edit pressed      a file begins, with that act
//   each act after it        is appended, and what it has changed on the screen
//   saved, or left by New or Edit once more, which asks        the file is removed
//   left in any other way (Exit, leafing, New without a question, the end of the program)        the file
//   stays
//
// It listens to the acts of its form (controls/act.h), so it makes no difference where they come from.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/act.h"
#include "controls/grid.h"
#include "entries/entry.h"
#include "entries/entry_file.h"
#include "frame/form.h"

namespace brimley::entries {

// Where a host keeps the entries into one company.
struct Place {
    std::filesystem::path folder;
    std::string company;  // as it may be shown
};

class Recorder : public controls::ActListener {
  public:
    // now: the clock that the form has. The form is owned by a shared pointer, as forms on a desk are.
    Recorder(frame::Form& form, Place place, std::function<store::DateTime()> now);
    ~Recorder() override;
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // Whether something was entered that is neither saved nor dropped.
    [[nodiscard]] bool entry_is_open() const { return file_ != nullptr && anything_entered_; }
    // The user does not want it any more.
    void drop();
    // The form has asked the user something, within an act.
    void answered(bool yes);
    // Typed and not handed over yet; nothing: no longer.
    void note_pending(const std::optional<Pending>& pending);
    // What is recorded next is done again from a kept file of this name, until done() says otherwise.
    void takes_from(const std::string& name);
    void taken();

    void before_command(int id) override;
    void before_visit(const controls::Grid& grid, int row) override;
    void acted(const controls::Act& act) override;

    // The entry has gone from the screen without being saved or dropped, and is kept.
    std::function<void()> on_left;
    // It cannot be written down any more, for this reason.
    std::function<void(const std::string& why)> on_trouble;

  private:
    void begin(const controls::Act& act);
    void note(const controls::Act& act);
    void end(bool is_kept);
    // Looking around in a grid waits for no disk: the next act that enters something does.
    enum class Disk { waited_for, later };
    void write(const std::string& lines, Disk disk);
    [[nodiscard]] std::string changes_of_screen();

    const std::shared_ptr<frame::Form> alive_;  // until nobody listens to it any more
    frame::Form& form_;
    Place place_;
    std::function<store::DateTime()> now_;
    std::unique_ptr<EntryFile> file_;
    frame::Mode mode_before_ = frame::Mode::read;
    bool anything_entered_ = false;
    std::string document_;  // when it began
    std::vector<bool> answers_;
    std::string row_label_;  // of the row that is being visited
    std::optional<Pending> pending_;
    std::map<std::string, std::string> stood_;
    std::string taken_from_;
};

// What a control shows, as entries keep it.
[[nodiscard]] std::string shown_in_entry(const controls::Control& control);
// What stands in the columns of the row that nobody types in.
[[nodiscard]] std::string row_label(const controls::Grid& grid, int row);

}  // namespace brimley::entries
