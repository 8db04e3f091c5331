// The controllers of the active channel, and its output.
#include "app/controls/Knob.h"
#include "app/desk/MainBench.h"
#include "app/panels/ControllerPanel.h"
#include "app/panels/RoutingButton.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Panels : public Main {
 protected:
  void BeginWithTwoRoutes() {
    store.WriteBool("", "MultiMidi", true);
    store.WriteString("", "MidiInstrument01", "Yamaha Genos");
    store.WriteString("", "MidiOutput01", "Port B");
    BeginWithSong();
  }
  /// Opens the menu of the outputs and uses it.
  bool InRoutes(const std::function<void(QMenu&)>& use, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    RoutingButton& button = *Of<ControllerPanel>().routing();
    return InMenu([&] { QTest::mouseClick(&button, Qt::LeftButton, keys); }, use);
  }
  static void ChooseRoute(QMenu& menu, const char* name) {
    auto* const action = menu.findChild<QAction*>(QLatin1String(name));
    ASSERT_NE(action, nullptr) << name;
    action->trigger();
  }
  [[nodiscard]] int RouteOf(int channel) {
    return TheSong().MidiOutIndex[static_cast<std::size_t>(channel)];
  }
};

TEST_F(Panels, EveryKnobOverwritesItsController) {
  BeginWithSong();
  ControllerPanel& panel = Of<ControllerPanel>();
  int value = 10;
  for (std::size_t n = 0; n < PanelControllers; ++n) {
    const auto number = static_cast<std::size_t>(ControllersOfPanel()[n].number);
    midi.Sent.clear();
    panel.knob(n)->setSpokenValue(++value);
    EXPECT_EQ(Ctrl(0, number).Value, value) << number;
    if (Ctrl(0, number).Event != nullptr) {
      EXPECT_EQ(Ctrl(0, number).Event->Value[1], value) << number;
    }
    EXPECT_EQ(panel.knob(n)->value(), value);
  }
  EXPECT_TRUE(TheDesk().IsModified());
  EXPECT_EQ(panel.ShownValue(0), SignedText(11 - 64)) << "the pan is shown from the middle";
}

TEST_F(Panels, AKnobTurnsByWheelKeysAndDoubleClick) {
  BeginWithSong();
  Knob& pan = *Of<ControllerPanel>().knob(0);
  ASSERT_EQ(pan.value(), 30);
  Turn(pan, -120);
  EXPECT_EQ(Ctrl(0, 10).Event->Value[1], 31);
  Key(pan, Qt::Key_Up);
  EXPECT_EQ(Ctrl(0, 10).Event->Value[1], 32);
  DoubleClick(pan, QRectF(pan.rect()).center());
  EXPECT_EQ(Ctrl(0, 10).Event->Value[1], 64);
}

TEST_F(Panels, TheKnobsFollowTheChannel) {
  BeginWithSong();
  ControllerPanel& panel = Of<ControllerPanel>();
  EXPECT_EQ(panel.knob(0)->value(), 30);
  TheDesk().strips.Desk.SetMidiChannel(1);
  EXPECT_EQ(panel.knob(0)->value(), 64);
  panel.knob(0)->setSpokenValue(99);
  EXPECT_EQ(Ctrl(0, 10).Value, 30);
  EXPECT_EQ(Ctrl(1, 10).Value, 99);
}

TEST_F(Panels, AControllerThatTheSongLacksIsHeardAndNotSaved) {
  BeginWithSong();
  TCtrl& attack = Ctrl(0, 73);
  attack.Event = nullptr;
  midi.Sent.clear();
  for (std::size_t n = 0; n < PanelControllers; ++n)
    if (ControllersOfPanel()[n].number == 73) Of<ControllerPanel>().knob(n)->setSpokenValue(5);
  EXPECT_EQ(attack.Value, 5);
  EXPECT_FALSE(TheDesk().IsModified());
}

TEST_F(Panels, OneOutputIsNoChoice) {
  BeginWithSong();
  RoutingButton& button = *Of<ControllerPanel>().routing();
  EXPECT_FALSE(button.choice());
  EXPECT_TRUE(button.toolTip().contains(QStringLiteral("There is only one output")));
  EXPECT_FALSE(InRoutes([](QMenu&) {}));
}

