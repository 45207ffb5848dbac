// Texts put together at random from the words of the dialect: each is refused by the dialect itself or runs.
// The engine never sees one that it has to refuse.
#include <gtest/gtest.h>

#include <random>

#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using testing::SmallCompany;

class RandomText : public ::testing::Test {
  protected:
    void SetUp() override {
        company_.add("Header_table", {{"docno", "a"}, {"amount", 1}});
        company_.add("Line_table", {{"docno", "a"}, {"open_amount", 1}});
        company_.workspace().BeginTrans();
    }

    std::string pick(std::initializer_list<const char*> from) {
        return from.begin()[random_() % from.size()];
    }

    // Grows towards texts that are valid more often than a mere heap of words would be.
    std::string value(int depth) {
        if (depth > 4 || random_() % 3 == 0)
            return pick({"docno", "amount", "[paid]", "Header_table.hold", "invoice_date", "'x'", "'12'",
                         "''", "5", "0.5", "TRUE", "NULL", "Datevalue('Jan 5, 2026')", "Datevalue('x')",
                         "nothing", "open_amount", "-1"});
        switch (random_() % 8) {
            case 0:
                return "(" + value(depth + 1) + ")";
            case 1:
                return "-" + value(depth + 1);
            case 2:
                return pick({"UCASE", "VAL", "MAX", "SUM", "COUNT", "MIN"}) + "(" + value(depth + 1) + ")";
            case 3:
                return value(depth + 1) + pick({" + ", " - ", " * ", " / "}) + value(depth + 1);
            case 4:
                return value(depth + 1) + pick({" = ", " <> ", " < ", ">=", "<=", " > "}) + value(depth + 1);
            case 5:
                return value(depth + 1) + pick({" AND ", " OR "}) + value(depth + 1);
            case 6:
                return "NOT " + value(depth + 1);
            default:
                return value(depth + 1) + pick({" IS NULL", " IS NOT NULL"});
        }
    }

    std::string select(int depth) {
        std::string text = "SELECT " + pick({"*", "Header_table.*", "docno, amount AS x", "COUNT(*)", ""});
        if (random_() % 2 == 0) text += ", " + value(2) + pick({"", " AS docno", " AS y"});
        text += " FROM ";
        if (depth < 2 && random_() % 4 == 0)
            text += "(" + select(depth + 1) + ")";
        else
            text += pick({"Header_table", "[Line_table]", "Header_table, Line_table",
                          "(Header_table INNER JOIN Line_table ON Header_table.docno = Line_table.docno)"});
        if (random_() % 2 == 0) text += " WHERE " + value(0);
        if (depth == 0 && random_() % 3 == 0)
            text += " ORDER BY " + value(2) + pick({"", " DESC", ", docno"});
        return text;
    }

    std::string text() {
        std::string text = select(0);
        if (random_() % 4 == 0)
            text = "UPDATE Header_table SET " + pick({"amount", "docno", "paid", "invoice_date"}) + " = " +
                   value(1) + " WHERE " + value(1);
        // One wrong character at a random place.
        if (random_() % 4 == 0) text[random_() % text.size()] = static_cast<char>(random_() % 256);
        return text;
    }

    // Whether the text ran.
    bool runs(const std::string& text) {
        try {
            if (text.starts_with("UPDATE")) {
                company_.db().Execute(text);
                return true;
            }
            for (const auto kind : {store::RecordsetKind::dynaset, store::RecordsetKind::snapshot}) {
                auto rows = company_.db().OpenRecordset(text, kind);
                rows.MoveLast();
                (void)rows.at_eof();
            }
            return true;
        } catch (const store::Error& error) {
            EXPECT_EQ(error.native_code(), 0) << text << "\n" << error.what();
            EXPECT_TRUE(error.kind() == ErrorKind::syntax || error.kind() == ErrorKind::name ||
                        error.kind() == ErrorKind::conversion)
                << text << "\n"
                << error.what();
            return false;
        }
    }

    SmallCompany company_;
    const unsigned seed_ = std::random_device{}();
    std::mt19937 random_{seed_};
};

TEST_F(RandomText, IsRefusedByTheDialectOrRuns) {
    SCOPED_TRACE("seed " + std::to_string(seed_));
    int ran = 0;
    for (int round = 0; round < 5000; ++round)
        ran += runs(text()) ? 1 : 0;
    EXPECT_GT(ran, 50);
}

}  // namespace
}  // namespace brimley
