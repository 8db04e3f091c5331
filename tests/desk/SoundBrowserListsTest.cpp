#include "desk/SoundBrowserLists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/TextOrder.h"
#include "desk/SoundBrowserBench.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int Genos = 87;
constexpr TAddress ConcertGrand = {104, 21, 0};

/// A Genos song with the browser open on channel 4, over a folder of user files.
struct FolderBench {
  FolderBench() : FolderBench("", "") {}
  /// With a file in the folder.
  FolderBench(const std::string& name, const std::string& text) {
    if (!name.empty()) folder.Write(name, text);
    bench.options.DataPath = folder.Path;
    bench.sets.Unload(Genos);
    EXPECT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
    EXPECT_TRUE(bench.browser.Open(3));
    bench.Told.clear();
  }
  [[nodiscard]] int Bank(std::string_view name) const {
    const auto banks = bench.browser.Banks().Banks();
    return static_cast<int>(std::ranges::find(banks, name, &TBrowserBank::Name) - banks.begin());
  }
  [[nodiscard]] const TBrowserBank& BankOf(std::string_view name) const {
    return bench.browser.Banks().Banks()[static_cast<std::size_t>(Bank(name))];
  }

  UserFolder folder;
  SoundBrowserBench bench{Genos};
};

TEST(SoundBrowserLists, HaveSettingsOfTheirInstrumentWithDefaults) {
  MemorySettings settings;
  const TBrowserSettings standard = ReadBrowserSettings(settings, "Yamaha Genos");
  EXPECT_TRUE(standard.SortSounds);
  EXPECT_TRUE(standard.Patches_WithDSPs);
  EXPECT_EQ(standard.PatchesFormHeight, 322);
  EXPECT_EQ(standard.PatchesFormLeft, -9999);
  EXPECT_EQ(standard.PatchesFormTop, -9999);
  settings.WriteBool("Yamaha Genos", "SortSounds", false);
  settings.WriteInteger("Yamaha Genos", "PatchesFormLeft", 12);
  EXPECT_FALSE(ReadBrowserSettings(settings, "Yamaha Genos").SortSounds);
  EXPECT_EQ(ReadBrowserSettings(settings, "Yamaha Genos").PatchesFormLeft, 12);
  EXPECT_EQ(ReadBrowserSettings(settings, "Yamaha Tyros 5"), standard);
}

TEST(SoundBrowserLists, AreLoadedAsTheInstrumentsOwnSettingSays) {
  MemorySettings settings;
  Options options;
  options.DataPath = "/lists";
  options.LimexTE200 = true;
  settings.WriteBool("Yamaha Genos", "SortSounds", false);
  const TLoadSettings genos = BrowserLoadSettings(settings, options, Genos);
  EXPECT_FALSE(genos.SortSounds);
  EXPECT_EQ(genos.DataPath, "/lists");
  EXPECT_TRUE(genos.LimexTE200);
  EXPECT_TRUE(BrowserLoadSettings(settings, options, 16).SortSounds);
}

TEST(SoundBrowserLists, StandInTheOrderOfTheirNamesIfTheyAreSorted) {
  SoundBrowserBench bench(Genos);
  bench.sets.Unload(Genos);
  ASSERT_TRUE(bench.OpenWith({{4, ConcertGrand}}));
  ASSERT_TRUE(bench.browser.Open(3));
  const TBrowserBank& panel = bench.browser.Banks().Banks().front();
  for (const TBrowserCategory& category : panel.Categories)
    for (std::size_t s = 1; s < category.Sounds.size(); ++s) {
      const auto nameOf = [&](std::size_t i) {
        return panel.Rows()[static_cast<std::size_t>(category.Sounds[i])].Name;
      };
      EXPECT_TRUE(CompareTexts(nameOf(s - 1), nameOf(s)) <= 0) << category.Name;
    }
}

