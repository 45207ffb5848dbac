#include "support/faulty_engine.h"
#include "support/kernel_test.h"

namespace brimley::testing {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

constexpr const char* kIpCounter = "SELECT * FROM Docno_master_table WHERE doctype = 'ip'";

}  // namespace

class DocumentNumbers : public KernelTest {
  protected:
    void add_counter(const char* fyear, int nextdocno) {
        company.add("Docno_master_table",
                    {{"company", 1}, {"doctype", "ip"}, {"fiscalyear", fyear}, {"nextdocno", nextdocno}});
    }
    void add_key_counter(int fkeyno) {
        company.add("Next_number_fkey_table", {{"company", 1}, {"doctype", "ip"}, {"fkeyno", fkeyno}});
    }
    // "7 and 57", or "none".
    std::string take(const char* fyear = "2026", const char* doctype = "ip") {
        const auto taken = kernel.get_next_number("1", doctype, fyear);
        return taken ? std::to_string(taken->nextdocno) + " and " + std::to_string(taken->fkeyno) : "none";
    }
    // nextdocno and fkeyno as stored.
    std::string counters() {
        return company.list("SELECT nextdocno FROM Docno_master_table") + ", " +
               company.list("SELECT fkeyno FROM Next_number_fkey_table");
    }
};

TEST_F(DocumentNumbers, BothCountersGiveTheirNumberAndMoveOn) {
    add_counter("2026", 7);
    add_key_counter(57);
    EXPECT_EQ(take(), "7 and 57");
    EXPECT_EQ(take(), "8 and 58");
    EXPECT_EQ(counters(), "9, 59");
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentNumbers, EachFiscalYearCountsForItselfAndKeysGoOn) {
    add_counter("2026", 7);
    add_counter("2027", 1);
    add_key_counter(57);
    EXPECT_EQ(take("2027"), "1 and 57");
    EXPECT_EQ(take("2026"), "7 and 58");
}

TEST_F(DocumentNumbers, CounterBeyondAllNumbersGivesTheLargestOne) {
    company.add("Docno_master_table",
                {{"company", 1}, {"doctype", "ip"}, {"fiscalyear", "2026"}, {"nextdocno", 1e300}});
    add_key_counter(57);
    EXPECT_EQ(take(), "9007199254740992 and 57");
}

TEST_F(DocumentNumbers, RollbackGivesBothNumbersBack) {
    add_counter("2026", 7);
    add_key_counter(57);
    company.workspace().BeginTrans();
    EXPECT_EQ(take(), "7 and 57");
    company.workspace().Rollback();
    EXPECT_EQ(counters(), "7, 57");
}

TEST_F(DocumentNumbers, MissingCounterOfAYearThatHasOthersIsToldInOneLine) {
    add_counter("2026", 7);
    EXPECT_EQ(take("2026", "py"), "none");
    EXPECT_THAT(messages(), ElementsAre("Next number of document type py for fiscal year 2026 is missing."));
}

TEST_F(DocumentNumbers, MissingYearIsToldWithAHint) {
    add_counter("2026", 7);
    EXPECT_EQ(take("2028"), "none");
    EXPECT_THAT(messages(),
                ElementsAre("Next number of document type ip for fiscal year 2028 is missing.\nCreate new "
                            "fiscal year with \"Add New Fiscal Year\" in General Ledger system."));
}

TEST_F(DocumentNumbers, YearHasNumbersWhenAnyDoctypeHasARow) {
    add_counter("2026", 7);
    EXPECT_TRUE(kernel.fiscal_year_has_numbers("2026"));
    EXPECT_FALSE(kernel.fiscal_year_has_numbers("2027"));
}

TEST_F(DocumentNumbers, MissingKeyCounterHasNoMessageAndTheDocumentCounterHasMovedOn) {
    add_counter("2026", 7);
    EXPECT_EQ(take(), "none");
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_EQ(company.list("SELECT nextdocno FROM Docno_master_table"), "8");
}

TEST_F(DocumentNumbers, DocumentNumberAloneLeavesTheKeyCounter) {
    add_counter("2026", 7);
    add_key_counter(57);
    EXPECT_EQ(kernel.next_docno("1", "ip", "2026"), 7);
    EXPECT_EQ(counters(), "8, 57");
}

