#include "desk/Recovery.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <set>

#include "core/Texts.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// A data folder and a song's folder; sets file times in seconds.
struct RecoveryBench {
  RecoveryBench() {
    setenv("TZ", "UTC0", 1);
    tzset();
    std::string pattern = (fs::temp_directory_path() / "sonarello-recovery-XXXXXX").string();
    Folder = mkdtemp(pattern.data());
    fs::create_directories(Folder / "data/AutoBackups");
    Touch(Song(), 1000);
  }
  ~RecoveryBench() { fs::remove_all(Folder); }
  [[nodiscard]] std::string Song() const { return (Folder / "Auld Lang Syne.mid").string(); }
  [[nodiscard]] fs::path Backup(const std::string& name) const {
    return Folder / "data/AutoBackups" / name;
  }
  [[nodiscard]] fs::path Mark(int pid) const {
    return Folder / "data" / ("_Session_" + std::to_string(pid) + ".txt");
  }
  static fs::path Touch(const fs::path& path, std::time_t time, long nanoseconds = 0) {
    std::ofstream(path, std::ios::app) << "x";
    SetTime(path, time, nanoseconds);
    return path;
  }
  static void SetTime(const fs::path& path, std::time_t time, long nanoseconds = 0) {
    const timespec times[2] = {{time, nanoseconds}, {time, nanoseconds}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }
  /// The program as process number `pid`.
  [[nodiscard]] TRecovery Program(int pid) {
    TRecovery program((Folder / "data").string());
    program.Own = {pid, "boot/" + std::to_string(pid)};
    program.Runs = [this](const TProcessMark& process) { return Running.contains(process.Pid); };
    return program;
  }
  /// A session of process 7 that began at 2000 and was never ended.
  void Crash(const std::string& song) {
    ASSERT_TRUE(Program(7).BeginSession(song));
    SetTime(Mark(7), 2000);
  }

  fs::path Folder;
  std::set<int> Running;
};

TEST(Recovery, AfterACrashTheNewestBackupIsOffered) {
  RecoveryBench b;
  b.Crash(b.Song());
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100);
  const fs::path newest = b.Touch(b.Backup("Auld Lang Syne_20260307_091000.mid"), 2700);
  TRecovery next = b.Program(8);
  const auto offer = next.OfferRecovery();
  ASSERT_TRUE(offer.has_value());
  EXPECT_EQ(offer->SongPath, b.Song());
  EXPECT_EQ(offer->BackupPath, newest.string());
  EXPECT_EQ(offer->SongTime, 1000);
  EXPECT_EQ(offer->BackupTime, 2700);
  EXPECT_TRUE(next.OfferRecovery().has_value()) << "a crash during the question loses nothing";
  next.Answered(*offer);
  EXPECT_FALSE(next.OfferRecovery().has_value());
  EXPECT_TRUE(fs::exists(newest));
}

TEST(Recovery, AnOrderlyEndLeavesNothingToOffer) {
  RecoveryBench b;
  TRecovery first = b.Program(7);
  ASSERT_TRUE(first.BeginSession(b.Song()));
  b.SetTime(b.Mark(7), 2000);
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100);
  first.EndSession();
  EXPECT_FALSE(fs::exists(b.Mark(7)));
  EXPECT_FALSE(b.Program(8).OfferRecovery().has_value());
  first.EndSession();
}

TEST(Recovery, ASongThatWasSavedAfterTheBackupNeedsNone) {
  RecoveryBench b;
  b.Crash(b.Song());
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100, 500);
  b.SetTime(b.Song(), 2100, 500);
  EXPECT_FALSE(b.Program(8).OfferRecovery().has_value());
  EXPECT_FALSE(fs::exists(b.Mark(7))) << "there is nothing to ask about later either";
  b.Crash(b.Song());
  b.SetTime(b.Song(), 2100, 499);
  EXPECT_TRUE(b.Program(8).OfferRecovery().has_value());
}

