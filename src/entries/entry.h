// What a person has entered into a form since New or Edit, as a list of what was done: enough to do it again
// after the program was closed or killed.
//
// As a text it is one line a fact, its fields parted by tabs; README.md lists them. A line that was cut off
// at the end, as a power cut leaves it, is ignored.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/act.h"
#include "kernel/store/value.h"

namespace brimley::entries {

struct EntryHead {
    std::string company;  // as it may be shown: without a password
    std::string user;
    std::string form;  // "APform_invoice"
    store::DateTime begun;
    bool edit = false;       // of a stored document, or a new one
    std::string document{};  // its number, and its key
    std::string document_key{};
};

struct Step {
    store::DateTime at;
    controls::Act act;
    std::vector<bool> answers{};  // to the questions that it asked
    // Of a visit to a cell: what stood before in those columns of its row that nobody types in.
    std::string row_label{};
};

// Typed, and not yet handed over to the form.
struct Pending {
    std::string control;
    int row = -1;  // of a cell; -1: of a field
    int column = -1;
    std::string text;
    bool operator==(const Pending&) const = default;
};

struct Entry {
    EntryHead head;
    std::vector<Step> steps{};  // the first one has begun it
    std::optional<Pending> pending{};
    // What each control showed after the last step, by its name; of a grid a number that its texts make.
    std::map<std::string, std::string> stood{};
    // The program ended in the middle of a save, or did not know whether one was stored.
    bool save_in_doubt = false;
    // It was being taken up again from the entry of this name.
    std::string taken_from{};
};

// Whether the user has done more than to begin and to look around.
[[nodiscard]] bool enters_something(controls::Act::Kind kind);
[[nodiscard]] bool holds_anything(const Entry& entry);

// The lines, each with its end.
[[nodiscard]] std::string line_of(const EntryHead& head);
[[nodiscard]] std::string line_of(const Step& step);
[[nodiscard]] std::string line_of(const Pending& pending);
[[nodiscard]] std::string line_of_saving();
[[nodiscard]] std::string line_of_stood(std::string_view control, std::string_view shown);
[[nodiscard]] std::string line_of_doubt(bool in_doubt);
[[nodiscard]] std::string line_of_taken_from(std::string_view name);

// Empty for a text that is none, or that has no step.
[[nodiscard]] std::optional<Entry> read_entry(std::string_view text);

}  // namespace brimley::entries
