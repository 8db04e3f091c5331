#include <QLineEdit>

#include "app/desk/MainBench.h"
#include "app/panels/LoopPanel.h"
#include "app/panels/PositionDisplay.h"
#include "app/panels/SongSlider.h"
#include "app/panels/StatusBar.h"
#include "app/panels/TempoPanel.h"
#include "app/panels/TransportPanel.h"
#include "app/panels/TransposePanel.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::IsEmpty;

constexpr int Bar = 2000;  ///< ms

class Transport : public Main {
 protected:
  QAbstractButton& Of5(const char* name) { return Button(Of<TransportPanel>(), name); }
  /// The clock goes on, and the player with it.
  void PlayOn(int milliseconds) {
    const std::int32_t until = Now() + milliseconds;
    clock.Advance(milliseconds);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Now() >= until || !TheDesk().IsPlaying(); }));
  }
  LoopPanel& OpenLoop() {
    Q_EMIT Of<TransportPanel>().loopPanelWanted();
    Strike(Of<LoopPanel>());
    return Of<LoopPanel>();
  }
  void Type(LoopEnd which, const char* text) {
    QLineEdit* const field = Of<LoopPanel>().field(which);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QString::fromLatin1(text));
    QTest::keyClick(field, Qt::Key_Return);
  }
  [[nodiscard]] std::int32_t LoopStart() { return TheDesk().Player().LoopStart; }
  [[nodiscard]] std::int32_t LoopEndTime() { return TheDesk().Player().LoopEnd; }
};

TEST_F(Transport, WithoutASongNothingWorksAndEverythingTellsWhy) {
  Begin();
  for (const char* name : {"Rewind", "Play", "Stop", "Record", "Loop"}) {
    EXPECT_FALSE(Of5(name).isEnabled()) << name;
    EXPECT_TRUE(Of5(name).toolTip().contains(QStringLiteral("No song is open"))) << name;
  }
}

TEST_F(Transport, PlaysPausesAndGoesToTheStart) {
  BeginWithSong();
  Of5("Play").click();
  EXPECT_TRUE(TheDesk().IsPlaying());
  EXPECT_TRUE(Of5("Play").isChecked());
  PlayOn(3000);
  Fire("DisplayTimer");
  EXPECT_EQ(Of<PositionDisplay>().measure(), 2);
  EXPECT_EQ(Of<PositionDisplay>().beat(), 3);
  EXPECT_GE(Of<SongSlider>().position(), 3000);
  Of5("Stop").click();
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_FALSE(Of5("Play").isChecked());
  EXPECT_GE(Now(), 3000) << "the first stop is a pause";
  EXPECT_THAT(ToStd(Of<StatusBar>().LeftParts().join(QLatin1Char('|'))), testing::HasSubstr("Stop"));
  Of5("Stop").click();
  EXPECT_EQ(Now(), 0);
  EXPECT_EQ(Of<PositionDisplay>().measureText(), QStringLiteral("1:01"));
  EXPECT_THAT(midi.SentTo("Port A"), Contains(TestMidiDriver::TBytes{0x90, 60, 60}));
}

TEST_F(Transport, PlayWhilePlayingIsAPause) {
  BeginWithSong();
  Of5("Play").click();
  PlayOn(1000);
  Of5("Play").click();
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_GE(Now(), 1000);
}

TEST_F(Transport, ASecondStopBringsTheFirstValuesBack) {
  BeginWithSong();
  Of<SongSlider>().SeekTo(5 * Bar);
  EXPECT_EQ(Strip(0).volume().position(), 50);
  Of5("Stop").click();
  EXPECT_EQ(Now(), 0);
  EXPECT_EQ(Ctrl(0, 7).Value, 100);
  EXPECT_EQ(Strip(0).volume().position(), 100);
}

TEST_F(Transport, RewindGoesToTheStartAndPlaysOn) {
  BeginWithSong();
  Of<SongSlider>().SeekTo(3 * Bar);
  Of5("Rewind").click();
  EXPECT_EQ(Now(), 0);
  EXPECT_FALSE(TheDesk().IsPlaying());
  Of<SongSlider>().SeekTo(3 * Bar);
  Of5("Play").click();
  Of5("Rewind").click();
  EXPECT_TRUE(TheDesk().IsPlaying());
  EXPECT_LT(Now(), Bar);
}

