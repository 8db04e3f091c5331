#include "core/SafeFile.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using Content = std::vector<std::uint8_t>;

Content Filled(std::size_t size, int value) { return Content(size, static_cast<std::uint8_t>(value)); }
const Content Old = Filled(3000, 1);
const Content New = Filled(5000, 2);
const Content Shorter = Filled(100, 3);

Content Read(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Names each call as it is made and lets the chosen ones fail.
class FaultyCalls : public FileCalls {
 public:
  /// Told the number of a call (from 0) and its name; true lets it fail with `Error`.
  std::function<bool(int, const std::string&)> Fails = [](int, const std::string&) { return false; };
  int Error = EIO;
  std::size_t Room = SIZE_MAX;   ///< bytes that can still be written
  std::size_t Piece = SIZE_MAX;  ///< greatest number of bytes that one call takes
  std::vector<std::string> Made;

  int Open(const std::string& path, int flags, mode_t mode) override {
    const bool folder = (flags & O_DIRECTORY) != 0;
    const std::string name = folder ? "folder" : (flags & O_CREAT) != 0 ? "copy" : "target";
    if (Stop("open " + name)) return -1;
    const int file = FileCalls::Open(path, flags, mode);
    if (file >= 0) names[file] = name;
    return file;
  }
  ssize_t Write(int file, const void* bytes, std::size_t count) override {
    if (Stop("write " + names[file])) return -1;
    if (Room == 0) return errno = ENOSPC, -1;
    const std::size_t taken = std::min({count, Room, Piece});
    Room -= taken;
    return FileCalls::Write(file, bytes, taken);
  }
  ssize_t Read(int file, void* bytes, std::size_t count) override {
    return Stop("read " + names[file]) ? -1 : FileCalls::Read(file, bytes, count);
  }
  int Rewind(int file) override { return Stop("rewind " + names[file]) ? -1 : FileCalls::Rewind(file); }
  int Reserve(int file, off_t size) override {
    return Stop("reserve " + names[file]) ? -1 : FileCalls::Reserve(file, size);
  }
  int Truncate(int file, off_t size) override {
    return Stop("truncate " + names[file]) ? -1 : FileCalls::Truncate(file, size);
  }
  int Sync(int file) override { return Stop("sync " + names[file]) ? -1 : FileCalls::Sync(file); }
  int Close(int file) override {
    const int result = FileCalls::Close(file);
    return Stop("close " + names[file]) ? -1 : result;
  }
  int SetMode(const std::string& path, mode_t mode) override {
    return Stop("mode") ? -1 : FileCalls::SetMode(path, mode);
  }
  int Link(const std::string& from, const std::string& to) override {
    return Stop("link") ? -1 : FileCalls::Link(from, to);
  }
  int Rename(const std::string& from, const std::string& to) override {
    return Stop("rename") ? -1 : FileCalls::Rename(from, to);
  }
  int Remove(const std::string& path) override { return Stop("remove") ? -1 : FileCalls::Remove(path); }

 private:
  bool Stop(const std::string& name) {
    Made.push_back(name);
    if (!Fails(static_cast<int>(Made.size()) - 1, name)) return false;
    errno = Error;
    return true;
  }
  std::map<int, std::string> names;
};

class SafeFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "safefile.XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    target = folder / "song.mid";
  }
  void TearDown() override {
    fs::permissions(folder, fs::perms::owner_all);
    fs::remove_all(folder);
  }

  void Put(const Content& content) {
    std::ofstream file(target, std::ios::binary);
    file.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
  }
  TSaveResult Save(const Content& content = New) { return SaveFile(target.string(), content, calls); }
  /// Names of everything in the folder but the target.
  std::vector<std::string> Others() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
      if (entry.path() != target) names.push_back(entry.path().filename().string());
    return names;
  }
  static mode_t ModeOf(const fs::path& path) {
    struct stat found {};
    EXPECT_EQ(::stat(path.c_str(), &found), 0);
    return found.st_mode & 07777;
  }
  static ino_t InodeOf(const fs::path& path) {
    struct stat found {};
    EXPECT_EQ(::stat(path.c_str(), &found), 0);
    return found.st_ino;
  }
  void LetFail(const std::string& name, int error = EIO) {
    calls.Error = error;
    calls.Fails = [name](int, const std::string& call) { return call == name; };
  }
  void ExpectUntouched(TSaveStep step) {
    const TSaveResult result = Save();
    EXPECT_EQ(result.Step, step);
    EXPECT_EQ(result.Copy, "");
    EXPECT_EQ(Read(target), Old);
    EXPECT_THAT(Others(), IsEmpty());
  }

  fs::path folder;
  fs::path target;
  FaultyCalls calls;
};

