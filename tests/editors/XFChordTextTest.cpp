#include "editors/XFChordText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
  EXPECT_EQ(XFChordName({0x31, 0, 0x7F, 0x7F}, true), "C");
  EXPECT_EQ(XFChordName({0x47, 0, 0x7F, 0x7F}, true), "B#");
}

TEST(XFChords, EveryTypeHasItsText) {
  constexpr std::uint8_t cancel = 34;
  const std::vector<std::string> texts = {
      "",      "6",      "M7",   "M7(#11)", "9",      "M7(9)",  "6(9)",   "aug",    "m",     "m6",
      "m7",    "m7(b5)", "m(9)", "m7(9)",   "m7(11)", "mM7",    "mM7(9)", "dim",    "dim7",  "7",
      "7sus4", "7(b5)",  "7(9)", "7(#11)",  "7(13)",  "7(b9)",  "7(b13)", "7(#9)",  "M7aug", "7aug",
      "1+8",   "1+5",    "sus4", "sus2",    "",       "M7(b5)", "(b5)",   "mM7(b5)"};
  for (std::uint8_t type = 0; type < 127; ++type) {
    if (type == cancel) continue;
    const std::string text = type < texts.size() ? texts[type] : "???";
    EXPECT_EQ(XFChordName({0x35, type, 0x35, type}, false), "G" + text);
  }
}

TEST(XFChords, EveryRootHasItsAccidentalAndItsNote) {
  const std::vector<std::string> accidentals = {"bbb", "bb", "b", "", "#", "##", "###"};
  const std::string notes = "CDEFGAB";
  for (unsigned root = 0; root < 0x100; ++root) {
    const unsigned note = root & 0x0F;
    const unsigned accidental = root >> 4;
    const bool isRoot = note >= 1 && note <= notes.size() && accidental < accidentals.size();
    const std::string name = isRoot ? notes[note - 1] + accidentals[accidental] : "X";
    const auto byte = static_cast<std::uint8_t>(root);
    EXPECT_EQ(XFChordName({byte, 8, byte, 8}, false), name + "m") << root;
    if (root < 0x7F && root != 0x31) {
      EXPECT_EQ(XFChordName({0x31, 0, byte, 0x7F}, false), "C/" + name) << root;
    }
  }
}

TEST(XFChords, AnotherBassStandsBehindAStroke) {
  EXPECT_EQ(XFChordName({0x31, 0, 0x35, 0x7F}, false), "C/G");
  EXPECT_EQ(XFChordName({0x31, 0, 0x35, 0}, false), "C/G");
  EXPECT_EQ(XFChordName({0x31, 0, 0x31, 8}, false), "C/Cm");
  EXPECT_EQ(XFChordName({0x31, 0, 0x7F, 8}, false), "C");
  EXPECT_EQ(XFChordName({0x31, 8, 0x27, 0x7F}, true), "Cm/B");
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
