#include "tools/NewMidiData.h"

#include <gmock/gmock.h>

#include "core/MidiFileWriter.h"
#include "core/OpenPipeline.h"
#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct NewSong : Workbench {
  TNewMidiData tool{song, functions, routes, messages};

  void Create(const TNewSong& wishes = {}) {
    tool.CreateMidiData(wishes);
    EXPECT_THAT(CheckSong(song), IsEmpty());
  }
  /// Opens a new song through the pipeline.
  bool Open(const TNewSong& wishes = {}) {
    hooks.CreateMidiData = [&, wishes](Song&) { tool.CreateMidiData(wishes); };
    return OpenPipeline(song, options, routes, messages, hooks).OpenMidiFile("", true);
  }
};

TEST(NewMidiData, HasAConductorAndATrackForEachChannel) {
  NewSong s;
  s.Create();
  ASSERT_EQ(s.song.NumberOfSourceTracks, 17);
  EXPECT_EQ(s.Track(0).TrkMidiIndex, -1);
  for (int c = 0; c < ChannelCount; ++c) EXPECT_EQ(TrackOfChannel(s.song, c), c + 1);
  EXPECT_EQ(s.song.MidiFileFormat, 1);
  EXPECT_EQ(s.song.MidiFileOrgFormat, 1);
  EXPECT_EQ(s.Track(3).TrkName, "Channel 3");
  EXPECT_EQ(s.Track(10).TrkName, "Drums");
}

TEST(NewMidiData, NamesItsTracksInGermanAsWell) {
  const InGerman german;
  NewSong s;
  s.Create();
  EXPECT_EQ(s.Track(3).TrkName, "Kanal 3");
  EXPECT_EQ(s.Track(10).TrkName, "Schlagzeug");
}

TEST(NewMidiData, HasFourMeasuresInEachSignatureAndResolution) {
  struct Row {
    TNewSong Wishes;
    std::int32_t End;
  };
  for (const Row& row : {Row{{480, 4, 4, 120}, 7680}, Row{{480, 3, 4, 120}, 5760},
                         Row{{384, 2, 4, 120}, 3072}, Row{{384, 6, 8, 120}, 4608}}) {
    NewSong s;
    s.Create(row.Wishes);
    EXPECT_EQ(s.song.MaxSongPosition, row.End);
    EXPECT_EQ(s.song.SourceTimeBase, row.Wishes.SourceTimeBase);
    s.functions.SetTimeZones();
    EXPECT_EQ(s.song.MaxSongPositionMeasure, 5);
  }
}

TEST(NewMidiData, ClosesItsTablesAsTheReaderDoes) {
  NewSong s;
  s.Create({480, 6, 8, 93});
  ASSERT_EQ(s.song.SourceTempoElements, 2);
  ASSERT_EQ(s.song.TimeSignElements, 2);
  EXPECT_EQ(s.song.SourceTempo[0].SongPosition, 0);
  EXPECT_EQ(s.song.SourceTempo[0].Tempo, 93);
  EXPECT_EQ(s.song.SourceTempo[0].TempoLongInt, 645161);
  EXPECT_EQ(s.song.SourceTempo[0].OriginalTempoLongint, 645161);
  EXPECT_EQ(s.song.SourceTempo[1].SongPosition, s.song.MaxSongPosition + 1);
  EXPECT_EQ(s.song.TimeSignature[0].Numerator, 6);
  EXPECT_EQ(s.song.TimeSignature[0].Denominator, 8);
  EXPECT_EQ(s.song.TimeSignature[1].SongPosition, s.song.MaxSongPosition + 1);
  const std::vector<TTempo> built = s.song.SourceTempo;
  s.functions.ReloadTempoTimeSign();
  EXPECT_EQ(s.song.SourceTempo[0].TempoLongInt, built[0].TempoLongInt);
  EXPECT_EQ(s.song.SourceTempo[0].Tempo, built[0].Tempo);
  EXPECT_EQ(s.song.TimeSignature[0].Denominator, 8);
  EXPECT_EQ(s.song.TimeSignature[0].TicksInMClick, 36);
}

TEST(NewMidiData, KeepsEveryTempoFromTheSlowestToTheFastest) {
  for (std::uint16_t tempo = TNewSong::MinTempo; tempo <= TNewSong::MaxTempo; ++tempo) {
    NewSong s;
    s.Create({480, 4, 4, tempo});
    s.functions.ReloadTempoTimeSign();
    EXPECT_EQ(s.song.SourceTempo[0].Tempo, tempo);
  }
}