TEST_F(SafeFile, MakesANewFile) {
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(Read(target), New);
  EXPECT_THAT(Others(), IsEmpty());
}

TEST_F(SafeFile, GivesANewFileTheUsualPermissions) {
  const mode_t before = ::umask(027);
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  ::umask(before);
  EXPECT_EQ(ModeOf(target), 0640U);
}

TEST_F(SafeFile, WritesOverAnExistingFileInPlace) {
  for (const Content& content : {New, Shorter}) {
    Put(Old);
    ::chmod(target.c_str(), 0604);
    const ino_t inode = InodeOf(target);
    EXPECT_EQ(Save(content).Step, TSaveStep::Done);
    EXPECT_EQ(Read(target), content);
    EXPECT_EQ(InodeOf(target), inode);
    EXPECT_EQ(ModeOf(target), 0604U);
    EXPECT_THAT(Others(), IsEmpty());
  }
}

TEST_F(SafeFile, KeepsHardLinks) {
  Put(Old);
  fs::create_hard_link(target, folder / "other.mid");
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(Read(folder / "other.mid"), New);
}

TEST_F(SafeFile, FollowsSymbolicLinks) {
  fs::create_directory(folder / "sub");
  for (const bool exists : {true, false}) {
    fs::remove(target);
    fs::remove(folder / "sub/real.mid");
    fs::create_symlink("sub/real.mid", target);
    if (exists) Put(Old);
    EXPECT_EQ(Save().Step, TSaveStep::Done);
    EXPECT_TRUE(fs::is_symlink(target));
    EXPECT_EQ(Read(folder / "sub/real.mid"), New);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "sub"), {}), 1);
  }
}

TEST_F(SafeFile, GivesUpOnLinksThatGoRoundInCircles) {
  fs::create_symlink("other.mid", target);
  fs::create_symlink("song.mid", folder / "other.mid");
  EXPECT_NE(Save().Step, TSaveStep::Done);
  EXPECT_THAT(Others(), ElementsAre("other.mid"));
}

TEST_F(SafeFile, TakesOffAWriteProtectionFirst) {
  Put(Old);
  ::chmod(target.c_str(), 0444);
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(Read(target), New);
  EXPECT_EQ(ModeOf(target), 0644U);
}

TEST_F(SafeFile, TellsWhenTheWriteProtectionStays) {
  Put(Old);
  ::chmod(target.c_str(), 0444);
  LetFail("mode", EPERM);
  ExpectUntouched(TSaveStep::ReadOnly);
  EXPECT_EQ(ModeOf(target), 0444U);
}

TEST_F(SafeFile, PutsTheWriteProtectionBackWhenTheSaveFails) {
  Put(Old);
  ::chmod(target.c_str(), 0444);
  LetFail("open copy", EACCES);
  ExpectUntouched(TSaveStep::Opening);
  EXPECT_EQ(ModeOf(target), 0444U);
}

TEST_F(SafeFile, RefusesAFolderWithTheNameOfTheFile) {
  fs::create_directory(target);
  EXPECT_EQ(Save().Step, TSaveStep::Opening);
  EXPECT_THAT(Others(), IsEmpty());
}

TEST_F(SafeFile, RefusesAFolderThatIsNotThere) {
  EXPECT_EQ(SaveFile((folder / "none/song.mid").string(), New, calls).Step, TSaveStep::Opening);
}

TEST_F(SafeFile, WritesStraightIntoADevice) {
  EXPECT_EQ(SaveFile("/dev/null", New, calls).Step, TSaveStep::Done);
}

