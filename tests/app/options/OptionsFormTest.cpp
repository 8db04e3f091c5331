#include "app/options/OptionsForm.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QMenu>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <set>

#include "app/Application.h"
#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"
#include "app/options/ColourButton.h"
#include "app/options/OptionsBench.h"
#include "app/options/SegmentChoice.h"
#include "desk/MyRegistry.h"
#include "desk/SettingsKeys.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

class Form : public testing::Test {
 protected:
  void SetUp() override {
    form.SetInput(Demo());
    QObject::connect(&form, &TOptionsForm::OptionsChanged, &form,
                     [this](const TOptionChanges& changes) { told.push_back(changes); });
  }
  template <typename Widget>
  Widget& Editor(const char* key) {
    auto* widget = form.findChild<Widget*>(QString::fromLatin1(key));
    EXPECT_NE(widget, nullptr) << key;
    return *widget;
  }
  RoutesTable& Routes() { return *form.findChild<RoutesTable*>(); }

  MemoryRegistry store;
  TOptionsForm form{store};
  std::vector<TOptionChanges> told;
};

TEST_F(Form, HasItsPagesAndGroupsUnderTheSystemsNames) {
  for (const char* name : {"TI_Options", "TI_MIDI", "TI_MidiRouting", "TI_YamahaDSPs", "TI_MotifDSPs",
                           "TI_MotifAudioRouting", "TI_Integra7AudioRouting", "GB_General", "GB_Lyrics",
                           "GB_MIDIout", "GB_MIDIin"})
    EXPECT_NE(form.findChild<QWidget*>(QString::fromLatin1(name)), nullptr) << name;
  EXPECT_EQ(form.windowTitle(), QStringLiteral("Settings"));
  EXPECT_EQ(form.Page(), TOptionPage::Options);
  EXPECT_EQ(form.Hint(), QStringLiteral("The language changes with the next start."));
  form.ShowPage(TOptionPage::Midi);
  EXPECT_EQ(form.Hint(), QStringLiteral("The main instrument decides sound names and effects."));
}

TEST_F(Form, ShowsEveryOptionWithItsExplanation) {
  for (const TOptionField& field : OptionFields()) {
    QWidget& editor = Editor<QWidget>(std::string(field.Key).c_str());
    EXPECT_FALSE(editor.toolTip().isEmpty()) << field.Key;
    EXPECT_FALSE(editor.accessibleDescription().isEmpty()) << field.Key;
    const bool works = form.Edit().WhyDisabled(field.Key).empty();
    EXPECT_EQ(editor.isEnabled(), works) << field.Key;
  }
}

TEST_F(Form, EveryControlHasANameForScreenReaders) {
  ShowForTest(form);
  std::set<QString> names;
  for (int page = 0; page < OptionPageCount; ++page) {
    form.ShowPage(static_cast<TOptionPage>(page));
    names.clear();
    for (QWidget* widget : form.findChildren<QWidget*>()) {
      if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus ||
          widget->focusProxy() != nullptr)
        continue;
      const QAccessibleInterface* access = QAccessible::queryAccessibleInterface(widget);
      ASSERT_NE(access, nullptr);
      // On this system a combo box goes by its text, and by its label or description.
      const bool isCombo = qobject_cast<QComboBox*>(widget) != nullptr;
      const QString name = isCombo ? widget->accessibleName() : access->text(QAccessible::Name);
      EXPECT_TRUE(!isCombo || !access->relations(QAccessible::Label).isEmpty() ||
                  widget->accessibleDescription() == name)
          << name.toStdString();
      EXPECT_FALSE(name.isEmpty()) << widget->metaObject()->className() << " on page " << page;
      EXPECT_TRUE(names.insert(name).second) << name.toStdString() << " twice on page " << page;
    }
  }
}