TEST_F(Transport, RewindThatIsHeldWindsBackUntilItIsLetGo) {
  BeginWithSong();
  Of<SongSlider>().SeekTo(3 * Bar);
  QAbstractButton& rewind = Of5("Rewind");
  Press(rewind, QRectF(rewind.rect()).center());
  Strike(Of<TransportPanel>());
  EXPECT_EQ(Now(), 3 * Bar - 500);
  for (int i = 0; i < 3; ++i) Strike(Of<TransportPanel>());
  EXPECT_EQ(Now(), 3 * Bar - 2000);
  Release(rewind, QRectF(rewind.rect()).center());
  EXPECT_EQ(RunningTimer(Of<TransportPanel>()), nullptr);
  EXPECT_EQ(Now(), 3 * Bar - 2000) << "a hold is no click";
  EXPECT_EQ(Of<SongSlider>().position(), 3 * Bar - 2000);
}

TEST_F(Transport, WindingStopsAtTheStartAndPlaysOnIfItPlayed) {
  BeginWithSong();
  Of<SongSlider>().SeekTo(700);
  Of5("Play").click();
  QAbstractButton& rewind = Of5("Rewind");
  Press(rewind, QRectF(rewind.rect()).center());
  for (int i = 0; i < 5; ++i) Strike(Of<TransportPanel>());
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_EQ(Now(), 0);
  Release(rewind, QRectF(rewind.rect()).center());
  EXPECT_TRUE(TheDesk().IsPlaying());
}

TEST_F(Transport, RecordTellsThatItIsNotBuilt) {
  BeginWithSong();
  EXPECT_FALSE(Of5("Record").isEnabled());
  EXPECT_TRUE(
      Of5("Record").toolTip().contains(QStringLiteral("Recording is not part of this version yet")));
}

TEST_F(Transport, TheLoopTakesTheWholeSongAndGoes) {
  BeginWithSong();
  Of5("Loop").click();
  EXPECT_TRUE(TheDesk().Player().Looping);
  EXPECT_TRUE(Of5("Loop").isChecked());
  EXPECT_EQ(LoopStart(), 0);
  EXPECT_EQ(LoopEndTime(), TheSong().SongLength);
  ASSERT_TRUE(Of<SongSlider>().loop().has_value());
  EXPECT_EQ(Of<SongSlider>().loop()->end, TheSong().SongLength);
  Of5("Loop").click();
  EXPECT_FALSE(TheDesk().Player().Looping);
  EXPECT_FALSE(Of5("Loop").isChecked());
  EXPECT_FALSE(Of<SongSlider>().loop().has_value());
}

TEST_F(Transport, ALoopRepeats) {
  BeginWithSong();
  ASSERT_TRUE(TheDesk().SetLoop(0, Bar));
  Of5("Play").click();
  clock.Advance(Bar - 5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Now() < Bar / 2 && TheDesk().IsPlaying(); }));
  EXPECT_TRUE(TheDesk().IsPlaying());
}

TEST_F(Transport, TheRightButtonOpensThePanelOfTheLoop) {
  BeginWithSong();
  EXPECT_FALSE(Of<LoopPanel>().open());
  EXPECT_TRUE(OpenLoop().open());
  Button(Of<LoopPanel>(), "Close").click();
  EXPECT_FALSE(Of<LoopPanel>().open());
}

TEST_F(Transport, ThePanelTakesTypedEnds) {
  BeginWithSong();
  OpenLoop();
  Type(LoopEnd::Start, "3");
  EXPECT_TRUE(TheDesk().Player().Looping);
  EXPECT_EQ(LoopStart(), 2 * Bar);
  EXPECT_EQ(LoopEndTime(), TheSong().SongLength);
  Type(LoopEnd::End, "5:03");
  EXPECT_EQ(LoopEndTime(), 4 * Bar + Bar / 2);
  EXPECT_EQ(Of<LoopPanel>().field(LoopEnd::Start)->text(), QStringLiteral("3:01"));
  EXPECT_EQ(Of<LoopPanel>().field(LoopEnd::End)->text(), QStringLiteral("5:03"));
  EXPECT_EQ(Of<SongSlider>().loop(), (LoopSpan{2 * Bar, 4 * Bar + Bar / 2}));
  EXPECT_THAT(ToStd(Of<StatusBar>().LeftParts().join(QLatin1Char('|')) +
                    Of<StatusBar>().RightParts().join(QLatin1Char('|'))),
              testing::HasSubstr("3:01 – 5:03"));
}

