// New, edit, void, hold and release in random order: after every act the books agree.
//
// The seed is printed; BRIMLEY_SEED and BRIMLEY_ACTS set another seed and another length.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <random>

#include "company/check.h"
#include "support/sample_host.h"

namespace brimley::testing {

namespace {

std::uint64_t from_environment(const char* name, std::uint64_t otherwise) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::strtoull(value, nullptr, 10) : otherwise;
}

constexpr std::uint64_t kSeed = 20260316;
constexpr std::uint64_t kActs = 150;

}  // namespace

class RandomActs : public ::testing::Test {
  protected:
    RandomActs() { user.ap.showform_APform_invoice(); }

    std::size_t one_of(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    }
    template <std::size_t N>
    const char* pick(const char* const (&choices)[N]) {
        return choices[one_of(N)];
    }
    std::string amount() {
        return fmt::format("{:.2f}", std::uniform_int_distribution<int>(1, 500000)(random) / 100.0);
    }
    invoices::APform_invoice& form() { return *user.ap.frm_invoice; }
    void press(int id) {
        user.desk.answers = {one_of(8) != 0};
        EXPECT_EQ(form().press(id), controls::Refusal::none);
    }

    // A credit note with tax never balances, so most lines go without.
    void type_line(int row) {
        edit_line_cell(form(), row, "purchase account",
                       pick({"5000", "1200", "5310", "5900", "5000", "1200", "5310", "1990"}));
        edit_line_cell(
            form(), row, "tax code",
            pick({"GST5", "HALF10", "STACK", "EXP7", "SIX", "LEVY", "NOTAX", "NOTAX", "NOTAX", "NOTAX"}));
        edit_line_cell(form(), row, pick({"gross amount", "taxable amount"}), amount().c_str());
    }
    void enter_document() {
        const bool euro = one_of(4) == 0;
        EnteredInvoice document;
        document.kind = pick({"Invoice", "Invoice", "Debit Note", "Credit Note"});
        document.vendor = pick({"V1001", "V1002", "V1004"});
        document.currency = euro ? "EUR" : "USD";
        document.rate = euro ? "1.0837" : "";
        enter(form(), document);
        for (int row = 0; row <= static_cast<int>(one_of(3)); ++row)
            type_line(row);
        press(101);
        leave();
    }
    void edit_document() {
        press(106);
        if (form().mode() != frame::Mode::edit) return;
        const int row = static_cast<int>(one_of(3));
        if (one_of(3) == 0) {
            EXPECT_EQ(form().txtremark.type("edited"), controls::Refusal::none);
        } else {
            type_line(row);
        }
        press(101);
        leave();
    }
    // Out of New or Edit without saving, as after a refusal.
    void leave() {
        user.desk.answers = {false};
        if (form().mode() == frame::Mode::new_entry) static_cast<void>(form().press(105));
        if (form().mode() == frame::Mode::edit) static_cast<void>(form().press(106));
    }
    // Over the end of 2026, and not over the last year that is open.
    void let_days_pass() {
        const auto later = user.desk.clock.plus_days(static_cast<int>(one_of(9)));
        if (later.date_only() <= store::DateTime::from_iso("2027-12-31").value()) user.desk.clock = later;
    }
    void one_act() {
        switch (one_of(9)) {
            case 0:
            case 1:
            case 2:
                enter_document();
                break;
            case 3:
            case 4:
                edit_document();
                break;
            case 5:
                press(1008);
                break;
            case 6:
                press(one_of(2) == 0 ? 1009 : 1010);
                break;
            case 7:
                let_days_pass();
                break;
            default:
                press(static_cast<int>(107 + one_of(3)));
                if (one_of(4) == 0) press(static_cast<int>(1002 + one_of(3)));
        }
    }

    const bool random_is_given =
        std::getenv("BRIMLEY_SEED") != nullptr || std::getenv("BRIMLEY_ACTS") != nullptr;
    std::mt19937_64 random{from_environment("BRIMLEY_SEED", kSeed)};
    CompanyCopy company{sample_original()};
    DeskOfUser user{company.open()};
};

TEST_F(RandomActs, BooksAgreeAfterEveryAct) {
    std::cout << "BRIMLEY_SEED=" << from_environment("BRIMLEY_SEED", kSeed) << '\n';
    const std::uint64_t acts = from_environment("BRIMLEY_ACTS", kActs);
    std::map<std::string, int> told;
    for (std::uint64_t act = 1; act <= acts; ++act) {
        SCOPED_TRACE(fmt::format("act {}", act));
        one_act();
        EXPECT_EQ(form().mode(), frame::Mode::read);
        EXPECT_EQ(company::check_books(company.db()), company::Findings{});
        for (const std::string& message : user.messages())
            ++told[message];
        if (HasFailure()) {
            for (const auto& [message, times] : told)
                std::cout << times << ' ' << message << '\n';
            return;
        }
    }
    if (random_is_given) return;
    // The run of every day meets each of these.
    EXPECT_GT(told["Update complete"], 0);
    EXPECT_GT(told["Update failed."], 0);
    for (const char* rows : {"void = TRUE", "hold = TRUE", "doctype = 'vcn'", "Currency = 'EUR'"})
        EXPECT_NE(company.list(std::string("SELECT docno FROM AP_header_table WHERE ") + rows), "") << rows;
}

}  // namespace brimley::testing
