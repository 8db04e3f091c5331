#include <QLineEdit>

#include "app/controls/GroupButton.h"
#include "app/controls/GroupColumn.h"
#include "app/controls/GroupFader.h"
#include "app/controls/LedButton.h"
#include "app/controls/NamePlate.h"
#include "app/controls/ParamSlider.h"
#include "app/controls/Stepper.h"
#include "app/controls/StripBank.h"
#include "app/controls/TrackBar.h"
#include "app/controls/ValueBox.h"
#include "app/desk/MainBench.h"
#include "app/desk/VelocityEditor.h"
#include "app/panels/StatusBar.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Strips : public Main {
 protected:
  /// Drags a fader by its cap to a value.
  void Drag(int channel, int to) {
    TCustomTrackBar& fader = Strip(channel).volume();
    Hold(channel);
    MoveTo(fader, CapAt(fader, to));
    Release(fader, CapAt(fader, to));
  }
  void Hold(int channel) {
    TCustomTrackBar& fader = Strip(channel).volume();
    Press(fader, CapAt(fader, fader.position()));
  }
  static QPointF CapAt(const TCustomTrackBar& fader, int value) {
    return {FaderPlan::Of(fader.size()).x, fader.y(value)};
  }
  void Press2(Stepper& stepper, const QRect& place) { Press(stepper, QRectF(place).center()); }
  [[nodiscard]] int Offset(int channel) {
    return TheSong().VelocityDelta[static_cast<std::size_t>(channel)];
  }
  [[nodiscard]] int Octave(int channel) {
    return TheSong().ManualTransposeArray[static_cast<std::size_t>(channel)];
  }
  /// Key and value of the first note of a track.
  [[nodiscard]] const TypMidiEvent& FirstNote(std::size_t track) {
    PtrMidiEvent e = TheSong().MidiTrack[track].TrkFirstEvent;
    while (e->Kind() != NoteOn) e = e->NextEvent;
    return *e;
  }
  StripBank& Bank() { return Of<StripRow>().bank(); }
};

TEST_F(Strips, ShowTheSong) {
  BeginWithSong();
  EXPECT_EQ(Strip(0).volume().position(), 100);
  EXPECT_EQ(Strip(1).volume().position(), 80);
  EXPECT_EQ(Strip(9).volume().position(), 90);
  EXPECT_TRUE(Strip(9).view().Drum);
  EXPECT_TRUE(Strip(0).view().Active);
  EXPECT_FALSE(Strip(3).view().HasNotes);
  EXPECT_FALSE(Strip(0).view().Name.isEmpty());
  EXPECT_FALSE(Strip(3).mute().isEnabled());
}

TEST_F(Strips, AFaderThatIsDraggedOverwritesItsEvent) {
  BeginWithSong();
  const PtrMidiEvent event = Ctrl(0, 7).Event;
  ASSERT_NE(event, nullptr);
  Drag(0, 77);
  EXPECT_EQ(event->Value[1], 77);
  EXPECT_EQ(Ctrl(0, 7).Value, 77);
  EXPECT_EQ(Strip(0).valueBox().text(), QStringLiteral("77"));
  EXPECT_TRUE(form->isWindowModified());
  EXPECT_TRUE(TheDesk().AutoBackupChanged);
  EXPECT_THAT(midi.SentTo("Port A"), Contains(TestMidiDriver::TBytes{0xB0, 7, 77}));
}

TEST_F(Strips, AFaderInMidSongOverwritesTheLastEventPassed) {
  BeginWithSong();
  const PtrMidiEvent first = Ctrl(0, 7).Event;
  TheDesk().Wind(9000);
  const PtrMidiEvent later = Ctrl(0, 7).Event;
  ASSERT_NE(first, later);
  Drag(0, 64);
  EXPECT_EQ(first->Value[1], 100);
  EXPECT_EQ(later->Value[1], 64);
}

TEST_F(Strips, AFaderOnAPlaceholderMakesItReal) {
  BeginWithSong();
  const PtrMidiEvent event = Ctrl(2, 7).Event;
  ASSERT_NE(event, nullptr);
  ASSERT_EQ(event->DLength, 0);
  Drag(2, 55);
  EXPECT_EQ(event->DLength, 3);
  EXPECT_EQ(event->Value[1], 55);
  Choose("MMF_SaveMidifile");
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_EQ(Ctrl(2, 7).Value, 55);
}

