// Faults while a form keeps how it looks: fonts, widths and order of columns, its toolbar, recent values.
// Each row is kept by itself: it is as before or as it should be, never anything between, and a row that
// fails once does not keep the others from being stored.
#include <sstream>

#include "support/fault_sweep.h"

namespace brimley::testing {

namespace {

class OpenedForm : public invoices::APform_invoice {
  public:
    using APform_invoice::APform_invoice;
    using APform_invoice::save_recent_value;
    using APform_invoice::show_even_row_color;
};

struct LookWriter {
    const char* name;
    void (*prepare)(OpenedForm& form);
    void (*keep)(OpenedForm& form);
    bool writes_one_row;
};

void change_columns(OpenedForm& form) {
    EXPECT_EQ(form.dbgrid1.resize_column(0, 1234), controls::Refusal::none);
    EXPECT_EQ(form.dbgrid1.resize_column(1, 2345), controls::Refusal::none);
    EXPECT_EQ(form.dbgrid1.move_column(2, 0), controls::Refusal::none);
    EXPECT_EQ(form.press(209), controls::Refusal::none);
}

void change_fonts(OpenedForm& form) {
    EXPECT_EQ(form.dbgrid1.user_selects_columns(controls::Grid::Range{0, 3}), controls::Refusal::none);
    for (const int command : {403, 404, 407})
        EXPECT_EQ(form.press(command), controls::Refusal::none);
}

const std::vector<LookWriter> kLookWriters{
    {"Exit", change_columns, [](OpenedForm& form) { (void)form.press(100); }, false},
    {"SaveFont", change_fonts, [](OpenedForm& form) { (void)form.press(401); }, false},
    {"EvenRows", [](OpenedForm&) {}, [](OpenedForm& form) { form.show_even_row_color(false); }, true},
    {"RecentValue", [](OpenedForm&) {},
     [](OpenedForm& form) { form.save_recent_value("evenrow_color", "7"); }, true},
};

struct LookSession : FaultedDesk {
    explicit LookSession(const LookWriter& writer) : FaultedDesk(new_company()) {
        form->show();
        writer.prepare(*form);
        remember_tables();
    }
    std::shared_ptr<OpenedForm> form = std::make_shared<OpenedForm>(
        user.ap, std::make_shared<kernel::ModuleG3>(faulty_company.database, user.desk), user.desk);
};

std::vector<std::string> rows_of(const std::string& table) {
    std::istringstream text(table);
    std::vector<std::string> rows;
    for (std::string row; std::getline(text, row);)
        rows.push_back(row);
    return rows;
}

// How many rows are as they should be and were not before. A row that is neither fails the test.
int rows_kept(const AllTables& before, const AllTables& after, const AllTables& now) {
    int kept = 0;
    for (const auto& [name, text] : now) {
        const auto rows = rows_of(text), old_rows = rows_of(before.at(name)),
                   new_rows = rows_of(after.at(name));
        EXPECT_EQ(rows.size(), old_rows.size()) << name;
        for (std::size_t i = 0; i < std::min(rows.size(), old_rows.size()); ++i) {
            EXPECT_THAT(rows[i], ::testing::AnyOf(old_rows[i], new_rows[i])) << name;
            kept += rows[i] == new_rows[i] && rows[i] != old_rows[i] ? 1 : 0;
        }
    }
    return kept;
}

}  // namespace

// A fault, and how many calls there are from one that fails to the next.
class LookFaults : public ::testing::TestWithParam<std::tuple<SweptFault, int>> {
  protected:
    static void sweep(const LookWriter& writer) {
        const auto& [fault, stride] = GetParam();
        LookSession whole(writer);
        writer.keep(*whole.form);
        const AllTables after = all_tables(whole.company.db());
        const int all_rows = rows_kept(whole.before, after, after);
        ASSERT_EQ(all_rows == 1, writer.writes_one_row);
        bool reached = true;
        for (int nth = 1; reached && !HasFailure(); nth += stride) {
            SCOPED_TRACE(fmt::format("{} call {}", writer.name, nth));
            LookSession session(writer);
            reached =
                session.with_fault(nth, fault.kind, fault.for_good, [&] { writer.keep(*session.form); });
            const int kept = rows_kept(session.before, after, all_tables(session.company.db()));
            EXPECT_FALSE(session.faulty_company.workspace->in_transaction());
            if (!reached) {
                EXPECT_EQ(kept, all_rows);
            }
        }
    }
};

TEST_P(LookFaults, LeaveEachRowAsItWasOrAsItShouldBe) {
    for (const LookWriter& writer : kLookWriters)
        sweep(writer);
}

std::string look_fault_name(const ::testing::TestParamInfo<LookFaults::ParamType>& fault) {
    return std::get<0>(fault.param).name;
}

INSTANTIATE_TEST_SUITE_P(Night, LookFaults,
                         ::testing::Combine(::testing::ValuesIn(kSweptFaults), ::testing::Values(1)),
                         look_fault_name);
INSTANTIATE_TEST_SUITE_P(Each, LookFaults,
                         ::testing::Combine(::testing::Values(kSweptFaults.front()), ::testing::Values(11)),
                         look_fault_name);

}  // namespace brimley::testing
