#include "desk/SettingsFiles.h"

#include <gtest/gtest.h>

#include "helpers/DeskBench.h"

namespace Sonarello {
namespace {

TEST(SettingsFiles, WhatIsExportedComesBack) {
  const TestFolder folder;
  RecordedMessages messages;
  MemoryRegistry from;
  from.WriteString("", "Lang", "de");
  from.WriteString("Yamaha Genos", "SortSounds", "0");
  const std::string file = folder.File("settings.reg");
  ASSERT_TRUE(ExportSettingsFile(from, file, messages));
  MemoryRegistry to;
  ASSERT_TRUE(ImportSettingsFile(to, file, messages));
  EXPECT_EQ(messages.Asked.size(), 1U);
  EXPECT_EQ(to.ReadString("", "Lang", ""), "de");
  EXPECT_EQ(to.ReadString("Yamaha Genos", "SortSounds", ""), "0");
}

TEST(SettingsFiles, ANoToTheQuestionChangesNothing) {
  const TestFolder folder;
  RecordedMessages messages;
  MemoryRegistry from;
  from.WriteString("", "Lang", "de");
  const std::string file = folder.File("settings.reg");
  ASSERT_TRUE(ExportSettingsFile(from, file, messages));
  MemoryRegistry to;
  to.WriteString("", "Lang", "en");
  messages.Answers = {false};
  EXPECT_FALSE(ImportSettingsFile(to, file, messages));
  EXPECT_EQ(to.ReadString("", "Lang", ""), "en");
  EXPECT_TRUE(messages.Shown.empty());
}

TEST(SettingsFiles, AFileThatIsNoneOfOursIsRefusedWhole) {
  const TestFolder folder;
  RecordedMessages messages;
  MemoryRegistry to;
  to.WriteString("", "Lang", "en");
  EXPECT_FALSE(ImportSettingsFile(to, folder.Write("rubbish.reg", "MThd"), messages));
  EXPECT_FALSE(ImportSettingsFile(to, folder.File("missing.reg"), messages));
  EXPECT_FALSE(ImportSettingsFile(to, folder.Path.string(), messages));
  EXPECT_EQ(messages.Shown.size(), 3U);
  EXPECT_TRUE(messages.Asked.empty());
  EXPECT_EQ(to.ReadString("", "Lang", ""), "en");
}

TEST(SettingsFiles, AFolderThatIsNotThereIsTold) {
  RecordedMessages messages;
  const MemoryRegistry from;
  EXPECT_FALSE(ExportSettingsFile(from, "/no/such/folder/settings.reg", messages));
  EXPECT_EQ(messages.Shown,
            std::vector<std::string>{"The file could not be written:\r/no/such/folder/settings.reg"});
}

}  // namespace
}  // namespace Sonarello
