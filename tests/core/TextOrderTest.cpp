#include "core/TextOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/TextEncoding.h"

namespace Sonarello {
namespace {

TEST(SmallLetters, AreMadeOfLatinCapitals) {
  EXPECT_EQ(SmallLetters("AZaz[@09 GRAND"), "azaz[@09 grand");
  EXPECT_EQ(SmallLetters("ÄÖÜÀÞß×÷ÿŸ"), "äöüàþß×÷ÿÿ");
  EXPECT_EQ(SmallLetters("ĀāĶķĹĺŇňŊŋŶŷŹźŽž"), "āāķķĺĺňňŋŋŷŷźźžž");
  EXPECT_EQ(SmallLetters("Ŀŀ"), "ŀŀ") << "their first bytes differ";
}

TEST(SmallLetters, LeaveWhatHasNoCapitalsInLatinScript) {
  EXPECT_EQ(SmallLetters("ĸŉſ"), "ĸŉſ");
  EXPECT_EQ(SmallLetters("İı"), "İı");
  EXPECT_EQ(SmallLetters("ピアノ Ж 🎹"), "ピアノ Ж 🎹");
  EXPECT_EQ(SmallLetters("\xC4\xFF"), "\xC4\xFF");
  EXPECT_EQ(SmallLetters("\xC4"
                         "A\xC3"),
            "\xC4"
            "a\xC3");
  EXPECT_EQ(SmallLetters(""), "");
}

TEST(SmallLetters, KeepTheLengthOfEveryCharacter) {
  for (char32_t code = 1; code < 0x10000; ++code) {
    if (code == 0xD800) code = 0xE000;  // surrogates
    std::string text;
    AppendUTF8(text, code);
    const std::string small = SmallLetters(text);
    ASSERT_EQ(small.size(), text.size()) << text;
    ASSERT_TRUE(IsUTF8(small)) << text;
    ASSERT_EQ(SmallLetters(small), small) << text;
  }
}

TEST(TextOrder, LettersOfAnyCaseStandTogether) {
  EXPECT_TRUE(CompareTexts("apple", "Banana") < 0);
  EXPECT_TRUE(CompareTexts("Apple", "banana") < 0);
  EXPECT_TRUE(CompareTexts("ÄPFEL", "äpfeln") < 0);
  EXPECT_TRUE(CompareTexts("Žeta", "ži") < 0);
  EXPECT_TRUE(CompareTexts("žeta", "Ži") < 0);
  EXPECT_TRUE(CompareTexts("Piano", "Piano 1") < 0);
  EXPECT_TRUE(CompareTexts("", "a") < 0);
}

TEST(TextOrder, OnlyEqualTextsCompareEqual) {
  EXPECT_TRUE(CompareTexts("Piano", "Piano") == 0);
  EXPECT_TRUE(CompareTexts("", "") == 0);
  EXPECT_TRUE(CompareTexts("Piano", "piano") < 0);
  EXPECT_TRUE(CompareTexts("ä", "\xE4") < 0) << "bytes that are no text stand behind";
}

TEST(TextOrder, SortsWhateverStandsInAFile) {
  std::vector<std::string> texts = {"",      "b",    "B",  "ä",        "Ä",  "\xC3",
                                    "\xE4",  "\xFF", "€a", "z\xC3z",   "Žb", "ža",
                                    "a\x80", "A",    "𝄞",  "\xE2\x82", "€",  "z"};
  for (const std::string& a : texts)
    for (const std::string& b : texts) {
      EXPECT_EQ(CompareTexts(a, b) < 0, CompareTexts(b, a) > 0) << a << " " << b;
      EXPECT_EQ(CompareTexts(a, b) == 0, a == b) << a << " " << b;
      for (const std::string& c : texts)
        if (CompareTexts(a, b) < 0 && CompareTexts(b, c) < 0) {
          EXPECT_TRUE(CompareTexts(a, c) < 0) << a << " " << b << " " << c;
        }
    }
}

}  // namespace
}  // namespace Sonarello