TEST(SoundBrowserLists, TellThatSortingShowsWithTheNextStart) {
  FolderBench at;
  at.bench.browser.PM_SortSoundsClick();
  EXPECT_FALSE(at.bench.browser.SortSounds());
  at.bench.browser.PM_SortSoundsClick();
  EXPECT_TRUE(at.bench.settings.ReadBool("Yamaha Genos", "SortSounds", false));
  // No blank stands in front of the instrument. This is deliberate.
  EXPECT_THAT(at.bench.messages.Shown,
              ElementsAre("After restarting theYamaha Genos the sounds will not be sorted anymore",
                          "After restarting theYamaha Genos the sounds will be sorted"));
  at.bench.messages.Shown.clear();
  const InGerman german;
  at.bench.browser.PM_SortSoundsClick();
  at.bench.browser.PM_SortSoundsClick();
  EXPECT_THAT(
      at.bench.messages.Shown,
      ElementsAre("Nach dem Neustart desYamaha Genos werden die Sounds nicht mehr sortiert angezeigt",
                  "Nach dem Neustart desYamaha Genos werden die Sounds sortiert angezeigt"));
}

TEST(SoundBrowserLists, NameTheEntriesThatSaveThem) {
  FolderBench at;
  EXPECT_EQ(SaveVoicesText(at.BankOf("Panel")), "save Panel voices");
  EXPECT_EQ(SaveVoicesText(at.BankOf("Legacy")), "save Legacy voices");
  EXPECT_EQ(SaveVoicesText(at.BankOf("XG")), "save XG/GM voices");
  EXPECT_EQ(SaveVoicesText(at.BankOf("GM2")), "save GM2 voices");
  EXPECT_EQ(SaveVoicesText(at.BankOf("Custom")), "") << "it is a file of the user's already";
  const InGerman german;
  EXPECT_EQ(SaveVoicesText(at.BankOf("Panel")), "Panel-Voices speichern");
  EXPECT_EQ(SaveVoicesText(at.BankOf("XG")), "XG/GM-Voices speichern");
}

TEST(SoundBrowserLists, AreSavedInTheFormInWhichTheyAreRead) {
  FolderBench at;
  EXPECT_TRUE(at.bench.browser.PM_SaveVoicesClick(at.Bank("Panel")));
  EXPECT_THAT(at.bench.messages.Asked, IsEmpty());
  RecordedMessages messages;
  const SoundSet again(Genos, {.DataPath = at.folder.Path}, messages);
  EXPECT_THAT(messages.Shown, IsEmpty());
  const auto& saved = at.BankOf("Panel").List->Rows;
  const auto& read = again.Lists().front().Rows;
  EXPECT_TRUE(again.Lists().front().FromUser);
  ASSERT_EQ(read.size(), saved.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    EXPECT_EQ(read[i].Name, saved[i].Name);
    EXPECT_EQ(read[i].Address(), saved[i].Address());
  }
}

TEST(SoundBrowserLists, AskBeforeTheyWriteOverAFile) {
  FolderBench at("_Yamaha_Genos_GM2.txt", "mine\tSound\t121\t0\t0\n");
  at.bench.messages.Answers = {false};
  EXPECT_FALSE(at.bench.browser.PM_SaveVoicesClick(at.Bank("GM2")));
  EXPECT_EQ(at.folder.Read("_Yamaha_Genos_GM2.txt"), "mine\tSound\t121\t0\t0\n");
  at.folder.Write("_Yamaha_Genos_GM2.txt", "old");
  EXPECT_TRUE(at.bench.browser.PM_SaveVoicesClick(at.Bank("GM2")));
  EXPECT_EQ(at.folder.Read("_Yamaha_Genos_GM2.txt"), "mine\tSound\t121\t0\t0\n");
  EXPECT_EQ(at.bench.messages.Asked.back(),
            "There is a file with the same name!\rDo you want to overwrite it?");
  const InGerman german;
  at.folder.Write("_Yamaha_Genos_Panel.txt", "old");
  at.bench.browser.PM_SaveVoicesClick(at.Bank("Panel"));
  EXPECT_EQ(at.bench.messages.Asked.back(),
            "Es existiert bereits eine Datei mit dem Namen \"_Yamaha_Genos_Panel.txt\"!\rWollen Sie "
            "diese Datei überschreiben?");
}

