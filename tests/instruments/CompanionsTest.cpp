#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "helpers/SoundLists.h"
#include "helpers/Workbench.h"
#include "instruments/SoundListReader.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const char* const CompanionRow = "8\t53\t1\t64\t108\t60\t61\t21\t5\t325\t";

struct Companions : testing::Test {
  Companions() {
    Panel = ListSpec(Layout::F5);
    DSP = ListSpec(Layout::X15, "DSPs bei Panel Voices für Genos");
    DSP.OneBased = true;
    List = ReadSoundList(Panel, "P\tA\t8\t53\t0\n\tB\t8\t53\t1\n\tSame as A\t8\t53\t0\n", nullptr);
  }
  void Read(const std::string& text) { ReadCompanion(List, DSP, text, 290, &Messages); }

  TListSpec Panel;
  TListSpec DSP;
  TSoundList List;
  RecordedMessages Messages;
};

TEST_F(Companions, GiveTheFirstSoundOfTheAddressItsEffects) {
  Read(std::string(CompanionRow) + "0;30;0;50;0;20;0;60;50;127;0;0;0;0;0;7\t20\t56\t42\t63\n");
  ASSERT_THAT(List.Effects, SizeIs(3));
  const TXTPatch& effects = List.Effects[0];
  EXPECT_EQ(effects.Ctrl71, 64);
  EXPECT_EQ(effects.Ctrl72, 108);
  EXPECT_EQ(effects.Ctrl73, 60);
  EXPECT_EQ(effects.Ctrl74, 61);
  EXPECT_EQ(effects.Ctrl91, 21);
  EXPECT_EQ(effects.Ctrl93, 5);
  EXPECT_EQ(effects.DSPIndex, 325);
  EXPECT_THAT(effects.DSPPar, ElementsAre(0, 30, 0, 50, 0, 20, 0, 60, 50, 127, 0, 0, 0, 0, 0, 7));
  EXPECT_EQ(effects.MPBassFreq, 20);
  EXPECT_EQ(effects.MPBassGain, 56);
  EXPECT_EQ(effects.MPTrebleFreq, 42);
  EXPECT_EQ(effects.MPTrebleGain, 63);
  TXTPatch none;
  none.DSPIndex = 290;
  EXPECT_EQ(List.Effects[1], none);
  EXPECT_EQ(List.Effects[2], none);
}

TEST_F(Companions, PutASingleParameterIntoTheTenth) {
  Read(std::string(CompanionRow) + "99\t20\t56\t42\t63\n");
  for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(List.Effects[0].DSPPar[i], i == 9 ? 99 : -1);
}

TEST_F(Companions, MaySetNoParameter) {
  Read(std::string(CompanionRow) + "\t20\t56\t42\t63\n");
  EXPECT_EQ(List.Effects[0].DSPIndex, 325);
  EXPECT_EQ(List.Effects[0].DSPPar, TXTPatch().DSPPar);
  EXPECT_THAT(Messages.Shown, IsEmpty());
}

TEST_F(Companions, CountProgramsAsTheirListDoes) {
  DSP.OneBased = false;
  Read(std::string(CompanionRow) + "99\t20\t56\t42\t63\n");
  EXPECT_EQ(List.Effects[0].DSPIndex, 290);
  EXPECT_EQ(List.Effects[1].DSPIndex, 325);
}

TEST_F(Companions, WithoutSoundAreIgnored) {
  Read("8\t54\t1\t64\t108\t60\t61\t21\t5\t325\t1\t20\t56\t42\t63\n\n");
  EXPECT_EQ(List.Effects[0].DSPIndex, 290);
  EXPECT_THAT(Messages.Shown, IsEmpty());
}

TEST_F(Companions, ReportParametersThatAreNotSixteenAndLeaveThem) {
  const std::string sixteen = "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16";
  Read(std::string(CompanionRow) + sixteen + "\t20\t56\t42\t63\n");
  const auto before = List.Effects[0].DSPPar;
  for (const std::string& cell : std::vector<std::string>{
           "1;2", sixteen + ";17", sixteen + ";", "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;x", ";", "x"}) {
    Messages.Shown.clear();
    const std::string row = "8\t53\t1\t64\t108\t60\t61\t21\t5\t17\t" + cell + "\t21\t56\t42\t63";
    Read("\n" + row + "\n");
    EXPECT_THAT(
        Messages.Shown,
        ElementsAre("Fehler in Zeile 2 beim Import der DSPs bei Panel Voices für Genos\r" + row));
    EXPECT_EQ(List.Effects[0].DSPPar, before);
    EXPECT_EQ(List.Effects[0].DSPIndex, 17);
    EXPECT_EQ(List.Effects[0].MPBassFreq, 21);
  }
}

TEST_F(Companions, ReportRowsThatAreNone) {
  const std::string tail = "\t325\t99\t20\t56\t42\t63";
  for (const std::string& row : std::vector<std::string>{
           "8\t53\t1", "8\t53\t0\t64\t64\t64\t64\t21\t5" + tail,
           "8\t128\t1\t64\t64\t64\t64\t21\t5" + tail, "8\t53\t1\t64\t64\tx\t64\t21\t5" + tail,
           "8\t53\t1\t64\t64\t64\t64\t21\t5\tx\t99\t20\t56\t42\t63",
           "8\t53\t1\t64\t64\t64\t64\t21\t5\t325\t99\t20\t56\t42\tx"}) {
    Messages.Shown.clear();
    Read(row);
    EXPECT_THAT(
        Messages.Shown,
        ElementsAre("Fehler in Zeile 1 beim Import der DSPs bei Panel Voices für Genos\r" + row));
    EXPECT_EQ(List.Effects[0].DSPIndex, 290);
  }
}

TEST_F(Companions, SayNothingOfRowsThatShip) {
  ReadCompanion(List, DSP, "x\n" + std::string(CompanionRow) + "1;2\t20\t56\t42\t63\n", 290, nullptr);
  EXPECT_EQ(List.Effects[0].DSPIndex, 325);
  EXPECT_EQ(List.Effects[0].DSPPar, TXTPatch().DSPPar);
}

TEST_F(Companions, GiveNoEffectsToAListThatHasNone) {
  TListSpec absent = DSP;
  LoadCompanion(List, absent, {}, Messages);
  EXPECT_THAT(List.Effects, IsEmpty());
  EXPECT_THAT(Messages.Shown, IsEmpty());
}

}  // namespace
}  // namespace Sonarello