TEST_F(Strips, AMoveThatCannotBeSentWaitsForTheNextStart) {
  store.WriteBool("", "GrabMidiDriver", false);
  BeginWithSong();
  midi.Sent.clear();
  Drag(0, 77);
  EXPECT_THAT(midi.Sent, IsEmpty());
  EXPECT_EQ(TheDesk().realtime.Realtime[0].Volume, 77);
  ASSERT_TRUE(TheDesk().PlayButtonClick());
  TheDesk().StopButtonClick();
  EXPECT_THAT(midi.SentTo("Port A"), Contains(TestMidiDriver::TBytes{0xB0, 7, 77}));
}

TEST_F(Strips, AnOutputThatDoesNotOpenIsToldOfOnceAndTheSongChanges) {
  BeginWithSong();
  midi.FailOpen = TDriverError(BadDeviceId, "the cable is out");
  Drag(1, 11);
  Drag(1, 12);
  EXPECT_EQ(Ctrl(1, 7).Event->Value[1], 12);
  EXPECT_LE(told.size(), 2U);
}

TEST_F(Strips, TheWheelMovesAFaderByOneAndStopsAtItsEnds) {
  BeginWithSong();
  Turn(Strip(0).volume(), -120);
  EXPECT_EQ(Ctrl(0, 7).Value, 101);
  Turn(Strip(0).volume(), 240);
  EXPECT_EQ(Ctrl(0, 7).Value, 99);
  Strip(0).volume().setSpokenValue(0);
  Turn(Strip(0).volume(), 120);
  EXPECT_EQ(Ctrl(0, 7).Value, 0);
  Strip(0).volume().setSpokenValue(127);
  Turn(Strip(0).volume(), -120);
  EXPECT_EQ(Ctrl(0, 7).Value, 127);
}

