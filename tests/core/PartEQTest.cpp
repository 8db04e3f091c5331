#include "core/PartEQ.h"

#include "core/RolandChecksum.h"
#include "helpers/SysexSong.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr int Korg = 42;
constexpr int Integra7 = 71;
constexpr int BK9 = 72;
const std::string KorgPrefix = "42 7F 60 00 01 00 10 00 ";
const std::string KorgFlat = " 00 00 01 00 00 02 00 03 00 04 00 05 00 5A F7";
const std::string KorgLoud = " 00 00 01 00 00 02 00 03 0A 04 00 05 00 11 F7";
const std::string BK9Prefix = "41 10 00 5C 12 30 00 00 00 00 00 00 00 00 00 ";
const std::string IntegraPrefix = "41 10 00 00 64 12 18 00 ";

std::string Part(int part, int base = 0) {
  return ToHex(Bytes{static_cast<std::uint8_t>(base + part)});
}
int Ticks(const SysexSong& bench, Song::TPartEvents Song::*table, int part) {
  return (bench.song.*table)[static_cast<std::size_t>(part)]->Position;
}

TEST(PartEQ, GivesEachPartOfAKorgItsDefault) {
  for (const int value : {42, 43, 52, 63, 64, 75, 82, 90, 91, 103}) {
    SysexSong bench(value);
    bench.Fit();
    for (int part = 0; part < 16; ++part) {
      PtrMidiEvent e = bench.song.KorgPaXXXPartEQ[static_cast<std::size_t>(part)];
      EXPECT_EQ(ToHex(e->Meta.Bytes()), KorgPrefix + Part(part) + KorgFlat) << value;
      EXPECT_EQ(e->DLength, 24);
      EXPECT_EQ(e->Position, 102 + 2 * part);
    }
  }
}

TEST(PartEQ, IsLeftAloneWhenTheKorgEffectsAreOff) {
  SysexSong bench(Korg);
  bench.options.KorgDSPsEnabled = false;
  PtrMidiEvent own = bench.Sysex(1, 10, KorgPrefix + "03" + KorgLoud);
  bench.Fit();
  EXPECT_EQ(bench.song.KorgPaXXXPartEQ[3], nullptr);
  EXPECT_GT(own->DLength, 0);
}

TEST(PartEQ, TakesOverWhatTheSongSets) {
  SysexSong bench(Korg, 4);
  PtrMidiEvent own = bench.Sysex(3, 7000, KorgPrefix + "03" + KorgLoud);
  bench.Fit();
  EXPECT_EQ(own->DLength, 0);
  EXPECT_EQ(own->MType, MetaText);
  EXPECT_EQ(bench.PlaceOf(bench.song.KorgPaXXXPartEQ[3]), "3/108");
  EXPECT_EQ(ToHex(bench.song.KorgPaXXXPartEQ[3]->Meta.Bytes()), KorgPrefix + "03" + KorgLoud);
  EXPECT_THAT(bench.Told(ChangeKind::Moved), ElementsAre("3/108 the instrument's part EQ"));
  EXPECT_EQ(bench.Told(ChangeKind::Inserted).size(), 16u);  // the reset and 15 parts
}

TEST(PartEQ, CountsTheLastMessageOfAPart) {
  SysexSong bench(Korg);
  PtrMidiEvent first = bench.Sysex(1, 500, KorgPrefix + "03" + KorgFlat);
  bench.Sysex(1, 600, KorgPrefix + "03" + KorgLoud);
  bench.Fit();
  EXPECT_EQ(ToHex(bench.song.KorgPaXXXPartEQ[3]->Meta.Bytes()), KorgPrefix + "03" + KorgLoud);
  // Left alive behind the setup it would take the equalizer back.
  EXPECT_EQ(first->DLength, 0);
  EXPECT_THAT(bench.Told(ChangeKind::Dropped), ElementsAre("1/500 overtaken by a later part EQ"));
}

