#include "desk/MyRegistry.h"

#include <gtest/gtest.h>

#include "helpers/InGerman.h"

namespace Sonarello {

namespace {

using Strings = std::vector<std::string>;

TEST(MemoryRegistry, KeepsTheSpellingOfANameAndTellsItsCaseNotApart) {
  MemoryRegistry store;
  store.WriteString("Yamaha Genos", "Dsp1FormLeft", "10");
  store.WriteString("YAMAHA GENOS", "DSP1FormLeft", "20");
  EXPECT_EQ(store.ReadString("yamaha genos", "dsp1formleft", ""), "20");
  EXPECT_EQ(store.Sections(), Strings{"Yamaha Genos"});
  EXPECT_EQ(store.Values("yamaha genos"), Strings{"Dsp1FormLeft"});
  store.WriteString("FLÜGEL", "a", "1");
  EXPECT_EQ(store.ReadString("Flügel", "A", ""), "1");
}

TEST(MemoryRegistry, ForgetsASectionWithItsLastValue) {
  MemoryRegistry store;
  store.WriteString("A", "x", "1");
  store.DeleteValue("a", "X");
  EXPECT_TRUE(store.Sections().empty());
}

TEST(MemoryRegistry, DeletesASectionWithAllBelowButNotOneWhoseNameGoesOn) {
  MemoryRegistry store;
  store.WriteString("Yamaha Tyros", "x", "1");
  store.WriteString("Yamaha Tyros\\Deeper", "x", "1");
  store.WriteString("Yamaha Tyros2", "x", "1");
  store.WriteString("", "Lang", "de");
  store.DeleteSection("yamaha tyros");
  EXPECT_EQ(store.Sections(), Strings{"Yamaha Tyros2"});
  EXPECT_TRUE(store.HasValue("", "lang"));
  store.DeleteSection("");
  EXPECT_TRUE(store.Sections().empty());
  EXPECT_FALSE(store.HasValue("", "Lang"));
}

class Registry : public testing::Test {
 protected:
  MemoryRegistry store;
  TMyRegistry key{store};
};

TEST_F(Registry, DoesNotOpenAKeyThatDoesNotExistUnlessItMayMakeIt) {
  std::string error;
  key.FOnError = [&](const std::string& text) { error = text; };
  EXPECT_FALSE(key.Open());
  EXPECT_EQ(error, "The settings under \"\\SOFTWARE\\Brightfold\\Sonarello XI\\\" cannot be opened.");
  key.bCreateReg = true;
  error.clear();
  EXPECT_TRUE(key.Open());
  EXPECT_EQ(error, "");
}

TEST_F(Registry, TellsInGermanThatAKeyCannotBeOpened) {
  const InGerman german;
  std::string error;
  key.FOnError = [&](const std::string& text) { error = text; };
  key.sRegString = "\\SOFTWARE\\Other";
  EXPECT_FALSE(key.Open());
  EXPECT_EQ(error, "Die Einstellungen unter \"\\SOFTWARE\\Other\" können nicht geöffnet werden.");
}

TEST_F(Registry, DoesNotOpenTheKeyOfAnotherProgram) {
  key.bCreateReg = true;
  for (const char* path : {"\\SOFTWARE\\Other\\", "\\SOFTWARE\\Brightfold\\Sonarello XII\\",
                           "\\SOFTWARE\\Brightfold\\Another", ""}) {
    key.sRegString = path;
    EXPECT_FALSE(key.Open()) << path;
  }
}

TEST_F(Registry, AFailedOpenWithoutAListenerIsQuiet) { EXPECT_FALSE(key.Open()); }

TEST_F(Registry, ReadsAndWritesItsValuesAndThoseOfSubKeys) {
  key.bCreateReg = true;
  ASSERT_TRUE(key.Open());
  key.WriteString("", "SourcePath", "/songs");
  key.WriteInteger("Yamaha Genos", "ReverbFormLeft", -12);
  key.WriteBool("\\Yamaha Genos\\", "ReverbFormVis", true);
  EXPECT_EQ(key.ReadString("", "sourcepath", ""), "/songs");
  EXPECT_EQ(key.ReadInteger("Yamaha Genos", "ReverbFormLeft", 0), -12);
  EXPECT_TRUE(key.ReadBool("yamaha genos", "ReverbFormVis", false));
  EXPECT_TRUE(key.KeyExists("Yamaha Genos"));
  EXPECT_FALSE(key.KeyExists("Yamaha Tyros"));
  EXPECT_TRUE(key.ValueExists("", "SourcePath"));
  key.DeleteValue("", "SourcePath");
  EXPECT_FALSE(key.ValueExists("", "SourcePath"));
  key.DeleteKey("", "Yamaha Genos");
  EXPECT_FALSE(key.KeyExists("Yamaha Genos"));
}

TEST_F(Registry, ReadsDefaultsAndWritesNothingWhileClosed) {
  store.WriteString("", "Lang", "de");
  key.WriteString("", "Lang", "en");
  key.DeleteValue("", "Lang");
  key.DeleteKey("", "Yamaha Genos");
  EXPECT_EQ(key.ReadString("", "Lang", "fr"), "fr");
  EXPECT_EQ(key.ReadInteger("", "Lang", 7), 7);
  EXPECT_TRUE(key.ReadBool("", "Lang", true));
  EXPECT_FALSE(key.ValueExists("", "Lang"));
  EXPECT_FALSE(key.KeyExists(""));
  EXPECT_EQ(store.ReadString("", "Lang", ""), "de");
  ASSERT_TRUE(key.Open());
  EXPECT_EQ(key.ReadString("", "Lang", "fr"), "de");
  key.Close();
  EXPECT_EQ(key.ReadString("", "Lang", "fr"), "fr");
}

TEST_F(Registry, MakesAnAbsentValueOnlyIfAskedTo) {
  key.bCreateReg = true;
  ASSERT_TRUE(key.Open());
  EXPECT_EQ(key.ReadInteger("", "RecLatency", 12), 12);
  EXPECT_FALSE(store.HasValue("", "RecLatency"));
  key.bSaveNew = true;
  EXPECT_EQ(key.ReadInteger("", "RecLatency", 12), 12);
  EXPECT_TRUE(key.ReadBool("", "ShowLyrics", true));
  EXPECT_EQ(key.ReadString("", "Lang", "de"), "de");
  EXPECT_EQ(store.ReadString("", "RecLatency", ""), "12");
  EXPECT_EQ(store.ReadString("", "ShowLyrics", ""), "1");
  EXPECT_EQ(store.ReadString("", "Lang", ""), "de");
}

TEST_F(Registry, OpensASubKeyByItsPath) {
  store.WriteString("Yamaha Genos", "SortSounds", "0");
  key.sRegString = "\\software\\brightfold\\sonarello xi\\Yamaha Genos\\";
  ASSERT_TRUE(key.Open());
  EXPECT_FALSE(key.ReadBool("", "SortSounds", true));
}

TEST_F(Registry, DeletesNothingAboveItsOwnKey) {
  store.WriteString("", "Lang", "de");
  key.sRegString = "\\SOFTWARE\\";
  ASSERT_TRUE(key.Open());
  key.DeleteKey("", "Brightfold");
  key.DeleteKey("", "");
  key.DeleteKey("Brightfold", "Another");
  EXPECT_TRUE(store.HasValue("", "Lang"));
  key.DeleteKey("Brightfold", "Sonarello XI");
  EXPECT_FALSE(store.HasValue("", "Lang"));
}

class User : public testing::Test {
 protected:
  MemoryRegistry store;
  UserRegistry user{store};
};

TEST_F(User, ReadsDefaultsWithoutMakingThem) {
  EXPECT_TRUE(user.ReadBoolFromUserRegistry("AutoBackupEnabled", true));
  EXPECT_EQ(user.ReadIntFromUserRegistry("MainFormLeft", -9999), -9999);
  EXPECT_EQ(user.ReadStrFromUserRegistry("Lang", "de"), "de");
  EXPECT_FALSE(user.KeyInUserRegistry("Lang"));
  EXPECT_TRUE(store.Values("").empty());
}

TEST_F(User, WritesAndDeletesUnderTheProgramsKey) {
  user.WriteBoolToUserRegistry("ConfirmTerminate", false);
  user.WriteIntToUserRegistry("RecLatency", 5);
  user.WriteStrToUserRegistry("Lang", "en");
  EXPECT_FALSE(user.ReadBoolFromUserRegistry("ConfirmTerminate", true));
  EXPECT_EQ(user.ReadIntFromUserRegistry("RecLatency", 0), 5);
  EXPECT_EQ(user.ReadStrFromUserRegistry("Lang", ""), "en");
  EXPECT_EQ(store.ReadString("", "RecLatency", ""), "5");
  user.DeleteFromUserRegistry("Lang");
  EXPECT_FALSE(user.KeyInUserRegistry("Lang"));
}

TEST_F(User, KeepsWhatBelongsToAnInstrumentInItsSubKey) {
  user.WriteIntToUserRegistrySubdir("Yamaha Genos", "ReverbFormLeft", 40);
  user.WriteBoolToUserRegistrySubdir("Yamaha Genos", "SortSounds", false);
  user.WriteStrToUserRegistrySubdir("Yamaha Genos", "x", "y");
  EXPECT_EQ(user.ReadIntFromUserRegistrySubdir("Yamaha Genos", "ReverbFormLeft", 0), 40);
  EXPECT_EQ(user.ReadIntFromUserRegistrySubdir("Yamaha Tyros", "ReverbFormLeft", 7), 7);
  EXPECT_EQ(user.ReadIntFromUserRegistry("ReverbFormLeft", 8), 8);
  EXPECT_FALSE(user.ReadBoolFromUserRegistrySubdir("Yamaha Genos", "SortSounds", true));
  EXPECT_EQ(user.ReadStrFromUserRegistrySubdir("Yamaha Genos", "x", ""), "y");
  user.DeleteFromUserRegistrySubdir("Yamaha Genos", "x");
  EXPECT_FALSE(user.KeyInUserRegistrySubdir("Yamaha Genos", "x"));
}

TEST_F(User, GoesBackToFactorySettings) {
  user.WriteStrToUserRegistry("Lang", "en");
  user.WriteIntToUserRegistrySubdir("Yamaha Genos", "ReverbFormLeft", 40);
  user.DeleteAllRegistry();
  EXPECT_TRUE(store.Sections().empty());
  EXPECT_TRUE(store.Values("").empty());
  EXPECT_EQ(user.ReadStrFromUserRegistry("Lang", "de"), "de");
  user.DeleteAllRegistry();
  user.WriteStrToUserRegistry("Lang", "en");
  EXPECT_TRUE(user.KeyInUserRegistry("Lang"));
}

}  // namespace

}  // namespace Sonarello