TEST(Recovery, ABackupOfAnEarlierSessionIsNotOffered) {
  RecoveryBench b;
  b.Crash(b.Song());
  b.Touch(b.Backup("Auld Lang Syne_20260307_080000.mid"), 1999);
  EXPECT_FALSE(b.Program(8).OfferRecovery().has_value())
      << "its changes were thrown away when that session ended";
}

TEST(Recovery, OnlyBackupsOfTheVerySongCount) {
  RecoveryBench b;
  b.Crash(b.Song());
  for (const char* name :
       {"Auld Lang Syne 2_20260307_090000.mid", "Auld Lang_20260307_090000.mid",
        "Auld Lang Syne_20260307_09000x.mid", "Auld Lang Syne_20260307_090000.mid.bak",
        "Auld Lang Syne_20260307_090000.davsti", "Auld Lang Syne.mid"})
    b.Touch(b.Backup(name), 2700);
  fs::create_directory(b.Backup("Auld Lang Syne_20260307_090001.mid"));
  EXPECT_FALSE(b.Program(8).OfferRecovery().has_value());
}

TEST(Recovery, ASongWithoutANameIsOfferedToo) {
  RecoveryBench b;
  b.Crash("");
  b.Touch(b.Backup("_20260307_090000.mid"), 2100);
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2200);
  const auto offer = b.Program(8).OfferRecovery();
  ASSERT_TRUE(offer.has_value());
  EXPECT_EQ(offer->SongPath, "");
  EXPECT_EQ(offer->BackupPath, b.Backup("_20260307_090000.mid").string());
  EXPECT_EQ(offer->SongTime, 0);
}

TEST(Recovery, ASongThatIsGoneIsOffered) {
  RecoveryBench b;
  b.Crash(b.Song());
  fs::remove(b.Song());
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100);
  const auto offer = b.Program(8).OfferRecovery();
  ASSERT_TRUE(offer.has_value());
  EXPECT_EQ(offer->SongTime, 0);
}

TEST(Recovery, AProgramThatStillRunsKeepsItsSession) {
  RecoveryBench b;
  b.Crash(b.Song());
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100);
  b.Running = {7};
  EXPECT_FALSE(b.Program(8).OfferRecovery().has_value());
  EXPECT_TRUE(fs::exists(b.Mark(7)));
  b.Running = {};
  EXPECT_TRUE(b.Program(8).OfferRecovery().has_value());
}

TEST(Recovery, TheOwnSessionIsNoOffer) {
  RecoveryBench b;
  TRecovery own = b.Program(7);
  ASSERT_TRUE(own.BeginSession(b.Song()));
  b.SetTime(b.Mark(7), 2000);
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100);
  EXPECT_FALSE(own.OfferRecovery().has_value());
  EXPECT_TRUE(fs::exists(b.Mark(7)));
}

TEST(Recovery, SeveralCrashesAreOfferedOneByOneTheNewestFirst) {
  RecoveryBench b;
  b.Crash(b.Song());
  const std::string other = b.Touch(b.Folder / "Muss i denn.mid", 1000).string();
  ASSERT_TRUE(b.Program(5).BeginSession(other));
  b.SetTime(b.Mark(5), 2000);
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100);
  b.Touch(b.Backup("Muss i denn_20260307_100000.mid"), 2900);
  TRecovery next = b.Program(8);
  const auto first = next.OfferRecovery();
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first->SongPath, other);
  next.Answered(*first);
  const auto second = next.OfferRecovery();
  ASSERT_TRUE(second.has_value());
  EXPECT_EQ(second->SongPath, b.Song());
  next.Answered(*second);
  EXPECT_FALSE(next.OfferRecovery().has_value());
}

TEST(Recovery, TheNextSongTakesThePlaceOfTheFormer) {
  RecoveryBench b;
  b.Crash(b.Song());
  b.Crash("/elsewhere/other.mid");
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100);
  EXPECT_FALSE(b.Program(8).OfferRecovery().has_value());
}

