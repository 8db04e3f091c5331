// The keys that mean the same in every window, and the desk while a song is read.
#include <QLineEdit>
#include <QSpinBox>

#include "app/controls/Knob.h"
#include "app/controls/LedButton.h"
#include "app/controls/StripBank.h"
#include "app/controls/ValueBox.h"
#include "app/desk/MainBench.h"
#include "app/instruments/SoundBrowserForm.h"
#include "app/instruments/SoundSearch.h"
#include "app/panels/ControllerPanel.h"
#include "app/panels/LoopPanel.h"
#include "app/panels/SongSlider.h"
#include "app/panels/StatusBar.h"
#include "app/panels/TransportPanel.h"
#include "app/playback/VirtualKeysForm.h"

namespace Sonarello {
namespace {

using testing::IsEmpty;

class Keys : public Main {
 protected:
  QWidget& Bank() { return Of<StripRow>().bank(); }
};

TEST_F(Keys, SpacePlaysAndPauses) {
  BeginWithSong();
  Key(Bank(), Qt::Key_Space);
  EXPECT_TRUE(TheDesk().IsPlaying());
  Key(Of<SongSlider>(), Qt::Key_Space);
  EXPECT_FALSE(TheDesk().IsPlaying());
}

TEST_F(Keys, SpacePlaysOnceHoweverLongItIsHeld) {
  BeginWithSong();
  Bank().setFocus();
  for (int i = 0; i < 3; ++i) {
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), i > 0);
    QCoreApplication::sendEvent(&Bank(), &repeat);
  }
  EXPECT_TRUE(TheDesk().IsPlaying());
}

TEST_F(Keys, SpacePlaysInTheToolWindowsToo) {
  BeginWithSong();
  Choose("MME_VirtualKeyboard");
  auto& keys = Of<TVirtualKeysForm>();
  keys.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&keys));
  Key(keys, Qt::Key_Space);
  EXPECT_TRUE(TheDesk().IsPlaying());
}

TEST_F(Keys, HomeAndThePagesWind) {
  BeginWithSong();
  TheDesk().Wind(5000);
  Bank().setFocus();
  QTest::keyPress(&Bank(), Qt::Key_PageUp);
  EXPECT_EQ(Now(), 4500);
  QTest::keyPress(&Bank(), Qt::Key_PageUp);
  EXPECT_EQ(Now(), 4000);
  QTest::keyRelease(&Bank(), Qt::Key_PageUp);
  Key(Bank(), Qt::Key_PageDown);
  EXPECT_EQ(Now(), 4500);
  Key(Bank(), Qt::Key_Home);
  EXPECT_EQ(Now(), 0);
  Key(Bank(), Qt::Key_PageUp);
  EXPECT_EQ(Now(), 0);
}

TEST_F(Keys, WindingWhileThePlayerRunsPlaysOnWhenTheKeyIsLetGo) {
  BeginWithSong();
  TheDesk().Wind(5000);
  ASSERT_TRUE(TheDesk().PlayButtonClick());
  Bank().setFocus();
  QTest::keyPress(&Bank(), Qt::Key_PageDown);
  EXPECT_FALSE(TheDesk().IsPlaying());
  QTest::keyRelease(&Bank(), Qt::Key_PageDown);
  EXPECT_TRUE(TheDesk().IsPlaying());
}

TEST_F(Keys, WindingEndsWhateverElseIsHeldWhenTheKeyIsLetGo) {
  BeginWithSong();
  TheDesk().Wind(5000);
  ASSERT_TRUE(TheDesk().PlayButtonClick());
  Bank().setFocus();
  QTest::keyPress(&Bank(), Qt::Key_PageDown);
  QTest::keyRelease(&Bank(), Qt::Key_PageDown, Qt::ShiftModifier);
  EXPECT_TRUE(TheDesk().IsPlaying());
}

TEST_F(Keys, WindingEndsWhenTheFocusGoes) {
  BeginWithSong();
  TheDesk().Wind(5000);
  ASSERT_TRUE(TheDesk().PlayButtonClick());
  Bank().setFocus();
  QTest::keyPress(&Bank(), Qt::Key_PageDown);
  EXPECT_FALSE(TheDesk().IsPlaying());
  Of<SongSlider>().setFocus();
  EXPECT_TRUE(TheDesk().IsPlaying());
}

TEST_F(Keys, TheyDoNotDisturbTyping) {
  BeginWithSong();
  TheDesk().Wind(5000);
  static_cast<StripBank&>(Bank()).strip(0).valueBox().beginTyping(QStringLiteral("5"));
  auto* const field = Strip(0).valueBox().findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  field->setFocus();
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Home, Qt::Key_PageUp, Qt::Key_PageDown})
    QTest::keyClick(field, key);
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_EQ(Now(), 5000);
  QTest::keyClick(field, Qt::Key_Escape);

  Of<LoopPanel>().Slide(true);
  QLineEdit* const place = Of<LoopPanel>().field(LoopEnd::Start);
  place->setFocus();
  QTest::keyClicks(place, QStringLiteral("3 "));
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_EQ(place->text(), QStringLiteral("3 "));
}

