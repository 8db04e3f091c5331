#include "editors/XFChordText.h"

#include <gtest/gtest.h>

#include "editors/EventTexts.h"
#include "helpers/InGerman.h"

namespace Sonarello {

namespace {

TEST(XFChords, HaveRootAccidentalTypeAndBass) {
  EXPECT_EQ(XFChordName({0x31, 0, 0x31, 0}, false), "C");
  EXPECT_EQ(XFChordName({0x44, 10, 0x7F, 0x7F}, false), "F#m7");
  EXPECT_EQ(XFChordName({0x44, 10, 0x31, 0x7F}, false), "F#m7/C");
  EXPECT_EQ(XFChordName({0x31, 0, 0x35, 8}, false), "C/Gm");
  EXPECT_EQ(XFChordName({0x01, 2, 0x7F, 0x7F}, false), "CbbbM7");
  EXPECT_EQ(XFChordName({0x31, 99, 0x7F, 0x7F}, false), "C???");
}

TEST(XFChords, CancelAndNoChordStandAlone) {
  EXPECT_EQ(XFChordName({0x31, 34, 0x35, 0}, false), "cc");
  EXPECT_EQ(XFChordName({0x31, 127, 0x35, 0}, false), "no-chord");
  const InGerman german;
  EXPECT_EQ(XFChordName({0x31, 127, 0x35, 0}, false), "kein-Akkord");
}

TEST(XFChords, GermanSpellingsCallBHAndBbB) {
  EXPECT_EQ(XFChordName({0x37, 0, 0x7F, 0x7F}, true), "H");
  EXPECT_EQ(XFChordName({0x27, 0, 0x7F, 0x7F}, true), "B");
  EXPECT_EQ(XFChordName({0x46, 19, 0x7F, 0x7F}, true), "B7");
}

TEST(XFChords, EveryNameLeadsBackToItself) {
  for (const bool german : {false, true})
    for (int root = 0; root < 0x70; ++root)
      for (int type = 0; type < 38; ++type)
        for (const int bass : {0x7F, 0x31, 0x45, 0x27}) {
          const TXFChordBytes chord = {static_cast<std::uint8_t>(root), static_cast<std::uint8_t>(type),
                                       static_cast<std::uint8_t>(bass), 0x7F};
          const std::string name = XFChordName(chord, german);
          const auto read = XFChordOfName(name, german);
          ASSERT_TRUE(read) << name;
          ASSERT_EQ(XFChordName(*read, german), name);
        }
}

TEST(XFChords, WhatIsNoChordIsNotUnderstood) {
  for (const char* text : {"", "J", "Cm99", "C/", "C/J", "/G", "c", "C???"})
    EXPECT_FALSE(XFChordOfName(text, false)) << text;
  EXPECT_TRUE(XFChordOfName("Xm7", false));
}

TEST(EventTexts, KeysAreNamedFromCMinus2) {
  EXPECT_EQ(KeyName(0, false) + KeyName(12, false) + KeyName(24, false), "C-2C-1C0");
  EXPECT_EQ(KeyName(60, false) + KeyName(127, false), "C3G8");
  EXPECT_EQ(KeyName(71, true), "H3");
  for (int key = 0; key < 128; ++key)
    for (const bool german : {false, true}) EXPECT_EQ(KeyOfName(KeyName(key, german), german), key);
  EXPECT_FALSE(KeyOfName("H3", false));
}

TEST(EventTexts, KeySignaturesLeadBackToThemselves) {
  const auto names = KeySignatureNames();
  ASSERT_EQ(names.size(), 30U);
  EXPECT_EQ(names.front() + names[14] + names[15], "CbC#Cb min");
  for (const std::string& name : names) {
    const auto bytes = KeySignatureOfName(name);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(KeySignatureName(*bytes), name);
  }
  EXPECT_EQ(KeySignatureName(std::array<std::uint8_t, 2>{0xF9, 0}), "Cb");
  EXPECT_EQ(KeySignatureName(std::array<std::uint8_t, 2>{0x55, 1}), "C min");
  EXPECT_FALSE(KeySignatureOfName("H dur"));
}

TEST(EventTexts, HexadecimalBytesLeadBackToThemselves) {
  const std::vector<std::uint8_t> bytes = {0x00, 0x7F, 0xF7};
  EXPECT_EQ(HexText(bytes), "00 7F F7");
  EXPECT_EQ(BytesOfHex("00  7f\r\nF7 "), bytes);
  EXPECT_FALSE(BytesOfHex("0G"));
  EXPECT_FALSE(BytesOfHex("123"));
}

}  // namespace

}  // namespace Sonarello