TEST(PartEQ, LeavesMessagesThatAreNoPartEQ) {
  SysexSong bench(Korg);
  const std::vector<PtrMidiEvent> others = {bench.Sysex(1, 0, KorgPrefix + "10" + KorgFlat),
                                            bench.Sysex(1, 0, KorgPrefix + "01 F7"),
                                            bench.Sysex(1, 0, "42 7F 60 00 01 00 11 00 01" + KorgFlat)};
  bench.Fit();
  for (PtrMidiEvent e : others) EXPECT_GT(e->DLength, 0) << ToHex(e->Meta.Bytes());
}

TEST(PartEQ, StandsBehindTheResetOfTheSong) {
  SysexSong bench(Korg);
  bench.Sysex(1, 400, GM2Reset);
  bench.Fit();
  EXPECT_EQ(Ticks(bench, &Song::KorgPaXXXPartEQ, 0), 500);
}

TEST(PartEQ, StandsInFrontOfTheFirstNote) {
  struct Case {
    int FirstNote, First, Last;
  };
  // Room enough; steps of one tick; all behind the reset at one tick; no room at all.
  for (const Case& c : {Case{133, 102, 132}, Case{132, 102, 117}, Case{118, 102, 117},
                        Case{117, 101, 116}, Case{20, 4, 19}, Case{19, 3, 18}, Case{18, 17, 17},
                        Case{4, 3, 3}, Case{3, 2, 2}, Case{0, 2, 2}}) {
    SysexSong bench(Korg);
    bench.Note(1, c.FirstNote);
    bench.song.TickPositionOfFirstNote = c.FirstNote;
    bench.Fit();
    EXPECT_EQ(Ticks(bench, &Song::KorgPaXXXPartEQ, 0), c.First) << c.FirstNote;
    EXPECT_EQ(Ticks(bench, &Song::KorgPaXXXPartEQ, 15), c.Last) << c.FirstNote;
    // Ascending parts in the list, behind the reset, whatever the ticks.
    int part = -1;
    ForEachEvent(bench.Track(1), [&](PtrMidiEvent e) {
      if (e->Command == Status::Sysex && e->DLength == 24) {
        EXPECT_EQ(e, bench.song.KorgPaXXXPartEQ[static_cast<std::size_t>(++part)]);
      }
      if (e->Command == Status::Sysex && e->DLength == 5) {
        EXPECT_EQ(part, -1);
      }
    });
    EXPECT_EQ(part, 15);
  }
}

TEST(PartEQ, StandsInFrontOfTheCountIn) {
  SysexSong bench(Korg);
  bench.song.TickPositionOfFirstNote = 1920;
  bench.song.CountInIdx = 9;
  bench.song.CountInArray[9].Start = 60;
  bench.Fit();
  EXPECT_EQ(Ticks(bench, &Song::KorgPaXXXPartEQ, 15), 59);
}

TEST(PartEQ, GivesEachPartOfABK9ADefaultWithItsChecksum) {
  SysexSong bench(BK9);
  bench.Fit();
  for (int part = 0; part < 16; ++part) {
    const Meta& bytes = bench.song.RolandBK9PartEQ[static_cast<std::size_t>(part)]->Meta;
    ASSERT_EQ(bytes.size(), 34u);
    EXPECT_EQ(bytes[15], part);
    EXPECT_EQ(bytes[32], RolandChecksum(bytes.Bytes().subspan(5, 27)));
  }
  EXPECT_EQ(ToHex(bench.song.RolandBK9PartEQ[4]->Meta.Bytes()),
            BK9Prefix + "04 00 00 00 01 00 0F 00 07 00 0F 00 00 00 01 00 0F 16 F7");
  EXPECT_EQ(Ticks(bench, &Song::RolandBK9PartEQ, 0), 102);
}

TEST(PartEQ, FindsThePartOfABK9Message) {
  const std::string data = " 00 01 00 01 00 0F 00 07 00 0F 00 00 00 01 00 0F 7F F7";
  SysexSong bench(BK9);
  bench.Sysex(1, 10, BK9Prefix + "0B" + data);
  PtrMidiEvent other = bench.Sysex(1, 11, BK9Prefix + "0B 01" + data.substr(3));
  bench.Fit();
  EXPECT_EQ(ToHex(bench.song.RolandBK9PartEQ[11]->Meta.Bytes()), BK9Prefix + "0B" + data);
  EXPECT_GT(other->DLength, 0);
}

