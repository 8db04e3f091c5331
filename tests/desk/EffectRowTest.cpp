#include "desk/EffectRow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/EventList.h"
#include "helpers/InGerman.h"
#include "helpers/SysexSong.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int Genos = 87;
constexpr int PSRS900 = 41;

/// A song of two tracks whose first note sounds at tick 1920, and its effect row.
struct EffectBench : SysexSong {
  explicit EffectBench(int instrument = Genos) : SysexSong(instrument, 2), value(instrument) {}

  /// The cells that are on, as "DSP 3: Thru [Ch 4]".
  std::vector<std::string> Lit() {
    row.Read(song, value);
    std::vector<std::string> lines;
    for (const TEffectCell& cell : row.Cells)
      if (cell.On)
        lines.push_back(cell.BlockName() + ": " + cell.EffectName +
                        (cell.Part.empty() ? "" : " [" + cell.Part + "]"));
    return lines;
  }

  int value;
  TEffectRow row;
};

std::vector<std::string> BlocksOf(int value) {
  const Song song;
  TEffectRow row;
  row.Read(song, value);
  std::vector<std::string> names;
  for (const TEffectCell& cell : row.Cells) names.push_back(cell.BlockName());
  return names;
}

TEST(EffectRow, ShowsTheBlocksOfTheInstrument) {
  EXPECT_THAT(BlocksOf(PSRS900),
              ElementsAre("Chorus", "Reverb", "Variation", "DSP 1", "DSP 2", "DSP 3"));
  EXPECT_THAT(BlocksOf(54), ElementsAre("Chorus", "Reverb", "Variation", "Master EQ", "DSP 1", "DSP 2",
                                        "DSP 3", "DSP 4", "DSP 5", "DSP 6"));
  const auto genos = BlocksOf(Genos);
  ASSERT_EQ(genos.size(), 22U);
  EXPECT_EQ(genos[3], "Master EQ");
  EXPECT_EQ(genos[4], "Vocal Harmony");
  EXPECT_EQ(genos[5], "Vocal Effect");
  EXPECT_EQ(genos[21], "DSP 16");
  struct {
    int Value, DSPs;
    bool EQ, Vocal;
  } const rows[] = {{9, 5, false, false},  {31, 5, false, false}, {54, 6, true, false},
                    {62, 6, true, true},   {74, 6, true, true},   {41, 3, false, false},
                    {59, 3, false, false}, {70, 3, false, false}, {80, 3, true, true},
                    {97, 6, true, true},   {87, 16, true, true}};
  for (const auto& row : rows) {
    const TEffectBlocks* blocks = EffectBlocksOf(row.Value);
    ASSERT_NE(blocks, nullptr) << row.Value;
    EXPECT_EQ(blocks->DSPs, row.DSPs) << row.Value;
    EXPECT_EQ(blocks->MasterEQ, row.EQ) << row.Value;
    EXPECT_EQ(blocks->Vocal, row.Vocal) << row.Value;
  }
}

TEST(EffectRow, MostInstrumentsHaveNone) {
  int with = 0;
  for (const TInstrument& instrument : InstrumentArray) {
    const auto blocks = BlocksOf(instrument.Value);
    with += blocks.empty() ? 0 : 1;
    EXPECT_EQ(blocks.empty(), EffectBlocksOf(instrument.Value) == nullptr);
  }
  EXPECT_EQ(with, 11);
  TEffectRow row;
  row.Read(Song(), Genos);
  EXPECT_EQ(row.DSPCount(), 16);
  EXPECT_TRUE(row.Read(Song(), 0));
  EXPECT_THAT(row.Cells, IsEmpty());
  EXPECT_EQ(row.DSPCount(), 0);
}

TEST(EffectRow, AnEmptySongHasEverythingOff) {
  EffectBench b;
  EXPECT_THAT(b.Lit(), IsEmpty());
  for (const TEffectCell& cell : b.row.Cells) EXPECT_EQ(cell.EffectName, "Off");
}

TEST(EffectRow, ASystemEffectIsNamedByItsType) {
  EffectBench b;
  b.Sysex(1, 10, "43 10 4C 02 01 00 01 20 F7");
  b.Sysex(1, 12, "43 10 4C 02 01 20 41 00 F7");
  b.Sysex(1, 14, "43 10 4C 02 01 40 05 00 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Chorus: Chorus6", "Reverb: RealLrgHall", "Variation: DelayLCR2"));
}