TEST_F(Form, ShowsTheValuesThatItIsGiven) {
  EXPECT_EQ(Editor<QSpinBox>("MinNoteLength").value(), 10);
  EXPECT_EQ(Editor<QSpinBox>("VirtualSynthDelay").value(), 120);
  EXPECT_TRUE(Editor<QCheckBox>("SaveMidiRunningMode").isChecked());
  EXPECT_FALSE(Editor<QCheckBox>("RemoveCountIn").isChecked());
  EXPECT_EQ(Editor<QComboBox>("RecQuantize").currentText(), QStringLiteral("1/16"));
  EXPECT_EQ(Editor<QComboBox>("MidiInstrument00").currentText(), QStringLiteral("Yamaha Genos"));
  EXPECT_EQ(Editor<QComboBox>("MidiOutput00").currentText(), QStringLiteral("UM-ONE MIDI 1"));
  EXPECT_EQ(Editor<QComboBox>("MidiInputName").currentText(), QStringLiteral("UM-ONE MIDI 1"));
  EXPECT_EQ(Editor<SegmentChoice>("SkinIndex").Index(), 0);
  EXPECT_EQ(Editor<ColourButton>("LyricsFontColor").Colour(), 0xEFF3F7);
  EXPECT_TRUE(form.Edit().Changes().IsEmpty());
}

TEST_F(Form, EveryCheckWritesItsKeyOnOK) {
  for (const TOptionField& field : OptionFields()) {
    if (field.Control != TOptionControl::Check) continue;
    const std::string key(field.Key);
    MemoryRegistry own;
    TOptionsForm one(own);
    one.SetInput(Demo());
    auto* box = one.findChild<QCheckBox*>(QString::fromStdString(key));
    ASSERT_NE(box, nullptr) << key;
    const bool before = box->isChecked();
    box->toggle();
    EXPECT_FALSE(own.HasValue("", key)) << "before OK";
    one.Btn_OKClick();
    EXPECT_EQ(own.ReadString("", key, ""), before ? "0" : "1") << key;
    EXPECT_EQ(own.Values("").size(), 1U) << key;
  }
}

TEST_F(Form, EveryNumberWritesItsKeyOnOKAndKeepsToItsRange) {
  for (const TOptionField& field : OptionFields()) {
    if (field.Control != TOptionControl::Number) continue;
    const std::string key(field.Key);
    QSpinBox& box = Editor<QSpinBox>(key.c_str());
    EXPECT_EQ(box.minimum(), FindSettingsKey(key)->Min) << key;
    EXPECT_EQ(box.maximum(), FindSettingsKey(key)->Max) << key;
    box.setValue(box.maximum());
  }
  form.Btn_OKClick();
  for (const TOptionField& field : OptionFields())
    if (field.Control == TOptionControl::Number) {
      EXPECT_EQ(store.ReadInteger("", field.Key, -1), FindSettingsKey(field.Key)->Max) << field.Key;
    }
}

/// Chooses an item as a user does.
void Choose(QComboBox& combo, int index) {
  combo.setCurrentIndex(index);
  Q_EMIT combo.activated(index);
}

TEST_F(Form, EveryChoiceWritesTheValueOfItsItem) {
  for (const TOptionField& field : OptionFields()) {
    const std::string key(field.Key);
    const int last = static_cast<int>(field.Items.size()) - 1;
    if (field.Control == TOptionControl::Combo) Choose(Editor<QComboBox>(key.c_str()), last);
    if (field.Control == TOptionControl::Segments)
      Editor<SegmentChoice>(key.c_str()).Part(last)->click();
  }
  form.findChildren<QRadioButton*>().front()->click();
  form.Btn_OKClick();
  for (const TOptionField& field : OptionFields())
    if (!field.Items.empty() && field.Control != TOptionControl::Radio && field.Key != "RecMidiMode") {
      EXPECT_EQ(store.ReadString("", field.Key, ""), field.Items.back().Value) << field.Key;
    }
  EXPECT_EQ(store.ReadString("", "Lang", ""), "de");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(told[0].Has(TOptionChange::Theme));
  EXPECT_TRUE(told[0].Has(TOptionChange::Scale));
  EXPECT_TRUE(told[0].Has(TOptionChange::Language));
  EXPECT_FALSE(told[0].Has(TOptionChange::Routes));
}

TEST_F(Form, CancelEscapeAndCloseLeaveEverything) {
  for (int way = 0; way < 3; ++way) {
    form.ShowOptions(Demo());
    Editor<QCheckBox>("ConfirmTerminate").toggle();
    if (way == 0) form.Btn_CancelClick();
    if (way == 1) QTest::keyClick(&form, Qt::Key_Escape);
    if (way == 2) form.close();
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(store.Values("").empty());
    EXPECT_TRUE(told.empty());
  }
  form.ShowOptions(Demo());
  EXPECT_TRUE(Editor<QCheckBox>("ConfirmTerminate").isChecked());
}

