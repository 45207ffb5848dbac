// Faults in the routines of the kernel that write. They run inside their caller's transaction: each engine
// call of each of them fails in turn, and the routine has either done all that it does or has failed, so that
// the caller's Rollback leaves nothing. A fault that it passes over makes no difference.
#include "kernel/ledger_test.h"
#include "support/all_tables.h"
#include "support/faulty_engine.h"

namespace brimley::testing {

using store::ErrorKind;

namespace {

struct WriterFault {
    const char* name;
    ErrorKind kind;
    bool for_good;
};

constexpr WriterFault kWriterFaults[] = {
    {"IoOnce", ErrorKind::io, false},
    {"IoForGood", ErrorKind::io, true},
    {"ConstraintOnce", ErrorKind::constraint, false},
    {"ConstraintForGood", ErrorKind::constraint, true},
    {"LockOnce", ErrorKind::locked, false},
    {"LockForGood", ErrorKind::locked, true},
    {"Lost", ErrorKind::lost, true},
};

bool post(kernel::ModuleG3& kernel, const kernel::GlLine& line) {
    auto balances = kernel.change("SELECT * FROM Balance_table");
    auto periods = kernel.change("SELECT * FROM Balance_period_table");
    auto accounts = kernel.change("SELECT * FROM Account_master_table");
    kernel::CurrentEarnings earnings;
    return kernel.post_balance(balances, line, accounts, earnings) &&
           kernel.post_balance_period(periods, line, accounts, earnings) &&
           kernel.write_current_earnings(earnings);
}

}  // namespace

class WriterFaults : public LedgerTest, public ::testing::WithParamInterface<WriterFault> {
  protected:
    using Writer = bool (*)(kernel::ModuleG3& kernel);

    struct User {
        explicit User(WriterFaults& test) : open(test.company.second_user(faulty(faults))) {
            open.workspace->BeginTrans();
        }
        std::shared_ptr<Faults> faults = std::make_shared<Faults>();
        store::OpenCompany open;
    };

    void SetUp() override {
        LedgerTest::SetUp();
        for (const char* const doctype : {"ip", "gl"}) {
            company.add("Docno_master_table",
                        {{"company", 1}, {"doctype", doctype}, {"fiscalyear", "2026"}, {"nextdocno", 7}});
            company.add("Next_number_fkey_table", {{"company", 1}, {"doctype", doctype}, {"fkeyno", 57}});
        }
        before_ = all_tables(company.db());
    }
    // Whether the routine says that it has done its work.
    bool carry_out(const User& user, const Writer& writer) {
        kernel::ModuleG3 its_kernel(user.open.database, outside);
        try {
            return writer(its_kernel);
        } catch (const store::Error&) {
            return false;
        }
    }
    AllTables tables_after(const Writer& writer) {
        const User user(*this);
        EXPECT_TRUE(carry_out(user, writer));
        return all_tables(*user.open.database);
    }
    // The n-th call fails. Whether it was reached.
    bool fails_whole(const Writer& writer, const AllTables& after, int nth) {
        const User user(*this);
        user.faults->kind = GetParam().kind;
        user.faults->arm(nth, GetParam().for_good);
        const bool done = carry_out(user, writer);
        const bool reached = user.faults->calls >= nth;
        user.faults->disarm();
        EXPECT_TRUE(done || reached);
        if (done) {
            EXPECT_EQ(difference(after, all_tables(*user.open.database)), "");
        }
        user.open.workspace->Rollback();
        EXPECT_EQ(difference(before_, all_tables(company.db())), "");
        return reached;
    }
    void sweep(const Writer& writer, int fewest_calls) {
        const AllTables after = tables_after(writer);
        int nth = 1;
        while (fails_whole(writer, after, nth) && !HasFailure())
            ++nth;
        EXPECT_GT(nth, fewest_calls);
    }

