// Entries that are kept while they are entered, and taken up again at another time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "entries/recorder.h"
#include "entries/replay.h"
#include "masters/master_form.h"
#include "payments/invoice_payment/apform_payment.h"
#include "payments/kinds_of_payments.h"
#include "support/sample_host.h"
#include "support/template_entry.h"

namespace brimley::testing {
namespace {

using controls::Refusal;
using entries::Entry;
using entries::Recorder;
using entries::Replayed;
using frame::Mode;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

// What all controls show, grids with every cell.
std::vector<std::string> screen(frame::Form& form) {
    std::vector<std::string> shown;
    for (const controls::Control* const control : form.controls().all()) {
        shown.push_back(control->name() + "=" + entries::shown_in_entry(*control));
        const auto* const grid = dynamic_cast<const controls::Grid*>(control);
        if (grid == nullptr) continue;
        for (int row = 0; row < grid->array.rows(); ++row)
            for (int column = 0; column < static_cast<int>(grid->columns.size()); ++column)
                if (!grid->array.get(row, column).empty())
                    shown.push_back(std::string(grid->array.get(row, column)));
    }
    return shown;
}

class TakeUp : public ::testing::Test {
  protected:
    // One program, from its start to its end, in which what is entered into the newest form is kept.
    struct Program {
        explicit Program(const store::OpenCompany& company) : user(company) {}
        DeskOfUser user;
        std::unique_ptr<Recorder> recorder;
        std::vector<std::string> troubles;
        int left = 0;
    };

    TakeUp() { begin(); }
    // The program is gone from one moment to the next, and another one begins a day later.
    void restart() {
        const auto clock = program->user.desk.clock.plus_days(1);
        program->recorder.reset();
        begin();
        user().desk.clock = clock;
    }
    void begin() {
        program = std::make_unique<Program>(company.open());
        user().desk.on_shown = [this](frame::Form& form) { record(form); };
        user().desk.on_answer = [this](bool yes) { program->recorder->answered(yes); };
    }
    DeskOfUser& user() { return program->user; }

    void record(frame::Form& form) {
        program->recorder = std::make_unique<Recorder>(form, entries::Place{place, company.path()},
                                                       [this] { return user().desk.now(); });
        program->recorder->on_left = [this] { ++program->left; };
        program->recorder->on_trouble = [this](const std::string& why) { program->troubles.push_back(why); };
    }
    invoices::APform_invoice& invoice() {
        user().ap.showform_APform_invoice();
        return *user().ap.frm_invoice;
    }
    std::vector<entries::KeptEntry> kept() {
        return entries::kept_entries(place, company.path(), "anna", "");
    }
    Replayed take_up(frame::Form& form) {
        const auto found = kept();
        if (found.size() != 1) {
            ADD_FAILURE() << found.size() << " entries";
            return {};
        }
        program->recorder->takes_from(found.front().path.filename().string());
        const Replayed result = entries::take_up(
            form, found.front().entry, [](const auto& act) { return act() == Refusal::none; },
            [this](const controls::Act& act) {
                return user().ap.pay_this_invoice(act.text, act.other_text), true;
            },
            [this](entries::StandIn* stand_in) {
                user().desk.answer_instead = nullptr;
                user().desk.now_instead = nullptr;
                if (stand_in == nullptr) return;
                user().desk.answer_instead = [stand_in] { return stand_in->answer(); };
                user().desk.now_instead = [stand_in] { return stand_in->now(); };
            });
        if (result.ended_because.empty()) {
            entries::remove_entry(found.front().path);
            program->recorder->taken();
        }
        return result;
    }
    void expect_whole(const Replayed& result) {
        EXPECT_EQ(result.ended_because, "");
        EXPECT_THAT(result.differences, IsEmpty());
    }

