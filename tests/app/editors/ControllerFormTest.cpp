// The controller overview's window: choice, faders, typed values, states.
#include "app/editors/ControllerForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/Application.h"
#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/controls/ValueBox.h"
#include "app/editors/ControllerColumn.h"
#include "app/editors/EditorStatus.h"
#include "desk/StripsBench.h"
#include "helpers/InGerman.h"

namespace Sonarello {

namespace {

struct FormBench : StripsBench {
  FormBench() {
    overview.Hooks.PatchName = [](int channel) {
      return channel == 0 ? std::string("ChamberStrings (S.Art2!)") : std::string("Kick Tight");
    };
    NewTrack();
  }
  FormBench& Show(bool withSong = true) {
    if (withSong) {
      TwoChannels();
      song.MidiTrack.front().TrkMidiIndex = ChannelCount;
      Data(1).DrumPart = 1;
    }
    form = std::make_unique<TControllerForm>(overview);
    form->resize(form->sizeHint());
    ShowForTest(*form);
    return *this;
  }
  [[nodiscard]] std::string Shown(int channel) { return ToStd(form->Column(channel).Value().text()); }
  TControllerOverview overview{strips};
  std::unique_ptr<TControllerForm> form;
};

TEST(ControllerForm, ShowsTheFirstValuesOfAllChannels) {
  FormBench b;
  b.Show();
  EXPECT_EQ(b.Shown(0), "80");
  EXPECT_EQ(b.Shown(1), "40");
  EXPECT_EQ(b.Shown(2), "–");
  EXPECT_FALSE(b.form->Column(2).Fader().isEnabled());
  EXPECT_EQ(b.form->Column(0).Fader().position(), 80);
  EXPECT_EQ(b.form->Column(8).accessibleName().toStdString(), "MIDI channel 09");
}

TEST(ControllerForm, AFaderMovesTheSong) {
  FormBench b;
  b.Show();
  QTest::keyClick(&b.form->Column(0).Fader(), Qt::Key_Up);
  EXPECT_EQ(b.Values(0, 7), "81 90");
  EXPECT_EQ(b.Shown(0), "81");
  EXPECT_EQ(b.form->Status().Parts().join(QLatin1Char('|')).toStdString(),
            "Channel 1 ChamberStrings (S.Art2!)|Volume · CC 7: 81|first event at 001.01.010");
}

TEST(ControllerForm, AnotherControllerIsChosenByListAndButton) {
  FormBench b;
  b.Show();
  b.form->Usual[1]->click();
  EXPECT_EQ(b.overview.Controller(), 10);
  EXPECT_EQ(b.form->Panel_ControllerNumber->currentData().toInt(), 10);
  EXPECT_EQ(b.Shown(0), "0");
  const int index = b.form->Panel_ControllerNumber->findData(91);
  Q_EMIT b.form->Panel_ControllerNumber->activated(index);
  EXPECT_EQ(b.overview.Controller(), 91);
  EXPECT_TRUE(b.form->Usual[3]->isChecked());
  EXPECT_FALSE(b.form->Usual[1]->isChecked());
}

TEST(ControllerForm, AChannelWithoutTheControllerGetsItByTheFirstMove) {
  FormBench b;
  b.Show();
  b.overview.SetController(1);
  EXPECT_EQ(b.Shown(0), "---");
  EXPECT_FALSE(b.form->Column(0).Fader().IsValued());
  QTest::keyClick(&b.form->Column(0).Fader(), Qt::Key_PageUp);
  EXPECT_EQ(b.Shown(0), "8");
  EXPECT_TRUE(b.form->Column(0).Fader().IsValued());
}

TEST(ControllerForm, ADoubleClickTypesAValueAsItIsRead) {
  FormBench b;
  b.Show();
  b.overview.SetController(10);
  ValueBox& value = b.form->Column(0).Value();
  QTest::mouseDClick(&value, Qt::LeftButton);
  auto* const field = value.findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  QTest::keyClicks(field, QStringLiteral("-10"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(b.Values(0, 10), "54");
  EXPECT_EQ(b.Shown(0), "−10");
}

TEST(ControllerForm, ADigitOnTheFaderBeginsToType) {
  FormBench b;
  b.Show();
  QTest::keyClicks(&b.form->Column(0).Fader(), QStringLiteral("5"));
  auto* const field = b.form->Column(0).Value().findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  QTest::keyClicks(field, QStringLiteral("5"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(b.Shown(0), "55");
}

TEST(ControllerForm, BehindATypedValueTheKeysAreTheFadersAgain) {
  FormBench b;
  b.Show();
  TCustomTrackBar& fader = b.form->Column(0).Fader();
  for (const auto end : {Qt::Key_Return, Qt::Key_Escape}) {
    fader.setFocus();
    QTest::keyClick(&fader, Qt::Key_5);
    QTest::keyClick(QApplication::focusWidget(), end);
    EXPECT_EQ(QApplication::focusWidget(), &fader);
  }
  EXPECT_EQ(b.Shown(0), "5");
}

TEST(ControllerForm, FollowsTheStrips) {
  FormBench b;
  b.Show();
  b.strips.Moves.TB_Volume00Change(0, 12);
  b.form->ShowChannel(0);
  EXPECT_EQ(b.Shown(0), "12");
}

TEST(ControllerForm, AsksForASongWhereThereIsNone) {
  FormBench b;
  b.Show(false);
  EXPECT_EQ(b.form->Status().Parts(), QStringList{QStringLiteral("Please open a midi file.")});
  EXPECT_EQ(b.Shown(0), "–");
  EXPECT_FALSE(b.form->Column(0).Fader().isEnabled());
}

TEST(ControllerForm, EscapeClosesIt) {
  FormBench b;
  b.Show();
  QTest::keyClick(&b.form->Column(0).Fader(), Qt::Key_Escape);
  EXPECT_FALSE(b.form->isVisible());
}

TEST(ControllerForm, CanBePainted) {
  {
    FormBench b;
    b.Show();
    EXPECT_TRUE(SaveScreenshot(*b.form, QStringLiteral("controllers_en")));
    b.overview.SetController(1);
    EXPECT_TRUE(SaveScreenshot(*b.form, QStringLiteral("controllers_without_values_en")));
  }
  {
    const InGerman german;
    SetTheme(ThemeKind::Light);
    FormBench b;
    b.Show();
    EXPECT_TRUE(SaveScreenshot(*b.form, QStringLiteral("controllers_de_light")));
    b.form.reset();
    SetScale(150);
    FormBench empty;
    empty.Show(false);
    EXPECT_TRUE(SaveScreenshot(*empty.form, QStringLiteral("controllers_empty_de_light_150")));
  }
  SetScale(100);
  SetTheme(ThemeKind::Dark);
}

}  // namespace

}  // namespace Sonarello