TEST_F(Transport, ThePanelRefusesPlacesThatAreNone) {
  BeginWithSong();
  OpenLoop();
  Type(LoopEnd::Start, "3");
  for (const char* text : {"99", "0", "rubbish", "-1", "3:0"}) {
    Type(LoopEnd::Start, text);
    EXPECT_EQ(LoopStart(), 2 * Bar) << text;
    EXPECT_EQ(Of<LoopPanel>().field(LoopEnd::Start)->text(), QStringLiteral("3:01")) << text;
    EXPECT_EQ(Of<LoopPanel>().field(LoopEnd::Start)->accessibleDescription(),
              QStringLiteral("The song has no such place"))
        << text;
  }
  Type(LoopEnd::End, "2");
  EXPECT_EQ(LoopEndTime(), TheSong().SongLength);
  EXPECT_EQ(Of<LoopPanel>().field(LoopEnd::End)->accessibleDescription(),
            QStringLiteral("The end lies in front of the start"));
}

TEST_F(Transport, AStartBehindTheEndReachesToTheEndOfTheSong) {
  BeginWithSong();
  OpenLoop();
  Type(LoopEnd::Start, "2");
  Type(LoopEnd::End, "3");
  Type(LoopEnd::Start, "6");
  EXPECT_EQ(LoopStart(), 5 * Bar);
  EXPECT_EQ(LoopEndTime(), TheSong().SongLength);
}

TEST_F(Transport, EndsMoveByBarsAndToWhereTheSongStands) {
  BeginWithSong();
  OpenLoop();
  Type(LoopEnd::Start, "3");
  Type(LoopEnd::End, "5");
  QTest::keyClick(Of<LoopPanel>().field(LoopEnd::Start), Qt::Key_Down);
  EXPECT_EQ(LoopStart(), Bar);
  QTest::keyClick(Of<LoopPanel>().field(LoopEnd::End), Qt::Key_Up);
  EXPECT_EQ(LoopEndTime(), 5 * Bar);
  Of<SongSlider>().SeekTo(3 * Bar);
  Button(Of<LoopPanel>(), "Start of the loop here").click();
  EXPECT_EQ(LoopStart(), 3 * Bar);
  Of<SongSlider>().SeekTo(4 * Bar);
  Button(Of<LoopPanel>(), "End of the loop here").click();
  EXPECT_EQ(LoopEndTime(), 4 * Bar);
  Button(Of<LoopPanel>(), "Loop").click();
  EXPECT_FALSE(TheDesk().Player().Looping);
  Button(Of<LoopPanel>(), "Loop").click();
  EXPECT_EQ(LoopStart(), 3 * Bar) << "the range stays while the loop is off";
  EXPECT_EQ(LoopEndTime(), 4 * Bar);
}

TEST_F(Transport, FlagsOnTheSliderMoveTheLoop) {
  BeginWithSong();
  Of5("Loop").click();
  Q_EMIT Of<SongSlider>().loopMoved(Bar, 3 * Bar);
  EXPECT_EQ(LoopStart(), Bar);
  EXPECT_EQ(LoopEndTime(), 3 * Bar);
}

TEST_F(Transport, AnotherSongHasNoLoop) {
  BeginWithSong();
  OpenLoop();
  Type(LoopEnd::Start, "3");
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_FALSE(TheDesk().Player().Looping);
  EXPECT_TRUE(Of<LoopPanel>().field(LoopEnd::Start)->text().isEmpty());
  Of5("Loop").click();
  EXPECT_EQ(LoopStart(), 0);
}

TEST_F(Transport, TheSliderChasesWhileTheSongStands) {
  BeginWithSong();
  SongSlider& slider = Of<SongSlider>();
  const double y = slider.height() / 2.0;
  Press(slider, QPointF(slider.XOf(5 * Bar), y));
  MoveTo(slider, QPointF(slider.XOf(6 * Bar), y));
  EXPECT_NEAR(Now(), 6 * Bar, 30);
  EXPECT_EQ(Of<PositionDisplay>().measure(), TheDesk().strips.Position.At(Now()).Measure);
  Release(slider, QPointF(slider.XOf(6 * Bar), y));
  EXPECT_EQ(Ctrl(0, 7).Value, 50);
  EXPECT_EQ(Strip(0).volume().position(), 50);
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_EQ(TheDesk().realtime.Realtime[0].Ctrl[7], 50) << "waits for the next start";
}

