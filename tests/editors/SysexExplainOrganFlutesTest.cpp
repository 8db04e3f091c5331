// The drawbar settings of Yamaha's organ flutes.
#include <gtest/gtest.h>

#include "editors/SysexExplain.h"
#include "editors/SysexExplainHex.h"
#include "instruments/Naming.h"

namespace Sonarello {

namespace {

struct Preset {
  const char* Name;
  const char* Setting;
};
constexpr Preset Presets[] = {
    {"BalladEuro", "01 00 00 00 00 00 00 08 07 00 00 08 08 00 00 02 09 00 00 00 00"},
    {"BalladOrgan", "00 00 00 00 00 03 06 07 08 00 00 00 07 00 01 01 09 00 00 00 00"},
    {"BrightEuro", "06 06 07 00 06 00 08 07 06 00 00 00 00 00 00 02 09 00 00 00 00"},
    {"ClariBars", "00 06 07 00 08 00 08 00 00 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"EuroAccomp1", "00 00 00 00 00 05 00 08 00 00 00 00 00 00 00 02 09 00 00 00 00"},
    {"EuroAccomp2", "00 00 00 00 05 06 00 08 00 00 00 00 00 00 00 02 09 00 00 00 00"},
    {"EuroAccomp3", "00 03 00 05 06 06 00 08 00 00 00 00 00 00 00 02 09 00 00 00 00"},
    {"EuroPerc", "01 00 00 00 00 06 08 06 07 00 08 00 06 00 00 02 09 00 00 00 00"},
    {"EuroPops", "02 04 06 00 00 00 00 00 08 00 08 00 08 00 00 02 09 00 00 00 00"},
    {"EuroReeds", "00 05 06 00 05 00 07 08 07 00 00 00 00 00 00 02 09 00 00 00 00"},
    {"EvenWarmth", "06 00 00 07 00 08 00 08 07 00 00 00 00 00 00 02 09 00 00 00 00"},
    {"FullEuro", "06 07 08 08 08 08 07 08 06 00 00 00 00 00 00 02 09 00 00 00 00"},
    {"FullOrgan", "08 08 07 07 07 06 08 07 08 00 00 00 00 00 00 01 09 00 00 00 00"},
    {"FunkOrgan", "08 08 07 05 03 00 03 05 08 00 00 00 07 00 01 01 09 00 00 00 00"},
    {"GospelTruth", "08 06 05 00 00 00 07 06 08 00 00 00 00 00 00 01 09 00 00 00 00"},
    {"JazzSquabble", "08 08 08 08 00 00 00 00 08 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"LatinSpin", "03 04 04 03 00 00 00 00 07 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"OrganFlutes", "00 00 00 00 00 06 08 06 07 00 00 08 06 00 01 01 09 00 00 00 00"},
    {"OrganPops", "00 00 00 00 00 00 00 08 07 00 00 08 08 00 01 01 09 00 00 00 00"},
    {"PadOrgan", "00 00 00 00 02 05 00 08 00 00 00 00 00 00 01 00 09 00 00 00 00"},
    {"ReggaeBars", "08 00 00 00 00 00 00 00 07 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"RichBars", "00 03 05 07 05 04 03 08 06 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"RockOrgan", "04 04 06 04 04 04 05 05 06 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"ShadyBars", "00 00 00 00 00 06 08 08 06 00 00 05 07 00 01 01 09 00 00 00 00"},
    {"SoulBars", "08 07 05 00 05 00 00 00 08 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"SoulPercussion", "00 03 05 00 00 00 00 00 07 00 07 00 00 00 01 00 09 00 00 00 00"},
    {"StringBars", "02 03 05 07 08 07 08 00 04 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"TrumpetBars", "00 04 05 06 08 07 06 00 00 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"USDSmile", "08 06 04 03 02 03 07 04 08 00 00 00 00 00 01 01 09 00 00 00 00"},
    {"WarmTheatre", "00 00 00 05 00 06 00 00 08 00 00 00 00 00 01 01 09 00 00 00 00"},
};

const std::string PartAddress = "43 73 01 06 0B 00 00 01 06 ";
const std::string BlockAddress = "43 73 01 11 00 50 10 ";
const std::string Head = "Yamaha Organ Flute Sx: ";

std::string Explain(const std::string& hexadecimal) { return ExplainSysex(BytesOf(hexadecimal)); }

/// The bytes of a setting that stand in messages that name their part.
std::string Short(const Preset& preset) {
  constexpr std::size_t shortLength = 18 * 3;
  return std::string(preset.Setting).substr(0, shortLength);
}

}  // namespace

TEST(OrganFluteSysexs, AreNamedUnderBothAddresses) {
  for (const Preset& preset : Presets) {
    EXPECT_EQ(Explain(PartAddress + preset.Setting + " F7"), Head + preset.Name);
    EXPECT_EQ(Explain(BlockAddress + preset.Setting + " F7"), Head + preset.Name);
  }
}

TEST(OrganFluteSysexs, AreNamedBehindTheirPart) {
  for (const Preset& preset : Presets)
    for (const char* part : {"00 ", "0F "}) {
      EXPECT_EQ(Explain(PartAddress + part + Short(preset) + "F7"), Head + preset.Name);
      EXPECT_EQ(Explain(PartAddress + part + preset.Setting + " F7"), Head + preset.Name);
    }
  EXPECT_EQ(Explain(PartAddress + "10 " + Presets[0].Setting + " F7"), Head + "Custom Setting");
}

TEST(OrganFluteSysexs, HaveTheNamesThatTheSoundsHave) {
  for (const Preset& preset : Presets)
    for (const std::string& message :
         {BlockAddress + preset.Setting + " F7", PartAddress + "03 " + Short(preset) + "F7"})
      EXPECT_EQ(std::string(preset.Name) + " (OrganFlutes)", OrganFluteName(BytesOf(message)));
}

TEST(OrganFluteSysexs, AreTheUsersOwnIfAnyByteDiffers) {
  constexpr std::size_t settingLength = 21;
  for (const std::string& address : {PartAddress, BlockAddress})
    for (const Preset& preset : Presets)
      for (std::size_t i = 0; i < settingLength; ++i) {
        std::vector<std::uint8_t> bytes = BytesOf(address + preset.Setting + " F7");
        bytes[bytes.size() - 2 - i] ^= 0x40U;
        EXPECT_EQ(ExplainSysex(bytes), Head + "Custom Setting") << TextOf(bytes);
      }
}

TEST(OrganFluteSysexs, AreTheUsersOwnIfCutShort) {
  EXPECT_EQ(Explain(PartAddress + "08 08 07 07 07 06 08 07 08 00 00 00 00 00 00 01 09 00 00 00 F7"),
            Head + "Custom Setting");
  EXPECT_EQ(Explain(PartAddress), Head + "Custom Setting");
  EXPECT_EQ(Explain("43 73 01 06 0B 00 00 01 07 00 F7"), "");
}

// The address is shared: a single byte behind it belongs to the vocal harmony.
TEST(OrganFluteSysexs, NeedAllTheirBytesUnderTheAddressOfTheBlock) {
  EXPECT_EQ(Explain(BlockAddress + "00 F7"), "");
  EXPECT_EQ(Explain(BlockAddress + "01 02 03 04 05 06 07 08 00 01 02 03 04 05 06 07 08 00 01 02 F7"),
            Head + "Custom Setting");
  EXPECT_EQ(Explain(BlockAddress + "01 02 03 04 05 06 07 08 00 01 02 03 04 05 06 07 08 00 01 F7"), "");
}

}  // namespace Sonarello
