#include "desk/Startup.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "helpers/DeskBench.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

TEST(Startup, MakesTheFolderOfTheUsersFiles) {
  const TestFolder folder;
  const std::string path = FindDataPath(folder.Path.string(), "/opt/sonarello");
  EXPECT_EQ(path, folder.Path.string() + "/Sonarello XI/");
  EXPECT_TRUE(std::filesystem::is_directory(path));
  EXPECT_TRUE(std::filesystem::is_empty(path));
  EXPECT_EQ(FindDataPath(folder.Path.string(), "/opt/sonarello"), path);
}

TEST(Startup, TakesTheProgramsFolderWhenThereIsNoOther) {
  const TestFolder folder;
  EXPECT_EQ(FindDataPath("", "/opt/sonarello"), "/opt/sonarello/");
  EXPECT_EQ(FindDataPath(folder.Write("file", "x"), "/opt/sonarello/"), "/opt/sonarello/");
  EXPECT_EQ(FindDataPath("/proc/no-such-place", "/opt"), "/opt/");
}

TEST(Startup, TheTrialOfAFolderLosesNoFileOfTheUser) {
  const TestFolder folder;
  const std::string own = folder.Write("TestFile.txt", "mine");
  EXPECT_TRUE(IsFolderWritable(folder.Path.string() + "/"));
  EXPECT_EQ(std::filesystem::file_size(own), 4U);
  EXPECT_FALSE(IsFolderWritable(folder.Path.string() + "/missing/"));
}

TEST(Startup, ReadsTheFirstParameter) {
  EXPECT_EQ(ReadStartParameter("/songs/My Song.MID").AutoloadFileName, "/songs/My Song.MID");
  EXPECT_EQ(ReadStartParameter("a.midi").AutoloadFileName, "a.midi");
  EXPECT_TRUE(ReadStartParameter("Reset_Registry").ResetRegistry);
  EXPECT_TRUE(ReadStartParameter("--reset_registry").ResetRegistry);
  EXPECT_FALSE(ReadStartParameter("reset_registry.mid").ResetRegistry);
  EXPECT_TRUE(ReadStartParameter("song.txt").AutoloadFileName.empty());
  EXPECT_TRUE(ReadStartParameter("").AutoloadFileName.empty());
}

TEST(Startup, AsksInBothLanguages) {
  EXPECT_EQ(ResetQuestion(), "Reset \"Sonarello XI\" to factory settings?");
  EXPECT_EQ(TerminateQuestion(), "Terminate Sonarello XI?");
  const InGerman german;
  EXPECT_EQ(ResetQuestion(),
            "Soll der \"Sonarello XI\" zu Werkseinstellungen zurückgesetzt werden?\r(dabei gehen alle "
            "selbst gemachte Einstellungen verloren)");
  EXPECT_EQ(TerminateQuestion(), "Sonarello XI beenden?");
}

}  // namespace
}  // namespace Sonarello
