// The thirteen members of the host context: plain values that a host writes by their long or their short
// names, and that each form copies.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/sample_host.h"

namespace brimley::testing {

using frame::HostContext;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

namespace {

std::string text_of(const std::any& value) {
    if (const auto* text = std::any_cast<std::string>(&value)) return *text;
    if (const auto* number = std::any_cast<int>(&value)) return std::to_string(*number);
    return value.has_value() ? "something else" : "nothing";
}

template <class Object>
std::string text_of(const std::shared_ptr<Object>& object) {
    return object ? fmt::format("{}", static_cast<const void*>(object.get())) : "nothing";
}

// Every member as a text, in the order in which they are copied.
std::vector<std::string> members(const HostContext& context) {
    return {text_of(context.cnx),
            text_of(context.dbe),
            text_of(context.abcdb),
            context.OPEN_DATABASE,
            context.BASE_CURRENCY,
            context.BRIMLEY_COMPANY_NAME,
            context.BRIMLEY_PATH,
            context.BRIMLEY_USER,
            text_of(context.BRIMLEY_THEME),
            context.BRIMLEY_DATE_FORMAT,
            context.BRIMLEY_NO_PERIODS,
            context.BRIMLEY_FONT_NAME,
            text_of(context.BRIMLEY_FONT_SIZE)};
}

void fill(HostContext& context, const store::OpenCompany& company) {
    context.cnx = std::string("a connection");
    context.dbe = company.workspace;
    context.abcdb = company.database;
    context.OPEN_DATABASE = "books.brimley";
    context.BASE_CURRENCY = "USD";
    context.BRIMLEY_COMPANY_NAME = "Baywater";
    context.BRIMLEY_PATH = "C:\\Brimley";
    context.BRIMLEY_USER = "anna";
    context.BRIMLEY_THEME = 3;
    context.BRIMLEY_DATE_FORMAT = "dd/mm/yyyy";
    context.BRIMLEY_NO_PERIODS = "13";
    context.BRIMLEY_FONT_NAME = "Courier";
    context.BRIMLEY_FONT_SIZE = 11;
}

}  // namespace

class HostContextMembers : public ::testing::Test {
  protected:
    HostContextMembers() { fill(ap, company.open()); }
    // The members that differ from those before the action, by their place from 0.
    template <class Action>
    std::vector<std::size_t> changed_by(const Action& action) {
        const auto before = members(ap);
        action();
        const auto after = members(ap);
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < after.size(); ++i) {
            if (after[i] != before[i]) places.push_back(i);
        }
        return places;
    }

    CompanyCopy company{sample_original()};
    store::OpenCompany other = company.second_user();
    RecordingDesk desk;
    host::APclass ap{desk};
};

TEST_F(HostContextMembers, EachAliasWritesItsLongNameAndNothingElse) {
    EXPECT_THAT(changed_by([&] { ap.dbwkspace(other.workspace); }), ElementsAre(1));
    EXPECT_EQ(ap.dbe, other.workspace);
    EXPECT_THAT(changed_by([&] { ap.db(other.database); }), ElementsAre(2));
    EXPECT_EQ(ap.abcdb, other.database);
    EXPECT_THAT(changed_by([&] { ap.OPENdb("other.brimley"); }), ElementsAre(3));
    EXPECT_EQ(ap.OPEN_DATABASE, "other.brimley");
    EXPECT_THAT(changed_by([&] { ap.basecurrency("EUR"); }), ElementsAre(4));
    EXPECT_EQ(ap.BASE_CURRENCY, "EUR");
    EXPECT_THAT(changed_by([&] { ap.BRuser("ben"); }), ElementsAre(7));
    EXPECT_EQ(ap.BRIMLEY_USER, "ben");
    EXPECT_THAT(changed_by([&] { ap.BRtheme(std::string("dark")); }), ElementsAre(8));
    EXPECT_EQ(text_of(ap.BRIMLEY_THEME), "dark");
}

TEST_F(HostContextMembers, FormCopiesEveryMember) {
    ap.showform_APform_invoice();
    EXPECT_THAT(members(ap.frm_invoice->context()), ElementsAreArray(members(ap)));
}

TEST_F(HostContextMembers, FormKeepsEveryMemberWhenTheHostChangesItsOwn) {
    ap.showform_APform_invoice();
    const auto before = members(ap);
    static_cast<HostContext&>(ap) = HostContext();
    EXPECT_THAT(members(ap.frm_invoice->context()), ElementsAreArray(before));
    // What the form does goes by its own copy.
    EXPECT_EQ(ap.frm_invoice->press(105), controls::Refusal::none);
    EXPECT_EQ(ap.frm_invoice->cmbcurrency.text(), "USD");
    EXPECT_EQ(ap.frm_invoice->cmbperiod.items().size(), 13U);
}

TEST_F(HostContextMembers, TerminateTakesWorkspaceAndDatabaseAndLeavesAllElse) {
    EXPECT_THAT(changed_by([&] { ap.class_terminate(); }), ElementsAre(1, 2));
    EXPECT_EQ(ap.dbe, nullptr);
    EXPECT_EQ(ap.abcdb, nullptr);
    EXPECT_EQ(text_of(ap.cnx), "a connection");
}

}  // namespace brimley::testing
