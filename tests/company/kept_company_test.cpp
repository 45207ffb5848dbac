// Companies as earlier programs have left them: each is opened, checked, worked in and upgraded by this one.
#include <fmt/format.h>

#include <filesystem>
#include <fstream>

#include "company/company_fixture.h"
#include "company/program_run.h"
#include "kernel/tables/company_tables.h"

namespace brimley {
namespace {

using ::testing::HasSubstr;
using testing::Outcome;

const std::filesystem::path kKept = BRIMLEY_SOURCE_DIR "/tests/companies";

std::vector<std::string> kept_companies() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kKept))
        if (entry.path().extension() == ".brimley") names.push_back(entry.path().stem());
    std::ranges::sort(names);
    return names;
}

class KeptCompany : public ::testing::TestWithParam<std::string> {
  protected:
    KeptCompany() {
        std::filesystem::copy_file(kKept / (GetParam() + ".brimley"), folder_.file("a.brimley"));
        std::filesystem::permissions(folder_.file("a.brimley"), std::filesystem::perms::owner_write,
                                     std::filesystem::perm_options::add);
    }
    Outcome run(const std::string& arguments) {
        return testing::run_program(folder_, {.arguments = arguments});
    }
    // Enters an invoice. What is not as expected is told by the program.
    Outcome enter_invoice(const std::string& its_number) {
        std::ofstream(folder_.file("acts.session")) << "today 2026-07-15 10:00:00\n"
                                                       "call showform_APform_invoice\n"
                                                       "press 105\n"
                                                       "set cmbdoctype Invoice\n"
                                                       "set cmbvendor V1012\n"
                                                       "set cmbterm \"Net 30 days\"\n"
                                                       "set txtinvno "
                                                    << its_number
                                                    << "\n"
                                                       "cell dbgrid1 0 \"purchase account\" 6500\n"
                                                       "cell dbgrid1 0 \"gross amount\" 1500.00\n"
                                                       "press 101\n"
                                                       "expect message \"Add new Invoice complete\"\n";
        return testing::run_program(
            folder_, {.arguments = "--user anna a.brimley acts.session", .program = "brimley-console"});
    }
    void expect_agreeing() {
        const Outcome checked = run("check a.brimley");
        EXPECT_EQ(checked.status, 0) << checked.output;
        EXPECT_THAT(checked.output, HasSubstr("books agree\n"));
    }

    testing::TemporaryFolder folder_;
};

TEST_P(KeptCompany, IsCheckedWorkedInUpgradedAndWorkedInAgain) {
    expect_agreeing();
    EXPECT_EQ(enter_invoice("K-1").status, 0);
    expect_agreeing();
    const Outcome upgraded = run("upgrade a.brimley");
    EXPECT_EQ(upgraded.status, 0) << upgraded.errors;
    EXPECT_EQ(run("upgrade a.brimley").output, "the company is of this version already\n");
    expect_agreeing();
    const Outcome entered = enter_invoice("K-2");
    EXPECT_EQ(entered.status, 0) << entered.errors << entered.output;
    expect_agreeing();
}

INSTANTIATE_TEST_SUITE_P(Each, KeptCompany, ::testing::ValuesIn(kept_companies()),
                         [](const auto& name) { return name.param; });

}  // namespace
}  // namespace brimley
