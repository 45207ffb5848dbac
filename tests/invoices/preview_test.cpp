// The query that a preview sends to the host: its rows are the lines in the order of the screen.
#include <gtest/gtest.h>

#include "support/sample_host.h"

namespace brimley::testing {

class Preview : public ::testing::TestWithParam<const char*> {
  protected:
    // Line n has the amount n.
    void save_document(int lines) {
        user.ap.showform_APform_invoice();
        EnteredInvoice document;
        document.kind = GetParam();
        enter(form(), document);
        for (int row = 0; row < lines; ++row) {
            edit_line_cell(form(), row, "purchase account", "5000");
            edit_line_cell(form(), row, "tax code", "NOTAX");
            edit_line_cell(form(), row, "gross amount", std::to_string(row + 1).c_str());
        }
        ASSERT_EQ(form().press(frame::command::kSave), controls::Refusal::none);
        ASSERT_EQ(form().mode(), frame::Mode::read);
    }
    [[nodiscard]] invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    [[nodiscard]] std::string query_of_preview() {
        user.notifications.clear();
        EXPECT_EQ(form().press(frame::command::kPreview), controls::Refusal::none);
        if (user.notifications.size() != 1) return {};
        const std::string& request = user.notifications.front();
        const std::size_t start = request.find('|') + 1;
        return request.substr(start, request.find('|', start) - start);
    }

    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_P(Preview, LineTenComesAfterLineNine) {
    save_document(11);
    const std::string query = query_of_preview();
    ASSERT_FALSE(query.empty());
    int line = 0;
    for (auto rows = company.snapshot(query); !rows.at_eof(); rows.MoveNext())
        EXPECT_EQ(rows.text("pay_item"), std::to_string(++line));
    EXPECT_EQ(line, 11);
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, Preview, ::testing::Values("Invoice", "Debit Note", "Credit Note"));

}  // namespace brimley::testing
