#include "desk/FileAssociation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

constexpr const char* Entry = "sonarello.desktop";

std::string ContentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(FileAssociation, AnEmptyListGetsTheDefaultAndTheAddedOne) {
  EXPECT_EQ(WithDefault("", "audio/midi", Entry),
            "[Default Applications]\naudio/midi=sonarello.desktop\n\n"
            "[Added Associations]\naudio/midi=sonarello.desktop;\n");
}

TEST(FileAssociation, ForeignLinesStayAsTheyAre) {
  EXPECT_EQ(WithDefault("# mine\n\n[Added Associations]\nimage/png = gimp.desktop; eog.desktop;\n"
                        "audio/midi=timidity.desktop;sonarello.desktop\n\n[Default Applications]\n"
                        "text/html=firefox.desktop\naudio/midi=timidity.desktop\n\n\n[Other]\nx=y\n",
                        "audio/midi", Entry),
            "# mine\n\n[Added Associations]\nimage/png = gimp.desktop; eog.desktop;\n"
            "audio/midi=sonarello.desktop;timidity.desktop;\n\n[Default Applications]\n"
            "text/html=firefox.desktop\naudio/midi=sonarello.desktop\n\n\n[Other]\nx=y\n");
}

TEST(FileAssociation, ANewKeyGoesToTheEndOfItsGroup) {
  EXPECT_EQ(WithDefault("[Default Applications]\na/b=c.desktop\n\n[Other]\n", "audio/midi", Entry),
            "[Default Applications]\na/b=c.desktop\naudio/midi=sonarello.desktop\n\n[Other]\n\n"
            "[Added Associations]\naudio/midi=sonarello.desktop;\n");
}

TEST(FileAssociation, ADoubledKeyStandsOnceAfterwards) {
  const std::string list = WithDefault(
      "[Default Applications]\naudio/midi=a.desktop\nx/y=z.desktop\naudio/midi = b.desktop\n",
      "audio/midi", Entry);
  EXPECT_THAT(list, testing::StartsWith("[Default Applications]\naudio/midi=sonarello.desktop\n"
                                        "x/y=z.desktop\n\n[Added"));
}

TEST(FileAssociation, ARemovedAssociationIsTakenBack) {
  EXPECT_THAT(WithDefault("[Removed Associations]\naudio/midi=sonarello.desktop;a.desktop;\n",
                          "audio/midi", Entry),
              HasSubstr("[Removed Associations]\naudio/midi=a.desktop;\n"));
  EXPECT_THAT(
      WithDefault("[Removed Associations]\naudio/midi=sonarello.desktop\nx=y;\n", "audio/midi", Entry),
      HasSubstr("[Removed Associations]\nx=y;\n"));
}

TEST(FileAssociation, ASecondTimeChangesNothing) {
  const std::string once = WithDefault("[Default Applications]\r\na/b=c\r", "audio/midi", Entry);
  EXPECT_EQ(WithDefault(once, "audio/midi", Entry), once);
}

TEST(FileAssociation, AnEntryStartsAProgramOfAnyPath) {
  EXPECT_THAT(DesktopEntryOf("/usr/bin/sonarello"), HasSubstr("\nExec=\"/usr/bin/sonarello\" %f\n"));
  EXPECT_THAT(DesktopEntryOf("/My Music/100%/a\"b`c$d\\e\nf"),
              HasSubstr("\nExec=\"/My Music/100%%/a\\\\\"b\\\\`c\\\\$d\\\\\\\\e\\nf\" %f\n"));
  EXPECT_THAT(DesktopEntryOf("/x"), HasSubstr("\nMimeType=audio/midi;audio/x-midi;\n"));
}

/// Homes of a user in a folder that goes with the test.
struct HomeBench {
  HomeBench() {
    std::string pattern = (fs::temp_directory_path() / "sonarello-home-XXXXXX").string();
    Folder = mkdtemp(pattern.data());
    Places = {Folder / "config", Folder / "share", {Folder / "usr/share"}, "/opt/sonarello"};
  }
  ~HomeBench() { fs::remove_all(Folder); }
  [[nodiscard]] fs::path List() const { return Places.ConfigHome / "mimeapps.list"; }
  [[nodiscard]] fs::path UserEntry() const { return Places.DataHome / "applications" / Entry; }
  static void Write(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
  }

  fs::path Folder;
  TAssociationPlaces Places;
};

TEST(FileAssociation, AFreshHomeGetsEntryAndList) {
  HomeBench b;
  EXPECT_FALSE(IsAssociatedWithMID(b.Places));
  EXPECT_EQ(AssociateWithMID(b.Places).Outcome, TAssociationOutcome::Done);
  EXPECT_TRUE(IsAssociatedWithMID(b.Places));
  EXPECT_EQ(ContentOf(b.UserEntry()), DesktopEntryOf("/opt/sonarello"));
  EXPECT_EQ(ContentOf(b.List()),
            "[Default Applications]\naudio/midi=sonarello.desktop\naudio/x-midi=sonarello.desktop\n\n"
            "[Added Associations]\naudio/midi=sonarello.desktop;\naudio/x-midi=sonarello.desktop;\n");
}

