// Finding a company, and making a new one.
#pragma once

#include <QString>
#include <optional>
#include <string>

#include "company/secret.h"
#include "kernel/store/database.h"

class QWidget;

namespace brimley::desktop {

// The file or server that the user names; empty when the dialog was cancelled.
[[nodiscard]] std::optional<QString> ask_for_company_file(QWidget* parent);
[[nodiscard]] std::optional<QString> ask_for_server(QWidget* parent);

// The password of the person that the program is to work as; empty when the dialog was cancelled.
[[nodiscard]] std::optional<company::Secret> ask_for_password(const std::string& user);

// Asks where and what, makes the company for `user`, and returns its path. Empty when the dialog was
// cancelled, or when the company could not be made, which was shown.
[[nodiscard]] std::optional<QString> make_new_company(QWidget* parent, const std::string& user);

// Asks for a file, copies the company into it while people work in it, and says whether its books agree.
void back_up_company(QWidget* parent, const std::string& company);
// Recomputes the books of the company and shows what differs. Forms may be open on it.
void check_company(QWidget* parent, const store::OpenCompany& company);

// The sample company of this user, made when it is not there yet. Throws std::exception when it cannot be
// made.
[[nodiscard]] QString sample_company(const std::string& user);

}  // namespace brimley::desktop
