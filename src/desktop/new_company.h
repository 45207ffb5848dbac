// The assistant that makes a new company: its name and place, its country with chart and taxes, its first
// fiscal year, the first bank and the first vendor. Nobody needs more to enter an invoice.
//
// What is wrong is told over the assistant, which stays as it was filled in. No file is ever overwritten.
#pragma once

#include <QWizard>
#include <string>
#include <vector>

#include "company/countries.h"
#include "company/create.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QSpinBox;

namespace brimley::desktop {

inline constexpr const char* kCompanyFileKinds = "Brimley companies (*.brimley);;All files (*)";

class NewCompanyAssistant : public QWizard {
  public:
    // user: gets every right.
    NewCompanyAssistant(QWidget* parent, std::string user);

    // The file or address of the company.
    [[nodiscard]] QString place() const;
    // Makes the company; the assistant ends when it is there.
    void accept() override;

  private:
    [[nodiscard]] QWizardPage* place_page();
    [[nodiscard]] QWizardPage* country_page();
    [[nodiscard]] QWizardPage* bank_page();
    [[nodiscard]] QWizardPage* vendor_page();
    void suggest_place();
    void browse();
    [[nodiscard]] company::CompanyContent content() const;

    std::string user_;
    std::vector<company::Country> countries_;
    bool place_is_own_ = false;  // typed or chosen, so it does not follow the name any more
    bool is_made_ = false;       // ending looks at the page once more, and the file is there now
    QLineEdit* name_ = nullptr;
    QLineEdit* place_ = nullptr;
    QCheckBox* sample_ = nullptr;
    QComboBox* country_ = nullptr;
    QLineEdit* currency_ = nullptr;
    QSpinBox* year_ = nullptr;
    QComboBox* month_ = nullptr;
    QLineEdit* bank_code_ = nullptr;
    QLineEdit* bank_name_ = nullptr;
    QLineEdit* bank_branch_ = nullptr;
    QLineEdit* vendor_no_ = nullptr;
    QLineEdit* vendor_name_ = nullptr;
    QPlainTextEdit* vendor_address_ = nullptr;
};

}  // namespace brimley::desktop
