#include "desk/RecentFiles.h"

#include <gtest/gtest.h>

namespace Sonarello {

namespace {

using Strings = std::vector<std::string>;

TEST(RecentFiles, BringsTheNewestToTheTopAndNamesNoneTwice) {
  RecentFiles files;
  files.Add("/a.mid");
  files.Add("/b.mid");
  files.Add("/a.mid");
  EXPECT_EQ(files.Names(), (Strings{"/a.mid", "/b.mid"}));
  files.Add(files.Names()[1]);
  EXPECT_EQ(files.Names(), (Strings{"/b.mid", "/a.mid"}));
}

TEST(RecentFiles, KeepsNine) {
  RecentFiles files;
  for (int i = 0; i < 12; ++i) files.Add("/" + std::to_string(i) + ".mid");
  ASSERT_EQ(files.Names().size(), 9U);
  EXPECT_EQ(files.Names().front(), "/11.mid");
  EXPECT_EQ(files.Names().back(), "/3.mid");
}

TEST(RecentFiles, AreStoredDividedByTabs) {
  MemorySettings settings;
  RecentFiles files;
  files.Add("/a.mid");
  files.Add("/Übung, 1\\2\".mid");
  files.Add("/line\nend;=#.mid");
  files.Add("/latin \xfc.mid");
  files.Store(settings);
  EXPECT_EQ(settings.ReadString("", "LastMidifilesList", ""),
            "/latin \xfc.mid\t/line\nend;=#.mid\t/Übung, 1\\2\".mid\t/a.mid");
  RecentFiles again;
  again.Load(settings);
  EXPECT_EQ(again.Names(), files.Names());
}

TEST(RecentFiles, TakesNoNameThatTheListCouldNotHold) {
  RecentFiles files;
  files.Add("/a\tb.mid");
  files.Add("");
  EXPECT_TRUE(files.Names().empty());
}

TEST(RecentFiles, ReadsAListThatSomebodyEdited) {
  MemorySettings settings;
  settings.WriteString("", "LastMidifilesList", "\t/a\t\t/b\t/a\t/1\t/2\t/3\t/4\t/5\t/6\t/7\t/8\t");
  RecentFiles files;
  files.Add("/gone");
  files.Load(settings);
  EXPECT_EQ(files.Names(), (Strings{"/a", "/b", "/1", "/2", "/3", "/4", "/5", "/6", "/7"}));
}

TEST(RecentFiles, ForgetsAFileAndLeavesNoEmptyKey) {
  MemorySettings settings;
  RecentFiles files;
  files.Add("/a");
  files.Store(settings);
  files.Remove("/b");
  EXPECT_EQ(files.Names().size(), 1U);
  files.Remove("/a");
  files.Store(settings);
  EXPECT_EQ(settings.ReadString("", "LastMidifilesList", "none"), "none");
  files.Load(settings);
  EXPECT_TRUE(files.Names().empty());
  files.Add("/a");
  files.Clear();
  EXPECT_TRUE(files.Names().empty());
}

}  // namespace

}  // namespace Sonarello
