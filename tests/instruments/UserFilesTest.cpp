#include "instruments/UserFiles.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "helpers/InGerman.h"
#include "helpers/SoundLists.h"
#include "helpers/Workbench.h"
#include "instruments/InstrumentFiles.h"
#include "instruments/SoundListReader.h"

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// A folder of the user's lists, and a shipped list that they replace.
struct UserLists : testing::Test {
  UserLists()
      : Folder(fs::temp_directory_path() /
               ("sonarello-lists-" +
                std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + "-" +
                std::to_string(::getpid()))) {
    fs::create_directories(Folder);
    Settings.DataPath = Folder.string();
    Spec = ListSpec(Layout::F5, "XG Sounds für Genos");
    Spec.File = "standards/GM2_Sounds_F5.txt";
    Spec.UserFiles = "_Sounds.txt";
  }
  ~UserLists() override { fs::remove_all(Folder); }

  void Put(const std::string& name, const std::string& bytes) const {
    std::ofstream(Folder / name, std::ios::binary) << bytes;
  }
  TSoundList Load() { return LoadSoundList(Spec, Settings, Messages); }
  [[nodiscard]] std::size_t ShippedRows() const {
    return ReadSoundList(Spec, InstrumentFile(Spec.File), nullptr).Rows.size();
  }

  fs::path Folder;
  TLoadSettings Settings;
  TListSpec Spec;
  RecordedMessages Messages;
};

TEST_F(UserLists, TakeThePlaceOfShippedRows) {
  Put("_Sounds.txt", "Mine\tMy Voice\t63\t8\t16\r\n");
  const TSoundList list = Load();
  EXPECT_TRUE(list.FromUser);
  EXPECT_THAT(RowTexts(list), ElementsAre("63/8/16 My Voice @Mine"));
  EXPECT_THAT(Messages.Shown, IsEmpty());
}

TEST_F(UserLists, LeaveTheShippedRowsWhenTheyAreMissing) {
  EXPECT_EQ(ShippedRows(), 256U);
  for (const std::string& path : {Folder.string(), (Folder / "none").string(), std::string()}) {
    Settings.DataPath = path;
    const TSoundList list = Load();
    EXPECT_FALSE(list.FromUser);
    EXPECT_EQ(list.Rows.size(), 256U);
  }
  Settings.DataPath = Folder.string();
  Spec.UserFiles = {};
  EXPECT_EQ(Load().Rows.size(), 256U);
  EXPECT_THAT(Messages.Shown, IsEmpty());
}

TEST_F(UserLists, AreFoundInAFolderWithASlashBehind) {
  Put("_Sounds.txt", "Mine\tMy Voice\t63\t8\t16\n");
  Settings.DataPath += "/";
  EXPECT_TRUE(Load().FromUser);
}

TEST_F(UserLists, MayBeEmpty) {
  for (const char* const text : {"", "\r\n\r\n", "\xEF\xBB\xBF"}) {
    Put("_Sounds.txt", text);
    const TSoundList list = Load();
    EXPECT_TRUE(list.FromUser);
    EXPECT_THAT(list.Rows, IsEmpty());
  }
  EXPECT_THAT(Messages.Shown, IsEmpty());
}

TEST_F(UserLists, ComeFromTheFirstNameThatExists) {
  Spec.UserFiles = "_First.txt|_Second.txt";
  Put("_Second.txt", "S\tSecond\t0\t0\t0");
  EXPECT_THAT(RowTexts(Load()), ElementsAre("0/0/0 Second @S"));
  Put("_First.txt", "F\tFirst\t0\t0\t0");
  EXPECT_THAT(RowTexts(Load()), ElementsAre("0/0/0 First @F"));
}

TEST_F(UserLists, KeepTheirTextsAfterLoading) {
  Put("_Sounds.txt", "M\tA\t0\t0\t1");  // short enough to lie inside the string itself
  Spec.Suffix = " (XG)";
  std::vector<TSoundList> lists;
  for (int i = 0; i < 10; ++i) lists.push_back(Load());
  for (const TSoundList& list : lists) EXPECT_THAT(RowTexts(list), ElementsAre("0/0/1 A (XG) @M"));
}

TEST_F(UserLists, ReportFaultyRowsByTheirLine) {
  Put("_Sounds.txt", "\nP\tA\t0\t0\tx\n\nP\tB\t0\n");
  EXPECT_THAT(Load().Rows, IsEmpty());
  EXPECT_THAT(Messages.Shown,
              ElementsAre("Fehler in Zeile 2 beim Import der XG Sounds für Genos\rP\tA\t0\t0\tx",
                          "Fehler in Zeile 4 beim Import der XG Sounds für Genos\rP\tB\t0"));
}

