// The desk that tests give to forms: what Recording keeps, and the forms on the screen.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "frame/desk.h"
#include "frame/form.h"
#include "support/recording_outside.h"

namespace brimley::testing {

class RecordingDesk : public Recording<frame::Desk> {
  public:
    void form_shown(std::shared_ptr<frame::Form> form) override {
        open_forms.push_back(std::move(form));
        if (on_shown) on_shown(*open_forms.back());
    }
    void child_shown(frame::Form& /*owner*/, std::shared_ptr<frame::Form> child) override {
        open_forms.push_back(std::move(child));
    }
    void form_raised(frame::Form& form) override { raised.push_back(&form); }
    void form_closed(frame::Form& form) override {
        ++closed;
        std::erase_if(open_forms, [&](const auto& open) { return open.get() == &form; });
    }

    [[nodiscard]] bool folder_exists(const std::string& path) override { return folders.contains(path); }
    bool make_folder(const std::string& path) override { return folders.insert(path).second; }

    std::vector<std::shared_ptr<frame::Form>> open_forms;  // oldest first, children too
    std::function<void(frame::Form&)> on_shown;
    std::vector<frame::Form*> raised;
    int closed = 0;
    std::set<std::string> folders;  // those that there are, as the forms have named them
};

}  // namespace brimley::testing