TEST(EffectRow, AnInsertionEffectShowsItsPart) {
  EffectBench b;
  b.Sysex(1, 10, "43 10 4C 03 00 00 41 00 F7");
  b.Sysex(1, 11, "43 10 4C 03 00 0C 03 F7");
  b.Sysex(1, 12, "43 10 4C 03 0F 00 41 00 F7");
  b.Sysex(1, 13, "43 10 4C 03 0F 0C 7F F7");
  b.Sysex(1, 14, "43 10 4C 03 01 00 41 00 F7");
  b.Sysex(1, 15, "43 10 4C 03 01 0C 40 F7");
  b.Sysex(1, 16, "43 10 4C 03 02 00 41 00 F7");
  b.Sysex(1, 17, "43 10 4C 03 02 0C 21 F7");
  b.Sysex(1, 18, "43 10 4C 03 03 00 41 00 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("DSP 1: Chorus6 [Ch 4]", "DSP 2: Chorus6 [Mic]", "DSP 3: Chorus6",
                                   "DSP 4: Chorus6", "DSP 16: Chorus6 [Off]"));
  InGerman german;
  EXPECT_EQ(b.Lit()[0], "DSP 1: Chorus6 [K 4]");
}

TEST(EffectRow, TheVariationIsASystemEffectOrBelongsToAPart) {
  EffectBench b;
  b.Sysex(1, 10, "43 10 4C 02 01 40 05 00 F7");
  b.Sysex(1, 11, "43 10 4C 02 01 5B 0A F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Variation: DelayLCR2 [Ch 11]"));
  b.Sysex(1, 12, "43 10 4C 02 01 5A 01 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Variation: DelayLCR2 [System]"));
  b.Sysex(1, 13, "43 10 4C 02 01 5A 00 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Variation: DelayLCR2 [Ch 11]"));
}

TEST(EffectRow, ABlockSetToNoEffectIsOff) {
  EffectBench b;
  b.Sysex(1, 10, "43 10 4C 02 01 00 00 00 F7");
  b.Sysex(1, 11, "43 10 4C 02 01 40 40 00 F7");
  b.Sysex(1, 12, "43 10 4C 03 00 00 40 00 F7");
  b.Sysex(1, 13, "43 10 4C 03 00 0C 03 F7");
  EXPECT_THAT(b.Lit(), IsEmpty());
}

TEST(EffectRow, ParametersWithoutATypeBelongToTheDefault) {
  EffectBench b;
  b.Sysex(1, 10, "43 10 4C 02 01 0C 40 F7");
  b.Sysex(1, 11, "43 10 4C 02 01 2E 10 F7");
  b.Sysex(1, 12, "43 10 4C 03 00 02 05 F7");
  b.Sysex(1, 13, "43 10 4C 02 40 05 40 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Chorus: Chorus6", "Reverb: Hall1", "Master EQ: Type 0"))
      << "an insertion effect starts as Thru, which is none";
}

TEST(EffectRow, TypesWithoutAKnownNameAreShownByNumber) {
  EffectBench b;
  b.Sysex(1, 10, "43 10 4C 02 01 00 7A 11 F7");
  b.Sysex(1, 11, "43 10 4C 02 40 00 03 F7");
  b.Sysex(1, 12, "43 10 4C 04 00 00 0C 01 F7");
  b.Sysex(1, 13, "43 10 4C 04 00 60 15 02 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Reverb: Type 122/17", "Master EQ: Type 3",
                                   "Vocal Harmony: Type 12/1", "Vocal Effect: Type 21/2"));
  InGerman german;
  EXPECT_EQ(b.Lit()[0], "Reverb: Typ 122/17");
}

TEST(EffectRow, AVocalEffectThatIsSwitchedOffIsOff) {
  EffectBench b;
  b.Sysex(1, 10, "43 10 4C 04 00 60 15 00 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Vocal Effect: Type 21/0"));
  b.Sysex(1, 11, "43 10 4C 04 00 76 00 F7");
  EXPECT_THAT(b.Lit(), IsEmpty());
}

TEST(EffectRow, BlocksThatTheInstrumentLacksAreNotShown) {
  EffectBench b(PSRS900);
  b.Sysex(1, 10, "43 10 4C 02 40 00 03 F7");
  b.Sysex(1, 11, "43 10 4C 03 05 00 41 00 F7");
  b.Sysex(1, 12, "43 10 4C 04 00 00 0C 01 F7");
  EXPECT_THAT(b.Lit(), IsEmpty());
}