TEST_F(UserLists, AreReadInTheirEncoding) {
  Put("_Sounds.txt", "Fl\xFCgel\tGro\xDF\t0\t0\t1\r\n");
  EXPECT_THAT(RowTexts(Load()), ElementsAre("0/0/1 Groß @Flügel"));
  Put("_Sounds.txt", std::string("\xFF\xFEP\0\t\0\xC4\0\t\0"
                                 "0\0\t\0"
                                 "0\0\t\0"
                                 "1\0",
                                 20));
  EXPECT_THAT(RowTexts(Load()), ElementsAre("0/0/1 Ä @P"));
}

TEST_F(UserLists, AreSortedWithTheOption) {
  Put("_Sounds.txt", "P\tB\t0\t0\t0\n\tA\t0\t0\t1\n");
  EXPECT_EQ(Load().Rows.at(0).Name, "B");
  Settings.SortSounds = true;
  EXPECT_EQ(Load().Rows.at(0).Name, "A");
}

TEST_F(UserLists, ThatCannotBeReadLeaveTheShippedRows) {
  const std::string path = (Folder / "_Sounds.txt").string();
  fs::create_directory(path);
  const TSoundList list = Load();
  EXPECT_FALSE(list.FromUser);
  EXPECT_EQ(list.Rows.size(), 256U);
  EXPECT_THAT(Messages.Shown, ElementsAre("Error reading the file\r\"" + path +
                                          "\"\rThe sounds that come with the program are used."));
  const InGerman german;
  EXPECT_EQ(Load().Rows.size(), 256U);
  ASSERT_THAT(Messages.Shown, SizeIs(2));
  EXPECT_EQ(Messages.Shown[1], "Fehler beim Lesen der Datei\r\"" + path +
                                   "\"\rEs gelten die mitgelieferten Klänge der Liste.");
}

TEST_F(UserLists, NeverWaitForAPipe) {
  ASSERT_EQ(::mkfifo((Folder / "_Sounds.txt").c_str(), 0600), 0);
  EXPECT_FALSE(Load().FromUser);
  EXPECT_THAT(Messages.Shown, SizeIs(1));
}

TEST_F(UserLists, AreNoLargerThanAListCanBe) {
  const fs::path path = Folder / "_Sounds.txt";
  Put("_Sounds.txt", "P\tA\t0\t0\t0\n");
  fs::resize_file(path, LargestUserFile + 1);
  EXPECT_FALSE(Load().FromUser);
  EXPECT_THAT(Messages.Shown, ElementsAre(HasSubstr(path.string())));
  std::string bytes;
  fs::resize_file(path, LargestUserFile);
  EXPECT_EQ(ReadUserFile(path.string(), bytes), UserFile::Read);
  EXPECT_EQ(bytes.size(), LargestUserFile);
}

TEST_F(UserLists, ThatPointNowhereAreMissing) {
  fs::create_symlink(Folder / "none", Folder / "_Sounds.txt");
  EXPECT_EQ(Load().Rows.size(), 256U);
  EXPECT_THAT(Messages.Shown, IsEmpty());
}

TEST_F(UserLists, ThatPointAtThemselvesCannotBeRead) {
  fs::create_symlink(Folder / "_Sounds.txt", Folder / "_Sounds.txt");
  EXPECT_EQ(Load().Rows.size(), 256U);
  EXPECT_THAT(Messages.Shown, SizeIs(1));
}

TEST_F(UserLists, OfTheLargestSizeAreReadInLinearTime) {
  // Each of these made a careless reader seek the same end of a row again and again.
  for (const char* const piece : {"\r", "\n", "\t", "x", "P\tA\t0\t0\t0\r", "a\tb\tc\td\te\n"}) {
    std::string bytes;
    while (bytes.size() < LargestUserFile / 8) bytes += piece;
    bytes += "\n";
    Put("_Sounds.txt", bytes);
    const auto start = std::chrono::steady_clock::now();
    Settings.SortSounds = true;
    EXPECT_TRUE(Load().FromUser);
    // A square of two million would take an hour.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << piece;
  }
}

TEST_F(UserLists, OfTheTE200ComeInWithTheirSetting) {
  Spec.Name = "TE200Sounds";
  EXPECT_THAT(Load().Rows, IsEmpty());
  EXPECT_EQ(Load().Spec, &Spec);
  Settings.LimexTE200 = true;
  EXPECT_EQ(Load().Rows.size(), 256U);
}

}  // namespace
}  // namespace Sonarello
