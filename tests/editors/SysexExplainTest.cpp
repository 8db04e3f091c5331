// What single messages are called: makers, resets, parts, Roland, and the order of the rules.
#include "editors/SysexExplain.h"

#include <gtest/gtest.h>

#include "editors/SysexExplainHex.h"
#include "helpers/InGerman.h"

namespace Sonarello {

namespace {

std::string Explain(const std::string& hexadecimal, TExplained when = TExplained::Shown) {
  return ExplainSysex(BytesOf(hexadecimal), when);
}

struct Expected {
  const char* Bytes;
  const char* Text;
};

void ExpectAll(std::span<const Expected> all) {
  for (const Expected& expected : all)
    EXPECT_EQ(Explain(expected.Bytes), expected.Text) << expected.Bytes;
}

}  // namespace

TEST(SysexExplain, KnowsTheMakersByTheFirstBytes) {
  constexpr Expected all[] = {
      {"41 00 42 12 01 F7", "Dream Sysex"},
      {"26", "Ketron Sysex"},
      {"26 7C F7", "Ketron Sysex"},
      {"42 7F 60 00 F7", "Korg Sysex"},
      {"7F 7F 04 04 00 40 F7", "Master Coarse Tuning"},
      {"7F 7F 04 03 00 40 F7", "Master Fine Tuning"},
      {"7F 7F 04 01 00 7F F7", "Master Volume"},
      {"41 10 42 12 00 F7", "Roland Sysex"},
      {"41 10 45 12 10 00 00 F7", "Roland Display Sysex"},
      {"50 2C 20 00 F7", "Technics Sysex"},
      {"43 10 4C 00 00 00 F7", "Yamaha Sysex"},
  };
  ExpectAll(all);
}

TEST(SysexExplain, LeavesUnknownMessagesWithoutAWord) {
  constexpr Expected all[] = {
      {"", ""},
      {"F7", ""},
      {"41", ""},
      {"41 00 42 F7", ""},
      {"42 7F 60 01 F7", ""},
      {"7F 7F 04 02 00 40 F7", ""},
      {"41 11 42 12 40 00 7F 00 41 F7", ""},
      {"41 10 46 12 F7", ""},
      {"50 2C 21 F7", ""},
      {"43 10 4C 01 F7", ""},
      {"43 11 4C 00 00 7E 00 F7", ""},
      {"27 7B 0E 00 01 F7", ""},
  };
  ExpectAll(all);
}

TEST(SysexExplain, KnowsResetsByAllOfTheirBytes) {
  constexpr Expected all[] = {
      {"7E 7F 09 01 F7", "GM System On"},
      {"7E 7F 09 02 F7", "GM System Off"},
      {"7E 7F 09 03 F7", "GM2 System On"},
      {"7E 7F 09 00 F7", ""},
      {"7E 7F 09 04 F7", ""},
      {"7E 7F 09 01", ""},
      {"7E 7F 09 01 F7 00", ""},
      {"41 10 42 12 40 00 7F 00 41 F7", "Roland GS Reset"},
      {"41 10 42 12 40 00 7F 00 40 F7", "Roland Sysex"},
      {"41 10 42 12 40 00 7F 00 41 F7 F7", "Roland Sysex"},
      {"41 10 42 12 40 00 7F 00 41", "Roland Sysex"},
      {"26 7B 0E 00 01 F7", "Ketron Global GM Reset"},
      {"26 7B 0E 00 02 F7", "Ketron Sysex"},
      {"50 2C 20 7E 1F 00 00 7F 00 F7", "Technics NX Sound On"},
      {"50 2C 20 7E 1F 00 00 7F 01 F7", "Technics Sysex"},
      {"43 10 4C 00 00 7E 00 F7", "XG System On"},
      {"43 10 4C 00 00 7E 00", "Yamaha Sysex"},
      {"43 10 4C 00 00 7E 01 F7", "Yamaha Sysex"},
  };
  ExpectAll(all);
}

TEST(SysexExplain, TellsWhetherAPartPlaysDrums) {
  constexpr Expected all[] = {
      {"41 00 42 12 40 10 15 01 1A F7", "Dream Part 1: Drum MAP1"},
      {"41 00 42 12 40 1F 15 02 1A F7", "Dream Part 16: Drum MAP2"},
      {"41 00 42 12 40 13 15 00 1A F7", "Dream Part 4: Voice"},
      {"41 00 42 12 40 13 15 03 1A F7", "Dream Part 4: Voice"},
      {"41 00 42 12 40 2F 15 01 F7", "Dream Part 16: Drum MAP1"},
      {"41 00 42 12 40 13 14 01 F7", "Dream Sysex"},
      {"41 00 42 12 40 13 16 01 F7", "Dream Sysex"},
      {"41 00 42 12 41 13 15 01 F7", "Dream Sysex"},
      {"41 00 42 12 40 13 15", "Dream Sysex"},
      {"41 10 42 12 40 10 15 01 1A F7", "Roland Part 1: Drum MAP1"},
      {"41 10 42 12 40 1F 15 02 1A F7", "Roland Part 16: Drum MAP2"},
      {"41 10 42 12 40 19 15 00 1A F7", "Roland Part 10: Voice"},
      {"41 10 42 12 40 19 15 7F 1A F7", "Roland Part 10: Voice"},
      {"41 10 42 12 40 19 14 01 F7", "Roland Sysex"},
      {"41 10 42 12 40 19 15", "Roland Sysex"},
  };
  ExpectAll(all);
}

TEST(SysexExplain, TellsKetronPartsFromSixBytesOn) {
  constexpr Expected all[] = {
      {"26 7B 0F 00 00 00 F7", "Ketron Part 1: Voice part"},
      {"26 7B 0F 00 0F 01 F7", "Ketron Part 16: Rhythm part"},
      {"26 7B 0F 00 09 7F F7", "Ketron Part 10: Rhythm part"},
      {"26 7B 0F 00 09 00", "Ketron Part 10: Voice part"},
      {"26 7B 0F 00 09", "Ketron Sysex"},
      {"26 7B 0F 01 09 00 F7", "Ketron Sysex"},
  };
  ExpectAll(all);
}

// The two differences are deliberate: an edited cell names these messages in words of its own.
TEST(SysexExplain, NamesTwoMessagesOtherwiseWhenTheyWereTyped) {
  EXPECT_EQ(Explain("26 7B 0F 00 04 00 F7", TExplained::Edited), "Ketron Part 5: Sound part");
  EXPECT_EQ(Explain("26 7B 0F 00 04 01 F7", TExplained::Edited), "Ketron Part 5: Rhythm part");
  EXPECT_EQ(Explain("43 10 7F 00 36 00 60 01 F7"), "Yamaha Motif ES - Insertion Part SW");
  EXPECT_EQ(Explain("43 10 7F 00 36 00 60 01 F7", TExplained::Edited),
            "Yamaha Motif ES Insertion Part SW");
  EXPECT_EQ(Explain("43 10 7F 12 36 00 4D 01 F7", TExplained::Edited),
            "Yamaha Motif XF - Insertion Part SW");
  EXPECT_EQ(Explain("43 10 4C 00 00 7E 00 F7", TExplained::Edited), "XG System On");
}

TEST(SysexExplain, TellsKorgEqualizersFromTenBytesOn) {
  constexpr Expected all[] = {
      {"42 7F 60 00 01 00 10 00 00 F7", "Korg Pa - Part EQ for Channel 1"},
      {"42 7F 60 00 01 00 10 00 0F 00 F7", "Korg Pa - Part EQ for Channel 16"},
      {"42 7F 60 00 01 00 10 00 0F", "Korg Sysex"},
      {"42 7F 60 00 01 00 10 01 0F 00 F7", "Korg Sysex"},
  };
  ExpectAll(all);
}

TEST(SysexExplain, KnowsRolandsDelayAndInsertEffect) {
  constexpr Expected all[] = {
      {"41 10 42 12 40 01 52 00 F7", "Roland Delay-Time Sysex"},
      {"41 10 42 12 40 01 51 00 F7", "Roland Sysex"},
      {"41 10 42 12 40 01 53 00 F7", "Roland Sysex"},
      {"41 10 42 12 40 40 22 01 F7", "Roland Insert EFX - On"},
      {"41 10 42 12 40 4F 22 01 F7", "Roland Insert EFX - On"},
      {"41 10 42 12 40 3F 22 01 F7", "Roland Sysex"},
      {"41 10 42 12 40 50 22 01 F7", "Roland Sysex"},
      {"41 10 42 12 40 41 22 00 F7", "Roland Sysex"},
      {"41 10 42 12 40 41 21 01 F7", "Roland Sysex"},
      {"41 10 42 12 40 03 00 01 10 F7", "Roland Insert EFX - Overdrive"},
      {"41 10 42 12 40 03 00 01 11 F7", "Roland Insert EFX - Distorsion"},
      {"41 10 42 12 40 03 00 01 21 F7", "Roland Insert EFX - Auto Wah"},
      {"41 10 42 12 40 03 00 01 22 F7", "Roland Insert EFX - Rotary"},
      {"41 10 42 12 40 03 00 01 0F F7", "Roland Sysex"},
      {"41 10 42 12 40 03 00 01 12 F7", "Roland Sysex"},
      {"41 10 42 12 40 03 00 01 20 F7", "Roland Sysex"},
      {"41 10 42 12 40 03 00 01 23 F7", "Roland Sysex"},
      {"41 10 42 12 40 03 00 02 10 F7", "Roland Sysex"},
      {"41 10 42 12 40 03 02 00 F7", "Roland Sysex"},
      {"41 10 42 12 40 03 03 00 F7", "Roland Insert EFX Parameter 1"},
      {"41 10 42 12 40 03 16 00 F7", "Roland Insert EFX Parameter 20"},
      {"41 10 42 12 40 03 17 00 F7", "Roland Insert EFX - Send Level to Reverb"},
      {"41 10 42 12 40 03 18 00 F7", "Roland Insert EFX - Send Level to Chorus"},
      {"41 10 42 12 40 03 19 00 F7", "Roland Insert EFX - Send Level to Delay"},
      {"41 10 42 12 40 03 1A 00 F7", "Roland Sysex"},
      {"41 10 42 12 40 03 1B 00 F7", "Roland Insert EFX - Control Source 1"},
      {"41 10 42 12 40 03 1C 00 F7", "Roland Insert EFX - Control Depth 1"},
      {"41 10 42 12 40 03 1D 00 F7", "Roland Insert EFX - Control Source 2"},
      {"41 10 42 12 40 03 1E 00 F7", "Roland Insert EFX - Control Depth 2"},
      {"41 10 42 12 40 03 1F 00 F7", "Roland Insert EFX - Send EQ Switch"},
      {"41 10 42 12 40 03 20 00 F7", "Roland Sysex"},
  };
  ExpectAll(all);
}

TEST(SysexExplain, LetsALaterRuleOverwriteAnEarlierOne) {
  // A message that reads as a part's drum map and as a parameter of the insertion effect is the latter.
  EXPECT_EQ(Explain("41 10 42 12 40 03 15 01 F7"), "Roland Insert EFX Parameter 19");
  EXPECT_EQ(Explain("41 10 42 12 40 04 15 01 F7"), "Roland Part 5: Drum MAP1");
  // The first eight insertion effects have two names.
  EXPECT_EQ(Explain("43 10 4C 03 07 00 40 00 F7"), "Yamaha DSP9 - Effect Type");
  EXPECT_EQ(Explain("43 10 4C 03 08 00 40 00 F7"), "Yamaha Genos DSP9 - Effect Type");
  EXPECT_EQ(Explain("7F 7F 04 01 00 7F F7"), "Master Volume");
}

TEST(SysexExplain, KnowsThePartsOfTheBK9) {
  constexpr Expected all[] = {
      {"41 10 00 00 54 12 18 00 1F 44 01 F7", ""},
      {"41 10 00 00 54 12 18 00 20 43 01 F7", "Roland BK-9 Part 1"},
      {"41 10 00 00 54 12 18 00 20 44 01 F7", "Roland BK-9 Part 1 EQ Switch"},
      {"41 10 00 00 54 12 18 00 21 45 01 F7", "Roland BK-9 Part 2 EQ Low Freq"},
      {"41 10 00 00 54 12 18 00 22 46 01 F7", "Roland BK-9 Part 3 EQ Low Gain"},
      {"41 10 00 00 54 12 18 00 23 47 01 F7", "Roland BK-9 Part 4 EQ Mid Freq"},
      {"41 10 00 00 54 12 18 00 24 48 01 F7", "Roland BK-9 Part 5 EQ Mid Gain"},
      {"41 10 00 00 54 12 18 00 25 49 01 F7", "Roland BK-9 Part 6 EQ Mid Q"},
      {"41 10 00 00 54 12 18 00 26 4A 01 F7", "Roland BK-9 Part 7 EQ High Freq"},
      {"41 10 00 00 54 12 18 00 2F 4B 01 F7", "Roland BK-9 Part 16 EQ High Gain"},
      {"41 10 00 00 54 12 18 00 2F 4C 01 F7", "Roland BK-9 Part 16"},
      {"41 10 00 00 54 12 18 00 2F F7", "Roland BK-9 Part 16"},
      {"41 10 00 00 54 12 18 00 30 44 01 F7", ""},
  };
  ExpectAll(all);
}

TEST(SysexExplain, KnowsThePartsOfTheIntegra7) {
  const std::string prefix = "41 10 00 00 64 12 18 00 ";
  EXPECT_EQ(Explain(prefix + "04 00 F7"), "Roland Integra-7 Common Chorus Level");
  EXPECT_EQ(Explain(prefix + "06 00 F7"), "Roland Integra-7 Common Reverb Level");
  for (const char* other :
       {"03 00 F7", "05 00 F7", "07 00 F7", "1F 00 00 F7", "30 00 00 F7", "4F 00 00 F7", "60 00 00 F7"})
    EXPECT_EQ(Explain(prefix + other), "") << other;
  const char* outputs[] = {" to Stereo Output A",
                           " to Stereo Output B",
                           " to Stereo Output C",
                           " to Stereo Output D",
                           " to Mono Output 1",
                           " to Mono Output 2",
                           " to Mono Output 3",
                           " to Mono Output 4",
                           " to Mono Output 5",
                           " to Mono Output 6",
                           " to Mono Output 7",
                           " to Mono Output 8",
                           ""};
  for (std::uint8_t output = 0; output < std::size(outputs); ++output)
    for (const int part : {0, 15})
      EXPECT_EQ(Explain(prefix + TextOf({static_cast<std::uint8_t>(0x20 + part), 0x29, output, 0xF7})),
                "Roland Integra-7 Part " + std::to_string(part + 1) + outputs[output]);
  const char* equalizer[] = {" EQ Switch",    " EQ Low Freq",  " EQ Low Gain",
                             " EQ Mid Freq",  " EQ Mid Gain",  " EQ Mid Q",
                             " EQ High Freq", " EQ High Gain", ""};
  for (std::uint8_t what = 0; what < std::size(equalizer); ++what)
    for (const int part : {0, 15})
      EXPECT_EQ(Explain(prefix + TextOf({static_cast<std::uint8_t>(0x50 + part), what, 0x01, 0xF7})),
                "Roland Integra-7 Part " + std::to_string(part + 1) + equalizer[what]);
  EXPECT_EQ(Explain(prefix + "20 00 F7"), "Roland Integra-7 Part 1");
}

TEST(SysexExplain, SpeaksTheSameWordsInBothLanguages) {
  const InGerman german;
  EXPECT_EQ(Explain("43 10 4C 00 00 7E 00 F7"), "XG System On");
  EXPECT_EQ(Explain("41 10 42 12 40 19 15 00 1A F7"), "Roland Part 10: Voice");
  EXPECT_EQ(Explain("43 10 4C 02 01 0D 40 F7"), "Yamaha Reverb - Panorama");
}

TEST(SysexExplain, TakesAMessageCutAnywhere) {
  const std::vector<std::uint8_t> bytes = BytesOf("43 10 4C 08 09 0E 40 F7");
  const std::string expected[] = {"", "", "", "", "", "", "Yamaha MultiPart 10 - Pan"};
  for (std::size_t length = 0; length < bytes.size(); ++length)
    EXPECT_EQ(ExplainSysex(std::span(bytes).first(length)),
              expected[std::min(length, std::size(expected) - 1)])
        << length;
}

}  // namespace Sonarello