TEST_F(DocumentNumbers, DocumentNumberAloneThatIsMissingHasNoMessage) {
    add_counter("2026", 7);
    EXPECT_EQ(kernel.next_docno("1", "ip", "2027"), std::nullopt);
    EXPECT_EQ(kernel.next_docno("1", "gl", "2026"), std::nullopt);
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DocumentNumbers, OtherCompaniesHaveTheirOwnCounters) {
    add_counter("2026", 7);
    add_key_counter(57);
    EXPECT_FALSE(kernel.get_next_number("2", "ip", "2026"));
    EXPECT_EQ(counters(), "7, 57");
}

TEST_F(DocumentNumbers, QuoteInADoctypeFindsNothingAndChangesNothing) {
    add_counter("2026", 7);
    add_key_counter(57);
    EXPECT_EQ(take("2026", "ip' OR '1' = '1"), "none");
    EXPECT_EQ(counters(), "7, 57");
}

// --- two users

class SharedCounter : public DocumentNumbers {
  protected:
    void SetUp() override {
        add_counter("2026", 7);
        add_key_counter(57);
        other = company.second_user();
    }
    // The other user begins a transaction and takes the row of one counter.
    void hold(const char* query) {
        other.workspace->BeginTrans();
        held = other.database->OpenRecordset(query, store::RecordsetKind::dynaset);
        held.LockEdits(true);
        held.Edit();
    }
    void release_with(const char* field, int value) {
        held.set(field, value);
        held.Update();
        other.workspace->CommitTrans();
    }

    store::OpenCompany other;
    store::Recordset held;
};

TEST_F(SharedCounter, HeldCounterIsTriedTenTimesMoreWithoutAMessage) {
    hold(kIpCounter);
    EXPECT_EQ(take(), "none");
    EXPECT_EQ(outside.waits.size(), 10U);
    EXPECT_THAT(outside.waits, Each(std::chrono::milliseconds(432)));
    EXPECT_THAT(messages(), IsEmpty());
    other.workspace->Rollback();
    EXPECT_EQ(counters(), "7, 57");
}

TEST_F(SharedCounter, DocumentNumberAloneWaitsForAHeldCounterLikewise) {
    hold(kIpCounter);
    EXPECT_EQ(kernel.next_docno("1", "ip", "2026"), std::nullopt);
    EXPECT_EQ(outside.waits.size(), 10U);
    release_with("nextdocno", 20);
    EXPECT_EQ(kernel.next_docno("1", "ip", "2026"), 20);
}

// Whoever reads the message may take long; the others go on meanwhile.
TEST_F(SharedCounter, NothingIsHeldOnceAMissingCounterIsTold) {
    company.workspace().BeginTrans();
    EXPECT_FALSE(kernel.get_next_number("1", "ip", "2031"));
    EXPECT_THAT(messages(), SizeIs(1));
    EXPECT_THAT(outside.waits, IsEmpty());
    other.workspace->begin_alone();
    other.workspace->Rollback();
    company.workspace().Rollback();
}

