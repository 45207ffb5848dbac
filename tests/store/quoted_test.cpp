// Values put into query texts: whatever they hold, they are values, or the text is refused.
#include <gtest/gtest.h>

#include <random>

#include "kernel/store/postgresql/postgresql_values.h"
#include "store/small_company.h"
#include "support/expect_error.h"

namespace brimley {
namespace {

using store::ErrorKind;
using testing::expect_error;
using testing::SmallCompany;

// Pieces that mean something to the dialect or to an engine, next to arbitrary bytes.
std::string random_value(std::mt19937& random, bool with_quote) {
    static const std::vector<std::string> kPieces = {
        "\"",         ";",    "--",        "/*",          "*/",
        "\\",         "\n",   "\r",        "\t",          std::string(1, '\0'),
        "\x1a",       "\xff", "\xc3",      "]",           "[",
        "(",          ")",    " OR 1 = 1", " AND ",       "DELETE * FROM Header_table",
        "%",          "?",    "?1",        "$1",          "TRUE",
        "Datevalue(", ",",    "=",         "\xe2\x80\x99"};
    std::string value;
    const auto pieces = random() % 6;
    for (unsigned i = 0; i < pieces; ++i) {
        if (random() % 3 == 0)
            value += static_cast<char>(random() % 256);
        else
            value += kPieces[random() % kPieces.size()];
    }
    std::erase(value, '\'');
    if (with_quote) value.insert(random() % (value.size() + 1), 1, '\'');
    return value;
}

class Quoted : public ::testing::Test {
  protected:
    SmallCompany company_;
    const unsigned seed_ = std::random_device{}();
};

TEST_F(Quoted, StandsBetweenSingleQuotes) {
    EXPECT_EQ(store::quoted("A-1"), "'A-1'");
    EXPECT_EQ(store::quoted(""), "''");
    EXPECT_EQ(store::date_value(*store::DateTime::from_ymd(2026, 1, 5)), "Datevalue('Jan 05, 2026')");
}

// What a server refuses to keep is refused without harm to the transaction.
TEST_F(Quoted, AnyBytesButAQuoteAreFoundAgainOrRefused) {
    SCOPED_TRACE("seed " + std::to_string(seed_));
    std::mt19937 random(seed_);
    company_.workspace().BeginTrans();
    for (int round = 0; round < 2000; ++round) {
        const std::string value = random_value(random, false);
        if (testing::tests_run_on_server() && !store::is_storable_text(value)) {
            expect_error(store::ErrorKind::conversion, [&] {
                company_.add("Header_table", {{"docno", value}});
            });
            expect_error(store::ErrorKind::conversion, [&] {
                company_.db().Execute("DELETE * FROM Header_table WHERE docno = " + store::quoted(value));
            });
            continue;
        }
        company_.add("Header_table", {{"docno", value}, {"amount", round}});
        const std::string condition =
            "docno = " + store::quoted(value) + " AND amount = " + std::to_string(round);
        auto row = company_.snapshot("SELECT * FROM Header_table WHERE " + condition);
        ASSERT_EQ(row.RecordCount(), 1);
        ASSERT_EQ(row.text("docno"), value);
        auto all = company_.dynaset("SELECT * FROM Header_table");
        all.FindFirst(condition);
        ASSERT_FALSE(all.NoMatch());
        ASSERT_EQ(company_.db().Execute("UPDATE Header_table SET vendor_no = " + store::quoted(value) +
                                        " WHERE " + condition),
                  1);
        all.FindFirst("vendor_no = " + store::quoted(value) + " AND amount = " + std::to_string(round));
        ASSERT_EQ(all.text("vendor_no"), value);
    }
}

TEST_F(Quoted, AQuoteInTheValueBreaksTheTextWhereverItStands) {
    SCOPED_TRACE("seed " + std::to_string(seed_));
    std::mt19937 random(seed_);
    company_.add("Header_table", {{"docno", "A1"}});
    for (int round = 0; round < 500; ++round) {
        const std::string value = store::quoted(random_value(random, true));
        auto all = company_.dynaset("SELECT * FROM Header_table");
        for (const std::string& condition :
             {"docno = " + value, value + " = docno", "docno = 'x' OR docno = " + value + " OR docno = 'A1'",
              "invoice_date = Datevalue(" + value + ")", "docno = UCASE(" + value + ")",
              "(docno = " + value + ")"}) {
            expect_error(ErrorKind::syntax,
                         [&] { (void)company_.snapshot("SELECT * FROM Header_table WHERE " + condition); });
            expect_error(ErrorKind::syntax, [&] { all.FindFirst(condition); });
            expect_error(ErrorKind::syntax,
                         [&] { company_.db().Execute("DELETE * FROM Header_table WHERE " + condition); });
        }
        expect_error(ErrorKind::syntax, [&] {
            company_.db().Execute("UPDATE Header_table SET docno = " + value + ", paid = TRUE");
        });
        expect_error(ErrorKind::syntax,
                     [&] { (void)company_.snapshot("SELECT " + value + " AS x FROM Header_table"); });
    }
    EXPECT_EQ(company_.list("SELECT docno FROM Header_table WHERE paid = FALSE"), "A1");
}

TEST_F(Quoted, RawQuoteFromOutsideNeverReachesTheEngine) {
    company_.add("Header_table", {{"docno", "A1"}});
    for (const char* const value : {"'", "x' OR 1 = 1", "'; DELETE * FROM Header_table", "A1'--", "''"}) {
        const std::string condition = "docno = '" + std::string(value) + "'";
        expect_error(ErrorKind::syntax,
                     [&] { company_.db().Execute("DELETE * FROM Header_table WHERE " + condition); });
    }
    EXPECT_EQ(company_.count("Header_table"), 1);
}

}  // namespace
}  // namespace brimley