    CompanyCopy company{sample_original()};
    TemporaryFolder folder;
    std::filesystem::path place = folder.file("entries");
    std::unique_ptr<Program> program;
};

const EnteredInvoice kTwoLines{
    .lines = {{"5000", "STACK", "taxable amount", "100.00"}, {"5900", "GST5", "gross amount", "210.00"}}};

TEST_F(TakeUp, InvoiceStandsAsItStoodWhenTheProgramWasKilled) {
    auto& before = invoice();
    enter(before, kTwoLines);
    EXPECT_EQ(before.txtremark.type("as agreed"), Refusal::none);
    const auto stood = screen(before);
    restart();
    auto& after = invoice();
    expect_whole(take_up(after));
    EXPECT_EQ(screen(after), stood);
    EXPECT_THAT(user().messages(), IsEmpty());
    EXPECT_EQ(after.press(101), Refusal::none);
    EXPECT_THAT(user().messages(), ElementsAre("Add new Invoice complete"));
    EXPECT_EQ(company.list("SELECT docno,invoice_date FROM AP_header_table"), "IP-26-00001 2026-03-16");
    EXPECT_EQ(company.list("SELECT date_created FROM AP_header_table"), "2026-03-17");
    EXPECT_THAT(kept(), IsEmpty());
}

// What is taken up is kept like what was entered first.
TEST_F(TakeUp, EntryIsKeptOnceMoreAfterItWasTakenUp) {
    enter(invoice(), kTwoLines);
    for (int time = 0; time < 3; ++time) {
        restart();
        auto& form = invoice();
        expect_whole(take_up(form));
        EXPECT_EQ(form.txtremark.type("time " + std::to_string(time)), Refusal::none);
    }
    restart();
    auto& form = invoice();
    expect_whole(take_up(form));
    EXPECT_EQ(form.txtremark.text(), "time 2");
    EXPECT_EQ(form.dbgrid1.cell(1, "gross amount"), "210.00");
}

TEST_F(TakeUp, TemplateStandsAsItStood) {
    auto& before = invoice();
    enter_template(before);
    const auto stood = screen(before);
    restart();
    auto& after = invoice();
    expect_whole(take_up(after));
    EXPECT_EQ(screen(after), stood);
    EXPECT_EQ(after.press(101), Refusal::none);
    EXPECT_THAT(user().messages(), ElementsAre("Add Recurring invoice complete"));
}

class TakeUpPayments : public TakeUp, public ::testing::WithParamInterface<KindOfPayment> {};

TEST_P(TakeUpPayments, StandAsTheyStood) {
    payments::PaymentForm& before = GetParam().enter(user());
    const std::string form = before.identity().class_name;
    const auto stood = screen(before);
    restart();
    const std::string show = form == "APform_misc_payment" ? "showform_APform_misc" : "showform_" + form;
    ASSERT_EQ(host::call_by_name(user().ap, show, {}), host::CallOutcome::done);
    frame::Form& after = *user().desk.open_forms.back();
    ASSERT_EQ(after.identity().class_name, form);
    expect_whole(take_up(after));
    EXPECT_EQ(screen(after), stood);
    EXPECT_THAT(user().messages(), IsEmpty());
    EXPECT_EQ(after.press(101), Refusal::none);
    EXPECT_THAT(user().messages(), ElementsAre(GetParam().saved));
    EXPECT_THAT(kept(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, TakeUpPayments, ::testing::ValuesIn(kinds_of_payments()),
                         [](const auto& each) { return std::string(each.param.name); });

// --- payments of invoices, whose lines are read from the company ---
class TakeUpListedItems : public TakeUp {
  protected:
    void save_invoice(const char* amount) {
        auto& form = invoice();
        enter(form, {.lines = {{"5000", "NOTAX", "gross amount", amount}}});
        EXPECT_EQ(form.press(101), Refusal::none);
        EXPECT_THAT(user().messages(), ElementsAre("Add new Invoice complete"));
    }
    payments::APform_payment& payment() {
        user().ap.showform_APform_payment();
        return *user().ap.frm_payment;
    }
    payments::APform_payment& pay_second_item() {
        auto& form = payment();
        EXPECT_EQ(form.press(105), Refusal::none);
        EXPECT_EQ(form.cmbvendor.type("V1001"), Refusal::none);
        EXPECT_EQ(form.cmbpayby.type("Cash"), Refusal::none);
        EXPECT_EQ(form.cmbcash.type("1000"), Refusal::none);
        const int column = form.dbgrid1.get_column("pay amount");
        EXPECT_EQ(form.dbgrid1.edit_cell(1, column, "25.00"), Refusal::none);
        return form;
    }
};

TEST_F(TakeUpListedItems, StandAsTheyStood) {
    save_invoice("40.00");
    save_invoice("60.00");
    const auto stood = screen(pay_second_item());
    restart();
    auto& form = payment();
    expect_whole(take_up(form));
    EXPECT_EQ(screen(form), stood);
    EXPECT_EQ(form.txttotal.text(), "25.00");
}

// Its New was pressed by the host.
TEST_F(TakeUpListedItems, PaymentThatAnInvoiceAskedForStandsAsItStood) {
    save_invoice("40.00");
    save_invoice("60.00");
    auto& before = payment();
    user().ap.pay_this_invoice("IP-26-00002", "V1001");
    program->recorder->acted(
        {controls::Act::Kind::host_call, "pay_this_invoice", 0, 0, "IP-26-00002", "V1001"});
    EXPECT_EQ(before.txtremark.type("as agreed"), Refusal::none);
    const auto stood = screen(before);
    restart();
    auto& after = payment();
    expect_whole(take_up(after));
    EXPECT_EQ(screen(after), stood);
}

// Somebody has paid the first item meanwhile, and the amount would be paid on another one.
TEST_F(TakeUpListedItems, AmountIsNotEnteredOnAnotherItem) {
    save_invoice("40.00");
    save_invoice("60.00");
    save_invoice("80.00");
    pay_second_item();
    restart();
    company.db().Execute("UPDATE AP_transaction_table SET paid = TRUE WHERE docno = 'IP-26-00001'");
    auto& form = payment();
    const Replayed result = take_up(form);
    EXPECT_EQ(result.ended_because, "A line of the list belongs to another item now.");
    EXPECT_EQ(form.dbgrid1.cell(1, "pay amount"), "");
    EXPECT_THAT(kept(), SizeIs(1));
}

// --- edits ---
class TakeUpEdit : public TakeUp {
  protected:
    invoices::APform_invoice& edit_first() {
        auto& form = invoice();
        enter(form, kTwoLines);
        EXPECT_EQ(form.press(101), Refusal::none);
        enter(form, {.lines = {{"5000", "NOTAX", "gross amount", "7.00"}}});
        EXPECT_EQ(form.press(101), Refusal::none);
        EXPECT_EQ(form.press(107), Refusal::none);
        EXPECT_EQ(form.txtdocno.text(), "IP-26-00001");
        EXPECT_EQ(form.press(106), Refusal::none);
        edit_line_cell(form, 0, "taxable amount", "120.00");
        user().desk.messages.clear();
        return form;
    }
};

TEST_F(TakeUpEdit, StandsOnTheDocumentThatWasEdited) {
    const auto stood = screen(edit_first());
    restart();
    auto& form = invoice();
    EXPECT_EQ(form.txtdocno.text(), "IP-26-00002");
    expect_whole(take_up(form));
    EXPECT_EQ(screen(form), stood);
    EXPECT_EQ(form.mode(), Mode::edit);
    EXPECT_EQ(form.press(101), Refusal::none);
    EXPECT_THAT(user().messages(), ElementsAre("Update complete"));
}

TEST_F(TakeUpEdit, EndsWhereTheFormDoesNotLetItBegin) {
    edit_first();
    restart();
    company.db().Execute("UPDATE AP_header_table SET void = TRUE WHERE docno = 'IP-26-00001'");
    auto& form = invoice();
    EXPECT_EQ(take_up(form).ended_because, "The form no longer lets it begin.");
    EXPECT_EQ(form.mode(), Mode::read);
    EXPECT_THAT(kept(), SizeIs(1));
}

TEST_F(TakeUpEdit, EndsWhenTheDocumentIsGone) {
    edit_first();
    restart();
    company.db().Execute("DELETE * FROM AP_header_table WHERE docno = 'IP-26-00001'");
    EXPECT_EQ(take_up(invoice()).ended_because, "Document IP-26-00001 no longer exists.");
}

TEST_F(TakeUpEdit, TellsWhatShowsSomethingElse) {
    edit_first();
    restart();
    company.db().Execute("UPDATE AP_header_table SET remark = 'by another desk' WHERE docno = 'IP-26-00001'");
    const Replayed result = take_up(invoice());
    EXPECT_EQ(result.ended_because, "");
    EXPECT_THAT(result.differences, ElementsAre("txtremark"));
}

// --- when an entry is over ---
TEST_F(TakeUp, NothingIsKeptOfWhatWasSaved) {
    auto& form = invoice();
    enter(form, kTwoLines);
    EXPECT_EQ(form.press(101), Refusal::none);
    restart();
    EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(TakeUp, NothingIsKeptOfWhatTheUserDidNotWant) {
    auto& form = invoice();
    enter(form, kTwoLines);
    user().desk.answers = {false};
    EXPECT_EQ(form.press(105), Refusal::none);
    EXPECT_THAT(user().desk.questions, ElementsAre("Do you want to save new entry?"));
    restart();
    EXPECT_THAT(kept(), IsEmpty());
}

// It asks only about an entry with something in its first line.
TEST_F(TakeUp, EntryThatTheFormLeavesWithoutAQuestionIsKept) {
    auto& form = invoice();
    EXPECT_EQ(form.press(105), Refusal::none);
    EXPECT_EQ(form.txtremark.type("as agreed"), Refusal::none);
    EXPECT_EQ(form.press(105), Refusal::none);
    EXPECT_THAT(user().desk.questions, IsEmpty());
    EXPECT_EQ(form.mode(), Mode::read);
    EXPECT_EQ(program->left, 1);
    expect_whole(take_up(form));
    EXPECT_EQ(form.txtremark.text(), "as agreed");
}

// --- masters ---

// The rate of the day in the list, with another rate typed.
masters::MasterForm& edit_rate(DeskOfUser& user) {
    user.ap.showform_Master("Master_exchange_rate");
    auto& form = *user.ap.frm_master;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(form.press(frame::command::kNext), Refusal::none);
    EXPECT_EQ(form.press(frame::command::kEditMode), Refusal::none);
    auto& rate = dynamic_cast<controls::TextField&>(*form.controls().find("txtrate"));
    EXPECT_EQ(rate.type("1.2345"), Refusal::none);
    return form;
}

TEST_F(TakeUp, MasterThatWasEditedStandsAsItStood) {
    const auto stood = edit_rate(user()).controls().find("txtrate_date")->shown();
    restart();
    user().ap.showform_Master("Master_exchange_rate");
    auto& form = *user().ap.frm_master;
    ASSERT_NE(form.controls().find("txtrate_date")->shown(), stood);
    expect_whole(take_up(form));
    EXPECT_EQ(form.mode(), Mode::edit);
    EXPECT_EQ(form.controls().find("txtrate_date")->shown(), stood);
    EXPECT_EQ(form.controls().find("txtrate")->shown(), "1.2345");
    EXPECT_EQ(form.press(frame::command::kSave), Refusal::none);
    EXPECT_THAT(company.list("SELECT currency FROM Exchange_rate_table WHERE Rate = 1.2345"), Not(IsEmpty()));
}

TEST_F(TakeUp, MasterThatIsGoneIsSaidSo) {
    edit_rate(user());
    company.db().Execute("DELETE * FROM Exchange_rate_table");
    restart();
    user().ap.showform_Master("Master_exchange_rate");
    EXPECT_THAT(take_up(*user().ap.frm_master).ended_because, ::testing::HasSubstr("cannot be shown"));
    EXPECT_EQ(user().ap.frm_master->mode(), Mode::read);
}

TEST_F(TakeUp, NothingIsKeptOfAnEmptyEntry) {
    EXPECT_EQ(invoice().press(105), Refusal::none);
    EXPECT_FALSE(program->recorder->entry_is_open());
    user().ap.frm_invoice_Exit();
    restart();
    EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(TakeUp, ExitLeavesTheEntry) {
    auto& form = invoice();
    enter(form, kTwoLines);
    const auto stood = screen(form);
    EXPECT_TRUE(program->recorder->entry_is_open());
    EXPECT_EQ(form.press(100), Refusal::none);
    EXPECT_FALSE(program->recorder->entry_is_open());
    EXPECT_THAT(user().desk.questions, IsEmpty());
    auto& again = invoice();
    expect_whole(take_up(again));
    EXPECT_EQ(screen(again), stood);
}

// The form asks nothing when somebody leafs away from a new entry, and New stays pressed.
TEST_F(TakeUp, LeafingAwayLeavesTheEntry) {
    auto& form = invoice();
    enter(form, kTwoLines);
    EXPECT_EQ(form.press(101), Refusal::none);
    enter(form, kTwoLines);
    EXPECT_EQ(form.txtremark.type("as agreed"), Refusal::none);
    const auto stood = screen(form);
    EXPECT_EQ(form.press(107), Refusal::none);
    EXPECT_EQ(form.mode(), Mode::new_entry);
    EXPECT_EQ(program->left, 1);
    EXPECT_FALSE(program->recorder->entry_is_open());
    user().desk.messages.clear();
    expect_whole(take_up(form));
    EXPECT_EQ(screen(form), stood);
}

// --- saves ---
TEST_F(TakeUp, SaveThatWasRefusedIsRefusedAgainAndStoresNothing) {
    auto& before = invoice();
    enter(before, {.lines = {{"9999", "NOTAX", "gross amount", "10.00"}}});
    EXPECT_EQ(before.press(101), Refusal::none);
    EXPECT_THAT(user().messages(), Not(IsEmpty()));
    EXPECT_EQ(before.txtremark.type("tried"), Refusal::none);
    const auto stood = screen(before);
    restart();
    auto& after = invoice();
    expect_whole(take_up(after));
    EXPECT_EQ(screen(after), stood);
    EXPECT_THAT(user().messages(), IsEmpty());
}

// The account was missing when it was pressed, and is there now.
TEST_F(TakeUp, SaveThatWouldSucceedNowStoresNothing) {
    company.db().Execute("UPDATE Account_master_table SET accno = '5000x' WHERE accno = '5000'");
    auto& before = invoice();
    enter(before, {.lines = {{"5000", "NOTAX", "gross amount", "10.00"}}});
    EXPECT_EQ(before.press(101), Refusal::none);
    EXPECT_EQ(before.mode(), Mode::new_entry);
    restart();
    company.db().Execute("UPDATE Account_master_table SET accno = '5000' WHERE accno = '5000x'");
    auto& after = invoice();
    take_up(after);
    EXPECT_EQ(after.mode(), Mode::new_entry);
    EXPECT_EQ(company.list("SELECT fkey FROM AP_header_table"), "");
    EXPECT_EQ(company.list("SELECT fkeyno FROM Next_number_fkey_table WHERE doctype = 'ip'"), "1");
    user().desk.messages.clear();
    EXPECT_EQ(after.press(101), Refusal::none);
    EXPECT_THAT(user().messages(), ElementsAre("Add new Invoice complete"));
}

TEST_F(TakeUp, ProgramThatEndedInASaveLeavesItInDoubt) {
    auto& form = invoice();
    enter(form, kTwoLines);
    EXPECT_FALSE(program->recorder == nullptr);
    program->recorder->before_command(frame::command::kSave);
    restart();
    ASSERT_THAT(kept(), SizeIs(1));
    EXPECT_TRUE(kept().front().entry.save_in_doubt);
}

TEST_F(TakeUp, AnswersAreKeptWithTheActThatAsked) {
    auto& form = invoice();
    enter(form, kTwoLines);
    program->recorder->answered(true);
    EXPECT_EQ(form.txtremark.type("x"), Refusal::none);
    EXPECT_EQ(form.txtremark.type("y"), Refusal::none);
    restart();
    ASSERT_THAT(kept(), SizeIs(1));
    const auto steps = kept().front().entry.steps;
    EXPECT_THAT(steps[steps.size() - 2].answers, ElementsAre(true));
    EXPECT_THAT(steps.back().answers, IsEmpty());
}

TEST_F(TakeUp, EntryThatCannotBeKeptIsEnteredAllTheSame) {
    std::filesystem::create_directories(place.parent_path());
    std::ofstream(place) << "in the way";
    auto& form = invoice();
    enter(form, kTwoLines);
    EXPECT_THAT(program->troubles, Not(IsEmpty()));
    EXPECT_EQ(form.press(101), Refusal::none);
    EXPECT_THAT(user().messages(), ElementsAre("Add new Invoice complete"));
}

}  // namespace
}  // namespace brimley::testing
