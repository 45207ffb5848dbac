// The first invoice, by keys into the window and by the console's script: the same books.
#include <map>
#include <sstream>

#include "console/script_run.h"
#include "desktop/live_desk.h"

namespace brimley::testing {

namespace {

constexpr const char* kTablesWritten[] = {
    "AP_header_table",    "AP_transaction_table",     "GL_header_table", "GL_transaction_table",
    "Balance_table",      "Balance_period_table",     "Vendor_table",    "Next_number_fkey_table",
    "Docno_master_table", "Next_number_format_table",
};

}  // namespace

class FirstInvoice : public LiveDesk {
  protected:
    void play_in_console(CompanyCopy& copy) {
        frame::HostContext context = static_cast<frame::HostContext&>(ap);
        context.dbe = copy.open().workspace;
        context.abcdb = copy.open().database;
        std::ostringstream printed;
        console::Console console(context, printed);
        console::run_script_file(console, BRIMLEY_SOURCE_DIR "/data/first_invoice.session");
        ASSERT_NE(printed.str().find("message: Add new Invoice complete"), std::string::npos)
            << printed.str();
    }

    // Enter takes the user from field to field.
    void type_header() {
        pick_from_menu(Qt::Key_E, Qt::Key_N);
        const std::map<std::string, QString> typed{{"cmbdoctype", "Invoice"},
                                                   {"cmbvendor", "V1001"},
                                                   {"txtinvno", "BCT-20417"},
                                                   {"cmbterm", "2% 10 days, net 30"}};
        for (int fields = 0; focus() != "dbgrid1"; ++fields) {
            ASSERT_LT(fields, 30) << "the lines are never reached; the user is in " << focus();
            if (const auto found = typed.find(focus()); found != typed.end()) keys(found->second);
            key(Qt::Key_Return);
        }
    }

    // Forwards to the account, then back to the tax code and the amount.
    void type_line() {
        while (column_here() != "description")
            key(Qt::Key_Return);
        keys("Green coffee, 20 bags");
        while (column_here() != "purchase account")
            key(Qt::Key_Return);
        keys("5000");
        key(Qt::Key_Backtab);
        keys("STACK");
        key(Qt::Key_Backtab);
        ASSERT_EQ(column_here(), "taxable amount");
        keys("100.00");
        key(Qt::Key_Return);
        window().settle();
    }

    std::string column_here() {
        return lines().grid().columns.at(static_cast<std::size_t>(lines().currentIndex().column())).caption;
    }
};

TEST_F(FirstInvoice, TypedByKeysStoresWhatTheConsoleStores) {
    show_invoice();
    type_header();
    type_line();
    EXPECT_EQ(line("txttotal").text(), "112.35");
    EXPECT_EQ(line("txtduedate").text(), "15/04/2026");

    key(Qt::Key_S, Qt::ControlModifier);

    EXPECT_EQ(boxes, std::vector<std::string>{"Add new Invoice complete"});
    window().settle();
    EXPECT_EQ(line("txtdocno").text(), "IP-26-00001");
    EXPECT_EQ(window().mode_shown(), "Read");
    CompanyCopy other{sample_original()};
    play_in_console(other);
    for (const char* table : kTablesWritten) {
        const std::string query = std::string("SELECT * FROM ") + table;
        EXPECT_TRUE(company.list(query) == other.list(query)) << table << " differs";
    }
    EXPECT_EQ(company.list("SELECT docno, vendor_no FROM AP_header_table"), "IP-26-00001 V1001");
}

}  // namespace brimley::testing