TEST_F(SafeFile, FindsRoomForACopyBesideTheLongestName) {
  std::string name;
  while (name.size() + 2 <= 250) name += "ä";
  target = folder / (name + ".mid");
  Put(Old);
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(Read(target), New);
  LetFail("write target");
  const TSaveResult result = Save(Shorter);
  EXPECT_THAT(CopiesLeftBeside(target.string()), ElementsAre(result.Copy));
}

TEST_F(SafeFile, CarriesOnAfterPartialWritesAndInterruptions) {
  Put(Old);
  calls.Piece = 700;
  calls.Error = EINTR;
  calls.Fails = [](int number, const std::string& call) {
    return number % 2 == 0 && (call.starts_with("write") || call.starts_with("read"));
  };
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(Read(target), New);
}

TEST_F(SafeFile, CountsWhatAFullDiskTook) {
  Put(Old);
  calls.Room = 1234;
  const TSaveResult result = Save();
  EXPECT_EQ(result.Step, TSaveStep::Incomplete);
  EXPECT_EQ(result.Written, 1234U);
  EXPECT_EQ(Read(target), Old);
  EXPECT_THAT(Others(), IsEmpty());
}

TEST_F(SafeFile, LeavesTheFileAloneUnlessACompleteCopyStandsBesideIt) {
  Put(Old);
  const std::pair<const char*, TSaveStep> failures[] = {
      {"open copy", TSaveStep::Opening},     {"write copy", TSaveStep::Writing},
      {"truncate copy", TSaveStep::Writing}, {"sync copy", TSaveStep::Writing},
      {"rewind copy", TSaveStep::Writing},   {"read copy", TSaveStep::Writing},
      {"close copy", TSaveStep::Writing},    {"mode", TSaveStep::Writing},
      {"rename", TSaveStep::Writing},        {"open target", TSaveStep::Opening}};
  for (const auto& [call, step] : failures) {
    SCOPED_TRACE(call);
    LetFail(call);
    ExpectUntouched(step);
  }
}

TEST_F(SafeFile, AsksForRoomBeforeItTouchesTheFile) {
  Put(Old);
  LetFail("reserve target", ENOSPC);
  ExpectUntouched(TSaveStep::Incomplete);
}

TEST_F(SafeFile, DoesWithoutRoomInAdvanceWhereThatIsUnknown) {
  Put(Old);
  LetFail("reserve target", EOPNOTSUPP);
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(Read(target), New);
}

TEST_F(SafeFile, LeavesTheCopyWhenWritingOverTheFileFails) {
  for (const char* call :
       {"write target", "truncate target", "sync target", "read target", "close target"}) {
    SCOPED_TRACE(call);
    Put(Old);
    LetFail(call);
    const TSaveResult result = Save();
    EXPECT_EQ(result.Step, TSaveStep::Writing);
    EXPECT_EQ(Read(result.Copy), New);
    fs::remove(result.Copy);
    EXPECT_THAT(Others(), IsEmpty());
  }
}

TEST_F(SafeFile, LeavesTheCopyWhenTheDiskFillsUpInTheMiddleOfTheFile) {
  Put(Old);
  calls.Room = New.size() + 1000;
  const TSaveResult result = Save();
  EXPECT_EQ(result.Step, TSaveStep::Incomplete);
  EXPECT_EQ(result.Written, 1000U);
  EXPECT_THAT(CopiesLeftBeside(target.string()), ElementsAre(result.Copy));
  EXPECT_EQ(Read(result.Copy), New);
}

TEST_F(SafeFile, NoticesACopyThatReadsBackOtherwise) {
  Put(Old);
  calls.Fails = [&](int, const std::string& call) {
    if (call != "rewind copy") return false;
    for (const std::string& name : Others())  // the medium loses a byte
      fs::resize_file(folder / name, New.size() - 1);
    return false;
  };
  ExpectUntouched(TSaveStep::Writing);
}

