// The windows beside the desk, as the desk opens them and hears of them.
#include <QAccessible>
#include <QCheckBox>
#include <QListView>
#include <QPushButton>
#include <QTableView>

#include "app/controls/LedButton.h"
#include "app/controls/NamePlate.h"
#include "app/controls/PianoKeys.h"
#include "app/controls/StripBank.h"
#include "app/controls/TrackBar.h"
#include "app/desk/MainBench.h"
#include "app/instruments/AutoRevoicerForm.h"
#include "app/instruments/PatchesForm.h"
#include "app/instruments/SoundBrowserForm.h"
#include "app/panels/ControllerPanel.h"
#include "app/panels/WindowSwitches.h"
#include "app/playback/VirtualKeysForm.h"
#include "core/MidiFileWriter.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

class Windows : public Main {
 protected:
  template <class Window>
  Window& Top() {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (auto* const window = qobject_cast<Window*>(widget)) return *window;
    ADD_FAILURE() << "no such window";
    return *static_cast<Window*>(nullptr);
  }
  static void Push(const QWidget& window, const char* text) {
    for (QPushButton* button : window.findChildren<QPushButton*>())
      if (button->text() == QString::fromUtf8(text)) return button->click();
    ADD_FAILURE() << "no button says " << text;
  }
  /// The song as it would be saved now.
  std::string Saved() {
    const std::string file = folder.File("now.mid");
    EXPECT_TRUE(
        MidiFileWriter(TheSong(), TheDesk().options, TheDesk().Routes(), messages, TheDesk().Hooks())
            .Save(file, 1));
    return BytesOf(file);
  }
  /// Chooses another sound in the browser than the one that is there.
  void ChooseAnother() {
    TSoundPlace place = work->browser.OldPlace();
    ASSERT_TRUE(place.IsSet());
    place.Sound = place.Sound == 0 ? 1 : 0;
    ASSERT_TRUE(work->browser.Select(place));
  }
};

TEST_F(Windows, ANamePlateOpensTheBrowserForItsChannel) {
  BeginWithSong();
  Click(Strip(1).namePlate());
  EXPECT_TRUE(Top<TSoundBrowserForm>().isVisible());
  EXPECT_EQ(work->browser.MidiIndex(), 1);
  EXPECT_EQ(TheSong().ActiveMidiIndex, 1);
}

TEST_F(Windows, ARightClickOpensTheBrowserForAnotherChannelAndTakesTheFirstBack) {
  BeginWithSong();
  const std::string before = Saved();
  Click(Strip(0).namePlate());
  ChooseAnother();
  Press(Strip(1), QRectF(Strip(1).rect()).center(), Qt::RightButton);
  EXPECT_EQ(work->browser.MidiIndex(), 1);
  work->browser.Btn_CancelClick();
  EXPECT_EQ(Saved(), before);
}

TEST_F(Windows, ARightClickOnTheFaderOpensTheBrowser) {
  BeginWithSong();
  QTest::mouseClick(&Strip(1).volume(), Qt::RightButton);
  EXPECT_TRUE(work->browser.IsOpen());
  EXPECT_EQ(work->browser.MidiIndex(), 1);
}

TEST_F(Windows, EnterOnTheStripsOpensTheBrowser) {
  BeginWithSong();
  Key(Of<StripRow>().bank(), Qt::Key_Return);
  EXPECT_TRUE(Top<TSoundBrowserForm>().isVisible());
}

TEST_F(Windows, CancelLeavesTheSongByteForByte) {
  BeginWithSong();
  const std::string before = Saved();
  const QString name = Strip(0).view().Name;
  Click(Strip(0).namePlate());
  ChooseAnother();
  EXPECT_NE(Strip(0).view().Name, name);
  EXPECT_NE(Saved(), before);
  Push(Top<TSoundBrowserForm>(), "Cancel");
  EXPECT_FALSE(Top<TSoundBrowserForm>().isVisible());
  EXPECT_EQ(Saved(), before);
  EXPECT_EQ(Strip(0).view().Name, name);
}

TEST_F(Windows, OkKeepsTheSoundInTheSong) {
  BeginWithSong();
  Click(Strip(0).namePlate());
  ChooseAnother();
  const QString name = Strip(0).view().Name;
  Push(Top<TSoundBrowserForm>(), "OK");
  EXPECT_TRUE(TheDesk().IsModified());
  EXPECT_EQ(Strip(0).view().Name, name);
  Choose("MMF_SaveMidifile");
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_EQ(Strip(0).view().Name, name);
}

TEST_F(Windows, TheBrowsersSoloIsTheStrips) {
  BeginWithSong();
  Click(Strip(0).namePlate());
  work->browser.CB_SoloMouseDown();
  EXPECT_TRUE(Data(0).Solo);
  EXPECT_EQ(Strip(0).solo().state(), LedState::Lit);
  Click(Strip(0).solo());
  EXPECT_FALSE(work->browser.IsSolo());
}

