#include "entries/recorder.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace brimley::entries {

namespace {

using controls::Act;
using controls::Control;
using controls::Grid;
using frame::Mode;

constexpr std::size_t kLabelMax = 200;  // letters

// FNV-1a: a number that tells texts apart, not one that hides them.
class Digest {
  public:
    void add(std::string_view text) {
        for (const char c : text)
            add_byte(static_cast<unsigned char>(c));
        add_byte(0xff);  // in no text
    }
    [[nodiscard]] std::string text() const { return fmt::format("{:016x}", value_); }

  private:
    void add_byte(unsigned char byte) { value_ = (value_ ^ byte) * 1099511628211U; }
    std::uint64_t value_ = 14695981039346656037U;
};

}  // namespace

std::string shown_in_entry(const Control& control) {
    const auto* const grid = dynamic_cast<const Grid*>(&control);
    if (grid == nullptr) return control.shown();
    // Empty rows below the last are room to type in.
    int rows = grid->array.rows();
    const auto is_empty = [&](int row) {
        for (int column = 0; column < static_cast<int>(grid->columns.size()); ++column)
            if (!grid->array.get(row, column).empty()) return false;
        return true;
    };
    while (rows > 0 && is_empty(rows - 1))
        --rows;
    Digest digest;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < static_cast<int>(grid->columns.size()); ++column)
            digest.add(grid->array.get(row, column));
    return digest.text();
}

std::string row_label(const Grid& grid, int row) {
    std::string label;
    for (std::size_t column = 0; column < grid.columns.size() && label.size() < kLabelMax; ++column) {
        const std::string_view text = grid.array.get(row, static_cast<int>(column));
        if (!grid.columns[column].locked || text.empty()) continue;
        if (!label.empty()) label += ", ";
        label += text;
    }
    return label;
}

Recorder::Recorder(frame::Form& form, Place place, std::function<store::DateTime()> now)
    : alive_(form.shared_from_this()),
      form_(form),
      place_(std::move(place)),
      now_(std::move(now)),
      mode_before_(form.mode()) {
    form_.controls().listen(this);
}

Recorder::~Recorder() {
    form_.controls().listen(nullptr);
    if (file_ != nullptr && !anything_entered_) file_->remove();
}

void Recorder::before_command(int id) {
    if (file_ != nullptr && id == frame::command::kSave) write(line_of_saving(), Disk::waited_for);
}

void Recorder::before_visit(const Grid& grid, int row) {
    if (file_ != nullptr) row_label_ = row_label(grid, row);
}

void Recorder::answered(bool yes) { answers_.push_back(yes); }

void Recorder::acted(const Act& act) {
    const Mode before = std::exchange(mode_before_, form_.mode());
    if (file_ == nullptr) {
        if (before == Mode::read && mode_before_ != Mode::read && form_.is_open()) begin(act);
        answers_.clear();
        return;
    }
    if (!form_.is_open()) return end(anything_entered_);
    const bool saves = act.kind == Act::Kind::press && act.row == frame::command::kSave;
    // Without a question the user has decided nothing: an entry whose first line is empty is left like that.
    if (mode_before_ == Mode::read) return end(anything_entered_ && !saves && answers_.empty());
    // Another document has come to the screen in place of the entry.
    if (!saves && form_.document_shown() != document_) return end(anything_entered_);
    note(act);
}

void Recorder::begin(const Act& act) {
    try {
        file_ = std::make_unique<EntryFile>(place_.folder);
    } catch (const std::system_error& failure) {
        if (on_trouble) on_trouble(failure.what());
        return;
    }
    anything_entered_ = false;
    document_ = form_.document_shown();
    stood_.clear();
    EntryHead head{place_.company,
                   form_.context().BRIMLEY_USER,
                   form_.identity().class_name,
                   now_(),
                   mode_before_ == Mode::edit,
                   document_,
                   form_.document_key()};
    std::string lines = line_of(head);
    if (!taken_from_.empty()) lines += line_of_taken_from(taken_from_);
    write(lines, Disk::later);
    if (file_ != nullptr) note(act);
}

void Recorder::note(const Act& act) {
    anything_entered_ = anything_entered_ || enters_something(act.kind);
    pending_.reset();
    Step step{now_(), act, std::exchange(answers_, {}), std::exchange(row_label_, {})};
    std::string lines = line_of(step);
    const bool in_doubt =
        form_.context().dbe && form_.context().dbe->connection_state() == store::ConnectionState::in_doubt;
    if (in_doubt) lines += line_of_doubt(true);
    write(lines + changes_of_screen(), enters_something(act.kind) ? Disk::waited_for : Disk::later);
}

std::string Recorder::changes_of_screen() {
    std::string lines;
    for (const Control* const control : form_.controls().all()) {
        std::string shown = shown_in_entry(*control);
        std::string& before = stood_[control->name()];
        if (shown == before) continue;
        lines += line_of_stood(control->name(), shown);
        before = std::move(shown);
    }
    return lines;
}

void Recorder::note_pending(const std::optional<Pending>& pending) {
    if (file_ == nullptr || pending == pending_) return;
    pending_ = pending;
    if (pending_) write(line_of(*pending_), Disk::waited_for);
    anything_entered_ = anything_entered_ || pending_;
}

void Recorder::end(bool is_kept) {
    if (!is_kept) file_->remove();
    file_.reset();
    answers_.clear();
    pending_.reset();
    anything_entered_ = false;
    if (is_kept && form_.is_open() && on_left) on_left();
}

void Recorder::drop() {
    if (file_ != nullptr) end(false);
}

void Recorder::takes_from(const std::string& name) { taken_from_ = name; }

void Recorder::taken() {
    if (file_ != nullptr && !taken_from_.empty()) write(line_of_taken_from({}), Disk::waited_for);
    taken_from_.clear();
}

// An entry that cannot be kept is entered all the same.
void Recorder::write(const std::string& lines, Disk disk) {
    try {
        file_->append(lines);
        if (disk == Disk::waited_for) file_->sync();
    } catch (const std::system_error& failure) {
        file_->remove();
        file_.reset();
        if (on_trouble) on_trouble(failure.what());
    }
}

}  // namespace brimley::entries
