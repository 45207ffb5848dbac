// Cases that end in every way that a case can end, to be run by run-cases (check-run-cases).
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>

namespace brimley {
namespace {

TEST(Odd, Passes) {}
TEST(Odd, PrintsWithoutEndOfLineAndPasses) { std::cout << "no end of line"; }
TEST(Odd, FailsAndIsNotTheLast) { EXPECT_EQ(1, 2); }
TEST(Odd, PassesAfterAFailure) {}
TEST(Odd, Crashes) { std::raise(SIGSEGV); }
TEST(Odd, PassesAfterACrash) {}
TEST(Odd, Hangs) { ::pause(); }
TEST(Odd, EndsTheProgramAsIfAllWereWell) { std::_Exit(0); }
TEST(Odd, IsSkipped) { GTEST_SKIP(); }
TEST(Odd, PassesAtTheEnd) {}

class FaultAfterwards : public ::testing::Test {
  protected:
    static void TearDownTestSuite() { std::_Exit(3); }
};
TEST_F(FaultAfterwards, BreaksTheProgramAfterItsCase) {}

TEST(Later, Passes) {}

class Each : public ::testing::TestWithParam<int> {};
TEST_P(Each, HasAParameter) { EXPECT_NE(GetParam(), 1); }
INSTANTIATE_TEST_SUITE_P(Of, Each, ::testing::Values(0, 1));

// The program ends badly when all its cases have run.
TEST(Last, LeavesAFaultBehind) {
    if (std::getenv("ODD_END") != nullptr) std::atexit([] { std::_Exit(9); });
}

}  // namespace
}  // namespace brimley