TEST_F(Windows, ASongThatIsOpenedClosesTheBrowser) {
  BeginWithSong();
  Click(Strip(0).namePlate());
  answers = {false, true};
  ASSERT_TRUE(form->OpenFile(folder.Write("other.mid", EightBars())));
  EXPECT_FALSE(work->browser.IsOpen());
  EXPECT_FALSE(Top<TSoundBrowserForm>().isVisible());
}

TEST_F(Windows, SavingWithTheBrowserOpenSavesWhatIsDecided) {
  BeginWithSong();
  Click(Strip(0).namePlate());
  ChooseAnother();
  Choose("MMF_SaveMidifile");
  const std::string saved = BytesOf(SongFile());
  if (work->browser.IsOpen()) {
    work->browser.Btn_CancelClick();
    // What was taken back is a change of the file that was saved meanwhile.
    EXPECT_EQ(TheDesk().IsModified(), Saved() != saved);
  } else {
    EXPECT_EQ(Saved(), saved);
  }
}

TEST_F(Windows, TheOverviewShowsAllSoundsAndFollows) {
  BeginWithSong();
  Choose("MMV_Sounds");
  auto& overview = Top<TPatchesForm>();
  EXPECT_TRUE(overview.isVisible());
  EXPECT_EQ(overview.List()->model()->rowCount(), 16);
  EXPECT_TRUE(Entry("MMV_Sounds").isChecked());
  EXPECT_TRUE(Button(Of<WindowSwitches>(), "Sounds").isChecked());
  overview.close();
  EXPECT_FALSE(Entry("MMV_Sounds").isChecked());
  EXPECT_FALSE(Button(Of<WindowSwitches>(), "Sounds").isChecked());
  Button(Of<WindowSwitches>(), "Sounds").click();
  EXPECT_TRUE(overview.isVisible());
}

TEST_F(Windows, TheSwitchesOfRoomsThatAreNotBuiltTellWhy) {
  BeginWithSong();
  for (const char* name : {"Key editor", "Drums", "Lyrics"}) {
    EXPECT_FALSE(Button(Of<WindowSwitches>(), name).isEnabled()) << name;
    EXPECT_TRUE(Button(Of<WindowSwitches>(), name)
                    .toolTip()
                    .contains(QStringLiteral("not part of this version yet")))
        << name;
  }
}

TEST_F(Windows, TheVirtualKeyboardPlaysTheActiveChannel) {
  BeginWithSong();
  Button(Of<WindowSwitches>(), "Keyboard").click();
  auto& keys = Top<TVirtualKeysForm>();
  ASSERT_TRUE(keys.isVisible());
  midi.Sent.clear();
  TheDesk().strips.Desk.SetMidiChannel(1);
  const QPointF middle = keys.Keys->keyRect(60).center();
  Press(*keys.Keys, middle);
  Release(*keys.Keys, middle);
  bool on = false, off = false;
  for (const TestMidiDriver::TBytes& sent : midi.SentTo("Port A")) {
    on |= sent.size() == 3 && sent[0] == 0x91 && sent[1] == 60 && sent[2] > 0;
    off |= sent.size() == 3 && sent[1] == 60 && (sent[0] == 0x81 || (sent[0] == 0x91 && sent[2] == 0));
  }
  EXPECT_TRUE(on);
  EXPECT_TRUE(off);
}

TEST_F(Windows, NoNoteHangsWhenTheKeyboardIsHidden) {
  BeginWithSong();
  Choose("MME_VirtualKeyboard");
  auto& keys = Top<TVirtualKeysForm>();
  Press(*keys.Keys, keys.Keys->keyRect(64).center());
  midi.Sent.clear();
  Choose("MMS_HideOthers");
  EXPECT_THAT(midi.SentTo("Port A"), testing::Not(IsEmpty()));
}

TEST_F(Windows, TheRevoicerOpensAndCloses) {
  BeginWithSong();
  Choose("MME_AutoRevoicer");
  auto& revoicer = Top<TAutoRevoicerForm>();
  EXPECT_TRUE(revoicer.isVisible());
  EXPECT_NE(revoicer.Grid(), nullptr);
  QTest::keyClick(&revoicer, Qt::Key_Escape);
  EXPECT_FALSE(revoicer.isVisible());
  EXPECT_FALSE(Entry("MME_AutoRevoicer").isChecked());
}

TEST_F(Windows, WithoutASongTheWindowsThatNeedOneDoNotOpen) {
  Begin();
  EXPECT_FALSE(Button(Of<WindowSwitches>(), "Sounds").isEnabled());
  EXPECT_TRUE(
      Button(Of<WindowSwitches>(), "Sounds").toolTip().contains(QStringLiteral("Open a song first")));
  EXPECT_TRUE(Button(Of<WindowSwitches>(), "Keyboard").isEnabled());
}

}  // namespace
}  // namespace Sonarello
