#include "controls/text_array.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>

#ifdef BRIMLEY_SANITIZED
// The sanitizer's allocator has it, but Debian's compiler brings no header that says so.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#else
#include <malloc.h>
#endif

namespace {

// What the program holds on the heap, as its allocator tells.
std::size_t bytes_in_use() {
#ifdef BRIMLEY_SANITIZED
    return __sanitizer_get_current_allocated_bytes();
#else
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
#endif
}

}  // namespace

namespace brimley::testing {

using controls::TextArray;

TEST(TextArrays, CellThatWasNeverSetIsEmpty) {
    TextArray array;
    array.dimension(2);
    EXPECT_EQ(array.get(0, 0), "");
    EXPECT_EQ(array.get(1, 50), "");
    EXPECT_EQ(array.get(2, 0), "");
    EXPECT_EQ(array.get(-1, 0), "");
    EXPECT_EQ(array.get(0, -1), "");
}

TEST(TextArrays, SettingACellMakesTheRowsUpToIt) {
    TextArray array;
    array.set(4, 3, "x");
    EXPECT_EQ(array.rows(), 5);
    EXPECT_EQ(array.get(4, 3), "x");
    EXPECT_EQ(array.used_rows(), 5);
}

TEST(TextArrays, ColumnThatCannotBeIsIgnored) {
    TextArray array;
    array.dimension(1);
    array.set(0, -1, "x");
    array.set(0, 255, "x");
    array.set(-1, 0, "x");
    EXPECT_EQ(array.used_rows(), 0);
    array.set(0, 254, "x");
    EXPECT_EQ(array.get(0, 254), "x");
}

TEST(TextArrays, RowWhoseCellsAreEmptiedIsUnused) {
    TextArray array;
    array.set(0, 1, "a");
    array.set(2, 1, "b");
    array.set(2, 1, "");
    EXPECT_EQ(array.used_rows(), 1);
    array.clear_row(0);
    EXPECT_EQ(array.used_rows(), 0);
    EXPECT_EQ(array.rows(), 3);
}

TEST(TextArrays, CellMayTakeTheTextOfAnotherCellOfItsRow) {
    TextArray array;
    array.set(0, 0, "a text that is longer than any short one");
    array.set(0, 1, "b");
    array.set(0, 1, array.get(0, 0));
    array.set(0, 0, array.get(0, 0));
    EXPECT_EQ(array.get(0, 1), "a text that is longer than any short one");
    EXPECT_EQ(array.get(0, 0), array.get(0, 1));
}

TEST(TextArrays, TextsOfAnyLengthAndContentReturnAsTheyWere) {
    TextArray array;
    for (const std::size_t length : {1U, 127U, 128U, 254U, 255U, 256U, 70000U}) {
        const std::string text = std::string(length - 1, '\0') + "\xff";
        array.set(0, 1, "before");
        array.set(0, 2, text);
        array.set(0, 3, "behind");
        EXPECT_EQ(array.get(0, 1), "before");
        EXPECT_EQ(array.get(0, 2), text);
        EXPECT_EQ(array.get(0, 3), "behind");
    }
}

TEST(TextArrays, InsertedAndDeletedRowsMoveTheOnesBelow) {
    TextArray array;
    for (int row = 0; row < 3; ++row)
        array.set(row, 0, std::to_string(row));
    array.insert_row(1);
    EXPECT_EQ(array.rows(), 4);
    EXPECT_EQ(array.get(1, 0), "");
    EXPECT_EQ(array.get(2, 0), "1");
    array.delete_row(0);
    EXPECT_EQ(array.get(0, 0), "");
    EXPECT_EQ(array.get(1, 0), "1");
    array.delete_row(17);
    array.insert_row(17);
    EXPECT_EQ(array.rows(), 3);
}

TEST(TextArrays, DimensioningForgetsWhatWasThere) {
    TextArray array;
    array.set(0, 0, "x");
    array.dimension(4);
    EXPECT_EQ(array.rows(), 4);
    EXPECT_EQ(array.used_rows(), 0);
}

TEST(TextArrays, RandomActsLeaveWhatAMapOfCellsHolds) {
    constexpr unsigned kSeed = 20260316;
    SCOPED_TRACE(kSeed);
    std::mt19937 random(kSeed);
    const auto up_to = [&](unsigned most) { return static_cast<int>(random() % (most + 1)); };
    TextArray array;
    std::map<std::pair<int, int>, std::string> expected;
    for (int i = 0; i < 20000; ++i) {
        const std::pair<int, int> cell{up_to(9), up_to(20)};
        const std::string text(static_cast<std::size_t>(up_to(300)) / (1 + i % 40),
                               static_cast<char>('a' + i % 26));
        array.set(cell.first, cell.second, text);
        expected[cell] = text;
        ASSERT_EQ(array.get(cell.first, cell.second), text);
    }
    for (const auto& [cell, text] : expected)
        ASSERT_EQ(array.get(cell.first, cell.second), text);
}

TEST(TextArrays, MillionRowsOfFourteenShortCellsTakeLessThan200Megabytes) {
    // A hundredth of it is measured: every row costs the same.
    constexpr int kRows = 10000;
    constexpr std::size_t kBytesOfAMillionRows = 200'000'000;
    const std::size_t before = bytes_in_use();
    TextArray array;
    array.dimension(kRows);
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < 14; ++column)
            array.set(row, column, "1,234.5");
    }
    const std::size_t held = bytes_in_use() - before;
    EXPECT_GT(held, kRows * 14U * 7U);
    EXPECT_LT(held, kBytesOfAMillionRows / (1'000'000 / kRows));
    EXPECT_EQ(array.get(kRows - 1, 13), "1,234.5");
}

}  // namespace brimley::testing