TEST_F(SharedCounter, FailureThatNoWaitingHelpsIsNotWaitedFor) {
    for (const auto kind :
         {store::ErrorKind::io, store::ErrorKind::constraint, store::ErrorKind::conversion}) {
        const auto faults = std::make_shared<Faults>();
        faults->kind = kind;
        auto faulty_company = company.second_user(faulty(faults));
        kernel::ModuleG3 faulty_kernel(faulty_company.database, outside);
        bool taken = false;
        for (int call = 1; call < 20 && !taken; ++call) {
            const auto failures = faulty_kernel.reasons().failures();
            faulty_company.workspace->BeginTrans();
            faults->arm(call, true);
            taken = faulty_kernel.get_next_number("1", "ip", "2026").has_value();
            faults->disarm();
            faulty_company.workspace->Rollback();
            EXPECT_EQ(faulty_kernel.reasons().failures(), failures + (taken ? 0 : 1));
        }
        EXPECT_TRUE(taken);
    }
    EXPECT_THAT(outside.waits, IsEmpty());
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(SharedCounter, CounterReleasedAtAnyWaitIsTaken) {
    for (int release_at = 1; release_at <= 10; ++release_at) {
        outside.waits.clear();
        hold(kIpCounter);
        outside.on_wait = [&](int wait) {
            if (wait == release_at) release_with("nextdocno", 100 * release_at);
        };
        EXPECT_EQ(take(), fmt::format("{} and {}", 100 * release_at, 56 + release_at));
        EXPECT_EQ(outside.waits.size(), static_cast<std::size_t>(release_at));
    }
}

TEST_F(SharedCounter, NumberIsReadAfterTheRowIsHeld) {
    // The other user takes a number and commits between the look at the row and the lock on it.
    hold(kIpCounter);
    outside.on_wait = [&](int) { release_with("nextdocno", 8); };
    company.workspace().BeginTrans();
    EXPECT_EQ(take(), "8 and 57");
    company.workspace().CommitTrans();
    EXPECT_EQ(counters(), "9, 58");
}

TEST_F(SharedCounter, NumbersOfAnOpenTransactionAreNotGivenToAnybodyElse) {
    company.workspace().BeginTrans();
    EXPECT_EQ(take(), "7 and 57");
    RecordingOutside others_outside;
    kernel::ModuleG3 others_kernel(other.database, others_outside);
    EXPECT_FALSE(others_kernel.get_next_number("1", "ip", "2026"));
    EXPECT_EQ(others_outside.waits.size(), 10U);
    company.workspace().CommitTrans();
    const auto taken = others_kernel.get_next_number("1", "ip", "2026");
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->nextdocno, 8);
    EXPECT_EQ(taken->fkeyno, 58);
}

TEST_F(SharedCounter, KeyCounterHasTenTriesOfItsOwn) {
    const auto faults = std::make_shared<Faults>();
    faults->kind = store::ErrorKind::locked;
    auto faulty_company = company.second_user(faulty(faults));
    kernel::ModuleG3 faulty_kernel(faulty_company.database, outside);
    // Some engine call is the first lock of the key counter, and some calls later comes each further one.
    bool found = false;
    for (int call = 1; call < 40 && !found; ++call) {
        for (int calls_of_a_try = 1; calls_of_a_try < 5 && !found; ++calls_of_a_try) {
            company.db().Execute("UPDATE Docno_master_table SET nextdocno = 7");
            company.db().Execute("UPDATE Next_number_fkey_table SET fkeyno = 57");
            outside.waits.clear();
            outside.on_wait = [&](int) { faults->arm(calls_of_a_try, false); };
            faults->arm(call, false);
            const bool taken = faulty_kernel.get_next_number("1", "ip", "2026").has_value();
            faults->disarm();
            found = !taken && counters() == "8, 57" && outside.waits.size() == 10;
        }
    }
    EXPECT_TRUE(found);
    EXPECT_THAT(messages(), IsEmpty());
}

// --- the number as text

class DocumentNumberText : public KernelTest {
  protected:
    void configure(const store::Value& structure, int fyear_digit, bool seperator1, bool seperator2) {
        company.db().Execute("DELETE * FROM Next_number_config_table");
        company.add("Next_number_config_table", {{"structure", structure},
                                                 {"fyear_digit", fyear_digit},
                                                 {"seperator1", seperator1},
                                                 {"seperator2", seperator2}});
    }
    void add_format(const char* prefix, const char* digits) {
        company.add("Next_number_format_table",
                    {{"doctype", "ip"}, {"prefix", prefix}, {"running_no_digit", digits}});
    }
    std::string text(std::int64_t number = 57) { return kernel.format_docno("ip", number, "2006"); }
};

TEST_F(DocumentNumberText, StructureOneIsPrefixYearNumber) {
    add_format("IP", "5");
    configure("1", 4, true, true);
    EXPECT_EQ(text(), "IP-2006-00057");
    configure("1", 4, true, false);
    EXPECT_EQ(text(), "IP-200600057");
    configure("1", 4, false, true);
    EXPECT_EQ(text(), "IP2006-00057");
    configure("1", 4, false, false);
    EXPECT_EQ(text(), "IP200600057");
}

