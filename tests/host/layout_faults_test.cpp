// Faults while a form keeps how it looks: fonts, widths and order of columns, its toolbar, recent values.
// Each row is kept by itself: it is as before or as it should be, never anything between, and a row that
// fails once does not keep the others from being stored.
#include <sstream>

#include "frame/page_setup.h"
#include "inquiries/apreport_aging.h"
#include "support/fault_sweep.h"

namespace brimley::testing {

namespace {

class OpenedForm : public invoices::APform_invoice {
  public:
    using APform_invoice::APform_invoice;
    using APform_invoice::save_recent_value;
    using APform_invoice::show_even_row_color;
};

using inquiries::APreport_aging;

// Opens a form, changes how it looks, and keeps that.
struct LookWriter {
    const char* name;
    std::shared_ptr<frame::GridForm> (*open)(const frame::HostContext& context,
                                             std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk);
    void (*prepare)(frame::GridForm& form);
    void (*keep)(frame::GridForm& form);
    bool writes_one_row;
};

template <class FormClass>
std::shared_ptr<frame::GridForm> opened(const frame::HostContext& context,
                                        std::shared_ptr<kernel::ModuleG3> kernel, frame::Desk& desk) {
    return std::make_shared<FormClass>(context, std::move(kernel), desk);
}

OpenedForm& invoice(frame::GridForm& form) { return dynamic_cast<OpenedForm&>(form); }

void change_nothing(frame::GridForm&) {}

void change_columns(frame::GridForm& form) {
    EXPECT_EQ(form.dbgrid1.resize_column(0, 1234), controls::Refusal::none);
    EXPECT_EQ(form.dbgrid1.resize_column(1, 2345), controls::Refusal::none);
    EXPECT_EQ(form.dbgrid1.move_column(2, 0), controls::Refusal::none);
    EXPECT_EQ(form.press(209), controls::Refusal::none);
}

void change_fonts(frame::GridForm& form) {
    EXPECT_EQ(form.dbgrid1.user_selects_columns(controls::Grid::Range{0, 3}), controls::Refusal::none);
    for (const int command : {403, 404, 407})
        EXPECT_EQ(form.press(command), controls::Refusal::none);
}

void untick_columns(frame::GridForm& form) {
    EXPECT_EQ(form.press(124), controls::Refusal::none);
    controls::Grid& boxes = dynamic_cast<APreport_aging&>(form).print_columns.grid_sel;
    for (const int row : {1, 3, 5})
        EXPECT_EQ(boxes.edit_cell(row, boxes.get_column("print"), "False"), controls::Refusal::none);
}

// One is stored already.
void change_page_setup(frame::GridForm& form) {
    EXPECT_EQ(form.press(102), controls::Refusal::none);
    auto& setup = dynamic_cast<frame::Form_report_format&>(*form.child());
    setup.cmdsave_Click();
    EXPECT_EQ(setup.txttop.type("20"), controls::Refusal::none);
    EXPECT_EQ(setup.cmborient.type("Portrait"), controls::Refusal::none);
}

void save_page_setup(frame::GridForm& form) {
    dynamic_cast<frame::Form_report_format&>(*form.child()).cmdsave_Click();
}

const std::vector<LookWriter> kLookWriters{
    {"Exit", opened<OpenedForm>, change_columns, [](auto& form) { (void)form.press(100); }, false},
    {"SaveFont", opened<OpenedForm>, change_fonts, [](auto& form) { (void)form.press(401); }, false},
    {"EvenRows", opened<OpenedForm>, change_nothing,
     [](auto& form) { invoice(form).show_even_row_color(false); }, true},
    {"RecentValue", opened<OpenedForm>, change_nothing,
     [](auto& form) { invoice(form).save_recent_value("evenrow_color", "7"); }, true},
    {"PrintColumns", opened<APreport_aging>, untick_columns, [](auto& form) { (void)form.press(124); },
     false},
    {"PageSetup", opened<APreport_aging>, change_page_setup, save_page_setup, true},
};

struct LookSession : FaultedDesk {
    explicit LookSession(const LookWriter& writer) : FaultedDesk(new_company()) {
        form = writer.open(user.ap, std::make_shared<kernel::ModuleG3>(faulty_company.database, user.desk),
                           user.desk);
        form->show();
        writer.prepare(*form);
        remember_tables();
    }
    std::shared_ptr<frame::GridForm> form;
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