TEST_F(Keys, ControlsKeepTheKeysThatAreTheirs) {
  BeginWithSong();
  TheDesk().Wind(5000);
  Knob& knob = *Of<ControllerPanel>().knob(0);
  const int value = knob.value();
  Key(knob, Qt::Key_PageUp);
  EXPECT_EQ(knob.value(), value + 8);
  EXPECT_EQ(Now(), 5000);
}

TEST_F(Keys, SpaceInTheSearchOfTheBrowserIsTyped) {
  BeginWithSong();
  ASSERT_TRUE(work->browser.Open(0));
  TSoundBrowserForm* browser = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (auto* const found = qobject_cast<TSoundBrowserForm*>(widget)) browser = found;
  ASSERT_NE(browser, nullptr);
  browser->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(browser));
  auto* const field = browser->findChild<SearchField*>();
  ASSERT_NE(field, nullptr);
  field->setFocus();
  QTest::keyClicks(field, QStringLiteral("Grand P"));
  EXPECT_EQ(field->text(), QStringLiteral("Grand P"));
  EXPECT_FALSE(TheDesk().IsPlaying());
}

TEST_F(Keys, WithoutASongTheyDoNothing) {
  Begin();
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Home, Qt::Key_PageUp, Qt::Key_PageDown})
    Key(Bank(), key);
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(Keys, ATextThatIsBeingTypedDoesNotDisturbTheEnd) {
  BeginWithSong();
  Of<LoopPanel>().Slide(true);
  QLineEdit* const place = Of<LoopPanel>().field(LoopEnd::Start);
  place->setFocus();
  QTest::keyClicks(place, QStringLiteral("3"));
  form.reset();
  EXPECT_FALSE(TheDesk().Player().Looping);
}

// --- A song that is read

TEST_F(Keys, WhileASongIsReadTheDeskTakesNoInput) {
  BeginWithSong();
  const std::string other = folder.Write("other.mid", EightBars());
  bool looked = false;
  TheDesk().WindowHooks.ReloadRevoicer = [&](Song&) {
    // The reader's thread waits while the user tries everything.
    QMetaObject::invokeMethod(
        qApp,
        [&] {
          looked = true;
          EXPECT_FALSE(form->IsIdle());
          Key(Bank(), Qt::Key_Space);
          Key(Bank(), Qt::Key_M);
          Click(Strip(0).mute());
          Click(Strip(0).solo());
          Turn(Strip(0).volume(), 120);
          QTest::mouseClick(&Button(Of<TransportPanel>(), "Play"), Qt::LeftButton);
          QTest::keyClick(form.get(), Qt::Key_O, Qt::ControlModifier);
          EXPECT_FALSE(form->OpenFile(SongFile()));
          EXPECT_FALSE(form->close());
          Fire("AutoBackupTimer");
        },
        Qt::BlockingQueuedConnection);
  };
  ASSERT_TRUE(form->OpenFile(other));
  TheDesk().WindowHooks.ReloadRevoicer = {};
  EXPECT_TRUE(looked);
  EXPECT_TRUE(form->isVisible());
  EXPECT_TRUE(form->IsIdle());
  EXPECT_EQ(TheSong().MidiFileName, other);
  EXPECT_FALSE(TheDesk().IsPlaying());
  EXPECT_FALSE(TheDesk().IsModified());
  EXPECT_EQ(Ctrl(0, 7).Value, 100);
  for (int c = 0; c < ChannelCount; ++c) {
    EXPECT_FALSE(Data(c).Mute) << c;
    EXPECT_FALSE(Data(c).Solo) << c;
  }
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(Keys, WhileASongIsReadNoEntryOfTheMenuWorks) {
  BeginWithSong();
  const std::string other = folder.Write("other.mid", EightBars());
  const ThemeKind theme = th().kind;
  TheDesk().WindowHooks.ReloadRevoicer = [&](Song&) {
    QMetaObject::invokeMethod(
        qApp,
        [&] {
          // A menu bar outside of the window, such as a desktop's own, knows no events of the window.
          for (const char* name :
               {"MMF_SaveMidifile", "MMF_NewMidifile", "MMF_Properties", "MME_Undo", "MMS_ShowSettings",
                "MMS_ImportSettings", "MMV_Light", "MMV_Sounds", "MMS_Quit"})
            Entry(name).trigger();
        },
        Qt::BlockingQueuedConnection);
  };
  ASSERT_TRUE(form->OpenFile(other));
  TheDesk().WindowHooks.ReloadRevoicer = {};
  EXPECT_EQ(th().kind, theme);
  EXPECT_TRUE(form->isVisible());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_TRUE(Entry("MMF_SaveMidifile").isEnabled()) << "afterwards it works";
}

}  // namespace
}  // namespace Sonarello
