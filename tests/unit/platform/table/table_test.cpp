#include "platform/table/table.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <streambuf>
#include <string>

#include "support/grouping_locale.h"

namespace {

// Counts how often it is written to.
class CountingBuffer : public std::streambuf {
  public:
    int writes = 0;

  protected:
    std::streamsize xsputn(const char*, std::streamsize count) override {
        ++writes;
        return count;
    }
    int_type overflow(int_type character) override {
        ++writes;
        return traits_type::not_eof(character);
    }
};

std::string Printed(TableSerializer& table) {
    std::ostringstream out;
    table.PrintTable(out);
    return out.str();
}

TEST(TableSerializerTest, ColumnsAreAsWideAsTheirWidestCellPlusLayout) {
    TableSerializer table(3, "Title", 4);
    table.sstream() << "No."
                    << "Unit"
                    << "Version";
    table.sstream() << 1 << "Controller"
                    << "1.10";
    table.sstream() << 20 << "A"
                    << "2";
    EXPECT_EQ(Printed(table),
              "Title\n"
              "No.    Unit          Version\n"
              "----------------------------\n"
              "1      Controller    1.10\n"
              "20     A             2\n"
              "\n");
}

TEST(TableSerializerTest, LayoutIsTheNumberOfBlanksBetweenColumns) {
    TableSerializer table(2, "T", 1);
    table.sstream() << "ab"
                    << "c";
    EXPECT_EQ(Printed(table), "T\nab c\n----\n\n");
}

TEST(TableSerializerTest, HeaderAloneIsPrintedWithItsRule) {
    TableSerializer table(2, "Scan Result", 4);
    table.sstream() << "No."
                    << "Slot";
    EXPECT_EQ(Printed(table), "Scan Result\nNo.    Slot\n-----------\n\n");
}

TEST(TableSerializerTest, TableWithoutCellsIsItsTitle) {
    TableSerializer table(2, "Nothing", 4);
    EXPECT_EQ(Printed(table), "Nothing\n\n");
}

TEST(TableSerializerTest, EmptyCellsKeepTheirColumn) {
    TableSerializer table(3, "T", 2);
    table.sstream() << "a"
                    << "b"
                    << "c";
    table.sstream() << ""
                    << ""
                    << "x";
    EXPECT_EQ(Printed(table), "T\na  b  c\n-------\n      x\n\n");
}

TEST(TableSerializerTest, CellsWithBlanksAreNotSplit) {
    TableSerializer table(2, "T", 2);
    table.sstream() << "Name"
                    << "Slot";
    table.sstream() << "Two Words"
                    << "PCI_Slot 3";
    EXPECT_EQ(Printed(table),
              "T\nName       Slot\n---------------------\nTwo Words  PCI_Slot 3\n\n");
}

TEST(TableSerializerTest, LinesEndWithoutBlanks) {
    TableSerializer table(3, "T", 4);
    table.sstream() << "a"
                    << "b"
                    << "c";
    table.sstream() << "1"
                    << ""
                    << "";
    table.sstream() << ""
                    << ""
                    << "";
    EXPECT_EQ(Printed(table), "T\na    b    c\n-----------\n1\n\n\n");
}

TEST(TableSerializerTest, MissingCellsOfTheLastRowAreEmpty) {
    TableSerializer table(3, "T", 1);
    table.sstream() << "a"
                    << "b"
                    << "c"
                    << "1"
                    << "2";
    EXPECT_EQ(Printed(table), "T\na b c\n-----\n1 2\n\n");
}

TEST(TableSerializerTest, WideAndCombiningCharactersLineUp) {
    TableSerializer table(2, "T", 2);
    table.sstream() << "Unit"
                    << "V";
    table.sstream() << "\u56fa\u4ef6"
                    << "1";
    table.sstream() << "cafe\u0301"
                    << "2";
    EXPECT_EQ(Printed(table),
              "T\n"
              "Unit  V\n"
              "-------\n"
              "\u56fa\u4ef6  1\n"
              "cafe\u0301  2\n"
              "\n");
}

TEST(TableSerializerTest, ControlBytesNeverBreakALine) {
    TableSerializer table(2, "Ti\ntle", 1);
    table.sstream() << "a"
                    << "b";
    table.sstream() << "x\r\ny"
                    << "z\x1b[2J";
    EXPECT_EQ(Printed(table), "Ti tle\na    b\n----------\nx  y z [2J\n\n");
}

TEST(TableSerializerTest, NumbersFollowNoLocaleAndNoFlags) {
    TableSerializer table(1, "T", 4);
    table.sstream() << "n" << 1234567 << -5;
    std::ostringstream out;
    out.imbue(test_support::GroupingLocale());
    out << std::hex << std::setw(40);
    table.PrintTable(out);
    EXPECT_EQ(out.str(), "T\nn\n-------\n1234567\n-5\n\n");
}

TEST(TableSerializerTest, WholeTableIsWrittenAtOnce) {
    TableSerializer table(2, "T", 4);
    for (int i = 0; i < 100; ++i) table.sstream() << i << "cell";
    CountingBuffer buffer;
    std::ostream out(&buffer);
    table.PrintTable(out);
    EXPECT_EQ(buffer.writes, 1);
}

TEST(TableSerializerTest, TableCanBePrintedTwice) {
    TableSerializer table(1, "T", 4);
    table.sstream() << "only";
    const std::string first = Printed(table);
    EXPECT_EQ(Printed(table), first);
}

TEST(TableSerializerTest, ZeroColumnsPrintAsOne) {
    TableSerializer table(0, "T", 4);
    table.sstream() << "a"
                    << "b";
    EXPECT_EQ(Printed(table), "T\na\n-\nb\n\n");
}

TEST(TableStreamTest, CellsAreKeptInOrder) {
    TableStream stream;
    stream << "text" << std::string("more text") << 7 << "";
    EXPECT_EQ(stream.Cells(), (std::vector<std::string>{"text", "more text", "7", ""}));
}

}  // namespace
