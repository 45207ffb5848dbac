// Entries as texts, and the files that hold them.
#include "entries/entry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "entries/entry_file.h"
#include "support/temporary_folder.h"

namespace brimley::testing {
namespace {

using controls::Act;
using entries::Entry;
using entries::EntryFile;
using entries::EntryHead;
using entries::Pending;
using entries::Step;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

store::DateTime at(const char* text) { return store::DateTime::from_iso(text).value(); }

EntryHead head_of(const std::string& form = "APform_invoice", const char* begun = "2026-03-16 09:30:00") {
    return {"/home/anna/company.brimley", "anna", form, at(begun)};
}

const Step kNew{at("2026-03-16 09:30:00"), {.kind = Act::Kind::press, .row = 105}};
const Step kTyped{at("2026-03-16 09:30:07"),
                  {.kind = Act::Kind::type, .control = "txtremark", .text = "a\tb\\t\nc \xc3\xa4"},
                  {true, false},
                  "IP-26-00001, 10.00"};

TEST(EntryText, HoldsEveryFieldWhateverIsInIt) {
    EntryHead head = head_of();
    head.edit = true;
    head.document = "IP-26-00007";
    head.document_key = "1ip-7";
    const Step of_kind{at("2026-03-17"), {Act::Kind::type_range, "dates", 3, -1, "01/01/2026", "31/12/2026"}};
    const auto entry =
        entries::read_entry(entries::line_of(head) + entries::line_of(kNew) + entries::line_of(kTyped) +
                            entries::line_of(of_kind) + entries::line_of_stood("txttotal", "10.00") +
                            entries::line_of_stood("txttotal", "12.00"));
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->head.company, "/home/anna/company.brimley");
    EXPECT_EQ(entry->head.user, "anna");
    EXPECT_EQ(entry->head.form, "APform_invoice");
    EXPECT_EQ(entry->head.begun, at("2026-03-16 09:30:00"));
    EXPECT_TRUE(entry->head.edit);
    EXPECT_EQ(entry->head.document, "IP-26-00007");
    EXPECT_EQ(entry->head.document_key, "1ip-7");
    ASSERT_THAT(entry->steps, SizeIs(3));
    EXPECT_EQ(entry->steps[1].act, kTyped.act);
    EXPECT_EQ(entry->steps[1].at, kTyped.at);
    EXPECT_THAT(entry->steps[1].answers, ElementsAre(true, false));
    EXPECT_EQ(entry->steps[1].row_label, kTyped.row_label);
    EXPECT_EQ(entry->steps[2].act, of_kind.act);
    EXPECT_EQ(entry->stood.at("txttotal"), "12.00");
    EXPECT_FALSE(entry->pending.has_value());
    EXPECT_FALSE(entry->save_in_doubt);
}

TEST(EntryText, EveryKindOfActIsReadAsItWasWritten) {
    for (int kind = 0; kind <= static_cast<int>(Act::Kind::host_call); ++kind) {
        const Step step{at("2026-03-16"), {static_cast<Act::Kind>(kind), "dbgrid1", 2, 5, "x"}};
        const auto entry = entries::read_entry(entries::line_of(head_of()) + entries::line_of(step));
        ASSERT_TRUE(entry.has_value()) << kind;
        EXPECT_EQ(entry->steps.front().act, step.act) << kind;
    }
}

// A power cut leaves the beginning of a line.
TEST(EntryText, EndsAtALineThatWasCutOff) {
    const std::string whole = entries::line_of(head_of()) + entries::line_of(kNew);
    const std::string more = entries::line_of(kTyped);
    for (std::size_t length = 0; length < more.size(); ++length) {
        const auto entry = entries::read_entry(whole + more.substr(0, length));
        ASSERT_TRUE(entry.has_value()) << length;
        EXPECT_THAT(entry->steps, SizeIs(1)) << length;
    }
    EXPECT_THAT(entries::read_entry(whole + more)->steps, SizeIs(2));
}

TEST(EntryText, OtherTextsAreNone) {
    EXPECT_FALSE(entries::read_entry("").has_value());
    EXPECT_FALSE(entries::read_entry("brimley entry 2\n").has_value());
    EXPECT_FALSE(entries::read_entry(entries::line_of(head_of())).has_value());
    EXPECT_FALSE(entries::read_entry("brimley entry 1\n" + entries::line_of(kNew)).has_value());
}

TEST(EntryText, WhatIsPendingIsSoUntilTheNextAct) {
    const std::string begun = entries::line_of(head_of()) + entries::line_of(kNew);
    const Pending pending{"dbgrid1", 3, 4, "12."};
    const std::string typing =
        begun + entries::line_of(Pending{"dbgrid1", 3, 4, "1"}) + entries::line_of(pending);
    EXPECT_EQ(entries::read_entry(typing)->pending, pending);
    EXPECT_FALSE(entries::read_entry(typing + entries::line_of(kTyped))->pending.has_value());
}

TEST(EntryText, SaveIsInDoubtUntilItComesBackAndWhenItSaysSo) {
    const std::string begun = entries::line_of(head_of()) + entries::line_of(kNew);
    const Step save{at("2026-03-16"), {.kind = Act::Kind::press, .row = 101}};
    EXPECT_TRUE(entries::read_entry(begun + entries::line_of_saving())->save_in_doubt);
    const std::string refused = begun + entries::line_of_saving() + entries::line_of(save);
    EXPECT_FALSE(entries::read_entry(refused)->save_in_doubt);
    EXPECT_TRUE(entries::read_entry(refused + entries::line_of_doubt(true))->save_in_doubt);
}

class EntryFiles : public ::testing::Test {
  protected:
    std::vector<std::string> kept(const std::string& form = "") {
        std::vector<std::string> forms;
        for (const entries::KeptEntry& each :
             entries::kept_entries(place, "/home/anna/company.brimley", "anna", form))
            forms.push_back(each.entry.head.form + " " + each.entry.head.begun.iso());
        return forms;
    }
    void leave(const EntryHead& head, const std::string& more = {}) {
        EntryFile file(place);
        file.append(entries::line_of(head) + entries::line_of(kNew) + entries::line_of(kTyped) + more);
    }

