// Texts as they may stand in a terminal.
#include <gtest/gtest.h>

#include "kernel/visible_text.h"

namespace brimley {
namespace {

using kernel::visible_text;

TEST(VisibleText, OrdinaryTextStaysAsItIs) {
    for (const char* const text :
         {"", "Müller & Söhne", "C:\\new\\x1b", "\"quoted\" 'too'", "Ωμέγα 日本 🧾",
          "a\xc2\xa0"
          "b",
          "שלום"})
        EXPECT_EQ(visible_text(text), text);
}

TEST(VisibleText, LineBreaksAndTabsAreWrittenAsInScripts) { EXPECT_EQ(visible_text("a\nb\tc"), "a\\nb\\tc"); }

TEST(VisibleText, ControlCharactersAreWrittenByTheirCode) {
    EXPECT_EQ(visible_text("\x1b[31mred"), "\\x1b[31mred");
    EXPECT_EQ(visible_text("paid\rowed\x07\x08\x7f"), "paid\\x0dowed\\x07\\x08\\x7f");
    EXPECT_EQ(visible_text(std::string_view("a\0b", 3)), "a\\x00b");
    for (int code = 0; code < 0x20; ++code) {
        const std::string visible = visible_text(std::string(1, static_cast<char>(code)));
        EXPECT_EQ(visible.front(), '\\') << code;
    }
}

TEST(VisibleText, ControlCharactersOfTwoBytesAreWrittenByTheirCode) {
    EXPECT_EQ(visible_text("\xc2\x9b"
                           "31m"),
              "\\x9b31m");
    EXPECT_EQ(visible_text("\xc2\x80\xc2\x85\xc2\x9f\xc2\xa0"), "\\x80\\x85\\x9f\xc2\xa0");
}

TEST(VisibleText, BytesThatAreNoTextAreWrittenByTheirCode) {
    EXPECT_EQ(visible_text("\x9b"
                           "31m"),
              "\\x9b31m");
    EXPECT_EQ(visible_text("a\xc3"), "a\\xc3");
    EXPECT_EQ(visible_text("\xc0\x9b\xed\xa0\x80\xf8"), "\\xc0\\x9b\\xed\\xa0\\x80\\xf8");
    EXPECT_EQ(visible_text("\xe2\x82|\xe2\x82\xac"), "\\xe2\\x82|\xe2\x82\xac");
    EXPECT_EQ(visible_text("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
}

TEST(VisibleText, CharactersThatTurnTheDirectionAreWrittenByTheirCode) {
    EXPECT_EQ(visible_text("pay \u202e000,1\u202c EUR"), "pay \\u202e000,1\\u202c EUR");
    EXPECT_EQ(visible_text("\u2066a\u2069"), "\\u2066a\\u2069");
}

}  // namespace
}  // namespace brimley
