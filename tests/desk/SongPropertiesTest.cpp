#include "desk/SongProperties.h"

#include <gtest/gtest.h>

#include "helpers/DeskBench.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

TEST(SongProperties, WritesNumbersWithTheLanguagesSign) {
  EXPECT_EQ(NumberText(0), "0");
  EXPECT_EQ(NumberText(999), "999");
  EXPECT_EQ(NumberText(1284), "1,284");
  EXPECT_EQ(NumberText(-1234567), "-1,234,567");
  const InGerman german;
  EXPECT_EQ(NumberText(1284), "1.284");
}

TEST(SongProperties, NamesAFileWithoutItsFolders) {
  EXPECT_EQ(FileNameOf("/a/b/song.mid"), "song.mid");
  EXPECT_EQ(FileNameOf("song.mid"), "song.mid");
  EXPECT_EQ(FileNameOf(""), "");
}

TEST(SongProperties, TellsTheDemoSong) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  const std::string file = bench.DemoSong();
  ASSERT_TRUE(bench.desk.OpenMidiFile(file));
  const std::vector<TSongProperty> told = SongProperties(bench.desk.song, "");
  ASSERT_EQ(told.size(), 11U);
  EXPECT_EQ(told[0], (TSongProperty{"File", file}));
  EXPECT_EQ(told[10].Text, "no faults");
  EXPECT_EQ(SongProperties(bench.desk.song, "Fault on track 1").back().Text, "Fault on track 1");
  EXPECT_TRUE(SongFactsLine(bench.desk.song).starts_with("SMF 1 · 480 PPQ · "));
  const InGerman german;
  EXPECT_TRUE(SongFactsLine(bench.desk.song).starts_with("SMF 1 · 480 T/V · "));
  EXPECT_EQ(SongProperties(bench.desk.song, "")[0].Label, "Datei");
}

TEST(SongProperties, TellsANewSongThatHasNoFileYet) {
  DeskBench bench;
  bench.StartFor("GM Soundset");
  ASSERT_TRUE(bench.desk.NewMidiFile({}));
  EXPECT_EQ(SongProperties(bench.desk.song, "")[0].Text, "(not saved yet)");
}

}  // namespace
}  // namespace Sonarello