  private:
    AllTables before_;
};

TEST_P(WriterFaults, NumbersAreDrawnOrNot) {
    sweep([](auto& ledger) { return ledger.get_next_number("1", "ip", "2026").has_value(); }, 6);
}

TEST_P(WriterFaults, LineOfABalanceAccountIsPostedOrNot) {
    sweep([](auto& ledger) { return post(ledger, line_on("1000", 100)); }, 6);
}

TEST_P(WriterFaults, LineOfAnIncomeAccountIsPostedWithCurrentEarningsOrNot) {
    sweep([](auto& ledger) { return post(ledger, line_on("5000", 100)); }, 12);
}

TEST_P(WriterFaults, ForeignLineIsPostedInBothLedgersOrNot) {
    sweep([](auto& ledger) { return post(ledger, foreign_line_on("2100", 100, 125)); }, 12);
}

TEST_P(WriterFaults, ForeignBalanceRowsAreMadeOrNot) {
    sweep([](auto& ledger) { return ledger.create_foreign_balance_rows("1000", "EUR"); }, 6);
}

TEST_P(WriterFaults, AccountIsOpenedForACurrencyOrNot) {
    sweep([](auto& ledger) { return ledger.add_account_currency("1000", "EUR"); }, 8);
}

TEST_P(WriterFaults, AccountThatHasTheCurrencyIsRefreshedOrNot) {
    sweep([](auto& ledger) { return ledger.add_account_currency("2100", "EUR"); }, 2);
}

// Two lines that balance pass and two that do not never do, whatever fails.
TEST_P(WriterFaults, DocumentThatIsNotBalancedNeverPasses) {
    for (const char* const accno : {"1000", "4000"}) {
        company.add("GL_transaction_table", {{"fkey", "good"}, {"accno", accno}, {"base_amount", 100}});
        company.add("GL_transaction_table", {{"fkey", "bad"}, {"accno", accno}, {"base_amount", 100}});
    }
    company.add("GL_transaction_table", {{"fkey", "bad"}, {"accno", "1000"}, {"base_amount", 1}});
    const auto check = [&](const char* fkey, int nth) {
        const User user(*this);
        user.faults->kind = GetParam().kind;
        user.faults->arm(nth, GetParam().for_good);
        kernel::ModuleG3 its_kernel(user.open.database, outside);
        const bool passed = kernel::carry_on(its_kernel.reasons(), "check", [&] {
            auto lines = its_kernel.read(std::string("SELECT * FROM GL_transaction_table WHERE fkey = ") +
                                         store::quoted(fkey));
            auto accounts = its_kernel.change("SELECT * FROM Account_master_table");
            if (!its_kernel.check_gl_document(lines, accounts)) throw std::runtime_error("does not pass");
        });
        return std::pair(passed, user.faults->calls >= nth);
    };
    bool reached = true;
    for (int nth = 1; reached; ++nth) {
        EXPECT_FALSE(check("bad", nth).first) << nth;
        const auto [passed, was_reached] = check("good", nth);
        reached = was_reached;
        EXPECT_EQ(passed, !reached) << nth;
    }
}

TEST_P(WriterFaults, RightsThatCannotBeReadAreNone) {
    company.add("User_right_table", {{"form", "f"}, {"userid", "anna"}, {"Update", true}, {"Print", true}});
    bool reached = true;
    for (int nth = 1; reached; ++nth) {
        const User user(*this);
        user.faults->kind = GetParam().kind;
        user.faults->arm(nth, GetParam().for_good);
        kernel::ModuleG3 its_kernel(user.open.database, outside);
        kernel::UserRights rights{true, true, true};
        const bool read = kernel::carry_on(its_kernel.reasons(), "rights",
                                           [&] { its_kernel.get_user_rights("f", "anna", rights); });
        reached = user.faults->calls >= nth;
        EXPECT_EQ(read, !reached);
        EXPECT_EQ(rights.Update, read);
        EXPECT_EQ(rights.Print, read);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, WriterFaults, ::testing::ValuesIn(kWriterFaults),
                         [](const auto& fault) { return std::string(fault.param.name); });

}  // namespace brimley::testing
