// Backups of companies that may be in use, and companies made from them.
#include "company/backup.h"

#include <filesystem>
#include <fstream>

#include "company/company_fixture.h"
#include "company/program_run.h"
#include "company/refusal.h"
#include "kernel/tables/company_tables.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::error_of;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Outcome;
using testing::text_of_file;

constexpr const char* kVendors =
    "SELECT vendor_no FROM Vendor_table WHERE vendor_no >= 'B' AND vendor_no < 'C' ORDER BY vendor_no";

class Backup : public testing::CompanyTest {
  protected:
    Backup() { make(company::SampleCompany{"zoe"}); }

    std::string copy() const { return folder_.file("copy.company"); }

    std::vector<std::string> vendors_in(const std::string& company) {
        const store::OpenCompany opened = store::open_company(company, kernel::company_tables());
        std::vector<std::string> numbers;
        auto rows = opened.database->OpenRecordset(kVendors, store::RecordsetKind::snapshot);
        for (; !rows.at_eof(); rows.MoveNext())
            numbers.push_back(rows.text("vendor_no"));
        return numbers;
    }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            names.push_back(entry.path().filename().string());
        return names;
    }
};

TEST_F(Backup, HoldsWhatWasSavedWhileTheCompanyIsInUse) {
    add("Vendor_table", {{"vendor_no", "B1"}});
    const store::OpenCompany other = store::open_company(path(), kernel::company_tables());
    other.workspace->begin_alone();
    other.database->Execute("UPDATE Vendor_table SET vendor_no = 'B2' WHERE vendor_no = 'B1'");
    EXPECT_THAT(company::back_up(path(), copy()), IsEmpty());
    other.workspace->Rollback();
    EXPECT_THAT(vendors_in(copy()), ElementsAre("B1"));
    add("Vendor_table", {{"vendor_no", "B3"}});
    EXPECT_THAT(vendors_in(copy()), ElementsAre("B1"));
}

TEST_F(Backup, IsTheSameCompanyAfterTheWayThereAndBack) {
    const std::string before = dump();
    EXPECT_THAT(company::back_up(path(), copy()), IsEmpty());
    const std::string restored = folder_.file("restored.company");
    EXPECT_THAT(company::restore(copy(), restored), IsEmpty());
    EXPECT_THAT(company::back_up(restored, folder_.file("again.company")), IsEmpty());
    EXPECT_TRUE(testing::dump_of(
                    store::open_company(folder_.file("again.company"), kernel::company_tables())) == before);
}

TEST_F(Backup, CopiesBooksThatDoNotAgreeAndSaysSo) {
    add("GL_transaction_table", {{"fkey", "1gl-1"}, {"accno", "nowhere"}});
    EXPECT_THAT(company::back_up(path(), copy()), Contains(HasSubstr("GL document 1gl-1")));
    EXPECT_TRUE(std::filesystem::exists(copy()));
}

TEST_F(Backup, IsNeverMadeOverAnotherFileOrOnAServer) {
    testing::write_file(copy(), "precious");
    const auto error = error_of([&] { (void)company::back_up(path(), copy()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->what(), copy() + " already exists");
    EXPECT_EQ(text_of_file(copy()), "precious");
    EXPECT_THROW((void)company::back_up(path(), "postgresql:///books"), company::UnusableValue);
    EXPECT_THROW((void)company::restore("postgresql:///books", copy()), company::UnusableValue);
}

TEST_F(Backup, OfAnotherCompanyThatExistsIsNotMadeFromIt) {
    EXPECT_THAT(company::back_up(path(), copy()), IsEmpty());
    const auto error = error_of([&] { (void)company::restore(copy(), path()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), store::ErrorKind::state);
}

// A company file that the test damages.
class DamagedCompany : public Backup {
  protected:
    DamagedCompany() {
        EXPECT_THAT(company::back_up(path(), sound_), IsEmpty());
        before_ = files();
    }

    void overwrite(std::uintmax_t at, const std::string& bytes) const {
        std::fstream file(sound_, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(static_cast<std::streamoff>(at));
        file << bytes;
    }
    Outcome run(const std::string& arguments) {
        return testing::run_program(folder_, {.arguments = arguments});
    }

    std::string sound_ = folder_.file("a.company");
    std::vector<std::string> before_;
};

TEST_F(DamagedCompany, IsNotCopiedAndLeavesNothingBehind) {
    std::filesystem::resize_file(sound_, std::filesystem::file_size(sound_) - 4096);
    EXPECT_THROW((void)company::back_up(sound_, copy()), company::Refusal);
    EXPECT_THROW((void)company::restore(sound_, copy()), company::Refusal);
    EXPECT_EQ(files(), before_);
}

TEST_F(DamagedCompany, IsSeenByCheckWhereOpeningSeesNothing) {
    constexpr int kPage = 4096;
    overwrite(std::filesystem::file_size(sound_) - kPage, std::string(kPage, '\0'));
    EXPECT_THROW((void)company::back_up(sound_, copy()), company::Refusal);
    const Outcome outcome = run("check a.company");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output.find("books agree"), std::string::npos) << outcome.output;
}

TEST_F(DamagedCompany, CanStillBeExported) {
    std::filesystem::resize_file(sound_, std::filesystem::file_size(sound_) + 100);
    const Outcome outcome = run("export a.company csv --table Vendor_table");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(text_of_file(folder_.file("csv/Vendor_table.csv")), HasSubstr("V1001"));
    EXPECT_EQ(run("add-year a.company 2028").errors,
              "brimley-company: a.company is damaged, and can only be read: its last page is not whole\n");
    EXPECT_THAT(run("check a.company").output,
                HasSubstr("a.company is damaged, and can only be read: its last page is not whole\n"));
}

TEST_F(DamagedCompany, CopyThatWasMadeWithoutTheLogIsKnownForWhatItIs) {
    const store::OpenCompany opened = store::open_company(sound_, kernel::company_tables());
    opened.database->Execute("UPDATE Vendor_table SET vendor_no = 'B1' WHERE vendor_no = 'V1001'");
    std::filesystem::copy_file(sound_, copy());
    const Outcome outcome = run("check copy.company");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output,
                HasSubstr("copy.company is damaged, and can only be read: its log is missing"));
}

TEST_F(DamagedCompany, ProgramsSayWhatTheyHaveCopied) {
    const Outcome made = run("backup a.company copy.company");
    EXPECT_EQ(made.status, 0);
    EXPECT_EQ(made.output + made.errors, "");
    EXPECT_EQ(run("restore copy.company r.company").status, 0);
    EXPECT_EQ(run("check r.company").output, "books agree\n");
    EXPECT_EQ(run("restore copy.company r.company").errors, "brimley-company: r.company already exists\n");
    EXPECT_EQ(run("restore copy.company").status, 2);
    EXPECT_EQ(run("backup a.company postgresql:///books").errors,
              "brimley-company: a backup is a file, not a company on a server\n");
}

}  // namespace
}  // namespace brimley
