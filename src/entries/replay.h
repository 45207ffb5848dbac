// Takes a kept entry up again: does to a form what its user had done, at the same times, with the same
// answers.
//
// Nothing is stored meanwhile: a save that had failed fails again. Messages that the user has seen are not
// shown once more. It ends at the first act that is not possible any more, for instance because a row of a
// list holds another document now; and what stands there afterwards is compared with what stood there before.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "entries/entry.h"
#include "frame/form.h"

namespace brimley::entries {

// In place of the user and the clock, while an entry is being taken up.
class StandIn {
  public:
    virtual ~StandIn() = default;
    [[nodiscard]] virtual store::DateTime now() const = 0;
    // The answer that was given then. Questions that were not asked then are answered with No, and the replay
    // ends.
    [[nodiscard]] virtual bool answer() = 0;
};

struct Replayed {
    // Why it ended before the last act; empty when it did not.
    std::string ended_because{};
    // Names of controls that show something else than they did.
    std::vector<std::string> differences{};
    [[nodiscard]] bool stands_as_it_stood() const { return ended_because.empty() && differences.empty(); }
};

// How a host has acts carried out: false when one was refused or has failed.
using RunAct = std::function<bool(const std::function<controls::Refusal()>& act)>;

// What the host had done for the user; false when it cannot be done on this form.
using CallHost = std::function<bool(const controls::Act& act)>;

// stand_in: takes the user's place from now on, or gives it back (null). The form is in its read mode, or is
// brought there.
[[nodiscard]] Replayed take_up(frame::Form& form, const Entry& entry, const RunAct& run,
                               const CallHost& call_host, const std::function<void(StandIn*)>& stand_in);

}  // namespace brimley::entries
