#include "DisplayText.h"

#include <gtest/gtest.h>

#include "TextTable.h"

namespace Sonarello {
namespace {

TEST(DisplayText, WritesControlCharactersOut) {
  EXPECT_EQ(VisibleText("a\r\n\tb"), "a\\r\\n\\tb");
  EXPECT_EQ(VisibleText(std::string_view("\0\x1b[2J\x7f", 6)), "\\x00\\x1B[2J\\x7F");
  EXPECT_EQ(VisibleText("\x9B"), "\\x9B");
  EXPECT_EQ(VisibleText("\u202Egpj"), "\\u202Egpj");
  EXPECT_EQ(VisibleText("ä ö ü"), "ä ö ü");
}

TEST(DisplayText, PutsAMessageOnOneLine) {
  EXPECT_EQ(OneLine("a\rb\nc\r\nd\n\re"), "a\\rb\\rc\\rd\\r\\re");
  EXPECT_EQ(OneLine("\r"), "\\r");
  EXPECT_EQ(OneLine(""), "");
}

TEST(DisplayText, KeepsANameToItsLineAndItsBytes) {
  EXPECT_EQ(NameOnOneLine("a\nb\tc"), "a\\nb\\tc");
  EXPECT_EQ(NameOnOneLine("M\xFC.mid"), "M\xFC.mid");
}

TEST(DisplayText, ShortensByCharacters) {
  EXPECT_EQ(Shortened("Grüße", 5), "Grüße");
  EXPECT_EQ(Shortened("Grüße", 4), "Grü…");
  EXPECT_EQ(Shortened("Grüße", 1), "…");
  EXPECT_EQ(TextWidth("Grüße"), 5U);
}

TEST(TextTable, AlignsByCharactersAndLeavesNoBlanksBehind) {
  TextTable table({{"Ü", Align::Right}, {"Name", Align::Left}, {"X", Align::Left}});
  table.AddRow({"10", "ä", ""});
  table.AddRow({"1", "abcdef", "z"});
  EXPECT_EQ(table.Render(), " Ü  Name    X\n10  ä\n 1  abcdef  z\n");
}

}  // namespace
}  // namespace Sonarello
