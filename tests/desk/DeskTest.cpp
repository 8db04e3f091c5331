#include "desk/Desk.h"

#include <gtest/gtest.h>

#include <thread>

#include "core/MidiFileWriter.h"
#include "helpers/DeskBench.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

struct Watcher : SongObserver {
  int Songs = 0, Routes = 0, Modified = 0, Times = 0;
  std::vector<int> Strips;
  void SongChanged() override { ++Songs; }
  void RoutesChanged() override { ++Routes; }
  void ModifiedChanged() override { ++Modified; }
  void TimesChanged() override { ++Times; }
  void StripChanged(int strip) override { Strips.push_back(strip); }
};

std::string BytesOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(Desk, OpensASongInTheInstrumentsTerms) {
  DeskBench bench;
  Watcher watcher;
  bench.desk.Observers.push_back(&watcher);
  bench.StartFor("Yamaha Genos");
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  EXPECT_TRUE(bench.desk.song.MidiFileLoaded);
  EXPECT_EQ(watcher.Songs, 1);
  EXPECT_EQ(bench.desk.RouteOf(0).Instrument, "Yamaha Genos");
  EXPECT_NE(bench.desk.names.CurrentName(0), "???");
  EXPECT_FALSE(bench.desk.IsModified());
  EXPECT_TRUE(bench.messages.Shown.empty()) << bench.messages.Shown.front();
}

TEST(Desk, AFileThatIsRefusedLeavesTheSongThatIsThere) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  bench.desk.Changed();
  const std::string before = bench.desk.song.MidiFileName;
  for (const char* rubbish : {"", "no song at all", "MThd\0\0\0\6\0\1\0\1\1"}) {
    bench.messages.Shown.clear();
    EXPECT_FALSE(bench.desk.OpenMidiFile(bench.folder.Write("rubbish.mid", rubbish)));
    EXPECT_EQ(bench.messages.Shown.size(), 1U);
    EXPECT_TRUE(bench.desk.song.MidiFileLoaded);
    EXPECT_EQ(bench.desk.song.MidiFileName, before);
    EXPECT_TRUE(bench.desk.IsModified());
  }
  EXPECT_FALSE(bench.desk.OpenMidiFile(bench.folder.File("missing.mid")));
  EXPECT_TRUE(bench.desk.SaveMidiFile(bench.folder.File("again.mid"), 1));
}

TEST(Desk, SavingEndsTheModifiedState) {
  DeskBench bench;
  Watcher watcher;
  bench.desk.Observers.push_back(&watcher);
  bench.StartFor("GM Soundset");
  EXPECT_FALSE(bench.desk.SaveMidiFile(bench.folder.File("none.mid"), 1));
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  bench.desk.Changed();
  bench.desk.Changed();
  EXPECT_EQ(watcher.Modified, 1);
  EXPECT_TRUE(bench.desk.AutoBackupChanged);
  const std::string file = bench.folder.File("saved.mid");
  ASSERT_TRUE(bench.desk.SaveMidiFile(file, 0));
  EXPECT_FALSE(bench.desk.IsModified());
  EXPECT_FALSE(bench.desk.AutoBackupChanged);
  EXPECT_EQ(bench.desk.song.MidiFileName, file);
  EXPECT_EQ(watcher.Modified, 2);
}

TEST(Desk, ASaveThatFailsKeepsNameAndModifiedState) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  const std::string file = bench.DemoSong();
  ASSERT_TRUE(bench.desk.OpenMidiFile(file));
  bench.desk.Changed();
  EXPECT_FALSE(bench.desk.SaveMidiFile(bench.folder.File("no/such/folder/song.mid"), 1));
  EXPECT_EQ(bench.messages.Shown.size(), 1U);
  EXPECT_TRUE(bench.desk.IsModified());
  EXPECT_EQ(bench.desk.song.MidiFileName, file);
}

TEST(Desk, AnOpenEndsWhatPlays) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  ASSERT_TRUE(bench.desk.PlayButtonClick());
  EXPECT_TRUE(bench.desk.IsPlaying());
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  EXPECT_FALSE(bench.desk.IsPlaying());
  EXPECT_EQ(bench.desk.Player().TimePosition, 0);
}

TEST(Desk, ARefusedFileWhilePlayingEndsThePlayingButNotTheSong) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  ASSERT_TRUE(bench.desk.PlayButtonClick());
  EXPECT_FALSE(bench.desk.OpenMidiFile(bench.folder.Write("rubbish.mid", "rubbish")));
  EXPECT_FALSE(bench.desk.IsPlaying());
  EXPECT_TRUE(bench.desk.PlayButtonClick());
}

TEST(Desk, TheFirstStopPausesAndTheSecondGoesToTheStart) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  EXPECT_FALSE(bench.desk.PlayButtonClick());
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  bench.desk.Wind(4000);
  EXPECT_EQ(bench.desk.Player().TimePosition, 4000);
  ASSERT_TRUE(bench.desk.PlayButtonClick());
  bench.desk.StopButtonClick();
  EXPECT_GE(bench.desk.Player().TimePosition, 4000);
  bench.desk.StopButtonClick();
  EXPECT_EQ(bench.desk.Player().TimePosition, 0);
}

TEST(Desk, WindsWithinTheSong) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  bench.desk.Wind(1000);
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  bench.desk.Wind(-1000);
  EXPECT_EQ(bench.desk.Player().TimePosition, 0);
  bench.desk.Wind(2'000'000'000);
  EXPECT_EQ(bench.desk.Player().TimePosition, bench.desk.song.SongLength);
}

