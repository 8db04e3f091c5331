// Pictures of the main window and of those that open from it, in every look. They are written for the
// eye; what is asserted is that each could be drawn and that no button on it is cut off.
#include <QPushButton>

#include "app/desk/InfoForms.h"
#include "app/desk/MainBench.h"
#include "app/desk/NewMidiDataForm.h"
#include "app/desk/VelocityEditor.h"
#include "app/instruments/AutoRevoicerForm.h"
#include "app/instruments/PatchesForm.h"
#include "app/instruments/SoundBrowserForm.h"
#include "app/options/OptionsForm.h"
#include "app/panels/SongSlider.h"
#include "app/playback/VirtualKeysForm.h"
#include "desk/DeskSettings.h"
#include "desk/SongProperties.h"

namespace Sonarello {
namespace {

/// A look: language, theme, scale.
struct TLook {
  bool German;
  ThemeKind Theme;
  int Scale;

  [[nodiscard]] std::string Name() const {
    return std::string(German ? "de_" : "en_") + (Theme == ThemeKind::Dark ? "dark_" : "light_") +
           std::to_string(Scale);
  }
};

class Gallery : public Main, public testing::WithParamInterface<TLook> {
 protected:
  Gallery() {
    GermanLanguage = GetParam().German;
    store.WriteString("", "MidiInstrument00", "Yamaha Genos");
    store.WriteString("", "MidiOutput00", SilentOutput::Name);
    store.WriteInteger("", "SkinIndex", GetParam().Theme == ThemeKind::Dark ? 0 : 1);
    const auto* const scale = std::ranges::find(ScalePercents, GetParam().Scale);
    store.WriteInteger("", "ScaleIndex", static_cast<int>(scale - std::begin(ScalePercents)));
  }
  ~Gallery() override {
    End();
    GermanLanguage = false;
  }

  /// The demo song in a window of a size at 100 %.
  void BeginWithDemo(int width, int height) {
    Begin();
    Fire("SetupTimer");
    Fire("AutoloadTimer");
    const std::string song = folder.File("Demo.mid");
    std::filesystem::copy_file(SONARELLO_SOURCE_DIR "/examples/demo.mid", song);
    ASSERT_TRUE(form->OpenFile(song));
    Resize(width, height);
  }
  void Resize(int width, int height) {
    form->resize(metrics().px(width), metrics().px(height));
    Settle();
  }
  void Save(QWidget& window, const std::string& name) {
    Settle();
    EXPECT_TRUE(SaveScreenshot(window, ToQt("window_" + name + "_" + GetParam().Name())));
    for (const QPushButton* button : window.findChildren<QPushButton*>()) {
      if (!button->isVisibleTo(&window)) continue;
      EXPECT_GE(button->width(), button->minimumSizeHint().width()) << ToStd(button->text());
    }
  }
};

TEST_P(Gallery, DrawsTheDesk) {
  BeginWithDemo(1440, 900);
  TStrips& strips = work->desk.strips;
  strips.Desk.SetMidiChannel(3);
  strips.MuteSolo.Btn_Mute00MouseDown(8, false);
  strips.Velocities.Step(2, 5);
  form->findChild<SongSlider*>()->SeekTo(20'000);
  Save(*form, "desk_1440x900");
  Resize(1280, 720);
  Save(*form, "desk_1280x720");
}

TEST_P(Gallery, DrawsTheDeskWithoutASong) {
  Begin();
  Fire("SetupTimer");
  Resize(1280, 720);
  Save(*form, "desk_empty");
}

TEST_P(Gallery, DrawsTheToolWindows) {
  BeginWithDemo(1280, 720);
  ASSERT_TRUE(work->browser.Open(0));
  auto* const browser = form->findChild<TSoundBrowserForm*>();
  ASSERT_NE(browser, nullptr);
  Save(*browser, "sounds");
  work->browser.Select({0, 0, 3});
  work->browser.Btn_SaveToRevoicerClick();
  work->browser.Btn_CancelClick();
  form->Menu().Entry("MMV_Sounds").trigger();
  form->Menu().Entry("MME_AutoRevoicer").trigger();
  form->Menu().Entry("MME_VirtualKeyboard").trigger();
  Settle();
  Save(*form->findChild<TPatchesForm*>(), "overview");
  Save(*form->findChild<TAutoRevoicerForm*>(), "revoicer");
  Save(*form->findChild<TVirtualKeysForm*>(), "keyboard");
  form->Menu().Entry("MMS_ShowSettings").trigger();
  auto* const settings = form->findChild<TOptionsForm*>();
  ASSERT_NE(settings, nullptr);
  Save(*settings, "settings");
  settings->Btn_CancelClick();
}

TEST_P(Gallery, DrawsTheSmallWindows) {
  BeginWithDemo(1280, 720);
  TPropertiesForm properties(SongProperties(work->desk.song, {}), form.get());
  properties.show();
  Save(properties, "properties");
  TAboutForm about(QStringLiteral("1.0"), form.get());
  about.show();
  Save(about, "about");
  TNewMidiDataForm wishes(form.get());
  wishes.show();
  Save(wishes, "new_midifile");
  VelocityEditor velocity(work->desk.strips.Velocities, form.get());
  ASSERT_TRUE(velocity.Open(0, QPoint(100, 600)));
  Save(velocity, "velocity");
}

INSTANTIATE_TEST_SUITE_P(
    Looks, Gallery,
    testing::Values(TLook{false, ThemeKind::Dark, 100}, TLook{true, ThemeKind::Dark, 100},
                    TLook{false, ThemeKind::Light, 100}, TLook{true, ThemeKind::Light, 100},
                    TLook{false, ThemeKind::Dark, 150}, TLook{true, ThemeKind::Dark, 150},
                    TLook{false, ThemeKind::Light, 150}, TLook{true, ThemeKind::Light, 150}),
    [](const auto& look) { return look.param.Name(); });

}  // namespace
}  // namespace Sonarello