TEST(EffectRow, OtherMessagesAreNoEffects) {
  EffectBench b;
  b.Sysex(1, 10, "43 00 4C 02 01 00 01 00 F7");
  b.Sysex(1, 11, "41 10 4C 02 01 00 01 00 F7");
  b.Sysex(1, 12, "43 10 4D 02 01 00 01 00 F7");
  b.Sysex(1, 13, "43 10 4C 00 00 7E 00 F7");
  b.Sysex(1, 14, "43 10 4C 03 10 00 41 00 F7");
  b.Sysex(1, 15, "43 10 4C 08 00 07 01 F7");
  b.Sysex(1, 16, "43 10 4C 02 F7");
  b.Sysex(1, 17, "F7");
  EXPECT_THAT(b.Lit(), IsEmpty());
  b.Sysex(1, 18, "43 1F 4C 02 01 00 01 00 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Reverb: Hall1")) << "any device number is the instrument's";
}

TEST(EffectRow, TheStateAsTheFirstNotesSoundCounts) {
  EffectBench b;
  b.song.SourceTimeBase = 96;
  b.song.TickPositionOfFirstNote = 1920;
  b.Sysex(1, 10, "43 10 4C 02 01 00 01 00 F7");
  b.Sysex(1, 1920, "43 10 4C 02 01 00 11 00 F7");
  b.Sysex(1, 1921, "43 10 4C 02 01 00 12 00 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Reverb: Tunnel"));
  EffectBench later;
  later.song.SourceTimeBase = 96;
  later.Sysex(1, 5000, "43 10 4C 02 01 00 12 00 F7");
  later.Sysex(0, 4000, "43 10 4C 02 01 00 11 00 F7");
  EXPECT_THAT(later.Lit(), ElementsAre("Reverb: Tunnel")) << "what is set first, on whichever track";
}

TEST(EffectRow, RemovedEventsAndHeldOutTracksDoNotCount) {
  EffectBench b;
  MarkRemoved(b.Sysex(0, 10, "43 10 4C 02 01 00 01 00 F7"));
  b.Sysex(1, 10, "43 10 4C 02 01 20 41 00 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Chorus: Chorus6"));
  b.Track(1).TrkIgnore = true;
  EXPECT_THAT(b.Lit(), IsEmpty());
}

TEST(EffectRow, TheEffectMemoryGoesBeforeTheSong) {
  EffectBench b;
  TMyTrack& memory = b.song.DSPTracks.GenosDSPTrack;
  BeginTrack(b.song.Pool, memory);
  const auto remember = [&](int position, std::string_view hex) {
    PtrMidiEvent e = NewSysex(b.song.Pool, FromHex(hex), position);
    Append(memory, e);
    return e;
  };
  remember(100, "43 10 4C 02 01 00 11 00 F7");
  MarkRemoved(remember(102, "43 10 4C 02 01 20 41 00 F7"));
  b.Sysex(1, 500, "43 10 4C 02 01 00 12 00 F7");
  EXPECT_THAT(b.Lit(), ElementsAre("Reverb: Tunnel")) << "a placeholder of the memory sets nothing";
  b.value = 97;
  EXPECT_THAT(b.Lit(), ElementsAre("Reverb: Canyon")) << "the memory is another instrument's";
}

TEST(EffectRow, TellsWhetherItChanged) {
  EffectBench b;
  EXPECT_TRUE(b.row.Read(b.song, Genos));
  EXPECT_FALSE(b.row.Read(b.song, Genos));
  b.Sysex(1, 10, "43 10 4C 02 01 00 01 00 F7");
  EXPECT_TRUE(b.row.Read(b.song, Genos));
  EXPECT_FALSE(b.row.Read(b.song, Genos));
  EXPECT_TRUE(b.row.Read(b.song, PSRS900));
}

TEST(EffectRow, NamesComeFromTheListOfTheBlock) {
  const auto type = [](int msb, int lsb) { return msb * 128 + lsb; };
  EXPECT_EQ(EffectTypeName(TEffectBlock::Reverb, type(1, 35)), "Real Large Hall +");
  EXPECT_EQ(EffectTypeName(TEffectBlock::DSP, type(65, 0)),
            EffectTypeName(TEffectBlock::Variation, type(65, 0)));
  EXPECT_EQ(EffectTypeName(TEffectBlock::MasterEQ, 0), "");
  EXPECT_EQ(EffectTypeName(TEffectBlock::Reverb, type(127, 127)), "");
  int known = 0;
  for (int t = 0; t < 128 * 128; ++t) known += EffectTypeName(TEffectBlock::DSP, t).empty() ? 0 : 1;
  EXPECT_EQ(known, 321);
}

}  // namespace
}  // namespace Sonarello