TEST(SoundBrowserLists, TellThatAFileCouldNotBeWritten) {
  FolderBench at;
  at.bench.options.DataPath = at.folder.Path + "/gone";
  EXPECT_FALSE(at.bench.browser.PM_SaveVoicesClick(at.Bank("Panel")));
  ASSERT_EQ(at.bench.messages.Shown.size(), 1U);
  EXPECT_EQ(at.bench.messages.Shown[0],
            "Error writing the file\r\"" + at.folder.Path + "/gone/_Yamaha_Genos_Panel.txt\"!");
  EXPECT_FALSE(at.bench.browser.PM_SaveVoicesClick(-1));
  EXPECT_FALSE(at.bench.browser.PM_SaveVoicesClick(99));
  at.bench.options.DataPath.clear();
  EXPECT_FALSE(at.bench.browser.PM_SaveVoicesClick(at.Bank("Panel")));
}

TEST(SoundBrowserLists, KeepTheNameThatTheUserGivesAnOwnSound) {
  const std::string file = "Meine\tAlt\t1\t2\r\n\r\n\tBass\t1\t3\r\ndefekt\r\n\tBass\t1\t4\r\n";
  FolderBench at("_Yamaha_Genos_Custom.txt", file);
  at.bench.messages.Shown.clear();  // of the faulty row
  const TSoundPlace second = at.bench.browser.Banks().PlaceOf(&at.BankOf("Custom").Rows()[2]);
  EXPECT_TRUE(at.bench.browser.CanRename(second));
  ASSERT_TRUE(at.bench.browser.Select(second));
  EXPECT_TRUE(at.bench.browser.LB_CustomSoundsEditEditDone(second, "  Kontra\tBaß\n"));
  EXPECT_EQ(at.folder.Read("_Yamaha_Genos_Custom.txt"),
            "Meine\tAlt\t1\t2\r\n\r\n\tBass\t1\t3\r\ndefekt\r\n\tKontra Baß\t1\t4\r\n")
      << "the one cell, in the row with these numbers, and nothing else";
  EXPECT_EQ(at.bench.NameAt(at.bench.browser.Selected()), "Kontra Baß");
  EXPECT_EQ(at.bench.browser.NewVoice(), "Kontra Baß");
  EXPECT_EQ(at.bench.browser.OldVoice(), "CFX ConcertGrand (S.Art!)");
  EXPECT_EQ(at.bench.AddressOf(4), (TAddress{63, 1, 4}));
  EXPECT_EQ(at.bench.names.CurrentName(3), "Kontra Baß");
}

TEST(SoundBrowserLists, NameNoOtherThanTheUsersOwnSounds) {
  FolderBench at("_Yamaha_Genos_Custom.txt", "Meine\tAlt\t1\t2\n");
  const TSoundPlace own = at.bench.Named("Alt");
  const TSoundPlace panel = at.bench.browser.Selected();
  EXPECT_FALSE(at.bench.browser.CanRename(panel));
  EXPECT_FALSE(at.bench.browser.LB_CustomSoundsEditEditDone(panel, "Neu"));
  EXPECT_FALSE(at.bench.browser.LB_CustomSoundsEditEditDone(own, " \t "));
  EXPECT_FALSE(at.bench.browser.LB_CustomSoundsEditEditDone({}, "Neu"));
  EXPECT_EQ(at.folder.Read("_Yamaha_Genos_Custom.txt"), "Meine\tAlt\t1\t2\n");
  std::filesystem::remove(at.folder.Path + "/_Yamaha_Genos_Custom.txt");
  EXPECT_FALSE(at.bench.browser.LB_CustomSoundsEditEditDone(own, "Neu")) << "the file is gone";
}

}  // namespace

}  // namespace Sonarello