TEST_F(Panels, TheMenuOfTheOutputsIsToTheLetter) {
  BeginWithTwoRoutes();
  EXPECT_TRUE(InRoutes([&](QMenu& menu) {
    EXPECT_EQ(menu.objectName(), QStringLiteral("MidiOuts"));
    EXPECT_EQ(menu.actions()[0]->text(), QStringLiteral("Route MIDI channel 1 on ..."));
    EXPECT_FALSE(menu.actions()[0]->isEnabled());
    auto* const first = menu.findChild<QAction*>(QStringLiteral("MidiOuts_MI01"));
    auto* const second = menu.findChild<QAction*>(QStringLiteral("MidiOuts_MI02"));
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->text(), QStringLiteral("\"GM Soundset\" on MIDI output \"Port A\""));
    EXPECT_EQ(second->text(), QStringLiteral("\"Yamaha Genos\" on MIDI output \"Port B\""));
    EXPECT_TRUE(first->isChecked());
    EXPECT_FALSE(second->isChecked());
  }));
  const InGerman german;
  EXPECT_TRUE(InRoutes([&](QMenu& menu) {
    EXPECT_EQ(menu.actions()[0]->text(), QStringLiteral("Route Midikanal 1 auf ..."));
    EXPECT_EQ(menu.findChild<QAction*>(QStringLiteral("MidiOuts_MI02"))->text(),
              QStringLiteral("\"Yamaha Genos\" am MIDI-Ausgang \"Port B\""));
  }));
}

TEST_F(Panels, AnOutputIsChosenForTheActiveChannel) {
  BeginWithTwoRoutes();
  EXPECT_TRUE(InRoutes([&](QMenu& menu) { ChooseRoute(menu, "MidiOuts_MI02"); }));
  EXPECT_EQ(RouteOf(0), 1);
  EXPECT_EQ(RouteOf(1), 0);
  EXPECT_THAT(ToStd(Of<ControllerPanel>().routing()->text()), HasSubstr("Yamaha Genos"));
  EXPECT_TRUE(TheDesk().IsModified());
  midi.Sent.clear();
  Of<ControllerPanel>().knob(0)->setSpokenValue(77);
  EXPECT_THAT(midi.SentTo("Port B"), Contains(TestMidiDriver::TBytes{0xB0, 10, 77}));
  EXPECT_THAT(midi.SentTo("Port A"), IsEmpty());
}

TEST_F(Panels, CtrlChoosesAnOutputForAllChannels) {
  BeginWithTwoRoutes();
  EXPECT_TRUE(InRoutes([&](QMenu& menu) { ChooseRoute(menu, "MidiOuts_MI02"); }, Qt::ControlModifier));
  for (int c = 0; c < ChannelCount; ++c) EXPECT_EQ(RouteOf(c), 1) << c;
  // The next choice is for one channel again.
  EXPECT_TRUE(InRoutes([&](QMenu& menu) { ChooseRoute(menu, "MidiOuts_MI01"); }));
  EXPECT_EQ(RouteOf(0), 0);
  EXPECT_EQ(RouteOf(1), 1);
}

TEST_F(Panels, NoOutputIsChosenWhileTheSongPlays) {
  BeginWithTwoRoutes();
  ASSERT_TRUE(TheDesk().PlayButtonClick());
  EXPECT_FALSE(InRoutes([](QMenu&) {}));
  EXPECT_THAT(Told(), ElementsAre("Not allowed during playback."));
  const InGerman german;
  EXPECT_FALSE(InRoutes([](QMenu&) {}));
  EXPECT_EQ(Told().back(), "Bitte halten Sie die Wiedergabe an.");
  TheDesk().StopButtonClick();
  EXPECT_EQ(RouteOf(0), 0);
}

TEST_F(Panels, AnOutputThatGoesTakesItsChannelsBackToTheFirst) {
  BeginWithTwoRoutes();
  EXPECT_TRUE(InRoutes([&](QMenu& menu) { ChooseRoute(menu, "MidiOuts_MI02"); }));
  midi.Outputs = {"Port A"};
  TheDesk().BuildRoutes();
  EXPECT_EQ(RouteOf(0), 0);
  EXPECT_FALSE(Of<ControllerPanel>().routing()->choice());
}

TEST_F(Panels, AChoiceTakesTheBrowserOfTheOldInstrumentBack) {
  BeginWithTwoRoutes();
  ASSERT_TRUE(work->browser.Open(0));
  EXPECT_TRUE(InRoutes([&](QMenu& menu) { ChooseRoute(menu, "MidiOuts_MI02"); }));
  EXPECT_FALSE(work->browser.IsOpen());
}

}  // namespace
}  // namespace Sonarello