TEST(FileAssociation, AnInstalledProgramNeedsNoEntryOfTheUsers) {
  HomeBench b;
  b.Write(b.Places.DataDirs[0] / "applications" / Entry, "[Desktop Entry]\n");
  EXPECT_EQ(AssociateWithMID(b.Places).Outcome, TAssociationOutcome::Done);
  EXPECT_FALSE(fs::exists(b.UserEntry()));
  EXPECT_TRUE(IsAssociatedWithMID(b.Places));
}

TEST(FileAssociation, AnEntryOfTheUsersOwnIsLeftAlone) {
  HomeBench b;
  b.Write(b.UserEntry(), "[Desktop Entry]\nExec=mine\n");
  EXPECT_EQ(AssociateWithMID(b.Places).Outcome, TAssociationOutcome::Done);
  EXPECT_EQ(ContentOf(b.UserEntry()), "[Desktop Entry]\nExec=mine\n");
}

TEST(FileAssociation, AProgramThatMovedGetsItsEntryAnew) {
  HomeBench b;
  ASSERT_EQ(AssociateWithMID(b.Places).Outcome, TAssociationOutcome::Done);
  b.Places.Program = "/home/me/sonarello";
  ASSERT_EQ(AssociateWithMID(b.Places).Outcome, TAssociationOutcome::Done);
  EXPECT_THAT(ContentOf(b.UserEntry()), HasSubstr("Exec=\"/home/me/sonarello\" %f"));
}

TEST(FileAssociation, AnotherProgramsDefaultIsNotOurs) {
  HomeBench b;
  for (const char* list : {"[Default Applications]\naudio/midi=timidity.desktop;sonarello.desktop\n",
                           "[Added Associations]\naudio/midi=sonarello.desktop;\n",
                           "[Default Applications]\n#audio/midi=sonarello.desktop\n"}) {
    b.Write(b.List(), list);
    EXPECT_FALSE(IsAssociatedWithMID(b.Places)) << list;
  }
  b.Write(b.List(), "[Default Applications]\naudio/midi = sonarello.desktop;timidity.desktop\n");
  EXPECT_TRUE(IsAssociatedWithMID(b.Places));
}

/// Refuses to make copies beside files whose path holds a word.
struct RefusingCalls : FileCalls {
  std::string Word;
  int Open(const std::string& path, int flags, mode_t mode) override {
    if (path.find(Word) == std::string::npos) return FileCalls::Open(path, flags, mode);
    errno = EACCES;
    return -1;
  }
};

TEST(FileAssociation, AFailureNamesTheFileAndLeavesIt) {
  HomeBench b;
  b.Write(b.List(), "[Default Applications]\naudio/midi=timidity.desktop\n");
  RefusingCalls calls;
  calls.Word = "mimeapps.list";
  const TAssociationResult list = AssociateWithMID(b.Places, calls);
  EXPECT_EQ(list.Outcome, TAssociationOutcome::ListFailed);
  EXPECT_EQ(list.File, b.List().string());
  EXPECT_EQ(ContentOf(b.List()), "[Default Applications]\naudio/midi=timidity.desktop\n");
  fs::remove(b.UserEntry());
  calls.Word = Entry;
  const TAssociationResult entry = AssociateWithMID(b.Places, calls);
  EXPECT_EQ(entry.Outcome, TAssociationOutcome::EntryFailed);
  EXPECT_EQ(entry.File, b.UserEntry().string());
  EXPECT_FALSE(IsAssociatedWithMID(b.Places));
}

TEST(FileAssociation, TheUserIsToldInBothLanguages) {
  const TAssociationResult failed{TAssociationOutcome::ListFailed, "/x/mimeapps.list"};
  EXPECT_THAT(AssociationText({}),
              testing::StartsWith("Midifiles with the extension \".mid\" will be"));
  EXPECT_THAT(AssociationText({}), HasSubstr("\r2. Choose \"Open with\""));
  EXPECT_EQ(AssociationText(failed),
            "The file extension \".mid\" could not be associated with \"Sonarello XI\".\r"
            "This file could not be written: /x/mimeapps.list");
  InGerman german;
  EXPECT_THAT(AssociationText({}), testing::StartsWith("Midifiles mit der Endung \".mid\" werden ab"));
  EXPECT_THAT(AssociationText({}), HasSubstr("\r2. Wählen Sie \"Öffnen mit\""));
  EXPECT_THAT(AssociationText({}), Not(HasSubstr("\n")));
  EXPECT_EQ(AssociationText(failed),
            "Die Dateiendung \".mid\" konnte nicht mit dem \"Sonarello XI\" verknüpft werden.\r"
            "Diese Datei konnte nicht geschrieben werden: /x/mimeapps.list");
}

}  // namespace
}  // namespace Sonarello
