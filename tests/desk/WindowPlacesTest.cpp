#include "desk/WindowPlaces.h"

#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <random>

namespace Sonarello {

void PrintTo(const TFormPlace& place, std::ostream* out) {
  *out << place.Left << ',' << place.Top << ' ' << place.Width << 'x' << place.Height;
}

namespace {

constexpr TFormPlace Main{0, 30, 1920, 1050};
constexpr TFormPlace LeftScreen{-1280, 0, 1280, 1024};
constexpr TFormPlace Upper{0, -1080, 1920, 1080};
constexpr TFormPlace Three[] = {Main, LeftScreen, Upper};
constexpr std::span<const TFormPlace> One{&Main, 1};

TEST(CheckFormLayout, PutsAWindowThatWasNeverPlacedIntoTheMiddleOfTheMainScreen) {
  EXPECT_EQ(CheckFormLayout({NotPlaced, NotPlaced, 1000, 720}, Three),
            (TFormPlace{460, 195, 1000, 720}));
  EXPECT_EQ(CheckFormLayout({NotPlaced, 5, 1000, 720}, Three), (TFormPlace{460, 195, 1000, 720}));
  EXPECT_EQ(CheckFormLayout({5, NotPlaced, 1000, 720}, Three), (TFormPlace{460, 195, 1000, 720}));
  EXPECT_EQ(CheckFormLayout({NotPlaced, NotPlaced, 3000, 2000}, One), (TFormPlace{0, 30, 1920, 1050}));
}

TEST(CheckFormLayout, LeavesAWindowThatCanBeTakenHoldOf) {
  for (const TFormPlace place : {TFormPlace{100, 100, 800, 600}, TFormPlace{-1200, 10, 800, 600},
                                 TFormPlace{300, -1000, 800, 600}, TFormPlace{-400, 50, 800, 600},
                                 TFormPlace{1800, 100, 800, 600}, TFormPlace{100, 1060, 800, 600},
                                 TFormPlace{-1300, -8, 800, 600}})
    EXPECT_EQ(CheckFormLayout(place, Three), place);
}

TEST(CheckFormLayout, MovesAWindowOfAScreenThatIsGoneOntoTheOneThatIsLeft) {
  EXPECT_EQ(CheckFormLayout({-1200, 100, 800, 600}, One), (TFormPlace{0, 100, 800, 600}));
  EXPECT_EQ(CheckFormLayout({5000, 5000, 800, 600}, One), (TFormPlace{1120, 480, 800, 600}));
  EXPECT_EQ(CheckFormLayout({300, -1000, 800, 600}, One), (TFormPlace{300, 30, 800, 600}));
}

TEST(CheckFormLayout, MovesAWindowToTheNearestScreen) {
  EXPECT_EQ(CheckFormLayout({-2500, 100, 800, 600}, Three), (TFormPlace{-1280, 100, 800, 600}));
  EXPECT_EQ(CheckFormLayout({2500, -900, 800, 600}, Three), (TFormPlace{1120, -900, 800, 600}));
}

TEST(CheckFormLayout, MovesAWindowWhoseTitleBarIsOutOfReach) {
  // The title lies above the only screen, though the rest of the window shows.
  EXPECT_EQ(CheckFormLayout({100, -20, 800, 600}, One), (TFormPlace{100, 30, 800, 600}));
  // 40 pixels of the title are too few to take hold of.
  EXPECT_EQ(CheckFormLayout({1880, 100, 800, 600}, One), (TFormPlace{1120, 100, 800, 600}));
  EXPECT_EQ(CheckFormLayout({100, 1070, 800, 600}, One), (TFormPlace{100, 480, 800, 600}));
}

TEST(CheckFormLayout, ShrinksAWindowToItsScreenButNotBelowItsLeastSize) {
  EXPECT_EQ(CheckFormLayout({10, 40, 4000, 3000}, One), (TFormPlace{10, 40, 1920, 1050}));
  EXPECT_EQ(CheckFormLayout({10, 40, 100, 100}, One, 860, 600), (TFormPlace{10, 40, 860, 600}));
  EXPECT_EQ(CheckFormLayout({10, 40, 4000, 3000}, One, 2304, 1296), (TFormPlace{10, 40, 2304, 1296}));
  EXPECT_EQ(CheckFormLayout({-5000, 0, 3000, 3000}, One, 2304, 1296), (TFormPlace{0, 30, 2304, 1296}));
}

TEST(CheckFormLayout, CountsNoTitleThatTwoScreensShareInPieces) {
  const TFormPlace halves[] = {{0, 0, 50, 500}, {50, 600, 800, 500}};
  const TFormPlace moved = CheckFormLayout({10, 0, 40, 300}, halves);
  EXPECT_EQ(moved, (TFormPlace{10, 0, 40, 300}));
  EXPECT_EQ(CheckFormLayout({10, 100, 300, 300}, halves), (TFormPlace{0, 100, 50, 300}));
}

TEST(CheckFormLayout, ChangesNothingWithoutAScreen) {
  const TFormPlace place{-5, NotPlaced, 10, 10};
  EXPECT_EQ(CheckFormLayout(place, {}), place);
}

TEST(CheckFormLayout, AnyPlaceEndsWhereItCanBeSeen) {
  std::mt19937 random(4711);
  std::uniform_int_distribution<int> coordinate(INT_MIN, INT_MAX);
  std::uniform_int_distribution<int> near(-4000, 4000);
  std::uniform_int_distribution<int> size(-10, 5000);
  for (int i = 0; i < 20000; ++i) {
    const bool far = i % 4 == 0;
    const TFormPlace place{far ? coordinate(random) : near(random),
                           far ? coordinate(random) : near(random), size(random), size(random)};
    const TFormPlace now = CheckFormLayout(place, Three, 200, 100);
    EXPECT_EQ(CheckFormLayout(now, Three, 200, 100), now);
    bool seen = false;
    for (const TFormPlace& screen : Three)
      seen |= now.Left + 64 <= screen.Left + screen.Width && now.Left + now.Width >= screen.Left + 64 &&
              now.Top + 32 >= screen.Top + 16 && now.Top + 16 <= screen.Top + screen.Height;
    EXPECT_TRUE(seen) << testing::PrintToString(place) << " -> " << testing::PrintToString(now);
    EXPECT_GE(now.Width, 200);
    EXPECT_GE(now.Height, 100);
  }
}

TEST(WindowPlaces, AreReadBackAsTheyWereWritten) {
  MemorySettings settings;
  StoreWindowPlace(settings, "EventList", {-5, 10, 1240, 800, true});
  EXPECT_EQ(settings.ReadString("", "EventListFormLeft", ""), "-5");
  EXPECT_EQ(settings.ReadString("", "EventListFormTop", ""), "10");
  EXPECT_EQ(settings.ReadString("", "EventListFormWidth", ""), "1240");
  EXPECT_EQ(settings.ReadString("", "EventListFormHeight", ""), "800");
  EXPECT_EQ(settings.ReadString("", "EventListFormVis", ""), "1");
  const TStoredPlace place = LoadWindowPlace(settings, "EventList");
  EXPECT_EQ(place.Left, -5);
  EXPECT_EQ(place.Height, 800);
  EXPECT_TRUE(place.Visible);
}

TEST(WindowPlaces, AWindowThatWasNeverStoredIsNotPlaced) {
  const TStoredPlace place = LoadWindowPlace(MemorySettings(), "KeyEditor");
  EXPECT_EQ(place.Left, NotPlaced);
  EXPECT_EQ(place.Top, NotPlaced);
  EXPECT_EQ(place.Width, 0);
  EXPECT_FALSE(place.Visible);
}

TEST(WindowPlaces, StoresNeitherSizeNorVisibilityOfAWindowThatHasNone) {
  MemorySettings settings;
  StoreWindowPlace(settings, "Transpose", {1, 2, 300, 200, true});
  EXPECT_EQ(settings.ReadString("", "TransposeFormWidth", "none"), "none");
  EXPECT_EQ(settings.ReadString("", "TransposeFormVis", "none"), "none");
  EXPECT_EQ(LoadWindowPlace(settings, "Transpose").Top, 2);
}

TEST(WindowPlaces, ReadsTheEffectWindowsInEitherSpelling) {
  MemorySettings settings;
  settings.WriteInteger("Yamaha Genos", "Dsp16FormLeft", 77);
  EXPECT_EQ(LoadWindowPlace(settings, "DSP16", "Yamaha Genos").Left, 77);
  StoreWindowPlace(settings, "DSP16", {5, 6, 0, 0, false}, "Yamaha Genos");
  EXPECT_EQ(settings.ReadInteger("Yamaha Genos", "Dsp16FormLeft", 0), 5);
}

TEST(WindowPlaces, KeepsEffectWindowsBySubKeysOfTheInstruments) {
  EXPECT_EQ(InstrumentSubdir("Yamaha Tyros 5"), "Yamaha Tyros5");
  EXPECT_EQ(InstrumentSubdir("Yamaha Motif XF"), "Yamaha Motif-Rack XF");
  EXPECT_EQ(InstrumentSubdir("Korg Pa700"), "Korg Pa700");
  MemorySettings settings;
  StoreWindowPlace(settings, "Reverb", {1, 2, 0, 0, false}, "Yamaha Tyros 5");
  EXPECT_EQ(settings.ReadInteger("Yamaha Tyros5", "ReverbFormLeft", 0), 1);
  StoreWindowPlace(settings, "KorgPaXXXPartEQ", {3, 4, 0, 0, false}, "Korg Pa700");
  EXPECT_EQ(settings.ReadInteger("", "KorgPaXXXPartEQFormLeft", 0), 3);
  StoreWindowPlace(settings, "Patches", {8, 9, 500, 322, false}, "Korg Pa700");
  EXPECT_EQ(settings.ReadInteger("Korg Pa700", "PatchesFormHeight", 0), 322);
  StoreWindowPlace(settings, "Main", {7, 7, 1440, 900, false}, "Yamaha Genos");
  EXPECT_EQ(settings.ReadInteger("", "MainFormLeft", 0), 7);
}

TEST(WindowPlaces, KnowsEveryWindowAndItsKeys) {
  for (const char* window :
       {"AudioProduction", "Chorus",    "Controller", "DrumsMain",   "DrumsSec",
        "DrumsThird",      "Dsp1",      "DSP16",      "EventList",   "KeyEditor",
        "KorgPaXXXPartEQ", "Lyrics",    "Main",       "MasterEQ",    "MasterFX",
        "MultiPart",       "Patch",     "Reverb",     "Revoicer",    "RolandIntegra7PartEQ",
        "SCInserts",       "Transpose", "Variation",  "VirtualKeys", "VocalEffect",
        "VocalHarmony",    "x64_VSTi",  "x64_VSTi5",  "x64_VST1",    "x64_VST2"})
    EXPECT_NE(FindWindowPlace(window), nullptr) << window;
  EXPECT_EQ(FindWindowPlace("Dsp17"), nullptr);
  EXPECT_EQ(PlaceKeyOf("DSP3FormLEFT"), TPlaceKey::Number);
  EXPECT_EQ(PlaceKeyOf("LyricsFormVis"), TPlaceKey::Flag);
  EXPECT_EQ(PlaceKeyOf("FormLeft"), TPlaceKey::None);
  EXPECT_EQ(PlaceKeyOf("OtherFormLeft"), TPlaceKey::None);
  EXPECT_EQ(PlaceKeyOf("LyricsFormMaximized"), TPlaceKey::None);
}

}  // namespace

}  // namespace Sonarello
