#include "playback/SynthParts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "core/RolandChecksum.h"

namespace Sonarello {
namespace {

/// Notes what the parts ask for. Its bank has all capitals, some variations and some kits.
class Voices : public ISynthVoices {
 public:
  Voices() {
    for (int p = 0; p < 128; ++p) Bank.insert({0, p});
    for (const int kit : {0, 8, 16, 24, 25, 40, 48}) Bank.insert({128, kit});
    Bank.insert({8, 48});
    Bank.insert({2, 4});
  }
  bool HasPreset(TPreset preset) const override { return Bank.contains({preset.Bank, preset.Program}); }
  void ResetVoices() override {
    ++Resets;
    Controllers.clear();
  }
  void SelectPreset(int part, bool drums, const TPreset* preset) override {
    Drums[part] = drums;
    Presets[part] = preset == nullptr ? std::nullopt : std::optional(*preset);
  }
  void SetController(int part, std::uint8_t number, std::uint8_t value) override {
    Controllers[{part, number}] = value;
  }
  void SetMasterVolume(float amplitude) override { Master = amplitude; }

  std::set<std::pair<int, int>> Bank;
  int Resets = 0;
  std::map<int, bool> Drums;
  std::map<int, std::optional<TPreset>> Presets;
  std::map<std::pair<int, int>, int> Controllers;
  float Master = -1;
};

class SynthParts : public testing::Test {
 protected:
  SynthParts() { parts.Reset(TSoundStandard::None); }

  TPreset Selected(int part, int msb, int lsb, int program) {
    const auto channel = static_cast<std::uint8_t>(part);
    EXPECT_TRUE(parts.SendShort(0xB0 | channel, 0, static_cast<std::uint8_t>(msb)));
    EXPECT_TRUE(parts.SendShort(0xB0 | channel, 32, static_cast<std::uint8_t>(lsb)));
    EXPECT_TRUE(parts.SendShort(0xC0 | channel, static_cast<std::uint8_t>(program), 0));
    return voices.Presets[part].value_or(TPreset{-1, -1});
  }
  bool Send(std::vector<std::uint8_t> body) {
    body.insert(body.begin(), 0xF0);
    body.push_back(0xF7);
    return parts.SendSysex(body);
  }
  bool SendGS(std::vector<std::uint8_t> addressAndData) {
    std::vector<std::uint8_t> body{0x41, 0x10, 0x42, 0x12};
    body.insert(body.end(), addressAndData.begin(), addressAndData.end());
    body.push_back(RolandChecksum(addressAndData));
    return Send(body);
  }
  bool SendXG(std::vector<std::uint8_t> addressAndData) {
    std::vector<std::uint8_t> body{0x43, 0x10, 0x4C};
    body.insert(body.end(), addressAndData.begin(), addressAndData.end());
    return Send(body);
  }
  bool GMOn() { return Send({0x7E, 0x7F, 0x09, 0x01}); }
  bool GM2On() { return Send({0x7E, 0x7F, 0x09, 0x03}); }
  bool GSReset() { return SendGS({0x40, 0x00, 0x7F, 0x00}); }
  bool XGOn() { return SendXG({0x00, 0x00, 0x7E, 0x00}); }

  static constexpr TPreset Kit(int number) { return {DrumKitBank, number}; }