TEST(PartEQ, GivesEachPartOfAnIntegraADefaultWithItsChecksum) {
  SysexSong bench(Integra7);
  bench.Fit();
  EXPECT_EQ(ToHex(bench.song.RolandIntegra7PartEQ[0]->Meta.Bytes()),
            IntegraPrefix + "50 00 00 01 0F 07 0F 00 01 0F 62 F7");
  EXPECT_EQ(ToHex(bench.song.RolandIntegra7PartEQ[15]->Meta.Bytes()),
            IntegraPrefix + "5F 00 00 01 0F 07 0F 00 01 0F 53 F7");
  for (PtrMidiEvent e : bench.song.RolandIntegra7PartEQ) {
    EXPECT_EQ(e->DLength, 20);
    EXPECT_EQ(e->Meta[18], RolandChecksum(e->Meta.Bytes().subspan(6, 12)));
  }
}

TEST(PartEQ, GathersTheParametersOfAnIntegraPart) {
  SysexSong bench(Integra7);
  bench.Sysex(1, 10, IntegraPrefix + "52 02 14 00 F7");
  bench.Sysex(1, 11, IntegraPrefix + "52 00 01 15 F7");
  bench.Sysex(1, 12, IntegraPrefix + "52 06 02 05 00 F7");
  bench.Sysex(1, 13, IntegraPrefix + "52 02 16 00 F7");
  bench.Fit();
  EXPECT_EQ(ToHex(bench.song.RolandIntegra7PartEQ[2]->Meta.Bytes()),
            IntegraPrefix + "52 00 01 01 16 07 0F 00 02 05 61 F7");
  for (const std::string& live : bench.Live(1))
    EXPECT_THAT(live, Not(testing::MatchesRegex("1[0-3]: .*")));
  EXPECT_EQ(bench.Told(ChangeKind::Dropped).size(), 3u);
  EXPECT_THAT(bench.Told(ChangeKind::Dropped),
              testing::Each(testing::HasSubstr("merged into the instrument's part EQ")));
}

TEST(PartEQ, TakesAWholeBlockOfAnIntegra) {
  SysexSong bench(Integra7);
  bench.Sysex(1, 10, IntegraPrefix + "57 00 01 00 1E 10 00 04 02 1E 1F F7");
  bench.Fit();
  EXPECT_EQ(ToHex(bench.song.RolandIntegra7PartEQ[7]->Meta.Bytes()).substr(0, 53),
            IntegraPrefix + "57 00 01 00 1E 10 00 04 02 1E");
}

TEST(PartEQ, LeavesTheRestOfAnIntegraAlone) {
  SysexSong bench(Integra7);
  const std::vector<PtrMidiEvent> others = {
      bench.Sysex(1, 0, IntegraPrefix + "22 2B 01 00 F7"),                       // output of a part
      bench.Sysex(1, 0, IntegraPrefix + "52 08 01 00 F7"),                       // no EQ parameter
      bench.Sysex(1, 0, IntegraPrefix + "52 01 01 01 01 01 01 01 01 01 00 F7"),  // too long
      bench.Sysex(1, 0, IntegraPrefix + "52 01 00 F7"),                          // no data
      bench.Sysex(1, 0, IntegraPrefix + "52 01 01 00 00"),                       // not ended
      bench.Sysex(1, 4000, IntegraPrefix + "52 02 14 00 F7")};  // a change in the course of the song
  bench.Fit();
  for (PtrMidiEvent e : others) EXPECT_GT(e->DLength, 0) << ToHex(e->Meta.Bytes());
  EXPECT_EQ(bench.song.RolandIntegra7PartEQ[2]->Meta[12], 0x0F);
}

TEST(PartEQ, TellsNothingAboutAPartThatStandsWhereItShould) {
  SysexSong bench(Korg);
  bench.Sysex(1, 2, GM2Reset);
  for (int part = 0; part < 16; ++part)
    bench.Sysex(1, 102 + 2 * part, KorgPrefix + Part(part) + KorgLoud);
  bench.Fit();
  EXPECT_THAT(bench.log.Changes(), IsEmpty());
  EXPECT_EQ(bench.Live(1).size(), 17u);
}

}  // namespace
}  // namespace Sonarello
