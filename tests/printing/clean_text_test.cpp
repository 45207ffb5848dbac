// Texts made fit for paper.
#include "printing/clean_text.h"

#include <gtest/gtest.h>

namespace brimley::testing {

using printing::clean_text;

namespace {

std::string clean(std::string_view text) { return clean_text(text, 1000); }

}  // namespace

TEST(CleanText, LeavesTextAsItIs) {
    EXPECT_EQ(clean(""), "");
    EXPECT_EQ(clean("Müller & Söhne, ภาษาไทย, 中文, 😀"), "Müller & Söhne, ภาษาไทย, 中文, 😀");
}

TEST(CleanText, ControlsAndLineEndsBecomeBlanks) {
    EXPECT_EQ(clean(std::string_view("a\0b\tc\r\nd\x7F", 9)), "a b c  d ");
    EXPECT_EQ(clean("a\u2028b\u2029c\u0085d"), "a b c d");
}

TEST(CleanText, BytesThatAreNoUtf8BecomeReplacementCharacters) {
    EXPECT_EQ(clean("a\xFFz"), "a\uFFFDz");
    EXPECT_EQ(clean("a\x80z"), "a\uFFFDz");
    EXPECT_EQ(clean("cut \xE4\xB8"), "cut \uFFFD\uFFFD");
    EXPECT_EQ(clean("\xC3("), "\uFFFD(");
}

TEST(CleanText, OverlongSurrogateAndTooLargeAreNoUtf8) {
    EXPECT_EQ(clean("\xC0\xAF"), "\uFFFD\uFFFD");
    EXPECT_EQ(clean("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(clean("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(clean("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(clean("\xF5\x80\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(CleanText, CodesThatNeverAreCharactersAreReplaced) {
    EXPECT_EQ(clean("\xEF\xBF\xBF"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(clean("\xEF\xB7\x90"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(clean("\xF4\x8F\xBF\xBE"), "\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(CleanText, LongTextsAreCutBetweenCharactersAndLookCut) {
    EXPECT_EQ(clean_text("abcdef", 6), "abcdef");
    EXPECT_EQ(clean_text("abcdefg", 6), "abcdef…");
    EXPECT_EQ(clean_text("中文中", 4), "中文…");
}

}  // namespace brimley::testing
