#include "core/DrumPartSysex.h"

#include "helpers/SysexSong.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST(DrumPartSysex, GivesEachPartAPlaceholderBehindTheReset) {
  SysexSong bench(1);
  bench.Fit();
  for (int part = 0; part < 16; ++part) {
    PtrMidiEvent e = bench.song.RolandDrumSysexArray[static_cast<std::size_t>(part)];
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(bench.PlaceOf(e), "1/" + std::to_string(52 + 2 * part));
    EXPECT_EQ(e->DLength, 0);
    EXPECT_EQ(ToHex(e->Meta.Bytes()), "41 10 42 12 40 10 15 00 00 F7");
    EXPECT_EQ(bench.song.MidiData[static_cast<std::size_t>(part)].DrumPart, 0);
  }
}

TEST(DrumPartSysex, BringsTheDrumPartsOfTheSongBackInPartOrder) {
  SysexSong bench(1);
  PtrMidiEvent eleven = bench.Sysex(1, 4, "41 10 42 12 40 1A 15 02 0F F7");
  PtrMidiEvent ten = bench.Sysex(1, 6, "41 10 42 12 40 10 15 01 1A F7");
  bench.Fit();
  EXPECT_EQ(ten->DLength, 0);
  EXPECT_EQ(eleven->DLength, 0);
  EXPECT_THAT(bench.Live(1), Contains("70: 41 10 42 12 40 10 15 01 1A F7"));
  EXPECT_THAT(bench.Live(1), Contains("72: 41 10 42 12 40 1A 15 02 0F F7"));
  EXPECT_EQ(bench.song.MidiData[9].DrumPart, 1);
  EXPECT_EQ(bench.song.MidiData[10].DrumPart, 2);
  EXPECT_EQ(bench.song.RolandDrumSysexArray[9]->DLength, 10);
  EXPECT_EQ(bench.song.RolandDrumSysexArray[9]->Position, 70);
  EXPECT_THAT(bench.Told(ChangeKind::Moved),
              ElementsAre("1/70 fixed place of the drum parts", "1/72 fixed place of the drum parts"));
}

TEST(DrumPartSysex, NumbersThePartsAsGSDoes) {
  // The low nibble of the part block, by part.
  const int nibbles[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 10, 11, 12, 13, 14, 15};
  for (const int value : {1, 67, 100, 56}) {
    for (int part = 0; part < 16; ++part) {
      SysexSong bench(value);
      const std::string device = value == 1 ? "10" : "00";
      const std::string block = ToHex(Bytes{static_cast<std::uint8_t>(0x10 + nibbles[part])});
      const std::string tail = value == 56 ? " F7" : " 00 F7";
      bench.Sysex(1, 0, "41 " + device + " 42 12 40 " + block + " 15 03" + tail);
      bench.Fit();
      for (int p = 0; p < 16; ++p)
        EXPECT_EQ(bench.song.MidiData[static_cast<std::size_t>(p)].DrumPart, p == part ? 3 : 0)
            << value << " " << part;
    }
  }
}

TEST(DrumPartSysex, CountsTheLastOfAPart) {
  SysexSong bench(1);
  bench.Sysex(1, 4, "41 10 42 12 40 10 15 01 1A F7");
  bench.Sysex(2, 2, "41 10 42 12 40 10 15 02 19 F7");
  bench.Fit();
  EXPECT_EQ(bench.song.MidiData[9].DrumPart, 2);
  EXPECT_THAT(bench.Live(2), Contains("70: 41 10 42 12 40 10 15 02 19 F7"));
  EXPECT_THAT(bench.Told(ChangeKind::Dropped),
              ElementsAre("1/4 overtaken by a later sysex of the same part"));
}

TEST(DrumPartSysex, LeavesOtherGSMessagesAndLateOnesWhereTheyAre) {
  SysexSong bench(1);
  const std::vector<PtrMidiEvent> others = {bench.Sysex(1, 0, "41 10 42 12 40 20 15 01 0A F7"),
                                            bench.Sysex(1, 0, "41 10 42 12 40 10 16 01 19 F7"),
                                            bench.Sysex(1, 0, "41 10 42 12 40 10 15 01 F7"),
                                            bench.Sysex(1, 0, "41 00 42 12 40 10 15 01 1A F7"),
                                            bench.Sysex(1, 3841, "41 10 42 12 40 10 15 01 1A F7")};
  bench.Fit();
  for (PtrMidiEvent e : others) EXPECT_GT(e->DLength, 0) << ToHex(e->Meta.Bytes());
  EXPECT_EQ(bench.song.MidiData[9].DrumPart, 0);
}

TEST(DrumPartSysex, KeepsTheTableOfEachDialect) {
  struct Case {
    int Value;
    Song::TPartEvents Song::*Table;
    const char* Default;
  };
  for (const Case& c : {Case{12, &Song::RolandDrumSysexArray, "41 10 42 12 40 10 15 00 00 F7"},
                        Case{100, &Song::MBMusicDrumSysexArray, "41 00 42 12 40 10 15 00 00 F7"},
                        Case{67, &Song::MP11DrumsSysexArray, "41 00 42 12 40 10 15 00 00 F7"},
                        Case{95, &Song::LimexDrumsSysexArray, "41 00 42 12 40 11 15 00 F7"},
                        Case{73, &Song::KetronDrumsSysexArray, "26 7B 0F 00 00 00 F7"}}) {
    SysexSong bench(c.Value);
    bench.Fit();
    for (int part = 0; part < 16; ++part) {
      PtrMidiEvent e = (bench.song.*c.Table)[static_cast<std::size_t>(part)];
      EXPECT_EQ(ToHex(e->Meta.Bytes()), c.Default) << c.Value;
      EXPECT_EQ(e->Position, 52 + 2 * part) << c.Value;
    }
  }
  SysexSong bench(10);
  bench.Fit();
  EXPECT_EQ(bench.song.KetronDrumsSysexArray[0], nullptr);
}

TEST(DrumPartSysex, ReadsThePartsOfAKetron) {
  SysexSong bench(73);
  bench.Sysex(1, 100, "26 7B 0E 00 01 F7");
  bench.Sysex(1, 110, "26 7B 0F 00 0A 01 F7");
  PtrMidiEvent noPart = bench.Sysex(1, 111, "26 7B 0F 00 10 01 F7");
  bench.Fit();
  EXPECT_EQ(bench.song.MidiData[10].DrumPart, 1);
  EXPECT_EQ(bench.song.KetronDrumsSysexArray[10]->Position, 170);
  EXPECT_EQ(bench.song.KetronDrumsSysexArray[10]->DLength, 7);
  EXPECT_GT(noPart->DLength, 0);
}

TEST(DrumPartSysex, LeavesOtherParametersOfALimexAlone) {
  SysexSong bench(56);
  PtrMidiEvent reverb = bench.Sysex(1, 5, "41 00 42 12 40 01 30 05 F7");
  bench.Fit();
  EXPECT_GT(reverb->DLength, 0);
}

}  // namespace
}  // namespace Sonarello
