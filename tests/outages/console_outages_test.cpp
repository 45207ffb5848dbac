// The console as a program, while its server goes away.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <thread>

#include "company/create.h"
#include "support/private_cluster.h"
#include "support/test_server.h"

namespace brimley::testing {

using ::testing::HasSubstr;
using namespace std::chrono_literals;

// A script is given line by line, so that the server can be treated between two of them.
class ConsoleOutage : public ::testing::Test {
  protected:
    void SetUp() override {
        company::create_company_file(uri, company::SampleCompany{"anna"});
        start(uri);
    }
    void TearDown() override {
        if (process_ != 0) ::kill(process_, SIGKILL);
        (void)end();
    }
    void start(const std::string& company) {
        int ends[2];
        ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
        const auto to_file = [&](int stream, const char* name) {
            posix_spawn_file_actions_addopen(&actions, stream, folder_.file(name).c_str(),
                                             O_WRONLY | O_CREAT | O_TRUNC, 0600);
        };
        to_file(STDOUT_FILENO, "out");
        to_file(STDERR_FILENO, "err");
        const auto tests = std::filesystem::read_symlink("/proc/self/exe");
        std::string words[] = {(tests.parent_path() / "brimley-console").string(),
                               company,
                               "--user",
                               "anna",
                               "--path",
                               folder_.path().string()};
        std::vector<char*> pointers;
        for (std::string& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        ASSERT_EQ(::posix_spawn(&process_, pointers[0], &actions, nullptr, pointers.data(), environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[0]);
        to_program_ = ends[1];
    }
    void give(const std::string& line) {
        const std::string whole = line + "\n";
        ASSERT_EQ(::write(to_program_, whole.data(), whole.size()), static_cast<ssize_t>(whole.size()));
    }
    // Its status; -1 when a signal ended it.
    int end() {
        if (process_ == 0) return -1;
        ::close(to_program_);
        int ended = 0;
        ::waitpid(process_, &ended, 0);
        process_ = 0;
        return WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
    }
    [[nodiscard]] std::string text(const char* name) const {
        std::ifstream file(folder_.file(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static bool comes_true(const std::function<bool()>& condition) {
        for (int tries = 0; tries < 200; ++tries) {
            if (condition()) return true;
            std::this_thread::sleep_for(50ms);
        }
        return false;
    }
    // Until the program has nothing more to do.
    void wait_until_idle() {
        EXPECT_TRUE(comes_true([&] {
            return on_server(uri,
                             "SELECT count(*) FROM pg_stat_activity WHERE application_name = 'brimley' AND "
                             "state = 'idle' AND now() - state_change > interval '200 ms'") == "1";
        }));
    }

    PrivateCluster server;
    const std::string uri = server.uri("books");
    TemporaryFolder folder_;
    pid_t process_ = 0;
    int to_program_ = -1;
};

TEST_F(ConsoleOutage, ScriptGoesOnAfterARestartAndSaysSoOnStandardError) {
    give("call showform_APform_invoice\npress 105\nset cmbvendor V1003");
    wait_until_idle();
    server.halt("immediate");
    server.resume();
    give(
        "expect cmbvendor = V1003\nexpect sql \"SELECT vendor_no FROM Vendor_table WHERE vendor_no = "
        "'V1003'\" = "
        "V1003");
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(text("out"), "2 passed, 0 failed\n");
    EXPECT_EQ(text("err"),
              "brimley-console: the connection to the company is lost\n"
              "brimley-console: the connection to the company is back\n");
}

TEST_F(ConsoleOutage, InterruptEndsTheStatementAndNotTheProgram) {
    wait_until_idle();
    on_server(
        uri,
        "CREATE FUNCTION public.slow() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN PERFORM pg_sleep(60); "
        "RETURN new; END'");
    on_server(uri,
              "CREATE TRIGGER slow BEFORE INSERT OR UPDATE ON brimley.form_property_table FOR EACH ROW "
              "EXECUTE FUNCTION public.slow()");
    const auto sleeps = [&] {
        return on_server(uri, "SELECT count(*) FROM pg_stat_activity WHERE wait_event = 'PgSleep'") == "1";
    };
    give("call showform_APform_invoice\npress 100");
    EXPECT_TRUE(comes_true(sleeps));
    ::kill(process_, SIGINT);
    EXPECT_TRUE(
        comes_true([&] { return text("out").find("form closed: APform_invoice") != std::string::npos; }));
    // A company with something that does not belong to it would not be opened again.
    on_server(uri, "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE wait_event = 'PgSleep'");
    on_server(uri, "DROP FUNCTION public.slow CASCADE");
    give("sql \"SELECT vendor_no FROM Vendor_table WHERE vendor_no = 'V1003'\"");
    EXPECT_EQ(end(), 0);
    EXPECT_THAT(text("out"), HasSubstr("form closed: APform_invoice\n"));
    EXPECT_THAT(text("out"), HasSubstr("\nV1003\n"));
}

TEST_F(ConsoleOutage, CompanyThatCanOnlyBeReadIsOpenedAndSaidToBe) {
    EXPECT_EQ(end(), 0);
    on_server(uri, "ALTER DATABASE books SET default_transaction_read_only = on");
    start(uri);
    give("sql \"SELECT vendor_no FROM Vendor_table WHERE vendor_no = 'V1003'\"");
    EXPECT_EQ(end(), 0);
    EXPECT_EQ(text("out"), "vendor_no\nV1003\n");
    EXPECT_EQ(text("err"), "brimley-console: postgresql://" + server.folder() +
                               "/books is on a server that takes no changes, and can only be read\n");
}

}  // namespace brimley::testing
