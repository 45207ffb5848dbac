// A piece of a form with a subject of its own: its lines, its taxes, its save, its posting.
//
// A part has the form's services, which are protected in Form, and owns the state of its subject. It knows
// the form that it belongs to by a reference to what it needs of it: the form itself, or the controls and
// lines that it was handed. A form holds its parts as members, declared after its controls; a part of a
// single act, such as the fill of a list, lives in an object of that act. A part must not use the form while
// both are being constructed.
#pragma once

#include <string>
#include <utility>

#include "frame/form.h"

namespace brimley::frame {

class FormPart {
  public:
    FormPart(const FormPart&) = delete;
    FormPart& operator=(const FormPart&) = delete;

  protected:
    explicit FormPart(Form& form) : form_(form) {}
    ~FormPart() = default;

    [[nodiscard]] kernel::ModuleG3& kernel() const { return form_.kernel(); }
    [[nodiscard]] Desk& desk() const { return form_.desk(); }
    [[nodiscard]] const HostContext& context() const { return form_.context(); }
    [[nodiscard]] const FormIdentity& identity() const { return form_.identity(); }
    [[nodiscard]] const kernel::UserRights& rights() const { return form_.rights(); }
    [[nodiscard]] Mode mode() const { return form_.mode(); }

    void tell(const std::string& text) const { form_.tell(text); }
    [[nodiscard]] bool fail(const std::string& why) const { return form_.fail(why); }
    void tell_failure(const std::string& text = {}) const { form_.tell_failure(text); }
    // Shows the message and returns false, as a check that has failed does.
    [[nodiscard]] bool refuse(const std::string& text) const { return form_.refuse(text); }
    [[nodiscard]] bool still_may_update() const { return form_.still_may_update(); }
    [[nodiscard]] bool ask(const std::string& text, const std::string& title = {}) const {
        return form_.ask(text, title);
    }
    void notify(const std::string& formx, const std::string& docnox = {},
                const std::string& arg2 = {}) const {
        form_.notify(formx, docnox, arg2);
    }

    template <class Step>
    bool step(const char* name, Step&& action) const {
        return form_.step(name, std::forward<Step>(action));
    }
    // How many steps have failed so far, including those within the kernel's routines, and the last one's
    // message.
    [[nodiscard]] std::int64_t failed_steps() const { return form_.failed_steps(); }
    [[nodiscard]] std::string last_failure() const { return form_.last_failure(); }
    template <class Action>
    bool in_transaction(const char* name, Action&& action, std::string* failure = nullptr) const {
        return form_.in_transaction(name, std::forward<Action>(action), failure);
    }

    [[nodiscard]] auto rows_of(std::string query) const { return form_.rows_of(std::move(query)); }

    template <class Date>
    [[nodiscard]] std::string date_text(const Date& date) const {
        return form_.date_text(date);
    }

  private:
    Form& form_;
};

}  // namespace brimley::frame
