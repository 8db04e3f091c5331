// The effect memory of an instrument in a written file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WriterKit.h"
#include "core/WriterDSP.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

constexpr int Genos = 87;
constexpr int MotifXF = 69;
const std::string XGOn = " f0 43104c00007e00f7";
const std::string GMOn = " f0 7e7f0901f7";

class WriterEffects : public testing::Test {
 protected:
  /// A song with a note and, if told, a reset of its own at a tick.
  void Load(int instrument, int format = 1, std::initializer_list<int> reset = {}, int resetTick = 2) {
    bench.Instrument(instrument);
    Smf smf(format, 480);
    if (format == 1) smf.Track().At(0).Tempo(500000).End();
    smf.Track();
    if (reset.size() != 0) smf.At(resetTick).Sysex(reset);
    bench.Load(smf.At(480).On(1, 60).End());
    memory = bench.song.DSPTrackOf(instrument);
    BeginTrack(bench.song.Pool, *memory);
  }
  PtrMidiEvent Add(std::initializer_list<std::uint8_t> bytes, std::int32_t position) {
    PtrMidiEvent e = NewSysex(bench.song.Pool, std::span(bytes.begin(), bytes.size()), position);
    Append(*memory, e);
    return e;
  }
  /// The system reset, a silent default and two live events, as an effect memory holds them.
  void Fill(std::initializer_list<std::uint8_t> reset) {
    Add(reset, 50);
    Add({0x43, 0x10, 0x4C, 1, 0xF7}, 100);
    MarkRemoved(Add({0x43, 0x10, 0x4C, 2, 0xF7}, 102));
    Add({0x43, 0x10, 0x4C, 3, 0xF7}, 104);
    EndTrack(bench.song.Pool, *memory, bench.song.MaxSongPosition);
  }
  std::vector<std::string> Sysexs(const WrittenFile& file) {
    std::vector<std::string> found;
    for (const auto& track : file.Tracks)
      for (const std::string& line : track)
        if (line.find(" f0 ") != std::string::npos) found.push_back(line);
    return found;
  }
  WriterBench bench;
  TMyTrack* memory = nullptr;
};
constexpr std::initializer_list<std::uint8_t> XG = {0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7};
constexpr std::initializer_list<std::uint8_t> GM = {0x7E, 0x7F, 0x09, 0x01, 0xF7};

TEST_F(WriterEffects, StandBehindTheSongsOwnResetWhichIsNotDoubled) {
  Load(Genos, 1, {0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7}, 7);
  Fill(XG);
  EXPECT_THAT(Sysexs(bench.Write(1)), ElementsAre("7" + XGOn, "9 f0 43104c01f7", "11 f0 43104c03f7"));
}

TEST_F(WriterEffects, BringTheirOwnResetToASongThatHasNone) {
  Load(Genos);
  Fill(XG);
  EXPECT_THAT(Sysexs(bench.Write(1)), ElementsAre("2" + XGOn, "4 f0 43104c01f7", "6 f0 43104c03f7"));
}

TEST_F(WriterEffects, TakeALateResetOfTheSongForNone) {
  Load(Genos, 1, {0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7}, 480 * 8 + 1);
  Fill(XG);
  EXPECT_THAT(Sysexs(bench.Write(1)).size(), 4U);
}

TEST_F(WriterEffects, FollowTheYamahaOptions) {
  Load(Genos);
  Fill(XG);
  bench.options.YamahaXGSxPosition = 10;
  bench.options.YamahaDSPsFromPosition = 100;
  bench.options.YamahaDSPsSysexDelta = 5;
  EXPECT_THAT(Sysexs(bench.Write(1)),
              ElementsAre("10" + XGOn, "100 f0 43104c01f7", "105 f0 43104c03f7"));
  bench.options.YamahaDSPsFromPosition = 3;
  EXPECT_THAT(Sysexs(bench.Write(1)), ElementsAre("10" + XGOn, "15 f0 43104c01f7", "20 f0 43104c03f7"));
}

TEST_F(WriterEffects, FollowTheMotifOptionsOnAMotif) {
  Load(MotifXF);
  Fill(GM);
  bench.options.YamahaXGSxPosition = 999;
  bench.options.YamahaDSPsFromPosition = 999;
  bench.options.MotifGMSxPosition = 20;
  bench.options.MotifDSPsFromPosition = 30;
  bench.options.MotifDSPsSysexDelta = 3;
  EXPECT_THAT(Sysexs(bench.Write(1)), ElementsAre("20" + GMOn, "30 f0 43104c01f7", "33 f0 43104c03f7"));
}

TEST_F(WriterEffects, AreThoseOfTheMainInstrumentOnly) {
  Load(Genos);
  Fill(XG);
  bench.Instrument(74);
  EXPECT_TRUE(Sysexs(bench.Write(1)).empty());
}

TEST_F(WriterEffects, GoOntoTheSongsSysexTrack) {
  Load(Genos);
  Fill(XG);
  bench.song.SysexTrack = 0;
  EXPECT_EQ(bench.Write(1).Tracks[0][2], "2" + XGOn) << "behind the tempo, which stands at tick 0";
}