TEST_F(Form, OKWithoutAChangeSaysNothing) {
  form.ShowOptions(Demo());
  QTest::keyClick(&form, Qt::Key_Return);
  EXPECT_FALSE(form.isVisible());
  EXPECT_TRUE(told.empty());
  EXPECT_TRUE(store.Values("").empty());
}

TEST_F(Form, AnotherMainInstrumentIsToldWithTheRoutes) {
  QComboBox& combo = Editor<QComboBox>("MidiInstrument00");
  EXPECT_EQ(combo.count(), 106);
  Choose(combo, combo.findText(QStringLiteral("Korg Pa700")));
  EXPECT_EQ(Routes().Instrument(0)->currentText(), QStringLiteral("Korg Pa700"));
  form.Btn_OKClick();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(told[0].Has(TOptionChange::MainInstrument));
  EXPECT_TRUE(told[0].Has(TOptionChange::Routes));
  EXPECT_EQ(store.ReadString("", "MidiInstrument00", ""), "Korg Pa700");
}

TEST_F(Form, RoutesAreMadeChangedAndTakenOut) {
  EXPECT_EQ(
      Routes().Warning->Text(),
      QStringLiteral(
          "“MIDISPORT 2x2 Port A” is not connected. The route is skipped until the output is back."));
  Choose(*Routes().Instrument(4), 3);
  EXPECT_FALSE(Routes().Output(4)->isHidden());
  EXPECT_EQ(form.Edit().Route(4).OutputName, "UM-ONE MIDI 1");
  Choose(*Routes().Output(4), 1);
  EXPECT_EQ(form.Edit().Route(4).OutputName, "UM-ONE MIDI 2");
  Routes().Remove(2)->click();
  EXPECT_TRUE(Routes().Warning->isHidden());
  EXPECT_EQ(form.Edit().Route(2).Instrument, "GM Soundset");
  EXPECT_TRUE(Routes().Remove(0)->isHidden());
  form.Btn_OKClick();
  EXPECT_EQ(store.ReadString("", "MidiOutput03", ""), "UM-ONE MIDI 2");
}

TEST_F(Form, SeveralOutputsAreSwitchedInTwoPlaces) {
  QCheckBox& box = Editor<QCheckBox>("MultiMidi");
  box.setChecked(false);
  EXPECT_FALSE(Routes().MultiMidi->isChecked());
  EXPECT_TRUE(Routes().Instrument(0)->isEnabled());
  EXPECT_FALSE(Routes().Instrument(1)->isEnabled());
  EXPECT_FALSE(Routes().Instrument(1)->toolTip().isEmpty());
  Routes().MultiMidi->setChecked(true);
  EXPECT_TRUE(box.isChecked());
  EXPECT_TRUE(Routes().Instrument(1)->isEnabled());
}

TEST_F(Form, ATableOfAHundredRoutesCanBeReachedByScrolling) {
  TOptionsInput input = Demo();
  for (std::size_t i = 4; i < input.Routes.size(); ++i)
    input.Routes[i] = {"GM Soundset", "UM-ONE MIDI 1"};
  form.ShowOptions(input);
  form.ShowPage(TOptionPage::MidiRouting);
  QCoreApplication::processEvents();
  auto& page = Editor<QScrollArea>("TI_MidiRouting");
  EXPECT_GT(page.verticalScrollBar()->maximum(), 3000);
  page.verticalScrollBar()->setValue(page.verticalScrollBar()->maximum());
  EXPECT_TRUE(
      Routes().Instrument(99)->visibleRegion().contains(Routes().Instrument(99)->rect().center()));
}

TEST_F(Form, WhatAFlagSwitchesFollowsItAtOnce) {
  QSpinBox& delta = Editor<QSpinBox>("YamahaDSPsSysexDelta");
  EXPECT_TRUE(delta.isEnabled());
  Editor<QCheckBox>("YamahaDSPsEnabled").setChecked(false);
  EXPECT_FALSE(delta.isEnabled());
  EXPECT_TRUE(delta.toolTip().contains(QStringLiteral("“Use Yamaha DSPs”")));
  Editor<QCheckBox>("RemoveCountIn").setChecked(true);
  EXPECT_TRUE(Editor<QCheckBox>("RemoveCountInRadical").isEnabled());
}

