// How long programs wait for what another one holds, by the real clock, and that they sleep meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <sstream>
#include <thread>

#include "console/console_desk.h"
#include "processes/child.h"
#include "support/sample_company.h"

namespace brimley::testing {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

namespace {

// A busy wait would take as long as it lasts.
constexpr double kBusyMost = 0.4;

class Watch {
  public:
    [[nodiscard]] milliseconds passed() const {
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begun_);
    }
    // Of this process.
    [[nodiscard]] milliseconds cpu_time() const {
        return milliseconds((std::clock() - cpu_begun_) * 1000 / CLOCKS_PER_SEC);
    }

  private:
    std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
    std::clock_t cpu_begun_ = std::clock();
};

void expect_asleep(milliseconds cpu_time, milliseconds waits) {
    EXPECT_LT(static_cast<double>(cpu_time.count()), kBusyMost * static_cast<double>(waits.count()));
}

}  // namespace

class RealWaits : public ::testing::Test {
  protected:
    // A saver that enters one invoice, in a process of its own.
    [[nodiscard]] std::unique_ptr<Child> begin_saver() const {
        const auto tests = std::filesystem::read_symlink("/proc/self/exe");
        return std::make_unique<Child>(std::vector<std::string>{
            (tests.parent_path() / "saver").string(), company.path(), "--acts", "1", "--only", "invoice"});
    }
    void hold(const std::string& query) {
        holder.workspace->BeginTrans();
        held = holder.database->OpenRecordset(query, store::RecordsetKind::dynaset);
        held.LockEdits(true);
        held.Edit();
    }
    void hold_counter() {
        hold("SELECT * FROM Docno_master_table WHERE doctype = 'ip' AND fiscalyear = '2026'");
    }
    // The saver gives up after these waits, having slept through them.
    void expect_given_up_after(milliseconds waits) {
        const Watch watch;
        const auto saver = begin_saver();
        EXPECT_THAT(saver->lines(), ElementsAre("refused Add new Invoice failed"));
        EXPECT_TRUE(saver->ended_well());
        EXPECT_GE(watch.passed(), waits);
        expect_asleep(saver->cpu_time(), waits);
    }

    ClosedCopy company{sample_original()};
    store::OpenCompany holder = company.open();
    store::Recordset held;
};

TEST_F(RealWaits, SaverSleepsThroughTenWaitsForACounterAndSaysThatItFailed) {
    hold_counter();
    expect_given_up_after(10 * kernel::kLockRetryWait);
}

TEST_F(RealWaits, SaverSleepsThroughFiveWaitsForABalanceHeldOnAServer) {
    hold("SELECT * FROM Balance_table WHERE accno = '5000' AND ledgertype = 'A'");
    expect_given_up_after(5 * kernel::kLockRetryWait);
}

TEST_F(RealWaits, SaverGoesOnWhenTheCounterIsLetGo) {
    hold_counter();
    const Watch watch;
    const auto saver = begin_saver();
    std::this_thread::sleep_for(milliseconds(700));
    held.CancelUpdate();
    holder.workspace->Rollback();
    EXPECT_THAT(saver->lines(), ElementsAre("invoice IP-26-00001"));
    EXPECT_GE(watch.passed(), milliseconds(700));
}

TEST(ConsoleWaits, TakeTheirTimeAsleepByARunningClock) {
    std::ostringstream out;
    console::ConsoleDesk desk(out);
    const Watch watch;
    desk.wait(kernel::kLockRetryWait);
    EXPECT_GE(watch.passed(), kernel::kLockRetryWait);
    expect_asleep(watch.cpu_time(), kernel::kLockRetryWait);
}

TEST(ConsoleWaits, AreOverAtOnceByAStoppedClock) {
    std::ostringstream out;
    console::ConsoleDesk desk(out);
    desk.stopped_clock = store::DateTime::from_iso("2026-03-16 09:30:00");
    const Watch watch;
    for (int i = 0; i < 10; ++i)
        desk.wait(kernel::kLockRetryWait);
    EXPECT_LT(watch.passed(), kernel::kLockRetryWait);
}

}  // namespace brimley::testing