    TemporaryFolder folder;
    std::filesystem::path place = folder.file("entries");
};

TEST_F(EntryFiles, AreFoundNewestFirstByCompanyUserAndForm) {
    EXPECT_THAT(kept(), IsEmpty());
    leave(head_of("APform_invoice", "2026-03-16"));
    leave(head_of("APform_payment", "2026-03-17"));
    EntryHead other = head_of();
    other.company = "/home/anna/other.brimley";
    leave(other);
    other = head_of();
    other.user = "bert";
    leave(other);
    EXPECT_THAT(kept(), ElementsAre("APform_payment 2026-03-17", "APform_invoice 2026-03-16"));
    EXPECT_THAT(kept("APform_invoice"), ElementsAre("APform_invoice 2026-03-16"));
}

TEST_F(EntryFiles, ThatSomebodyWritesAreNotFound) {
    {
        EntryFile file(place);
        file.append(entries::line_of(head_of()) + entries::line_of(kNew) + entries::line_of(kTyped));
        EXPECT_THAT(kept(), IsEmpty());
    }
    EXPECT_THAT(kept(), SizeIs(1));
}

TEST_F(EntryFiles, ThatIsBeingTakenUpIsNobodyElses) {
    leave(head_of());
    const auto path = entries::kept_entries(place, "/home/anna/company.brimley", "anna", "").front().path;
    {
        const entries::EntryClaim claim(path);
        EXPECT_TRUE(claim.is_held());
        EXPECT_FALSE(entries::EntryClaim(path).is_held());
        EXPECT_THAT(kept(), IsEmpty());
    }
    EXPECT_TRUE(entries::EntryClaim(path).is_held());
    entries::remove_entry(path);
    EXPECT_FALSE(entries::EntryClaim(path).is_held());
}

TEST_F(EntryFiles, InWhichNothingWasEnteredAreRemoved) {
    EntryFile(place).append(entries::line_of(head_of()) + entries::line_of(kNew));
    EXPECT_THAT(kept(), IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(place));
}

TEST_F(EntryFiles, AreForTheirOwnerAlone) {
    leave(head_of());
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(place).permissions(), perms::owner_all);
    for (const auto& file : std::filesystem::directory_iterator(place))
        EXPECT_EQ(file.status().permissions(), perms::owner_read | perms::owner_write);
}

TEST_F(EntryFiles, ThatAreNoEntriesAreLeftAlone) {
    leave(head_of());
    std::ofstream(place / "7.entry") << "brimley entry 1\nsomething else\n";
    std::ofstream(place / "note.txt") << entries::line_of(head_of()) << entries::line_of(kNew);
    EXPECT_THAT(kept(), SizeIs(1));
    EXPECT_TRUE(std::filesystem::exists(place / "7.entry"));
}

// The program ended while it took an entry up: the entry that it took is the whole one.
TEST_F(EntryFiles, OfAnEntryThatWasBeingTakenUpTheFirstOneCounts) {
    leave(head_of("APform_invoice", "2026-03-16"));
    leave(head_of("APform_invoice", "2026-03-17"), entries::line_of_taken_from("1.entry"));
    EXPECT_THAT(kept(), ElementsAre("APform_invoice 2026-03-16"));
    EXPECT_FALSE(std::filesystem::exists(place / "2.entry"));
}

TEST_F(EntryFiles, RemovedOneIsGone) {
    EntryFile file(place);
    file.append(entries::line_of(head_of()) + entries::line_of(kNew));
    file.remove();
    EXPECT_TRUE(std::filesystem::is_empty(place));
}

TEST_F(EntryFiles, PlaceThatIsNoFolderIsReported) {
    std::ofstream(place) << "a file";
    EXPECT_THROW(EntryFile{place}, std::system_error);
}

}  // namespace
}  // namespace brimley::testing