TEST_F(SafeFile, FlushesAndComparesTheCopyBeforeTheFirstByteOfTheFile) {
  Put(Old);
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_THAT(
      calls.Made,
      ElementsAre("open copy", "write copy", "truncate copy", "sync copy", "rewind copy", "read copy",
                  "read copy", "close copy", "mode", "rename", "open folder", "sync folder",
                  "close folder", "open target", "reserve target", "write target", "truncate target",
                  "sync target", "rewind target", "read target", "read target", "close target",
                  "remove", "open folder", "sync folder", "close folder"));
}

TEST_F(SafeFile, NeverClobbersAFileThatAppearsMeanwhile) {
  calls.Fails = [&](int, const std::string& call) {
    if (call == "link") Put(Old);
    return false;
  };
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(Read(target), New);
  EXPECT_THAT(Others(), IsEmpty());
}

TEST_F(SafeFile, RenamesTheCopyOnFileSystemsWithoutLinks) {
  LetFail("link", EPERM);
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(Read(target), New);
  EXPECT_THAT(Others(), IsEmpty());
}

TEST_F(SafeFile, TriesAnotherNameWhenACopyOfThatNameStandsThere) {
  Put(Old);
  calls.Error = EEXIST;
  calls.Fails = [](int number, const std::string& call) { return call == "open copy" && number < 3; };
  EXPECT_EQ(Save().Step, TSaveStep::Done);
  EXPECT_EQ(std::ranges::count(calls.Made, "open copy"), 4);
  LetFail("open copy", EEXIST);
  EXPECT_EQ(Save(Shorter).Step, TSaveStep::Opening);
  EXPECT_EQ(Read(target), New);
}

/// Kills a saving process at a call; for a write, also after half of the bytes.
void SaveAndDie(const fs::path& target, int at, bool half) {
  FaultyCalls calls;
  if (half) calls.Piece = New.size() / 2;
  calls.Fails = [at](int number, const std::string&) {
    if (number == at) ::raise(SIGKILL);
    return false;
  };
  static_cast<void>(SaveFile(target.string(), New, calls));
  ::_exit(0);
}

TEST_F(SafeFile, LeavesTheOldOrTheNewContentWhereverItIsKilled) {
  for (const bool exists : {true, false})
    for (const bool half : {true, false}) {
      bool finished = false;
      for (int at = 0; !finished; ++at) {
        SCOPED_TRACE(std::to_string(at) + (exists ? " existing" : " new") + (half ? " half" : ""));
        for (const std::string& name : Others()) fs::remove(folder / name);
        fs::remove(target);
        if (exists) Put(Old);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) SaveAndDie(target, at, half);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        finished = WIFEXITED(status);

        const bool present = fs::exists(target);
        const Content found = present ? Read(target) : Content{};
        const std::vector<std::string> copies = CopiesLeftBeside(target.string());
        const bool whole = present ? found == Old || found == New : !exists;
        ASSERT_TRUE(whole || (copies.size() == 1 && Read(copies[0]) == New));
        if (!exists) {
          ASSERT_TRUE(!present || found == New) << "a new file is complete from its first moment";
        }
        for (const std::string& copy : copies) ASSERT_EQ(Read(copy), New);
        if (finished) {
          EXPECT_EQ(found, New);
          EXPECT_GT(at, 10);
        }
      }
    }
}

TEST_F(SafeFile, TellsCopiesFromOtherFiles) {
  Put(Old);
  const std::string random = "0123456789abcdef";
  const auto make = [&](const std::string& name, const Content& content) {
    std::ofstream(folder / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
  };
  make(".song.mid." + random + ".copy", New);
  make(".song.mid.fedcba9876543210.copy", Old);  // of what the file holds
  make(".song.mid." + random + ".part", New);    // never completed
  make(".song.mid.0123456789abcdeg.copy", New);
  make(".song.mid.0123.copy", New);
  make(".other.mid." + random + ".copy", New);
  EXPECT_THAT(CopiesLeftBeside(target.string()),
              ElementsAre((folder / (".song.mid." + random + ".copy")).string()));
  EXPECT_THAT(CopiesLeftBeside((folder / "none/song.mid").string()), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