TEST(Desk, ALoopNeedsALengthInsideTheSong) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  EXPECT_FALSE(bench.desk.SetLoop(1000, 1000));
  EXPECT_FALSE(bench.desk.SetLoop(-1, 1000));
  EXPECT_FALSE(bench.desk.SetLoop(0, bench.desk.song.SongLength + 1));
  EXPECT_TRUE(bench.desk.SetLoop(1000, 3000));
  EXPECT_TRUE(bench.desk.Player().Looping);
  bench.desk.EndLoop();
  EXPECT_FALSE(bench.desk.Player().Looping);
}

TEST(Desk, TransposesByAtMostTwoOctavesAndBack) {
  DeskBench bench;
  Watcher watcher;
  bench.desk.Observers.push_back(&watcher);
  bench.StartFor("GM Soundset");
  bench.desk.TransposeTo(3);
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  ASSERT_TRUE(bench.desk.SaveMidiFile(bench.folder.File("before.mid"), 1));
  bench.desk.TransposeTo(100);
  EXPECT_EQ(bench.desk.song.TransposeNew, 24);
  EXPECT_TRUE(bench.desk.IsModified());
  EXPECT_GE(watcher.Times, 1);
  bench.desk.TransposeTo(0);
  ASSERT_TRUE(bench.desk.SaveMidiFile(bench.folder.File("after.mid"), 1));
  const auto events = [](std::string bytes) { return bytes.substr(bytes.size() / 2); };
  EXPECT_EQ(events(BytesOf(bench.folder.File("before.mid"))),
            events(BytesOf(bench.folder.File("after.mid"))));
}

TEST(Desk, OffersAnOutputForAnInstrumentThatIsNotConnected) {
  DeskBench bench;
  bench.midi.Outputs = {"UM-ONE MIDI 1"};
  bench.desk.Start();
  EXPECT_EQ(bench.desk.OutputNames(), (std::vector<std::string>{"UM-ONE MIDI 1", "Virtual MIDI"}));
  bench.desk.StartAudio();
  EXPECT_TRUE(bench.desk.MidiDriverReady());
  EXPECT_EQ(bench.desk.OutputNames(),
            (std::vector<std::string>{"UM-ONE MIDI 1", "Virtual MIDI", "Test (VSTi)"}));
}

TEST(Desk, PlaysThroughTheBuiltInSynthesizerWhenNothingIsChosen) {
  DeskBench bench;
  bench.desk.Start();
  bench.desk.StartAudio();
  ASSERT_EQ(bench.desk.Routes().MidiRouteElements(), 1);
  EXPECT_TRUE(bench.desk.RouteOf(0).VSTi);
  EXPECT_EQ(bench.desk.RouteOf(0).Instrument, "GM Soundset");
}

TEST(Desk, ARouteThatIsGoneLeavesItsChannelsOnTheFirst) {
  DeskBench bench;
  bench.settings.WriteString("", "MultiMidi", "1");
  for (const char* n : {"0", "1"}) {
    bench.settings.WriteString("", std::string("MidiInstrument0") + n, "Yamaha Genos");
    bench.settings.WriteString("", std::string("MidiOutput0") + n, SilentOutput::Name);
  }
  bench.desk.Start();
  ASSERT_EQ(bench.desk.Routes().MidiRouteElements(), 2);
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  ASSERT_TRUE(bench.desk.rerouting.Choose(1, false));
  const int active = bench.desk.song.ActiveMidiIndex;
  EXPECT_EQ(bench.desk.song.MidiOutIndex[static_cast<std::size_t>(active)], 1);
  bench.desk.Routes().MidiRouteLoad[1] = {};
  bench.desk.BuildRoutes();
  EXPECT_EQ(bench.desk.song.MidiOutIndex[static_cast<std::size_t>(active)], 0);
}

TEST(Desk, RedirectsAStripWithoutTouchingTheSong) {
  DeskBench bench;
  Watcher watcher;
  bench.desk.Observers.push_back(&watcher);
  bench.StartFor("GM Soundset");
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  bench.desk.redirection.Redirect(0, 15, false);
  EXPECT_EQ(bench.desk.song.MidiData[0].MidiChannel, 15);
  EXPECT_EQ(bench.desk.realtime.Realtime[0].MidiChannel, 15);
  EXPECT_FALSE(watcher.Strips.empty());
  ASSERT_TRUE(bench.desk.OpenMidiFile(bench.DemoSong()));
  EXPECT_EQ(bench.desk.song.MidiData[0].MidiChannel, 0);
  EXPECT_EQ(bench.desk.realtime.Realtime[0].MidiChannel, 0);
}

TEST(Desk, MakesANewSongThatPlays) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  ASSERT_TRUE(bench.desk.NewMidiFile({}));
  EXPECT_TRUE(bench.desk.song.MidiFileLoaded);
  EXPECT_TRUE(bench.desk.PlayButtonClick());
  bench.desk.StopButtonClick();
}

TEST(Desk, ReadsASongOnAnotherThread) {
  DeskBench bench;
  bench.StartFor("Yamaha Genos");
  bench.desk.LeaveSong();
  const std::string file = bench.DemoSong();
  bool opened = false;
  std::thread([&] { opened = bench.desk.ReadSong(file); }).join();
  bench.desk.ShowSong();
  EXPECT_TRUE(opened);
  EXPECT_TRUE(bench.desk.PlayButtonClick());
}

}  // namespace
}  // namespace Sonarello
