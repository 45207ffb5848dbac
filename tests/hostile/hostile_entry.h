// Hostile texts through every field that is typed: each is stored as it was typed or refused with a message.
// It never becomes part of a statement, so nothing else may differ from what the same act leaves with a text
// that is harmless.
//
// The fields are read from the form itself. A further form gives a way to an entry that can be saved.
#pragma once

#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "support/sample_host.h"

namespace brimley::testing {

// A form with an entry on a company of its own. What was saved before the entry begins stands in the
// original, so that it is saved once and not for each field.
class HostileSession {
  public:
    explicit HostileSession(CompanyOriginal& original = sample_original()) : company(original) {}
    virtual ~HostileSession() = default;
    [[nodiscard]] virtual frame::Form& form() = 0;

    CompanyCopy company;
    DeskOfUser user{company.open()};
};

struct HostileEntry {
    const char* name;
    std::unique_ptr<HostileSession> (*begin)();
    // What the user presses when everything is typed.
    std::vector<int> commands;
    // Fields that keep any text which the engine can keep.
    std::vector<std::string> keeping_fields;
    // Those of them that an index covers.
    std::vector<std::string> indexed_fields = {};
};

struct HostileText {
    const char* name;
    std::string text;
    bool server_can_keep = true;
    bool server_can_index = true;
};

inline void PrintTo(const HostileEntry& entry, std::ostream* out) { *out << entry.name; }
inline void PrintTo(const HostileText& text, std::ostream* out) { *out << text.name; }

// Types the text into each field in turn, each time in an entry of its own, and checks what came of it.
void type_everywhere(const HostileEntry& entry, const HostileText& hostile);

}  // namespace brimley::testing
