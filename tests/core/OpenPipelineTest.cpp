#include "core/OpenPipeline.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "core/Texts.h"
#include "helpers/Workbench.h"

namespace Sonarello {
namespace {

/// A pipeline on a song of its own, fed with files of a temporary folder.
class OpenPipelineTest : public ::testing::Test {
 protected:
  OpenPipelineTest() {
    folder = std::filesystem::temp_directory_path() /
             ("sonarello-open-" + std::to_string(::getpid()) + "-" +
              ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(folder);
  }
  ~OpenPipelineTest() override {
    GermanLanguage = false;
    std::filesystem::remove_all(folder);
  }

  std::string Write(const Bytes& bytes, const std::string& name = "song.mid") {
    const std::filesystem::path path = folder / name;
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path.string();
  }
  bool Open(const Smf& file) { return pipeline.OpenMidiFile(Write(file.Build()), false); }
  static Smf Song1() { return Smf(1, 384).Track().At(0).Tempo(500000).Time(4, 2).Track(); }

  std::filesystem::path folder;
  Workbench bench;
  Song& song = bench.song;
  OpenPipeline pipeline{bench.song, bench.options, bench.routes, bench.messages, bench.hooks};
};

TEST_F(OpenPipelineTest, LeavesASoundSongInTheStore) {
  ASSERT_TRUE(Open(Song1().At(0).Prog(1, 5).Note(1, 60, 400, 800).Note(10, 36, 400, 800)));
  EXPECT_TRUE(song.MidiFileLoaded);
  EXPECT_EQ(CheckSong(song), std::vector<std::string>{});
  EXPECT_TRUE(bench.messages.Shown.empty());
  EXPECT_EQ(song.MidiData[0].Patch, 5);
  EXPECT_EQ(song.MidiData[0].ActiveNotes, 1);
  EXPECT_EQ(song.MidiData[9].Patch, 0);
  EXPECT_EQ(song.MidiData[0].CtrlArray[7].Value, 100);
  EXPECT_EQ(song.FirstPatches[0]->TimePosition, TimeOfPosition(song, song.FirstPatches[0]->Position));
}

TEST_F(OpenPipelineTest, TellsHowFarItHasComeAndNeverGoesBack) {
  struct Watcher : RecordedMessages {
    std::vector<double> Told;
    bool Progress(double done) override {
      Told.push_back(done);
      return true;
    }
  } watcher;
  OpenPipeline watched(bench.song, bench.options, bench.routes, watcher, bench.hooks);
  ASSERT_TRUE(watched.OpenMidiFile(Write(Song1().Build()), false));
  EXPECT_GE(watcher.Told.size(), 5U);
  EXPECT_TRUE(std::ranges::is_sorted(watcher.Told));
  EXPECT_EQ(watcher.Told.back(), 1.0);
}

TEST_F(OpenPipelineTest, RunsItsHooksInOrder) {
  std::string order;
  const auto step = [&](const char* name) { return [&order, name](Song&) { order += name; }; };
  bench.hooks.WritePendingBackup = step("backup ");
  bench.hooks.ResetEffectMemory = step("effects ");
  bench.hooks.StopPlayer = step("stop ");
  bench.hooks.CloseEditors = step("close ");
  bench.hooks.ReloadRevoicer = step("revoicer ");
  bench.hooks.ResetDesk = step("desk ");
  bench.hooks.ResetPlayback = step("playback ");
  bench.hooks.AdaptBanks = [&](Song&, const TProgramIndex&) { order += "map "; };
  bench.hooks.ReadFirstValues = step("values ");
  bench.hooks.ShowStrips = step("strips ");
  bench.hooks.ReadDrums = step("drums ");
  bench.hooks.ShowControllers = step("controllers ");
  bench.hooks.ReadLyrics = step("lyrics ");
  bench.hooks.SelectChannel = step("channel ");
  bench.hooks.NoteCheckResult = [&](const std::string&, bool) { order += "notes "; };
  bench.hooks.ForgetRangeTools = step("ranges ");
  bench.hooks.SetUpEffects = step("setup ");
  bench.hooks.RememberFile = step("recent");
  ASSERT_TRUE(Open(Song1().Note(1, 60, 400, 800)));
  EXPECT_EQ(
      order,
      "backup effects stop close revoicer desk playback map values strips drums controllers lyrics "
      "channel notes ranges setup recent");
}

TEST_F(OpenPipelineTest, LeavesTheEffectMemoryAloneWithoutAutoSysex) {
  bool asked = false;
  bench.hooks.ResetEffectMemory = [&](Song&) { asked = true; };
  bench.options.AutoSysex = false;
  ASSERT_TRUE(Open(Song1().Note(1, 60, 400, 800)));
  EXPECT_FALSE(asked);
}

TEST_F(OpenPipelineTest, RefusesAMissingFileAndAFolder) {
  for (const std::string& name : {(folder / "none.mid").string(), folder.string()}) {
    bench.messages.Shown.clear();
    EXPECT_FALSE(pipeline.OpenMidiFile(name, false));
    EXPECT_EQ(bench.messages.Shown,
              std::vector<std::string>{"Error opening the midi file\r\"" + name + "\""});
    GermanLanguage = true;
    EXPECT_FALSE(pipeline.OpenMidiFile(name, false));
    EXPECT_EQ(bench.messages.Shown.back(), "Fehler beim Zugriff auf der Datei\r\"" + name + "\"");
    GermanLanguage = false;
  }
}

TEST_F(OpenPipelineTest, RefusesAFileBelowTwentyFourBytes) {
  const Bytes whole = Smf(1, 96).Track().At(0).End().Build();  // 14 + 8 + 4
  ASSERT_EQ(whole.size(), 26u);
  EXPECT_TRUE(pipeline.OpenMidiFile(Write(whole), false));
  EXPECT_FALSE(pipeline.OpenMidiFile(Write(Bytes(whole.begin(), whole.begin() + 23)), false));
  EXPECT_EQ(bench.messages.Shown, std::vector<std::string>{"Error in midifile: file too short!"});
  EXPECT_FALSE(song.MidiFileLoaded);
  GermanLanguage = true;
  EXPECT_FALSE(pipeline.OpenMidiFile(Write({}), false));
  EXPECT_EQ(bench.messages.Shown.back(), "Fehler in der Mididatei: Datei zu kurz!");
}

TEST_F(OpenPipelineTest, ShowsTheReadersTextOnceAndEmptiesTheStore) {
  ASSERT_TRUE(Open(Song1().Note(1, 60, 400, 800)));
  EXPECT_FALSE(Open(Song1().Note(1, 60, 400, 800).Event({0xF1, 0})));
  EXPECT_EQ(bench.messages.Shown,
            std::vector<std::string>{"Error in midifile - Command is $F1 to $F6!"});
  EXPECT_FALSE(song.MidiFileLoaded);
  EXPECT_EQ(song.Pool.Live(), 0u);
  EXPECT_TRUE(Open(Song1().Note(1, 60, 400, 800)));
}

TEST_F(OpenPipelineTest, ForgetsTheOldSongsChannels) {
  ASSERT_TRUE(Open(Song1().At(0).Text(4, "SR7_ch.1 X_Drums").Prog(1, 5).Note(1, 60, 400, 800)));
  EXPECT_EQ(song.MidiData[0].DrumPart, 1);
  ASSERT_TRUE(Open(Song1().Note(2, 60, 400, 800)));
  EXPECT_FALSE(song.MidiData[0].Active);
  EXPECT_EQ(song.MidiData[0].DrumPart, 0);
  EXPECT_EQ(song.MidiData[0].Patch, -1);
  EXPECT_EQ(song.MidiData[0].CtrlArray[7].Value, NoControllerValue);
}

TEST_F(OpenPipelineTest, PairsNotesOnEveryTrackAndDropsNoteOffsWithoutNoteOn) {
  ASSERT_TRUE(
      Open(Smf(1, 384).Track().Note(1, 60, 400, 800).Track().At(10).Off(1, 61).Note(1, 61, 400, 800)));
  for (int t = 0; t < 2; ++t) {
    int notes = 0;
    ForEachEvent(bench.Track(t), [&](PtrMidiEvent e) {
      if (!e->IsChannelEvent() || e->Kind() > NoteOn) return;
      ++notes;
      EXPECT_TRUE(e->Kind() == NoteOn ? e->NoteOffEvent != nullptr : e->NoteOnEvent != nullptr);
    });
    EXPECT_EQ(notes, 2);
  }
  EXPECT_TRUE(CheckSong(song).empty());
}

TEST_F(OpenPipelineTest, LengthensShortNotesAfterPairing) {
  bench.options.MinNoteLength = 10;
  ASSERT_TRUE(Open(Song1().Note(1, 60, 400, 400)));
  bool seen = false;
  ForEachEvent(bench.Track(1), [&](PtrMidiEvent e) {
    if (e->Kind() != NoteOff || !e->IsChannelEvent()) return;
    seen = true;
    EXPECT_EQ(e->Position, 410);
  });
  EXPECT_TRUE(seen);
}

TEST_F(OpenPipelineTest, TellsOfTooManyOpenNotesAndGoesOn) {
  Smf file = Song1();
  for (int i = 0; i < 33; ++i) file.At(400 + i).On(1, 60);
  ASSERT_TRUE(Open(file));
  EXPECT_EQ(bench.messages.Shown,
            std::vector<std::string>{"Error processing the NoteOnOff pointers on track 1."});
  bench.options.UnmixFormat0 = false;
  Smf single = Smf(0, 384).Track();
  for (int i = 0; i < 33; ++i) single.At(400 + i).On(1, 60);
  GermanLanguage = true;
  ASSERT_TRUE(Open(single));
  EXPECT_EQ(bench.messages.Shown.back(), "Fehler beim Berechnen der NoteOnOff-Pointer.");
  ASSERT_TRUE(Open(file));
  EXPECT_EQ(bench.messages.Shown.back(), "Fehler beim Berechnen der NoteOnOff-Pointer auf Spur 1.");
}

TEST_F(OpenPipelineTest, TellsTheVerdictOfTheNoteCheck) {
  std::string text = "unset";
  bool tools = false;
  bench.hooks.NoteCheckResult = [&](const std::string& t, bool clean) {
    text = t;
    tools = clean;
  };
  ASSERT_TRUE(Open(Song1().Note(1, 60, 400, 800)));
  EXPECT_EQ(text, "");
  EXPECT_TRUE(tools);
  Smf broken = Song1();
  for (int key = 60; key < 70; ++key) broken.At(400).On(1, key);
  ASSERT_TRUE(Open(broken));
  EXPECT_EQ(text, "Found 10 Note-Ons without Note-Offs");
  EXPECT_FALSE(tools);
  bench.options.GeneralMidiCheck = false;
  ASSERT_TRUE(Open(broken));
  EXPECT_EQ(text, "General MIDI check is disabled!");
  EXPECT_FALSE(tools);
  GermanLanguage = true;
  ASSERT_TRUE(Open(broken));
  EXPECT_EQ(text, "Midifile-Überprüfung ist abgeschaltet!");
}

TEST_F(OpenPipelineTest, TakesTheCountInsStartAsFirstNoteUnlessItIsRemoved) {
  Smf file = Song1();
  for (int beat = 0; beat < 4; ++beat) file.Note(10, 37, 384 * (beat + 4), 384 * (beat + 4) + 20);
  file.Note(10, 36, 384 * 8, 384 * 8 + 20);
  ASSERT_TRUE(Open(file));
  EXPECT_EQ(song.CountInIdx, 9);
  EXPECT_EQ(song.TickOrgPosOfFirstNote, 384 * 8);
  EXPECT_EQ(song.TickPositionOfFirstNote, 384 * 4);
  bench.options.RemoveCountIn = true;
  bool removed = false;
  bench.hooks.RemoveCountIn = [&](Song&) { removed = true; };
  ASSERT_TRUE(Open(file));
  EXPECT_TRUE(removed);
  EXPECT_EQ(song.TickPositionOfFirstNote, 384 * 8);
}

TEST_F(OpenPipelineTest, EndsTheSentinelZonesOneMillisecondBehindTheSong) {
  ASSERT_TRUE(Open(Song1().Note(1, 60, 400, 8000)));
  int sentinels = 0;
  for (const TTimeZone& zone : song.TimeZone) {
    if (zone.SongPosition != song.MaxSongPosition + 1) continue;
    ++sentinels;
    EXPECT_EQ(zone.Time, song.SongLength + 1);
  }
  EXPECT_GT(sentinels, 0);
  EXPECT_EQ(song.BackupTempo.size(), song.SourceTempo.size());
  EXPECT_EQ(song.BackupTempo[0], 120);
}

TEST_F(OpenPipelineTest, BuildsANewSongThroughItsHook) {
  EXPECT_FALSE(pipeline.OpenMidiFile("", true));
  bench.hooks.CreateMidiData = [&](Song&) {
    bench.options.AutoSysex = false;
    bench.Decode(Song1().Note(1, 60, 400, 800).Build());
  };
  EXPECT_TRUE(pipeline.OpenMidiFile("", true));
  EXPECT_TRUE(song.MidiFileLoaded);
  bench.hooks.CreateMidiData = [&](Song&) {
    bench.messages.Show("no memory");
    throw EMidiError("no memory");
  };
  EXPECT_FALSE(pipeline.OpenMidiFile("", true));
  EXPECT_EQ(bench.messages.Shown, std::vector<std::string>{"no memory"});
  EXPECT_FALSE(song.MidiFileLoaded);
}

TEST_F(OpenPipelineTest, ReportsEveryFailedNodeAndOpensAgainAfterwards) {
  const std::string path =
      Write(Song1().At(0).Prog(1, 5).Note(1, 60, 400, 800).Note(10, 36, 400, 800).Build());
  bench.Instrument(1);  // resets, delay and sixteen drum parts come in
  int failures = 0;
  for (int n = 1;; ++n) {
    bench.messages.Shown.clear();
    song.Pool.FailAt(n);
    const bool opened = pipeline.OpenMidiFile(path, false);
    song.Pool.FailAt(0);
    if (opened) break;
    ++failures;
    ASSERT_EQ(bench.messages.Shown, std::vector<std::string>{"Error allocating memory!"})
        << "node " << n;
    ASSERT_EQ(song.Pool.Live(), 0u);
    ASSERT_FALSE(song.MidiFileLoaded);
  }
  EXPECT_GT(failures, 40);
  EXPECT_TRUE(CheckSong(song).empty());
}

TEST(ListFault, TellsEachKindOfBrokenList) {
  Workbench bench;
  bench.options.AutoSysex = false;
  bench.Decode(Smf(1, 384).Track().Track().Note(3, 60, 100, 200).Build());
  EXPECT_EQ(ListFault(bench.song), "");
  PtrMidiEvent on = bench.Event(1, 1);
  PtrMidiEvent off = bench.Event(1, 2);
  on->TimePosition = 77;
  const std::string request = "\rPlease send this file to support stating \"Pointer-Error\".";

  off->PrevEvent = off;
  EXPECT_EQ(ListFault(bench.song), "Pointer-Error opening the midifile!" + request);
  GermanLanguage = true;
  EXPECT_EQ(ListFault(bench.song).substr(0, 50), "Pointer-Fehler auf Spur 1 bei Position 100 / 77\rBi");
  off->PrevEvent = on;
  off->Position = 50;
  EXPECT_EQ(ListFault(bench.song).substr(0, 80),
            "Position-Fehler beim Laden des Midifiles:\rSpur: 1 Midikanal: 3 Position: 100\rBit");
  GermanLanguage = false;
  EXPECT_EQ(ListFault(bench.song), "Position-Error opening the midifile!" + request);
  off->Position = 200;
  on->Value[1] = 128;
  EXPECT_EQ(ListFault(bench.song), "Midi-Value-2 greater than 127 at 77ms!" + request);
  on->Value[0] = 128;
  EXPECT_EQ(ListFault(bench.song), "Midi-Value-1 greater than 127 at 77ms!" + request);
  GermanLanguage = true;
  EXPECT_TRUE(ListFault(bench.song).starts_with("Midi-Wert-1 grösser als 127 bei 77ms!\r"));
  on->Value = {1, 200};
  EXPECT_TRUE(ListFault(bench.song).starts_with("Midi-Wert-2 grösser als 127 bei 77ms!\r"));
  GermanLanguage = false;
}

}  // namespace
}  // namespace Sonarello