TEST(Recovery, AMarkKeepsAnyPath) {
  RecoveryBench b;
  const std::string odd = b.Touch(b.Folder / "a\nb\tÄ.mid", 1000).string();
  b.Crash(odd);
  b.Touch(b.Backup("a\nb\tÄ_20260307_090000.mid"), 2100);
  const auto offer = b.Program(8).OfferRecovery();
  ASSERT_TRUE(offer.has_value());
  EXPECT_EQ(offer->SongPath, odd);
}

TEST(Recovery, DamagedMarksAreTakenAwayAndOtherFilesLeft) {
  RecoveryBench b;
  const std::string marks[] = {"",
                               "rubbish",
                               "Sonarello session 1\n",
                               "Sonarello session 1\nx\nboot/7\n/a.mid\n",
                               "Sonarello session 1\n-7\nboot/7\n/a.mid\n",
                               "Sonarello session 1\n7\nboot/7\n" + b.Song()};
  b.Touch(b.Backup("Auld Lang Syne_20260307_090000.mid"), 2100);
  for (const std::string& mark : marks) {
    std::ofstream(b.Mark(7), std::ios::trunc) << mark;
    b.SetTime(b.Mark(7), 2000);
    EXPECT_FALSE(b.Program(8).OfferRecovery().has_value()) << mark;
    EXPECT_FALSE(fs::exists(b.Mark(7)));
  }
  std::ofstream(b.Folder / "data/_Session.doc") << "the user's own";
  EXPECT_FALSE(b.Program(8).OfferRecovery().has_value());
  EXPECT_TRUE(fs::exists(b.Folder / "data/_Session.doc"));
}

TEST(Recovery, WithoutADataFolderNothingIsOfferedAndNothingKept) {
  RecoveryBench b;
  fs::remove_all(b.Folder / "data");
  TRecovery program = b.Program(7);
  EXPECT_FALSE(program.BeginSession(b.Song()));
  EXPECT_FALSE(program.OfferRecovery().has_value());
}

TEST(Recovery, AProcessIsKnownByItsNumberAndItsStart) {
  const TProcessMark own = OwnProcess();
  EXPECT_EQ(own.Pid, getpid());
  EXPECT_THAT(own.Start, HasSubstr("/"));
  EXPECT_TRUE(IsRunning(own));
  EXPECT_FALSE(IsRunning({own.Pid, "another start"})) << "a later process took the number";
  EXPECT_TRUE(IsRunning({own.Pid, ""})) << "without knowledge of starts the number decides";
  EXPECT_FALSE(IsRunning({0, ""}));
  const pid_t child = fork();
  if (child == 0) _exit(0);
  ASSERT_GT(child, 0);
  waitpid(child, nullptr, 0);
  EXPECT_FALSE(IsRunning({child, ""}));
}

TEST(Recovery, AsksInBothLanguages) {
  const RecoveryBench b;
  const TRecoveryOffer offer{"/songs/Auld Lang Syne.mid", "/x.mid", 1000, 1773135120, ""};
  EXPECT_EQ(RecoveryQuestion(offer),
            "\"Sonarello XI\" was not terminated properly the last time.\r"
            "There is an auto backup of \"Auld Lang Syne.mid\" made on 2026-03-10 at 09:32, newer than "
            "the saved file.\rDo you want to open it?");
  InGerman german;
  EXPECT_EQ(RecoveryQuestion(offer),
            "Der \"Sonarello XI\" wurde das letzte Mal nicht ordentlich beendet.\r"
            "Von \"Auld Lang Syne.mid\" gibt es ein Autobackup vom 10.03.2026 um 09:32, das neuer als "
            "die gespeicherte Datei ist.\rSoll es geöffnet werden?");
  EXPECT_EQ(RecoveryQuestion({"", "/x.mid", 0, 1773135120, ""}),
            "Der \"Sonarello XI\" wurde das letzte Mal nicht ordentlich beendet.\r"
            "Von dem neuen Song gibt es ein Autobackup vom 10.03.2026 um 09:32.\r"
            "Soll es geöffnet werden?");
}

}  // namespace
}  // namespace Sonarello
