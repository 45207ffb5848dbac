// A host on a copy of the sample company: the user anna at a desk of her own.
#pragma once

#include <string>
#include <vector>

#include "host/apclass.h"
#include "invoices/apform_invoice.h"
#include "support/recording_desk.h"
#include "support/sample_company.h"

namespace brimley::testing {

// One user's host object on an open company.
class DeskOfUser {
  public:
    explicit DeskOfUser(const store::OpenCompany& company) {
        ap.dbe = company.workspace;
        ap.abcdb = company.database;
        ap.BASE_CURRENCY = "USD";
        ap.BRIMLEY_PATH = "C:\\Brimley";
        ap.BRIMLEY_USER = "anna";
        ap.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
        ap.BRIMLEY_NO_PERIODS = "12";
        ap.NotifyClients = [this](const std::string& formx, const std::string& docnox,
                                  const std::string& arg2) {
            notifications.push_back(formx + "|" + docnox + "|" + arg2);
        };
    }

    [[nodiscard]] std::vector<std::string> messages() { return desk.take_messages(); }

    RecordingDesk desk;
    std::vector<std::string> notifications;
    host::APclass ap{desk};
};

struct EnteredLine {
    const char* account;
    const char* tax_code;
    const char* caption;  // of the amount that is typed
    const char* amount;
};

struct EnteredInvoice {
    const char* kind = "Invoice";
    const char* vendor = "V1001";
    const char* currency = "USD";
    const char* rate = "";
    std::vector<EnteredLine> lines;
};

inline void edit_line_cell(invoices::APform_invoice& form, int row, const char* caption, const char* text) {
    const int column = form.dbgrid1.get_column(caption);
    EXPECT_EQ(form.dbgrid1.edit_cell(row, column, text), controls::Refusal::none) << caption;
}

// Presses New and enters the document as a user would; it is not saved yet.
inline void enter(invoices::APform_invoice& form, const EnteredInvoice& invoice) {
    using controls::Refusal;
    EXPECT_EQ(form.press(105), Refusal::none);
    EXPECT_EQ(form.cmbdoctype.type(invoice.kind), Refusal::none);
    EXPECT_EQ(form.cmbvendor.type(invoice.vendor), Refusal::none);
    EXPECT_EQ(form.cmbterm.type("2% 10 days, net 30"), Refusal::none);
    EXPECT_EQ(form.cmbcurrency.type(invoice.currency), Refusal::none);
    if (*invoice.rate != '\0') {
        EXPECT_EQ(form.cmbexrate.type(invoice.rate), Refusal::none);
    }
    int row = 0;
    for (const EnteredLine& line : invoice.lines) {
        edit_line_cell(form, row, "purchase account", line.account);
        edit_line_cell(form, row, "tax code", line.tax_code);
        edit_line_cell(form, row, line.caption, line.amount);
        ++row;
    }
}

}  // namespace brimley::testing