  Voices voices;
  TSynthParts parts{voices};
};

TEST_F(SynthParts, BeginsWithPianosAndDrumsOnChannel10) {
  EXPECT_EQ(voices.Resets, 1);
  EXPECT_EQ(voices.Master, 1);
  for (int part = 0; part < 16; ++part) {
    EXPECT_EQ(voices.Drums[part], part == 9);
    EXPECT_EQ(voices.Presets[part], part == 9 ? Kit(0) : (TPreset{0, 0}));
    EXPECT_EQ((voices.Controllers[{part, 91}]), 40);
  }
}

TEST_F(SynthParts, UnderstandsTheResets) {
  const std::pair<std::function<bool()>, TSoundStandard> resets[] = {
      {[&] { return GMOn(); }, TSoundStandard::GM},
      {[&] { return GM2On(); }, TSoundStandard::GM2},
      {[&] { return GSReset(); }, TSoundStandard::GS},
      {[&] {
         return SendGS({0x00, 0x00, 0x7F, 0x01});
       },
       TSoundStandard::GS},
      {[&] { return XGOn(); }, TSoundStandard::XG},
      {[&] {
         return SendXG({0x00, 0x00, 0x7F, 0x00});
       },
       TSoundStandard::XG},
      {[&] {
         return Send({0x7E, 0x10, 0x09, 0x01});
       },
       TSoundStandard::GM},
      {[&] {
         return Send({0x41, 0x00, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41});
       },
       TSoundStandard::GS},
      {[&] {
         return Send({0x43, 0x1F, 0x4C, 0x00, 0x00, 0x7E, 0x00});
       },
       TSoundStandard::XG},
      {[&] {
         return Send({0x7E, 0x7F, 0x09, 0x02});
       },
       TSoundStandard::None}};
  for (const auto& [send, standard] : resets) {
    Selected(3, 0, 0, 60);
    SendGS({0x40, 0x12, 0x15, 0x01});
    Send({0x7F, 0x7F, 0x04, 0x01, 0x00, 0x20});
    const int before = voices.Resets;
    EXPECT_TRUE(send());
    EXPECT_EQ(parts.Standard(), standard);
    EXPECT_EQ(voices.Resets, before + 1);
    EXPECT_EQ(voices.Presets[3], (TPreset{0, 0}));
    EXPECT_FALSE(voices.Drums[1]);
    EXPECT_TRUE(voices.Drums[9]);
    EXPECT_EQ(voices.Master, 1);
  }
}

TEST_F(SynthParts, KeepsThePartsThroughMessagesThatAreNoReset) {
  Selected(0, 0, 0, 60);
  EXPECT_FALSE(Send({0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x40})) << "wrong checksum";
  EXPECT_FALSE(Send({0x41, 0x10, 0x42, 0x11, 0x40, 0x00, 0x7F, 0x00, 0x41})) << "a request";
  EXPECT_FALSE(Send({0x41, 0x10, 0x16, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41})) << "another model";
  EXPECT_FALSE(Send({0x43, 0x30, 0x4C, 0x00, 0x00, 0x7E, 0x00})) << "a request";
  EXPECT_FALSE(Send({0x43, 0x10, 0x4C, 0x00, 0x00})) << "cut short";
  EXPECT_FALSE(Send({0x7E, 0x7F, 0x09}));
  EXPECT_FALSE(Send({}));
  EXPECT_FALSE(Send({0x7E, 0x7F, 0x89, 0x01})) << "no data byte";
  EXPECT_FALSE(parts.SendSysex({}));
  const std::vector<std::uint8_t> open{0xF0, 0x7E, 0x7F, 0x09, 0x01};
  EXPECT_FALSE(parts.SendSysex(open));
  EXPECT_EQ(voices.Resets, 1);
  EXPECT_EQ(voices.Presets[0], (TPreset{0, 60}));
}

TEST_F(SynthParts, LeavesOtherMessagesToTheVoices) {
  EXPECT_FALSE(parts.SendShort(0x90, 0, 100));
  EXPECT_FALSE(parts.SendShort(0xB0, 7, 100));
  EXPECT_FALSE(parts.SendShort(0xE0, 0, 64));
}

TEST_F(SynthParts, ChangesBanksWithTheProgram) {
  Selected(0, 0, 0, 48);
  parts.SendShort(0xB0, 0, 127);
  EXPECT_FALSE(voices.Drums[0]);
  parts.SendShort(0xC0, 0, 0);
  EXPECT_TRUE(voices.Drums[0]);
}

TEST_F(SynthParts, PlaysDrumBanksOnAnyChannel) {
  for (const bool afterReset : {false, true})
    for (const auto& reset : {std::function<bool()>([&] { return GMOn(); }),
                              {[&] { return GM2On(); }},
                              {[&] { return XGOn(); }}}) {
      if (afterReset) reset();
      EXPECT_EQ(Selected(2, 127, 0, 16), Kit(16));
      EXPECT_EQ(Selected(2, 120, 0, 40), Kit(40));
      EXPECT_TRUE(voices.Drums[2]);
      EXPECT_EQ(Selected(2, 0, 0, 16), (TPreset{0, 16}));
      EXPECT_FALSE(voices.Drums[2]);
      EXPECT_EQ(Selected(9, 121, 0, 33), (TPreset{0, 33})) << "melodic on channel 10";
    }
}

TEST_F(SynthParts, PlaysDrumsOnChannel10WithAPlainBankButForXG) {
  EXPECT_EQ(Selected(9, 0, 0, 8), Kit(8));
  GMOn();
  EXPECT_EQ(Selected(9, 0, 0, 8), Kit(8));
  GSReset();
  EXPECT_EQ(Selected(9, 0, 0, 8), Kit(8));
  XGOn();
  EXPECT_EQ(voices.Presets[9], Kit(0));
  parts.SendShort(0xC9, 8, 0);
  EXPECT_EQ(voices.Presets[9], Kit(8)) << "its bank is 127 after the reset";
  EXPECT_EQ(Selected(9, 0, 0, 8), (TPreset{0, 8}));
}

TEST_F(SynthParts, BeginsGM2InItsOwnBanks) {
  GM2On();
  EXPECT_EQ(parts.Part(0).Msb, 121);
  EXPECT_EQ(parts.Part(9).Msb, 120);
  EXPECT_EQ(Selected(0, 121, 2, 4), (TPreset{2, 4}));
  EXPECT_EQ(Selected(0, 121, 3, 4), (TPreset{0, 4})) << "the capital of a variation that is missing";
}

TEST_F(SynthParts, FindsGSVariationsByTheMSB) {
  GSReset();
  EXPECT_EQ(Selected(0, 8, 0, 48), (TPreset{8, 48}));
  EXPECT_EQ(Selected(0, 8, 3, 48), (TPreset{8, 48})) << "the LSB chooses a module";
  EXPECT_EQ(Selected(0, 9, 0, 48), (TPreset{8, 48})) << "the sub capital";
  EXPECT_EQ(Selected(0, 16, 0, 48), (TPreset{0, 48})) << "the capital";
  EXPECT_EQ(Selected(0, 0, 2, 4), (TPreset{0, 4}));
  EXPECT_EQ(Selected(0, 127, 0, 4), (TPreset{0, 4})) << "no drums in GS";
  EXPECT_EQ(Selected(9, 127, 0, 8), Kit(8));
}

TEST_F(SynthParts, FindsXGVariationsByTheLSB) {
  XGOn();
  EXPECT_EQ(Selected(0, 0, 2, 4), (TPreset{2, 4}));
  EXPECT_EQ(Selected(0, 0, 40, 4), (TPreset{0, 4}));
  EXPECT_EQ(Selected(0, 64, 0, 4), (TPreset{0, 4}));
}

TEST_F(SynthParts, FallsBackToTheKitThatAKitVaries) {
  EXPECT_EQ(Selected(9, 0, 0, 25), Kit(25));
  EXPECT_EQ(Selected(9, 0, 0, 26), Kit(24));
  EXPECT_EQ(Selected(9, 0, 0, 1), Kit(0));
  EXPECT_EQ(Selected(9, 0, 0, 32), Kit(0));
  EXPECT_EQ(Selected(9, 126, 0, 1), Kit(0));
  voices.Bank.insert({128, 56});
  EXPECT_EQ(Selected(9, 126, 0, 1), Kit(56)) << "sound effects";
}

TEST_F(SynthParts, IsSilentWithoutKitsAndPlaysWhatThereIsWithoutCapitals) {
  voices.Bank = {{0, 0}};
  EXPECT_EQ(Selected(3, 8, 0, 99), (TPreset{0, 0}));
  Selected(9, 0, 0, 0);
  EXPECT_FALSE(voices.Presets[9].has_value());
  EXPECT_TRUE(voices.Drums[9]);
  voices.Bank = {{5, 7}};
  Selected(3, 0, 0, 99);
  EXPECT_FALSE(voices.Presets[3].has_value());
}

TEST_F(SynthParts, MakesRhythmPartsByGSSysex) {
  GSReset();
  // Block 0 is part 10, 1 to 9 are parts 1 to 9, A to F are parts 11 to 16.
  const std::pair<int, int> blocks[] = {{0x11, 0}, {0x19, 8}, {0x1A, 10}, {0x1F, 15}};
  for (const auto& [block, part] : blocks) {
    const auto at = static_cast<std::uint8_t>(block);
    EXPECT_TRUE(SendGS({0x40, at, 0x15, 0x02}));
    EXPECT_TRUE(voices.Drums[part]) << part;
    EXPECT_EQ(Selected(part, 0, 0, 40), Kit(40));
    EXPECT_TRUE(SendGS({0x40, at, 0x15, 0x00}));
    EXPECT_FALSE(voices.Drums[part]) << part;
  }
  SendGS({0x40, 0x10, 0x15, 0x00});
  EXPECT_FALSE(voices.Drums[9]);
  EXPECT_EQ(Selected(9, 0, 0, 40), (TPreset{0, 40}));
}

TEST_F(SynthParts, MakesDrumPartsByXGSysex) {
  XGOn();
  EXPECT_TRUE(SendXG({0x08, 0x03, 0x07, 0x02}));
  EXPECT_TRUE(voices.Drums[3]);
  parts.SendShort(0xC3, 16, 0);
  EXPECT_EQ(voices.Presets[3], Kit(16));
  EXPECT_TRUE(SendXG({0x08, 0x03, 0x07, 0x00}));
  EXPECT_FALSE(voices.Drums[3]);
  EXPECT_TRUE(SendXG({0x08, 0x09, 0x07, 0x00}));
  EXPECT_FALSE(voices.Drums[9]);
}

TEST_F(SynthParts, TakesPartModesWithoutAReset) {
  SendXG({0x08, 0x03, 0x07, 0x01});
  SendGS({0x40, 0x15, 0x15, 0x01});
  EXPECT_TRUE(voices.Drums[3]);
  EXPECT_TRUE(voices.Drums[4]);
  EXPECT_EQ(Selected(3, 0, 0, 16), Kit(16));
  GM2On();
  SendGS({0x40, 0x15, 0x15, 0x01});
  EXPECT_TRUE(voices.Drums[4]) << "the melodic bank gives way";
  EXPECT_EQ(parts.Part(4).Msb, 120);
}

TEST_F(SynthParts, SetsMasterVolumeAsTheControllersDo) {
  EXPECT_TRUE(Send({0x7F, 0x7F, 0x04, 0x01, 0x7F, 0x7F}));
  EXPECT_FLOAT_EQ(voices.Master, 1);
  EXPECT_TRUE(Send({0x7F, 0x10, 0x04, 0x01, 0x00, 0x40}));
  EXPECT_NEAR(voices.Master, 0.25, 0.001);
  EXPECT_TRUE(SendGS({0x40, 0x00, 0x04, 0x00}));
  EXPECT_EQ(voices.Master, 0);
  EXPECT_TRUE(SendXG({0x00, 0x00, 0x04, 0x7F}));
  EXPECT_FLOAT_EQ(voices.Master, 1);
  EXPECT_TRUE(SendXG({0x00, 0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x40}));
  EXPECT_NEAR(voices.Master, 0.254, 0.001) << "within a longer message";
}

TEST_F(SynthParts, TakesPartSettingsFromSysex) {
  EXPECT_TRUE(SendGS({0x40, 0x11, 0x19, 90}));
  EXPECT_TRUE(SendGS({0x40, 0x11, 0x1C, 20}));
  EXPECT_TRUE(SendGS({0x40, 0x11, 0x21, 30, 50}));
  EXPECT_TRUE(SendGS({0x40, 0x11, 0x00, 8, 48}));
  EXPECT_TRUE(SendXG({0x08, 0x02, 0x0B, 91}));
  EXPECT_TRUE(SendXG({0x08, 0x02, 0x0E, 21}));
  EXPECT_TRUE(SendXG({0x08, 0x02, 0x12, 31, 51}));
  EXPECT_TRUE(SendXG({0x08, 0x02, 0x01, 127, 0, 16}));
  const std::pair<int, int> expected[] = {{7, 90}, {10, 20}, {93, 30}, {91, 50}};
  for (const auto& [number, value] : expected) {
    EXPECT_EQ((voices.Controllers[{0, number}]), value);
    EXPECT_EQ((voices.Controllers[{2, number}]), value + 1);
  }
  EXPECT_EQ(voices.Presets[0], (TPreset{8, 48}));
  EXPECT_EQ(voices.Presets[2], Kit(16));
  SendGS({0x40, 0x11, 0x1C, 0});
  SendXG({0x08, 0x02, 0x0E, 0});
  EXPECT_EQ((voices.Controllers[{0, 10}]), 20) << "a panorama at random stays where it is";
  EXPECT_EQ((voices.Controllers[{2, 10}]), 21);
}

TEST_F(SynthParts, PassesOverPartsThatItDoesNotHave) {
  EXPECT_FALSE(SendXG({0x08, 0x10, 0x07, 0x01}));
  EXPECT_FALSE(SendGS({0x50, 0x11, 0x15, 0x01}));
  EXPECT_TRUE(SendGS({0x40, 0x01, 0x30, 0x04})) << "the kind of reverb";
  for (int part = 0; part < 16; ++part) EXPECT_EQ(voices.Drums[part], part == 9);
}

TEST_F(SynthParts, ComesBackToAStateThatWasRead) {
  XGOn();
  Selected(3, 127, 0, 16);
  Selected(4, 0, 2, 4);
  std::array<TSynthPart, SynthPartCount> state;
  for (int p = 0; p < SynthPartCount; ++p) state[static_cast<std::size_t>(p)] = parts.Part(p);
  GMOn();
  parts.Restore(TSoundStandard::XG, state);
  EXPECT_EQ(parts.Standard(), TSoundStandard::XG);
  EXPECT_EQ(voices.Presets[3], Kit(16));
  EXPECT_EQ(voices.Presets[4], (TPreset{2, 4}));
}

}  // namespace
}  // namespace Sonarello