TEST_F(Transport, TheSliderTakenWhilePlayingPlaysOnWhenLetGo) {
  BeginWithSong();
  Of5("Play").click();
  SongSlider& slider = Of<SongSlider>();
  const double y = slider.height() / 2.0;
  Press(slider, QPointF(slider.XOf(5 * Bar), y));
  EXPECT_FALSE(TheDesk().IsPlaying());
  MoveTo(slider, QPointF(slider.XOf(6 * Bar), y));
  midi.Sent.clear();
  Release(slider, QPointF(slider.XOf(6 * Bar), y));
  EXPECT_TRUE(TheDesk().IsPlaying());
  Of5("Stop").click();
  EXPECT_THAT(midi.SentTo("Port A"), Contains(TestMidiDriver::TBytes{0xB0, 7, 50}));
  EXPECT_GE(Now(), 5 * Bar);
}

TEST_F(Transport, TheSliderGoesByBarsWithItsKeys) {
  BeginWithSong();
  SongSlider& slider = Of<SongSlider>();
  Key(slider, Qt::Key_Right);
  EXPECT_EQ(Now(), Bar);
  Key(slider, Qt::Key_PageDown);
  EXPECT_EQ(Now(), 5 * Bar);
  Key(slider, Qt::Key_Left);
  EXPECT_EQ(Now(), 4 * Bar);
  Key(slider, Qt::Key_End);
  EXPECT_EQ(Now(), TheSong().SongLength);
  Key(slider, Qt::Key_Home);
  EXPECT_EQ(Now(), 0);
}

TEST_F(Transport, ASongThatRunsOutGoesToItsStart) {
  BeginWithSong();
  Of<SongSlider>().SeekTo(TheSong().SongLength);
  EXPECT_EQ(Strip(0).volume().position(), 50);
  Of5("Play").click();
  clock.Advance(60'000);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !TheDesk().IsPlaying(); }));
  Fire("DisplayTimer");
  Settle();
  EXPECT_EQ(Now(), 0);
  EXPECT_FALSE(Of5("Play").isChecked());
  EXPECT_EQ(Of<PositionDisplay>().measureText(), QStringLiteral("1:01"));
  EXPECT_EQ(Of<SongSlider>().position(), 0);
  EXPECT_EQ(Strip(0).volume().position(), 100);
  EXPECT_FALSE(Fire("DisplayTimer")) << "it has stopped itself";
}

TEST_F(Transport, ControllersThatPassMoveTheirFaders) {
  BeginWithSong();
  Of<SongSlider>().SeekTo(4 * Bar - 100);
  EXPECT_EQ(Strip(0).volume().position(), 100);
  Of5("Play").click();
  PlayOn(300);
  Fire("SlidersUpdateTimer");
  EXPECT_EQ(Strip(0).volume().position(), 50);
}

TEST_F(Transport, AnOutputThatDoesNotOpenIsToldOf) {
  BeginWithSong();
  midi.FailOpen = TDriverError(BadDeviceId, "the cable is out");
  Of5("Play").click();
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_FALSE(Of5("Play").isChecked());
  EXPECT_EQ(told.size(), 1U);
}

TEST_F(Transport, TempoGoesUpDownAndBack) {
  BeginWithSong();
  TempoPanel& panel = Of<TempoPanel>();
  const std::int32_t length = TheSong().SongLength;
  Button(panel, "Tempo faster").click();
  EXPECT_EQ(panel.figure(), QStringLiteral("121.0"));
  EXPECT_EQ(TheSong().SourceTempo.front().Tempo, 121);
  EXPECT_LT(TheSong().SongLength, length);
  EXPECT_EQ(Of<SongSlider>().length(), TheSong().SongLength);
  EXPECT_TRUE(TheDesk().IsModified());
  Button(panel, "Tempo slower").click();
  Button(panel, "Tempo slower").click();
  EXPECT_EQ(panel.figure(), QStringLiteral("119.0"));
  Button(panel, "Tempo as in the song").click();
  EXPECT_EQ(panel.figure(), QStringLiteral("120.0"));
  EXPECT_EQ(TheSong().SongLength, length);
}

TEST_F(Transport, TempoChangesWhileTheSongPlays) {
  BeginWithSong();
  Of5("Play").click();
  PlayOn(100);
  Button(Of<TempoPanel>(), "Tempo faster").click();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !TheDesk().Player().TempoChanged; }));
  EXPECT_TRUE(TheDesk().IsPlaying());
  Fire("DisplayTimer");
  EXPECT_EQ(Of<TempoPanel>().figure(), QStringLiteral("121.0"));
  Of5("Stop").click();
  EXPECT_EQ(TheSong().SourceTempo.front().Tempo, 121);
}

