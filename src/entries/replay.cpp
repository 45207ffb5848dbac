#include "entries/replay.h"

#include <fmt/format.h>

#include <deque>
#include <utility>

#include "controls/combo_box.h"
#include "controls/date_range.h"
#include "controls/fields.h"
#include "controls/grid.h"
#include "entries/recorder.h"

namespace brimley::entries {

namespace {

using controls::Act;
using controls::Control;
using controls::Grid;
using controls::Refusal;
using frame::Mode;

// Nothing is written while it lives.
class WithoutWriting {
  public:
    explicit WithoutWriting(const frame::Form& form) : workspace_(form.context().dbe) {
        if (workspace_) workspace_->let_write(false);
    }
    ~WithoutWriting() {
        if (workspace_) workspace_->let_write(true);
    }
    WithoutWriting(const WithoutWriting&) = delete;
    WithoutWriting& operator=(const WithoutWriting&) = delete;

  private:
    std::shared_ptr<store::Workspace> workspace_;
};

// Null for a control of another kind.
template <class Kind>
Kind* as(Control* control) {
    return dynamic_cast<Kind*>(control);
}

// The item may stand elsewhere in the list by now.
Refusal pick(controls::ComboBox& combo, const Act& act) {
    const auto& items = combo.items();
    const auto row = static_cast<std::size_t>(act.row);
    const bool same = row < items.size() && !items[row].empty() && items[row].front() == act.text;
    return same ? combo.pick(act.row) : combo.type(act.text);
}

Refusal on_field(Control& control, const Act& act) {
    if (auto* const field = as<controls::TextField>(&control)) {
        if (act.kind == Act::Kind::type) return field->type(act.text);
        if (act.kind == Act::Kind::enter) return field->press_enter();
        return field->leave(), Refusal::none;
    }
    auto* const combo = as<controls::ComboBox>(&control);
    if (combo == nullptr) return Refusal::hidden;
    switch (act.kind) {
        case Act::Kind::type:
            return combo->type(act.text);
        case Act::Kind::enter:
            return combo->press_enter();
        case Act::Kind::pick:
            return pick(*combo, act);
        default:
            return combo->leave(), Refusal::none;
    }
}

Refusal on_box(Control& control, const Act& act) {
    if (act.kind != Act::Kind::click) {
        auto* const check = as<controls::CheckBox>(&control);
        return check == nullptr ? Refusal::hidden : check->click(act.kind == Act::Kind::tick);
    }
    if (auto* const option = as<controls::OptionButton>(&control)) return option->click();
    auto* const button = as<controls::PushButton>(&control);
    return button == nullptr ? Refusal::hidden : button->click();
}

Refusal on_grid(Grid& grid, const Act& act) {
    switch (act.kind) {
        case Act::Kind::visit_cell:
            return grid.visit_cell(act.row, act.column);
        case Act::Kind::open_editor:
            return grid.open_editor(act.row, act.column);
        case Act::Kind::leave_editor:
            // The form kept the editor closed then, or keeps it closed now.
            return grid.editor_is_open() ? grid.leave_editor(act.text) : Refusal::locked;
        case Act::Kind::double_click:
            return grid.double_click(act.row);
        default:
            return grid.abandon_editor(), Refusal::none;
    }
}

Refusal do_again(frame::Form& form, const Act& act) {
    if (act.kind == Act::Kind::press) return form.press(act.row);
    Control* const control = form.controls().find(act.control);
    if (control == nullptr) return Refusal::hidden;
    switch (act.kind) {
        case Act::Kind::type:
        case Act::Kind::enter:
        case Act::Kind::leave:
        case Act::Kind::pick:
            return on_field(*control, act);
        case Act::Kind::click:
        case Act::Kind::tick:
        case Act::Kind::untick:
            return on_box(*control, act);
        case Act::Kind::choose_page: {
            auto* const tabs = as<controls::TabControl>(control);
            return tabs == nullptr ? Refusal::hidden : tabs->choose(act.row);
        }
        case Act::Kind::type_range: {
            auto* const range = as<controls::DateRange>(control);
            return range == nullptr ? Refusal::hidden : range->type(act.text, act.other_text);
        }
        case Act::Kind::close_pane: {
            auto* const pane = as<controls::Frame>(control);
            return pane == nullptr ? Refusal::hidden : pane->close();
        }
        default: {
            auto* const grid = as<Grid>(control);
            return grid == nullptr ? Refusal::hidden : on_grid(*grid, act);
        }
    }
}

// Takes the user's place for as long as it lives.
class InPlaceOfUser {
  public:
    InPlaceOfUser(const std::function<void(StandIn*)>& stand_in, StandIn& replay) : stand_in_(stand_in) {
        stand_in_(&replay);
    }
    ~InPlaceOfUser() { stand_in_(nullptr); }
    InPlaceOfUser(const InPlaceOfUser&) = delete;
    InPlaceOfUser& operator=(const InPlaceOfUser&) = delete;