TEST_F(Strips, AValueIsTyped) {
  BeginWithSong();
  ValueBox& box = Strip(0).valueBox();
  DoubleClick(box, QRectF(box.rect()).center());
  auto* const field = box.findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  field->setText(QStringLiteral("42"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(Ctrl(0, 7).Event->Value[1], 42);
  EXPECT_EQ(Strip(0).volume().position(), 42);
}

TEST_F(Strips, KeysMoveTheActiveChannel) {
  BeginWithSong();
  Key(Bank(), Qt::Key_Up);
  EXPECT_EQ(Ctrl(0, 7).Value, 101);
  Key(Bank(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(Ctrl(0, 7).Value, 93);
  Key(Bank(), Qt::Key_Right);
  EXPECT_EQ(TheSong().ActiveMidiIndex, 1);
  EXPECT_TRUE(Strip(1).view().Active);
  EXPECT_FALSE(Strip(0).view().Active);
  Key(Bank(), Qt::Key_M);
  EXPECT_TRUE(Data(1).Mute);
  Key(Bank(), Qt::Key_M, Qt::ShiftModifier);
  EXPECT_FALSE(Data(1).Mute);
  Key(Bank(), Qt::Key_S);
  EXPECT_TRUE(Data(1).Solo);
  Key(Bank(), Qt::Key_S, Qt::ShiftModifier);
  EXPECT_FALSE(Data(1).Solo);
  Key(Bank(), Qt::Key_Plus);
  EXPECT_EQ(Offset(1), 1);
  Key(Bank(), Qt::Key_Minus);
  EXPECT_EQ(Offset(1), 0);
  Key(Bank(), Qt::Key_Up, Qt::ControlModifier);
  EXPECT_EQ(Octave(1), 1);
  QTest::keyClick(&Bank(), Qt::Key_6);
  auto* const field = Strip(1).valueBox().findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  QTest::keyClick(field, Qt::Key_5);
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(Ctrl(1, 7).Value, 65);
}

TEST_F(Strips, EveryTouchSelectsItsChannel) {
  BeginWithSong();
  const auto selected = [&] { return TheSong().ActiveMidiIndex; };
  Hold(1);
  Release(Strip(1).volume(), {});
  EXPECT_EQ(selected(), 1);
  Click(Strip(2).mute());
  EXPECT_EQ(selected(), 2);
  Click(Strip(9).solo());
  EXPECT_EQ(selected(), 9);
  Press2(Strip(0).octave(), Strip(0).octave().plusRect());
  Release(Strip(0).octave(), {});
  EXPECT_EQ(selected(), 0);
  Click(Strip(7), QPointF(3, 3));
  EXPECT_EQ(selected(), 7);
}

TEST_F(Strips, MuteSilencesAndCtrlEndsAllMutes) {
  BeginWithSong();
  ASSERT_TRUE(TheDesk().PlayButtonClick());
  Click(Strip(0).mute());
  TheDesk().StopButtonClick();
  EXPECT_TRUE(Data(0).Mute);
  EXPECT_EQ(Strip(0).mute().state(), LedState::Lit);
  EXPECT_THAT(midi.SentTo("Port A"), testing::IsSupersetOf({TestMidiDriver::TBytes{0xB0, 120, 0},
                                                            TestMidiDriver::TBytes{0xB0, 123, 0}}));
  Click(Strip(1).mute());
  Click(Strip(1).mute(), QRectF(Strip(1).mute().rect()).center(), Qt::LeftButton, Qt::ControlModifier);
  for (int c = 0; c < ChannelCount; ++c) EXPECT_FALSE(Data(c).Mute) << c;
  EXPECT_EQ(Strip(0).mute().state(), LedState::Off);
}

TEST_F(Strips, CtrlOnMuteWithNothingMutedChangesNothing) {
  BeginWithSong();
  Click(Strip(0).mute(), QRectF(Strip(0).mute().rect()).center(), Qt::LeftButton, Qt::ControlModifier);
  for (int c = 0; c < ChannelCount; ++c) EXPECT_FALSE(Data(c).Mute) << c;
}

TEST_F(Strips, SoloRemembersTheMutes) {
  BeginWithSong();
  Click(Strip(1).mute());
  Click(Strip(0).solo());
  EXPECT_TRUE(Data(0).Solo);
  EXPECT_FALSE(Data(0).Mute);
  EXPECT_TRUE(Data(2).Mute);
  EXPECT_EQ(Strip(0).solo().state(), LedState::Lit);
  EXPECT_EQ(Strip(2).mute().state(), LedState::Implied);
  EXPECT_EQ(Strip(1).mute().state(), LedState::Lit);
  Click(Strip(2).solo());
  EXPECT_FALSE(Data(2).Mute);
  Click(Strip(0).solo());
  EXPECT_TRUE(Data(0).Mute);
  Click(Strip(2).solo());
  EXPECT_TRUE(Data(1).Mute) << "as it was in front of the first solo";
  EXPECT_FALSE(Data(0).Mute);
  EXPECT_FALSE(Data(2).Mute);
}

TEST_F(Strips, CtrlOnSoloAndTheGroupColumnEndAllSolosAndMutes) {
  BeginWithSong();
  Click(Strip(1).mute());
  Click(Strip(0).solo());
  Click(Strip(0).solo(), QRectF(Strip(0).solo().rect()).center(), Qt::LeftButton, Qt::ControlModifier);
  for (int c = 0; c < ChannelCount; ++c) {
    EXPECT_FALSE(Data(c).Solo) << c;
    EXPECT_FALSE(Data(c).Mute) << c;
  }
  Click(Strip(1).solo());
  Click(Of<StripRow>().group().allSoloOffButton());
  EXPECT_FALSE(Data(1).Solo);
  Click(Strip(1).mute());
  Click(Of<StripRow>().group().allMuteOffButton());
  EXPECT_FALSE(Data(1).Mute);
}

TEST_F(Strips, VelocityRepeatsWhileItIsHeld) {
  BeginWithSong();
  Stepper& velocity = Strip(0).velocity();
  Press2(velocity, velocity.plusRect());
  EXPECT_EQ(Offset(0), 1);
  auto* const timer = form->findChild<QTimer*>(QStringLiteral("VelocityTimer"));
  ASSERT_NE(timer, nullptr);
  EXPECT_EQ(timer->interval(), 700);
  EXPECT_TRUE(Fire("VelocityTimer"));
  EXPECT_EQ(Offset(0), 2);
  EXPECT_EQ(timer->interval(), 150);
  EXPECT_TRUE(Fire("VelocityTimer"));
  EXPECT_EQ(Offset(0), 3);
  EXPECT_EQ(velocity.value(), 3);
  Release(velocity, QRectF(velocity.plusRect()).center());
  EXPECT_FALSE(timer->isActive());
  EXPECT_EQ(Offset(0), 3);
  EXPECT_FALSE(TheDesk().IsModified()) << "it counts when notes are sent, not in the song";
}

TEST_F(Strips, VelocityStopsAtItsEndsAndTheMouseButtonsOnTheFigureTellTheWay) {
  BeginWithSong();
  TheDesk().strips.Velocities.SetOffset(0, -126);
  Stepper& velocity = Strip(0).velocity();
  const QPointF middle = QRectF(velocity.rect()).center();
  Press(velocity, middle);
  EXPECT_EQ(Offset(0), -127);
  Fire("VelocityTimer");
  EXPECT_EQ(Offset(0), -127);
  EXPECT_FALSE(Fire("VelocityTimer"));
  Release(velocity, middle);
  Press(velocity, middle, Qt::RightButton);
  Release(velocity, middle, Qt::RightButton);
  EXPECT_EQ(Offset(0), -126);
}

TEST_F(Strips, CtrlOnVelocityOpensTheRange) {
  BeginWithSong();
  Stepper& velocity = Strip(0).velocity();
  Press(velocity, QRectF(velocity.rect()).center(), Qt::LeftButton, Qt::ControlModifier);
  VelocityEditor& editor = Of<VelocityEditor>();
  ASSERT_TRUE(editor.isVisible());
  EXPECT_EQ(Offset(0), 0);
  auto& low = *editor.findChild<ParamSlider*>(QStringLiteral("VelocityRangeSliderMin"));
  auto& high = *editor.findChild<ParamSlider*>(QStringLiteral("VelocityRangeSliderMax"));
  EXPECT_EQ(low.value(), 60);
  EXPECT_EQ(high.value(), 95);
  low.setSpokenValue(20);
  high.setSpokenValue(120);
  const TNotesVelocities& range = TheSong().NotesVelocities[0];
  EXPECT_TRUE(range.Mapped);
  EXPECT_EQ(range.NewMinimum, 20);
  EXPECT_EQ(range.NewMaximum, 120);
  editor.findChild<QAbstractButton*>(QStringLiteral("Btn_ResetVelocityRange"))->click();
  EXPECT_FALSE(TheSong().NotesVelocities[0].Mapped);
  EXPECT_EQ(low.value(), 60);
  editor.findChild<QAbstractButton*>(QStringLiteral("Btn_CloseVelocityEditor"))->click();
  EXPECT_FALSE(editor.isVisible());
  EXPECT_EQ(TheDesk().strips.Velocities.EditedChannel(), -1);
}

TEST_F(Strips, OctavesGoUpAndDownByOne) {
  BeginWithSong();
  Stepper& octave = Strip(0).octave();
  const int key = FirstNote(1).Value[0];
  for (int i = 0; i < 3; ++i) {
    Press2(octave, octave.plusRect());
    Release(octave, QRectF(octave.plusRect()).center());
  }
  EXPECT_EQ(Octave(0), 1);
  EXPECT_EQ(FirstNote(1).Value[0], key + 12);
  EXPECT_EQ(octave.value(), 1);
  EXPECT_TRUE(TheDesk().IsModified());
  for (int i = 0; i < 3; ++i) {
    Press2(octave, octave.minusRect());
    Release(octave, QRectF(octave.minusRect()).center());
  }
  EXPECT_EQ(Octave(0), -1);
  EXPECT_EQ(FirstNote(1).Value[0], key - 12);
}

TEST_F(Strips, TheGroupFaderKeepsTheProportion) {
  BeginWithSong();
  GroupFader& fader = Of<StripRow>().group().fader();
  const QPointF middle = QRectF(fader.rect()).center();
  Press(fader, middle);
  MoveTo(fader, middle + QPointF(0, fader.height() / 8.0));
  const int position = fader.position();
  ASSERT_LT(position, 0);
  const double share = (100.0 + position) / 100;
  EXPECT_NEAR(Ctrl(0, 7).Value, 100 * share, 1);
  EXPECT_NEAR(Ctrl(1, 7).Value, 80 * share, 1);
  EXPECT_NEAR(Ctrl(9, 7).Value, 90 * share, 1);
  MoveTo(fader, middle + QPointF(0, fader.height()));
  EXPECT_EQ(Ctrl(1, 7).Value, 1) << "never lower";
  MoveTo(fader, middle);
  EXPECT_EQ(Ctrl(1, 7).Value, 80) << "the way back ends where it began";
  Release(fader, middle);
  EXPECT_EQ(Ctrl(1, 7).Event->Value[1], 80);
}

TEST_F(Strips, WithTheLinkTheActiveFaderTakesTheOthersAlong) {
  BeginWithSong();
  GroupButton& link = Of<StripRow>().group().link();
  Click(link);
  EXPECT_TRUE(link.isChecked());
  EXPECT_TRUE(TheDesk().strips.Moves.MasterVolume());
  Drag(0, 50);
  EXPECT_EQ(Ctrl(0, 7).Value, 50);
  EXPECT_EQ(Ctrl(1, 7).Event->Value[1], 40);
  EXPECT_EQ(Ctrl(9, 7).Event->Value[1], 45);
  EXPECT_EQ(Strip(1).volume().position(), 40);
  Drag(0, 0);
  EXPECT_EQ(Ctrl(1, 7).Value, 1);
  Click(link);
  Drag(0, 60);
  EXPECT_EQ(Ctrl(1, 7).Value, 1);
}

TEST_F(Strips, RecordTellsThatItIsNotBuilt) {
  BeginWithSong();
  const QString reason = QStringLiteral("Recording is not part of this version yet");
  EXPECT_FALSE(Strip(0).record().isEnabled());
  EXPECT_TRUE(Strip(0).record().toolTip().contains(reason));
  Click(Strip(0).record());
  Key(Bank(), Qt::Key_R);
  EXPECT_TRUE(Of<StatusBar>().LeftParts().contains(reason));
  EXPECT_FALSE(Data(0).Rec);
}

TEST_F(Strips, TheChannelNumberRedirects) {
  BeginWithSong();
  const std::string before = BytesOf(SongFile());
  QStringList names;
  const auto choose = [&](const char* item) {
    return InMenu([&] { Click(Strip(0), QPointF(12, 8), Qt::RightButton); },
                  [&](QMenu& menu) {
                    EXPECT_EQ(menu.objectName(), QStringLiteral("PopupMenu_Channels"));
                    names.clear();
                    for (const QAction* action : menu.actions())
                      if (!action->objectName().isEmpty()) names << action->objectName();
                    EXPECT_FALSE(menu.actions()[0]->isEnabled());
                    auto* const action = menu.findChild<QAction*>(QLatin1String(item));
                    ASSERT_NE(action, nullptr);
                    action->trigger();
                  });
  };
  ASSERT_TRUE(choose("PM_MidiChannel04"));
  EXPECT_EQ(names.size(), 15);
  EXPECT_FALSE(names.contains(QStringLiteral("PM_MidiChannel09")));
  EXPECT_THAT(told, IsEmpty()) << "channel 5 has no notes";
  EXPECT_EQ(Data(0).MidiChannel, 4);
  EXPECT_EQ(Data(4).MidiChannel, 0);
  EXPECT_TRUE(Strip(0).view().Redirected());
  EXPECT_TRUE(Strip(4).view().Redirected());
  EXPECT_EQ(TheSong().ActiveMidiChannel, 4);
  EXPECT_TRUE(TheDesk().IsModified());
  ASSERT_TRUE(choose("PM_MidiChannel00"));
  EXPECT_FALSE(Strip(0).view().Redirected());
}

TEST_F(Strips, ARedirectionOntoAChannelWithNotesAsks) {
  BeginWithSong();
  const auto choose = [&] {
    InMenu(
        [&] { Click(Strip(0), QPointF(12, 8), Qt::RightButton); },
        [&](QMenu& menu) { menu.findChild<QAction*>(QStringLiteral("PM_MidiChannel01"))->trigger(); });
  };
  answers = {false};
  choose();
  EXPECT_THAT(Told(),
              ElementsAre("There are already midi events on midi channel 2!\nShould the midi events "
                          "from midi channel 1 be redirected on midi channel 2?"));
  EXPECT_EQ(Data(0).MidiChannel, 0);
  const InGerman german;
  choose();
  EXPECT_EQ(Told().back(),
            "Es befinden sich bereits Daten auf Midikanal 2!\nSollen die Daten vom Midikanal 1 "
            "auf Midikanal 2 umgeleitet werden?");
  EXPECT_EQ(Data(0).MidiChannel, 1);
  EXPECT_EQ(Data(1).MidiChannel, 0);
}

TEST_F(Strips, WithoutASongNothingHappens) {
  Begin();
  for (int c = 0; c < ChannelCount; ++c) {
    Turn(Strip(c).volume(), 120);
    Click(Strip(c).mute());
    Click(Strip(c).solo());
    Click(Strip(c), QPointF(12, 8), Qt::RightButton);
    Click(Strip(c).namePlate());
  }
  Key(Bank(), Qt::Key_M);
  EXPECT_FALSE(TheDesk().IsModified());
  EXPECT_FALSE(work->browser.IsOpen());
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

}  // namespace
}  // namespace Sonarello