TEST_F(Transport, TheSliderFollowsATempoThatChangesWhileTheSongPlays) {
  BeginWithSong();
  const std::int32_t length = TheSong().SongLength;
  Of5("Play").click();
  PlayOn(100);
  for (int i = 0; i < 30; ++i) Button(Of<TempoPanel>(), "Tempo slower").click();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !TheDesk().Player().TempoChanged; }));
  Fire("DisplayTimer");
  Fire("SlidersUpdateTimer");
  EXPECT_GT(TheSong().SongLength, length);
  EXPECT_EQ(Of<SongSlider>().length(), TheSong().SongLength);
  Of5("Stop").click();
}

TEST_F(Transport, ALoopKeepsItsBarsWhenTheTempoChanges) {
  BeginWithSong();
  OpenLoop();
  Type(LoopEnd::Start, "3");
  Type(LoopEnd::End, "5");
  for (int i = 0; i < 30; ++i) Button(Of<TempoPanel>(), "Tempo slower").click();
  EXPECT_NEAR(LoopStart(), 2 * Bar * 120 / 90, 1);
  EXPECT_EQ(Of<SongSlider>().loop(), (LoopSpan{LoopStart(), LoopEndTime()}));
  EXPECT_EQ(Of<LoopPanel>().field(LoopEnd::Start)->text(), QStringLiteral("3:01"));
  Of5("Loop").click();
  Button(Of<TempoPanel>(), "Tempo as in the song").click();
  Of5("Loop").click();
  EXPECT_EQ(LoopStart(), 2 * Bar);
  EXPECT_EQ(LoopEndTime(), 4 * Bar);
}

TEST_F(Transport, TheLoopOfAWholeSongComesBackAtAnyTempo) {
  BeginWithSong();
  for (int i = 0; i < 12; ++i) {
    Of5("Loop").click();
    ASSERT_TRUE(TheDesk().Player().Looping) << i;
    Of5("Loop").click();
    Button(Of<TempoPanel>(), "Tempo slower").click();
  }
}

TEST_F(Transport, TransposesAndComesBack) {
  store.WriteBool("", "IntelligentTranspose", false);
  BeginWithSong();
  TransposePanel& panel = Of<TransposePanel>();
  const PtrMidiEvent note = [&] {
    PtrMidiEvent e = TheSong().MidiTrack[1].TrkFirstEvent;
    while (e->Kind() != NoteOn) e = e->NextEvent;
    return e;
  }();
  ASSERT_EQ(note->Value[0], 60);
  Button(panel, "One semitone up").click();
  Button(panel, "One semitone up").click();
  EXPECT_EQ(TheSong().TransposeNew, 2);
  EXPECT_EQ(note->Value[0], 62);
  EXPECT_EQ(panel.accessibleDescription(), QStringLiteral("Now +2 semitones"));
  for (int i = 0; i < 40; ++i) Button(panel, "One semitone down").click();
  EXPECT_EQ(TheSong().TransposeNew, -24);
  Button(panel, "No transposition").click();
  EXPECT_EQ(TheSong().TransposeNew, 0);
  EXPECT_EQ(note->Value[0], 60);
}

TEST_F(Transport, IntelligentModesAreSettings) {
  BeginWithSong();
  TransposePanel& panel = Of<TransposePanel>();
  ASSERT_TRUE(TheDesk().settings.IntelligentTranspose);
  for (int mode = 4; mode >= 1; --mode) {
    QAbstractButton& button = Button(panel, ("Intelligent mode " + std::to_string(mode)).c_str());
    button.click();
    EXPECT_EQ(store.ReadInteger("", "IntelligentTransposeMode", 0), mode);
    EXPECT_EQ(TheDesk().transpose.Settings.IntelligentTransp_M, mode);
    EXPECT_TRUE(button.isChecked());
  }
  Button(panel, "Intelligent transposition").click();
  EXPECT_FALSE(TheDesk().transpose.Settings.IntelligentTranspose);
  EXPECT_FALSE(store.ReadBool("", "IntelligentTranspose", true));
  EXPECT_FALSE(Button(panel, "Intelligent mode 1").isEnabled());
}

}  // namespace
}  // namespace Sonarello