TEST_F(WriterEffects, GoOntoTrackTenOfASplitSong) {
  Load(Genos, 0);
  Fill(XG);
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_THAT(file.Tracks[2],
              ElementsAre(HeadLine, "2" + XGOn, "4 f0 43104c01f7", "6 f0 43104c03f7", "999 end"));
}

TEST_F(WriterEffects, AreMixedIntoAFormatZeroFile) {
  Load(Genos);
  Fill(XG);
  EXPECT_THAT(Sysexs(bench.Write(0)), ElementsAre("2" + XGOn, "4 f0 43104c01f7", "6 f0 43104c03f7"));
}

TEST_F(WriterEffects, StandBehindEventsOfTheirTick) {
  Load(Genos);
  Fill(XG);
  bench.options.YamahaDSPsFromPosition = 480;
  const WrittenFile file = bench.Write(1);
  EXPECT_THAT(file.Tracks[1], ElementsAre(HeadLine, "2" + XGOn, "480 903c64", "480 f0 43104c01f7",
                                          "482 f0 43104c03f7", "999 end"));
}

TEST_F(WriterEffects, NeverStandBehindTheSongsEnd) {
  Load(Genos);
  Fill(XG);
  bench.options.YamahaDSPsFromPosition = 5000;
  EXPECT_THAT(Sysexs(bench.Write(1)),
              ElementsAre("2" + XGOn, "999 f0 43104c01f7", "999 f0 43104c03f7"));
  EXPECT_TRUE(bench.messages.Shown.empty());
}

TEST_F(WriterEffects, AddNothingWhenTheMemoryIsSilent) {
  Load(Genos);
  MarkRemoved(Add({0x43, 0xF7}, 10));
  EXPECT_TRUE(Sysexs(bench.Write(1)).empty());
}

TEST_F(WriterEffects, TellOfAnEventBehindItsSuccessorAndGoOn) {
  Load(Genos);
  Fill(XG);
  bench.Event(1, 1)->Position = 2000;  // the note now stands behind End of track
  for (const bool german : {false, true}) {
    GermanLanguage = german;
    bench.messages.Shown.clear();
    EXPECT_EQ(bench.Write(1).Count("2000 903c64"), 1);
    EXPECT_THAT(bench.messages.Shown,
                ElementsAre("F1-Gen: Falsches Event bei Position 2000\rEventCmd 144\rEventtyp 1"));
  }
}

TEST_F(WriterEffects, BearTheMarkOfBranchAndFamily) {
  const std::tuple<int, const char*, const char*, const char*> rows[] = {
      {9, "F01-TY1", "F1-TY1", "F0-Ty1"},     {26, "F01-MES", "F1-MES", "F0-MES"},
      {31, "F01-TY2", "F1-TY2", "F0-Ty2"},    {41, "F01-S900", "F1-S900", "F0-S900"},
      {51, "F01-MXS", "F1-MXS", "F0-MXS"},    {54, "F01-TY3", "F1-TY3", "F0-Ty3"},
      {59, "F01-S910", "F1-S910", "F0-S910"}, {62, "F01-TY4", "F1-TY4", "F0-Ty4"},
      {69, "F01-MXF", "F1-MXF", "F0-MXF"},    {70, "F01-S950", "F1-S950", "F0-S950"},
      {74, "F01-TY5", "F1-TY5", "F0-Ty5"},    {80, "F01-S970", "F1-S970", "F0-S970"},
      {87, "F01-Gen", "F1-Gen", "F0-Gen"},    {97, "F01-SX900", "F1-SX900", "F0-SX900"}};
  for (const auto& [value, split, tracks, mixed] : rows) {
    EXPECT_EQ(EffectStageMark(TWriterBranch::Split, value), split);
    EXPECT_EQ(EffectStageMark(TWriterBranch::Tracks, value), tracks);
    EXPECT_EQ(EffectStageMark(TWriterBranch::Mixed, value), mixed);
    EXPECT_NE(bench.song.DSPTrackOf(value), nullptr);
  }
  EXPECT_EQ(EffectStageMark(TWriterBranch::Split, 0), "");
  EXPECT_EQ(WrongOrderText("F01-TY1", TypMidiEvent{}, 17),
            "F01-TY1: Falsches Event bei Position 17\rEventCmd 0\rEventtyp 0");
}

TEST_F(WriterEffects, KeepTheirNumberOverLoadAndSave) {
  Load(Genos);
  Fill(XG);
  const Bytes once = bench.Encode(1);
  WriterBench again;
  again.Instrument(Genos);
  again.LoadBytes(once);
  memory = again.song.DSPTrackOf(Genos);
  BeginTrack(again.song.Pool, *memory);
  PtrMidiEvent reset = NewSysex(again.song.Pool, std::span(XG.begin(), XG.size()), 50);
  Append(*memory, reset);
  EXPECT_EQ(again.Write(1).Count("2" + XGOn), 1);
}

}  // namespace
}  // namespace Sonarello