std::vector<int> BankAndProgram(NewSong& s, int channel) {
  std::vector<int> values;
  ForEachEvent(s.Track(channel), [&](PtrMidiEvent e) {
    if (e->IsChannelEvent() && e->DLength > 0)
      values.push_back(e->Value[e->Kind() == Controller ? 1 : 0]);
  });
  return values;
}

TEST(NewMidiData, SetsTheBanksOfTheInstrumentsFamily) {
  struct Row {
    int Instrument;
    std::vector<int> Sound, Drums;
  };
  for (const Row& row : {Row{0, {0, 0, 0}, {0, 0, 0}}, Row{87, {0, 0, 0}, {127, 0, 0}},
                         Row{16, {121, 0, 0}, {120, 0, 0}}, Row{72, {0, 0, 0}, {0, 4, 0}}}) {
    NewSong s;
    s.Instrument(row.Instrument);
    s.Create();
    EXPECT_EQ(BankAndProgram(s, 1), row.Sound) << row.Instrument;
    EXPECT_EQ(BankAndProgram(s, 10), row.Drums) << row.Instrument;
  }
}

std::vector<std::string> Sysexs(NewSong& s) {
  std::vector<std::string> found;
  for (int t = 0; t < s.song.NumberOfSourceTracks; ++t)
    ForEachEvent(s.Track(t), [&](PtrMidiEvent e) {
      if (e->Command == Sysex && e->DLength > 0)
        found.push_back(std::to_string(t) + ": " + DescribeEvent(*e));
    });
  return found;
}

TEST(NewMidiData, HasTheResetOfTheMainInstrument) {
  NewSong s;
  s.Instrument(87);
  s.Create();
  EXPECT_THAT(Sysexs(s), ElementsAre("1: Sysex 43 10 4C 00 00 7E 00 F7"));
}

TEST(NewMidiData, HasNoResetWithoutAutoSysex) {
  NewSong s;
  s.Instrument(87);
  s.options.AutoSysex = false;
  s.Create();
  EXPECT_THAT(Sysexs(s), IsEmpty());
}

TEST(NewMidiData, ForgetsTheAnalysisOfTheSongBefore) {
  NewSong s;
  s.Decode(Smf().Track().Sysex({0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7}).Note(10, 37, 480, 500).Build());
  s.song.ClearMidiMemory();
  s.Create();
  EXPECT_FALSE(s.song.XGSystemOnPresentOnLoad);
  EXPECT_EQ(s.song.CountInIdx, -1);
  EXPECT_EQ(s.song.TickPositionOfFirstNote, s.song.MaxSongPosition);
}

TEST(NewMidiData, GoesThroughThePipelineUnchanged) {
  NewSong s;
  ChangeLog log;
  s.Instrument(87);
  s.song.Changes = &log;
  ASSERT_TRUE(s.Open());
  EXPECT_TRUE(s.song.MidiFileLoaded);
  EXPECT_THAT(s.messages.Shown, IsEmpty());
  for (const TChange& change : log.Changes())
    EXPECT_EQ(change.Kind, ChangeKind::Inserted) << change.What << ": " << change.Why;
  for (const TMidiChannelData& channel : s.song.MidiData) EXPECT_TRUE(channel.Active);
}

TEST(NewMidiData, ReadsBackAsItWasSaved) {
  for (const int instrument : {0, 1, 16, 26, 42, 73, 87, 102}) {
    NewSong s;
    s.Instrument(instrument);
    ASSERT_TRUE(s.Open());
    const std::int32_t end = s.song.MaxSongPosition;
    const auto first =
        MidiFileWriter(s.song, s.options, s.routes, s.messages, s.hooks).Encode("new.mid", 1);
    NewSong again;
    again.Instrument(instrument);
    again.Decode(first);
    EXPECT_EQ(again.song.MaxSongPosition, end) << instrument;
    const auto second =
        MidiFileWriter(again.song, again.options, again.routes, again.messages, again.hooks)
            .Encode("new.mid", 1);
    EXPECT_EQ(first.size(), second.size()) << instrument;
  }
}

TEST(NewMidiData, TellsWhenMemoryRunsOut) {
  for (const bool german : {false, true}) {
    GermanLanguage = german;
    NewSong s;
    s.song.Pool.FailAt(20);
    EXPECT_THROW(s.tool.CreateMidiData({}), EMidiError);
    EXPECT_THAT(s.messages.Shown, ElementsAre(german ? "Speicherzuordnungsfehler: Bitte mehr Speicher!"
                                                     : "Error allocating memory!"));
    s.song.Pool.FailAt(0);
    s.song.ClearMidiMemory();
  }
  GermanLanguage = false;
}

}  // namespace
}  // namespace Sonarello
