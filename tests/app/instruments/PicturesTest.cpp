// Pictures of the instruments' windows, in both languages, both themes and two scales, to be looked at.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTableView>
#include <QTest>

#include "app/Application.h"
#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"
#include "app/instruments/AutoRevoicerForm.h"
#include "app/instruments/PatchesForm.h"
#include "app/instruments/SoundBrowserForm.h"
#include "app/instruments/SoundSearch.h"
#include "desk/SoundBrowserBench.h"

namespace Sonarello {

namespace {

struct TLook {
  bool German = false;
  ThemeKind Kind = ThemeKind::Dark;
  int Scale = 100;

  [[nodiscard]] QString Name(const QString& window) const {
    return QStringLiteral("%1_%2_%3_%4")
        .arg(window, German ? QStringLiteral("de") : QStringLiteral("en"),
             Kind == ThemeKind::Dark ? QStringLiteral("dark") : QStringLiteral("light"))
        .arg(Scale);
  }
};

class Pictures : public testing::TestWithParam<TLook> {
 protected:
  void SetUp() override {
    GermanLanguage = GetParam().German;
    SetTheme(GetParam().Kind);
    SetScale(GetParam().Scale);
  }
  void TearDown() override {
    GermanLanguage = false;
    SetTheme(ThemeKind::Dark);
    SetScale(100);
  }
  static void Take(QWidget& widget, QSize size, const QString& name) {
    widget.resize(metrics().px(size.width()), metrics().px(size.height()));
    ShowForTest(widget);
    EXPECT_TRUE(SaveScreenshot(widget, GetParam().Name(name)));
  }
};

TEST_P(Pictures, OfTheSoundBrowser) {
  SoundBrowserBench bench(87);
  TSoundBrowserForm form(bench.browser);
  ASSERT_TRUE(bench.OpenWith({{4, {104, 21, 0}}, {10, {127, 0, 0}}}));
  ASSERT_TRUE(bench.browser.Open(3));
  bench.song.MidiData[3].Solo = true;
  form.StripChanged(3);
  QTest::keyClick(form.focusWidget(), Qt::Key_Down);
  Take(form, {1040, 720}, "sound_browser");
  form.findChild<SearchField*>()->setText("strings");
  QTest::keyClick(form.findChild<SearchField*>(), Qt::Key_Down);
  Take(form, {1040, 720}, "sound_browser_search");
  form.findChild<SearchField*>()->setText("xyz");
  Take(form, {720, 420}, "sound_browser_nothing");
  ASSERT_TRUE(bench.browser.Open(9));
  Take(form, {1040, 720}, "sound_browser_drums");
}

TEST_P(Pictures, OfABrowserWithManyBanksAndEffects) {
  SoundBrowserBench integra(71);
  TSoundBrowserForm form(integra.browser);
  ASSERT_TRUE(integra.OpenWith({{1, {89, 64, 0}}}));
  ASSERT_TRUE(integra.browser.Open(0));
  Take(form, {1040, 720}, "sound_browser_banks");
  SoundBrowserBench genos(87);
  TSoundBrowserForm effects(genos.browser);
  ASSERT_TRUE(genos.OpenWith({{4, {104, 21, 0}}}));
  auto& list = const_cast<TSoundList&>(genos.sets.Find(87)->Lists().front());
  list.Effects.resize(list.Rows.size());
  list.Effects[1].DSPIndex = 1;
  genos.browser.Hooks.EffectName = [](int, int) { return std::string("Ensemble Detune"); };
  ASSERT_TRUE(genos.browser.Open(3));
  genos.browser.Select({0, 0, 1});
  genos.browser.Hooks.Opened();
  Take(effects, {1040, 720}, "sound_browser_effects");
}

TEST_P(Pictures, OfTheOverview) {
  SoundBrowserBench bench(87);
  ASSERT_TRUE(bench.OpenWith({{1, {104, 21, 0}},
                              {2, {8, 34, 42}},
                              {3, {104, 10, 0}},
                              {4, {0, 0, 48}},
                              {6, {0, 0, 33}},
                              {10, {127, 0, 0}},
                              {11, {127, 0, 8}},
                              {12, {-1, -1, -1}}}));
  bench.routes.Table.push_back(
      {.Delay = 0, .Instrument = "GM Soundset", .InstrumValue = 0, .OutputName = {}});
  bench.sets.Load(0, {}, bench.messages);
  bench.song.MidiOutIndex[5] = 1;
  bench.song.ActiveMidiIndex = 2;
  bench.song.MidiData[3].Mute = true;
  bench.song.MidiData[1].Solo = true;
  bench.song.MidiData[5].Rec = true;
  bench.song.MidiData[0].MidiChannel = 6;
  TPatchOverview overview(bench.song, bench.names, bench.routes, bench.messages, bench.gate);
  TPatchesForm form(overview);
  Take(form, {560, 520}, "sounds_overview");
}

TEST_P(Pictures, OfTheRevoicer) {
  SoundBrowserBench bench(87);
  bench.options.AutoProgChange = false;
  ASSERT_TRUE(bench.OpenWith({{3, {-1, 5, 7}}, {4, {104, 21, 0}}, {6, {104, -1, 1}}}));
  TRevoicerDesk desk(bench.song, bench.routes, bench.settings, bench.messages, bench.gate,
                     bench.revoicer);
  desk.LoadRevoiceData();
  TAutoRevoicerForm form(desk);
  Take(form, {760, 480}, "auto_revoicer_empty");
  bench.revoicer.SaveToRevoicer(bench.settings, {104, 21, 0}, "CFX ConcertGrand (S.Art!)", {104, 10, 0},
                                "CFX StageGrand (S.Art!)");
  bench.revoicer.SaveToRevoicer(bench.settings, {8, 32, 48}, "ConcertStrings (S.Art!)", {104, 32, 48},
                                "ChamberStrings (S.Art2!)");
  form.Btn_RevoiceClick();
  form.ShowAll();
  form.Grid()->selectRow(1);
  Take(form, {760, 480}, "auto_revoicer");
}

INSTANTIATE_TEST_SUITE_P(Looks, Pictures,
                         testing::Values(TLook{false, ThemeKind::Dark, 100},
                                         TLook{true, ThemeKind::Light, 100},
                                         TLook{true, ThemeKind::Dark, 150},
                                         TLook{false, ThemeKind::Light, 150}),
                         [](const auto& look) { return look.param.Name("Look").toStdString(); });

}  // namespace

}  // namespace Sonarello