TEST_F(DocumentNumberText, StructureTwoIsYearPrefixNumber) {
    add_format("IP", "5");
    configure("2", 4, true, true);
    EXPECT_EQ(text(), "2006-IP-00057");
    configure("2", 4, true, false);
    EXPECT_EQ(text(), "2006-IP00057");
    configure("2", 4, false, true);
    EXPECT_EQ(text(), "2006IP-00057");
    configure("2", 4, false, false);
    EXPECT_EQ(text(), "2006IP00057");
}

TEST_F(DocumentNumberText, StructureThreeHasNoYearAndNoSecondSeparator) {
    add_format("IP", "5");
    configure("3", 4, true, true);
    EXPECT_EQ(text(), "IP-00057");
    configure("3", 4, true, false);
    EXPECT_EQ(text(), "IP-00057");
    configure("3", 4, false, true);
    EXPECT_EQ(text(), "IP00057");
    configure("3", 4, false, false);
    EXPECT_EQ(text(), "IP00057");
}

TEST_F(DocumentNumberText, WidthBeyondReasonIsCut) {
    add_format("IP", "999999999");
    configure("3", 4, false, false);
    EXPECT_EQ(text().size(), 102U);
}

TEST_F(DocumentNumberText, NullStructureIsStructureOne) {
    add_format("IP", "5");
    configure({}, 4, true, true);
    EXPECT_EQ(text(), "IP-2006-00057");
}

TEST_F(DocumentNumberText, OtherStructuresGiveNoText) {
    add_format("IP", "5");
    for (const char* structure : {"4", "0", "x"}) {
        configure(structure, 4, true, true);
        EXPECT_EQ(text(), "") << structure;
    }
}

TEST_F(DocumentNumberText, TwoYearDigitsAreTheThirdAndFourth) {
    add_format("IP", "5");
    configure("1", 2, true, true);
    EXPECT_EQ(text(), "IP-06-00057");
    configure("2", 2, true, true);
    EXPECT_EQ(text(), "06-IP-00057");
}

TEST_F(DocumentNumberText, AnyOtherDigitCountKeepsTheWholeYear) {
    add_format("IP", "5");
    for (const int digits : {0, 1, 3, 4}) {
        configure("1", digits, true, true);
        EXPECT_EQ(text(), "IP-2006-00057") << digits;
    }
}

TEST_F(DocumentNumberText, WidthIsTheLeastOfTheRunningNumber) {
    configure("3", 4, true, true);
    add_format("IP", "2");
    EXPECT_EQ(text(7), "IP-07");
    EXPECT_EQ(text(57), "IP-57");
    EXPECT_EQ(text(1234567), "IP-1234567");
}

TEST_F(DocumentNumberText, MissingFormatRowMeansNoPrefixAndNoWidth) {
    configure("1", 4, true, true);
    EXPECT_EQ(text(), "-2006-57");
}

TEST_F(DocumentNumberText, KeyIsCompanyDoctypeAndNumberWithoutZeros) {
    EXPECT_EQ(kernel::ModuleG3::make_fkey("1", "ip", 57), "1ip-57");
    EXPECT_EQ(kernel::ModuleG3::make_fkey("1", "gl", 204), "1gl-204");
}

TEST_F(DocumentNumberText, ThirtyCharactersFitAndOneMoreIsTold) {
    EXPECT_TRUE(kernel.docno_fits(std::string(30, '7')));
    EXPECT_THAT(messages(), IsEmpty());
    const std::string longer(31, '7');
    EXPECT_FALSE(kernel.docno_fits(longer));
    EXPECT_THAT(messages(), ElementsAre("Error : document no. is longer than 30 characters. " + longer));
}

TEST_F(DocumentNumberText, PaymentsNameTheNumberFirst) {
    const std::string longer(31, '7');
    EXPECT_FALSE(kernel.docno_fits(longer, kernel::ModuleG3::TooLongMessage::number_first));
    EXPECT_THAT(messages(), ElementsAre(longer + "Error : document no. is longer than 30 characters. "));
}

}  // namespace brimley::testing