  private:
    const std::function<void(StandIn*)>& stand_in_;
};

class Replay : public StandIn {
  public:
    Replay(frame::Form& form, const Entry& entry, const RunAct& run, const CallHost& call_host)
        : form_(form), entry_(entry), run_(run), call_host_(call_host), now_(entry.head.begun) {}

    [[nodiscard]] store::DateTime now() const override { return now_; }
    [[nodiscard]] bool answer() override {
        if (answers_.empty()) {
            end("The form asks something that it did not ask before.");
            return false;
        }
        const bool yes = answers_.front();
        answers_.pop_front();
        return yes;
    }

    Replayed run() {
        if (bring_to_begin()) do_steps();
        if (result_.ended_because.empty()) compare();
        return std::move(result_);
    }

  private:
    void end(std::string why) {
        if (result_.ended_because.empty()) result_.ended_because = std::move(why);
    }

    // In the read mode, on the document that was being edited.
    bool bring_to_begin() {
        if (form_.mode() != Mode::read) {
            answers_ = {false};  // what stands there is not to be saved
            const int id = form_.mode() == Mode::new_entry ? frame::command::kNew : frame::command::kEditMode;
            static_cast<void>(run_([&] { return form_.press(id); }));
            answers_.clear();
            if (form_.mode() != Mode::read) {
                end("Another entry is open in the form.");
                return false;
            }
        }
        return !entry_.head.edit || bring_document();
    }

    bool bring_document() {
        const EntryHead& head = entry_.head;
        const auto is_there = [&] {
            return !head.document_key.empty() && form_.document_key() == head.document_key;
        };
        if (!is_there() && !run_([&] { return form_.bring_document(head.document, head.document_key); }))
            end(fmt::format("Document {} cannot be shown.", head.document));
        if (!is_there()) end(fmt::format("Document {} no longer exists.", head.document));
        return result_.ended_because.empty();
    }

    void do_steps() {
        for (const Step& step : entry_.steps) {
            if (!same_row(step)) return end("A line of the list belongs to another item now.");
            now_ = step.at;
            answers_.assign(step.answers.begin(), step.answers.end());
            const bool done = run_([&] { return do_step(step.act); });
            if (!result_.ended_because.empty()) return;
            if (!done) return end("Something can no longer be entered.");
            if (form_.mode() == Mode::read) return end("The form no longer lets it begin.");
        }
    }

    [[nodiscard]] Refusal do_step(const Act& act) {
        if (act.kind != Act::Kind::host_call) return do_again(form_, act);
        return call_host_(act) ? Refusal::none : Refusal::disabled;
    }

    [[nodiscard]] bool same_row(const Step& step) const {
        if (step.row_label.empty()) return true;
        const auto* const grid = as<Grid>(form_.controls().find(step.act.control));
        return grid == nullptr || row_label(*grid, step.act.row) == step.row_label;
    }

    void compare() {
        for (const Control* const control : form_.controls().all()) {
            const auto stood = entry_.stood.find(control->name());
            const std::string before = stood == entry_.stood.end() ? std::string() : stood->second;
            if (shown_in_entry(*control) != before) result_.differences.push_back(control->name());
        }
    }

    frame::Form& form_;
    const Entry& entry_;
    const RunAct& run_;
    const CallHost& call_host_;
    store::DateTime now_;
    std::deque<bool> answers_;
    Replayed result_;
};

}  // namespace

Replayed take_up(frame::Form& form, const Entry& entry, const RunAct& run, const CallHost& call_host,
                 const std::function<void(StandIn*)>& stand_in) {
    Replay replay(form, entry, run, call_host);
    const WithoutWriting without_writing(form);
    const InPlaceOfUser in_place_of_user(stand_in, replay);
    return replay.run();
}

}  // namespace brimley::entries
