// The models of a form's controls: what a control holds and how it looks, without any toolkit.
//
// What code does and what a user does are different calls, and mixing them up is the one mistake to avoid
// here:
//
//   code assigns   txtinvdate.set("15/01/2026")     no event fires; a handler that must run is called by name
//   a user acts    txtinvdate.type("15/01/2026")    refused when hidden, disabled or locked; the handlers run
//
// Desktop, console and scripted tests use the second language only, so that whatever one of them can do, the
// others can.
//
// A control belongs to its form, is registered there under its name, and lives as long as the form.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/act.h"

namespace brimley::controls {

// A colour number: red in the low byte, then green, then blue. 0x80000018 and its like are colours of the
// system.
using Colour = std::uint32_t;

inline constexpr Colour kWhite = 0xffffff;
inline constexpr Colour kReadOnlyBack = 0x80000018;  // the system's info background

constexpr Colour rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | (green << 8) | (blue << 16);
}

// Why a user's act did not take place.
enum class Refusal { none, hidden, disabled, locked };

class ControlSet;

class Control {
  public:
    Control(ControlSet& set, std::string name);
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }

    [[nodiscard]] bool visible() const { return visible_; }
    [[nodiscard]] bool enabled() const { return enabled_; }
    [[nodiscard]] bool locked() const { return locked_; }
    [[nodiscard]] Colour back_colour() const { return back_colour_; }
    void set_visible(bool visible) { change(visible_, visible); }
    void set_enabled(bool enabled) { change(enabled_, enabled); }
    void set_locked(bool locked) { change(locked_, locked); }
    void set_back_colour(Colour colour) { change(back_colour_, colour); }
    // The face that the control's text is shown in; empty: the host's own.
    [[nodiscard]] const std::string& font_name() const { return font_name_; }
    void set_font_name(std::string font_name) { change(font_name_, std::move(font_name)); }

    // The frame or the pages that this control lies in, or null. While they are hidden it cannot be reached.
    [[nodiscard]] Control* container() const { return container_; }
    void lies_in(Control& frame) { container_ = &frame; }
    // Nor can one whose form has been taken down.
    [[nodiscard]] bool reachable() const;

    // What stops a user from changing this control now.
    [[nodiscard]] Refusal refusal() const;
    // The value as a text, as the control shows it.
    [[nodiscard]] virtual std::string shown() const = 0;

    // Called after anything that can be seen has changed.
    std::function<void()> on_shown_change;

  protected:
    template <class T, class U>
    void change(T& member, U&& value) {
        if (member == value) return;
        member = std::forward<U>(value);
        tell();
    }
    void tell() const {
        if (on_shown_change) on_shown_change();
    }
    // The user has acted on this control; the name is filled in.
    void acted(Act act) const;
    [[nodiscard]] ActListener* listener() const;

  private:
    const ControlSet& set_;
    std::string name_;
    std::string font_name_;
    bool visible_ = true;
    bool enabled_ = true;
    bool locked_ = false;
    Colour back_colour_ = kWhite;
    Control* container_ = nullptr;
};

// A form's controls in the order of their declaration.
class ControlSet {
  public:
    ControlSet() = default;
    ControlSet(const ControlSet&) = delete;
    ControlSet& operator=(const ControlSet&) = delete;

    // Null when the form has no control of this name. Ignores case.
    [[nodiscard]] Control* find(std::string_view name) const;
    [[nodiscard]] const std::vector<Control*>& all() const { return controls_; }

    // The form has gone: users reach none of its controls any more.
    void close() { closed_ = true; }
    [[nodiscard]] bool closed() const { return closed_; }

    // Told from now on what the user does; null: nobody is.
    void listen(ActListener* listener) { listener_ = listener; }
    [[nodiscard]] ActListener* listener() const { return listener_; }

  private:
    friend class Control;
    std::vector<Control*> controls_;
    ActListener* listener_ = nullptr;
    bool closed_ = false;
};

// ASCII upper case: prefixes of control names are compared so.
std::string upper_case(std::string_view text);
// True when the two texts differ at most in the case of ASCII letters.
bool same_ignoring_case(std::string_view a, std::string_view b);

}  // namespace brimley::controls