TEST_F(Form, TabReachesEveryControlOfAPageAndComesRound) {
  ShowForTest(form);
  form.ShowPage(TOptionPage::Midi);
  form.findChild<QListView*>()->setFocus();
  std::set<QWidget*> reached;
  for (int i = 0; i < 40; ++i) {
    reached.insert(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  for (const char* key : {"MidiInstrument00", "MidiOutput00", "VirtualSynthDelay", "GrabMidiDriver",
                          "MultiMidi", "MidiInputName"})
    EXPECT_TRUE(reached.contains(&Editor<QWidget>(key))) << key;
  EXPECT_EQ(reached.size(), 9U);  // and the list, Cancel, OK
}

TEST_F(Form, TellsAtTheBottomWhatTheControlWithTheKeyboardDoes) {
  ShowForTest(form);
  form.ShowPage(TOptionPage::Midi);
  Editor<QCheckBox>("GrabMidiDriver").setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(
      form.Hint().startsWith(QStringLiteral("The MIDI outputs are opened while the song stands")));
  form.findChild<QListView*>()->setFocus();
  EXPECT_EQ(form.Hint(), QStringLiteral("The main instrument decides sound names and effects."));
}

TEST_F(Form, TheWheelTurnsNothingThatHasNoFocus) {
  ShowForTest(form);
  form.ShowPage(TOptionPage::Midi);
  form.findChild<QListView*>()->setFocus();
  QSpinBox& delay = Editor<QSpinBox>("VirtualSynthDelay");
  const QPointF middle = delay.rect().center();
  QWheelEvent wheel(middle, delay.mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&delay, &wheel);
  EXPECT_EQ(delay.value(), 120);
  delay.setFocus();
  QApplication::sendEvent(&delay, &wheel);
  EXPECT_EQ(delay.value(), 121);
}

TEST_F(Form, GrowsWithTheWindowScale) {
  ShowForTest(form);
  const QSize before = form.size();
  SetScale(150);
  EXPECT_EQ(form.size(), before * 1.5);
  SetScale(100);
  EXPECT_EQ(form.size(), before);
}

TEST_F(Form, SpeaksGerman) {
  const InGerman german;
  TOptionsForm one(store);
  one.SetInput(Demo());
  EXPECT_EQ(one.windowTitle(), QStringLiteral("Einstellungen"));
  EXPECT_EQ(one.findChild<QCheckBox*>(QStringLiteral("AutoSysex"))->text(),
            QStringLiteral("Sysex automatisch anpassen"));
  EXPECT_EQ(one.Hint(), QStringLiteral("Die Sprache wechselt beim nächsten Start."));
}

TEST(SegmentChoice, IsChosenByArrowsAndTellsItOnce) {
  SegmentChoice choice({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
  choice.SetName(QStringLiteral("Number"));
  QSignalSpy spy(&choice, &SegmentChoice::Chosen);
  choice.SetIndex(1);
  EXPECT_EQ(spy.count(), 0);
  ShowForTest(choice);
  choice.Part(1)->setFocus();
  QTest::keyClick(choice.Part(1), Qt::Key_Right);
  EXPECT_EQ(choice.Index(), 2);
  EXPECT_EQ(spy.count(), 1);
  EXPECT_EQ(choice.Part(2)->accessibleName(), QStringLiteral("Number: Three"));
  choice.SetIndex(-1);
  EXPECT_EQ(choice.Index(), -1);
  EXPECT_EQ(spy.count(), 1);
  choice.Part(0)->click();
  EXPECT_EQ(choice.Index(), 0);
}

TEST(ColourButton, TakesAnotherColourOrTheThemes) {
  ColourButton button;
  button.SetColour(0x102030);
  QSignalSpy spy(&button, &ColourButton::ColourChosen);
  button.AskColour = [](const QColor& now) {
    EXPECT_EQ(now, QColor(0x10, 0x20, 0x30));
    return std::optional(QColor(1, 2, 3));
  };
  ShowForTest(button);
  button.click();
  button.findChild<QMenu*>()->actions()[1]->trigger();
  EXPECT_EQ(button.Colour(), 0x010203);
  button.findChild<QMenu*>()->actions()[0]->trigger();
  EXPECT_EQ(button.Colour(), -1);
  EXPECT_EQ(spy.count(), 2);
  button.AskColour = [](const QColor&) -> std::optional<QColor> { return std::nullopt; };
  button.findChild<QMenu*>()->actions()[1]->trigger();
  EXPECT_EQ(button.Colour(), -1);
  EXPECT_EQ(spy.count(), 2);
}

}  // namespace
}  // namespace Sonarello
