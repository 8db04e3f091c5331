#include "desk/AutoBackup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <thread>

#include "core/MidiFileWriter.h"
#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

std::tm At(int year, int month, int day, int hour, int minute, int second) {
  std::tm time{};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

/// A song with a backup whose folder goes with the test and whose clock stands.
struct BackupBench : TestSong {
  BackupBench() {
    std::string pattern = (fs::temp_directory_path() / "sonarello-backup-XXXXXX").string();
    Folder = mkdtemp(pattern.data());
    options.DataPath = Folder.string() + "/";
    NewTrack().Tempo(0, 500000).NewTrack();
    On(480, 60).Off(700, 60).Finish().Map();
    song.MidiFileFormat = song.MidiFileOrgFormat = 1;
    song.MidiFileLoaded = true;
    song.MidiData[0].Active = true;
    song.MidiFileName = "/songs/Auld Lang Syne.mid";
    backup.Clock = [this] { return Now; };
    changed = true;
  }
  ~BackupBench() { fs::remove_all(Folder); }
  [[nodiscard]] std::vector<std::string> Files() const {
    std::vector<std::string> names;
    if (fs::is_directory(Folder / "AutoBackups"))
      for (const auto& entry : fs::directory_iterator(Folder / "AutoBackups"))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
  }

  fs::path Folder;
  bool changed = false;
  SongGate gate;
  std::tm Now = At(2026, 3, 7, 9, 5, 1);
  FileCalls calls;
  TAutoBackup backup{{song, options, routes, hooks, gate, changed}, calls};
};

Bytes ContentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(AutoBackup, WritesTheSongUnderItsNameAndTheTime) {
  BackupBench b;
  ASSERT_TRUE(b.backup.Tick());
  EXPECT_THAT(b.Files(), ElementsAre("Auld Lang Syne_20260307_090501.mid"));
  EXPECT_EQ(b.backup.AutoBackupFileName,
            (b.Folder / "AutoBackups/Auld Lang Syne_20260307_090501.mid").string());
  const Bytes expected = MidiFileWriter(b.song, b.options, b.routes, b.messages, b.hooks)
                             .Encode(b.backup.AutoBackupFileName, 1);
  EXPECT_EQ(ContentOf(b.backup.AutoBackupFileName), expected);
  EXPECT_EQ(TAutoBackup::Interval, 600000);
}

TEST(AutoBackup, TheWorkingFormatDecidesTheFormat) {
  BackupBench b;
  b.song.MidiFileFormat = 0;
  ASSERT_TRUE(b.backup.Tick());
  EXPECT_EQ(ContentOf(b.backup.AutoBackupFileName).at(9), 0);
  b.song.MidiFileFormat = 1;
  b.changed = true;
  b.Now.tm_min = 15;
  ASSERT_TRUE(b.backup.Tick());
  EXPECT_EQ(ContentOf(b.backup.AutoBackupFileName).at(9), 1);
}

TEST(AutoBackup, ChangesNothingOfTheSong) {
  BackupBench b;
  ASSERT_TRUE(b.backup.Tick());
  EXPECT_EQ(b.song.MidiFileName, "/songs/Auld Lang Syne.mid");
  EXPECT_THAT(CheckSong(b.song), IsEmpty());
  EXPECT_FALSE(b.changed) << "the reason for a backup is gone, the song stays modified elsewhere";
  EXPECT_THAT(b.messages.Shown, IsEmpty());
}

TEST(AutoBackup, WithoutAChangeNothingIsWritten) {
  BackupBench b;
  b.changed = false;
  EXPECT_FALSE(b.backup.Tick());
  EXPECT_FALSE(fs::exists(b.Folder / "AutoBackups"));
}

TEST(AutoBackup, SwitchedOffItLeavesTheChangeForLater) {
  BackupBench b;
  b.backup.AutoBackupEnabled = false;
  EXPECT_FALSE(b.backup.Tick());
  EXPECT_TRUE(b.changed);
  b.backup.AutoBackupEnabled = true;
  EXPECT_TRUE(b.backup.Tick());
}

TEST(AutoBackup, WithoutTracksTheChangeIsForgotten) {
  BackupBench b;
  b.song.NumberOfSourceTracks = 0;
  EXPECT_FALSE(b.backup.Tick());
  EXPECT_FALSE(b.changed);
  EXPECT_THAT(b.Files(), IsEmpty());
}

TEST(AutoBackup, EveryTickWithChangesAddsAFile) {
  BackupBench b;
  ASSERT_TRUE(b.backup.Tick());
  EXPECT_FALSE(b.backup.Tick());
  b.changed = true;
  b.Now = At(2026, 12, 31, 23, 59, 59);
  ASSERT_TRUE(b.backup.Tick());
  EXPECT_THAT(b.Files(),
              ElementsAre("Auld Lang Syne_20260307_090501.mid", "Auld Lang Syne_20261231_235959.mid"));
}

TEST(AutoBackup, ASongWithoutANameStillFormsOne) {
  BackupBench b;
  b.song.MidiFileName.clear();
  ASSERT_TRUE(b.backup.Tick());
  EXPECT_THAT(b.Files(), ElementsAre("_20260307_090501.mid"));
}

TEST(AutoBackup, FourCharactersAreCutWhateverTheyAre) {
  const std::tm time = At(2026, 3, 7, 9, 5, 1);
  const auto name = [&](std::string_view path) { return AutoBackupNameOf(path, time); };
  EXPECT_EQ(name("/a/b.mid"), "b_20260307_090501.mid");
  EXPECT_EQ(name("b.MIDI"), "b._20260307_090501.mid");
  EXPECT_EQ(name("/a.b/abc"), "_20260307_090501.mid");
  EXPECT_EQ(name("/a/Käse grün"), "Käse _20260307_090501.mid");
  EXPECT_EQ(name("/a/grün"), "_20260307_090501.mid");
  EXPECT_EQ(name("/a/"), "_20260307_090501.mid");
}

TEST(AutoBackup, ANameThatLeavesNoRoomForTheTimeIsCut) {
  const std::tm time = At(2026, 3, 7, 9, 5, 1);
  std::string longest;
  while (longest.size() < 250) longest += "ä";
  const std::string name = AutoBackupNameOf("/a/" + longest + ".mid", time);
  EXPECT_LE(name.size(), 255U);
  EXPECT_EQ(name, longest.substr(0, 234) + "_20260307_090501.mid");
}

TEST(AutoBackup, AFolderThatCannotBeMadeEndsTheTickSilently) {
  BackupBench b;
  std::ofstream(b.Folder / "AutoBackups") << "a file in the way";
  EXPECT_FALSE(b.backup.Tick());
  EXPECT_FALSE(b.changed);
  EXPECT_THAT(b.messages.Shown, IsEmpty());
  EXPECT_FALSE(b.backup.LastBackup().has_value());
  EXPECT_EQ(b.backup.Failure(), "");
}

struct FullDisk : FileCalls {
  bool Full = true;
  int Error = ENOSPC;
  ssize_t Write(int file, const void* bytes, std::size_t count) override {
    if (!Full) return FileCalls::Write(file, bytes, count);
    errno = Error;
    return -1;
  }
};

TEST(AutoBackup, AFailedWriteIsTriedAgainAndToldUntilOneWorks) {
  BackupBench b;
  FullDisk disk;
  TAutoBackup backup{{b.song, b.options, b.routes, b.hooks, b.gate, b.changed}, disk};
  backup.Clock = [&] { return b.Now; };
  EXPECT_FALSE(backup.Tick());
  EXPECT_TRUE(b.changed);
  EXPECT_THAT(b.Files(), IsEmpty());
  EXPECT_THAT(b.messages.Shown, IsEmpty());
  EXPECT_EQ(backup.Failure(), "Auto backup: disk full!");
  EXPECT_FALSE(backup.LastBackup().has_value());
  disk.Error = EIO;
  InGerman german;
  EXPECT_FALSE(backup.Tick());
  EXPECT_EQ(backup.Failure(), "Autobackup konnte nicht geschrieben werden!");
  disk.Error = ENOSPC;
  EXPECT_FALSE(backup.Tick());
  EXPECT_EQ(backup.Failure(), "Autobackup: kein Platz mehr auf dem Datenträger!");
  disk.Full = false;
  EXPECT_TRUE(backup.Tick());
  EXPECT_FALSE(b.changed);
  EXPECT_EQ(backup.Failure(), "");
  EXPECT_EQ(backup.LastBackup()->tm_min, 5);
}

TEST(AutoBackup, ASongThatCannotBeCodedSaysWhy) {
  BackupBench b;
  b.song.Pool.FailAt(1);
  EXPECT_FALSE(b.backup.Tick());
  b.song.Pool.FailAt(0);
  EXPECT_EQ(b.backup.Failure(), "Auto backup: Error allocating memory!");
  EXPECT_THAT(b.messages.Shown, IsEmpty());
  EXPECT_TRUE(b.changed);
  const InGerman german;
  b.song.Pool.FailAt(1);
  EXPECT_FALSE(b.backup.Tick());
  b.song.Pool.FailAt(0);
  EXPECT_EQ(b.backup.Failure(), "Autobackup: 1066: Speicherzuordnungsfehler: Bitte mehr Speicher!");
}

TEST(AutoBackup, AFailureLastsWhileNothingElseIsTried) {
  BackupBench b;
  FullDisk disk;
  TAutoBackup backup{{b.song, b.options, b.routes, b.hooks, b.gate, b.changed}, disk};
  backup.Clock = [&] { return b.Now; };
  EXPECT_FALSE(backup.Tick());
  b.changed = false;
  disk.Full = false;
  EXPECT_FALSE(backup.Tick()) << "nothing was changed";
  EXPECT_EQ(backup.Failure(), "Auto backup: disk full!");
  backup.AutoBackupEnabled = false;
  EXPECT_EQ(backup.Failure(), "") << "who wants no backups misses none";
  backup.AutoBackupEnabled = true;
  EXPECT_EQ(backup.Failure(), "Auto backup: disk full!");
}

TEST(AutoBackup, TheTimeOfTheLastOneIsKnown) {
  BackupBench b;
  EXPECT_FALSE(b.backup.LastBackup().has_value());
  b.Now = At(2026, 3, 7, 14, 32, 59);
  ASSERT_TRUE(b.backup.Tick());
  EXPECT_EQ(b.backup.LastBackup()->tm_hour, 14);
  EXPECT_EQ(b.backup.LastBackup()->tm_min, 32);
}

TEST(AutoBackup, TheHostedSetGoesBesideItWhenTheBackupIsWritten) {
  BackupBench b;
  std::vector<std::string> sets;
  b.backup.SaveVSTiSet = [&](const std::string& name) { sets.push_back(name); };
  b.changed = false;
  b.backup.Tick();
  EXPECT_THAT(sets, IsEmpty());
  b.changed = true;
  b.backup.Tick();
  EXPECT_THAT(sets, ElementsAre((b.Folder / "AutoBackups/Auld Lang Syne_20260307_090501").string()));
}

/// Sees whether the gate is free while files are written.
struct GateWatcher : FileCalls {
  SongGate* Gate = nullptr;
  bool WasFree = false;
  int Open(const std::string& path, int flags, mode_t mode) override {
    std::thread([this] {
      const auto held = Gate->Enter();
      WasFree = true;
    }).join();
    return FileCalls::Open(path, flags, mode);
  }
};

TEST(AutoBackup, HoldsTheGateWhileItReadsTheSongAndNotWhileItWritesTheFile) {
  BackupBench b;
  GateWatcher watcher;
  watcher.Gate = &b.gate;
  InsertByPosition(b.Track(1), NewChannelEvent(b.song.Pool, 0xC0, 4, 0, 10));
  b.functions.SetFirstValues();
  b.song.MidiFileOrgFormat = 0;  // its tracks are named after their sounds
  std::future<void> visitor;
  bool entered = false;
  b.hooks.PatchName = [&](const Song&, int) {
    visitor = std::async(std::launch::async, [&] { const auto held = b.gate.Enter(); });
    entered = visitor.wait_for(std::chrono::milliseconds(20)) == std::future_status::ready;
    return std::string("Piano");
  };
  TAutoBackup backup{{b.song, b.options, b.routes, b.hooks, b.gate, b.changed}, watcher};
  ASSERT_TRUE(backup.Tick());
  EXPECT_TRUE(watcher.WasFree);
  ASSERT_TRUE(visitor.valid());
  EXPECT_FALSE(entered);
}

}  // namespace
}  // namespace Sonarello
