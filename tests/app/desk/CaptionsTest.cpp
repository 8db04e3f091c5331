// Everything that can be read on the desk, in both languages.
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTextDocumentFragment>
#include <set>

#include "app/controls/Control.h"
#include "app/desk/MainBench.h"
#include "app/desk/MenuTable.h"
#include "app/panels/PanelButton.h"

namespace Sonarello {
namespace {

struct TCaption {
  std::string Where;
  std::string What;
  bool MayBeEmpty = false;
};

class Captions : public Main {
 protected:
  /// All captions, tips and names of the main window and of what belongs to it.
  std::vector<TCaption> All() {
    std::vector<TCaption> all;
    for (const QAction* action : form->findChildren<QAction*>()) {
      if (action->isSeparator() || action->objectName().isEmpty()) continue;
      const std::string name = ToStd(action->objectName());
      // Captions and tips of recent files are their names.
      if (name.starts_with("MMF_Midifile")) continue;
      all.push_back({name, ToStd(action->text())});
      all.push_back({name + " (tip)", ToStd(action->toolTip().trimmed()), action->isEnabled()});
    }
    for (const QMenu* menu : form->findChildren<QMenu*>())
      if (!menu->objectName().isEmpty())
        all.push_back({ToStd(menu->objectName()), ToStd(menu->title())});
    std::vector<QWidget*> widgets;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (qobject_cast<QMenu*>(window) != nullptr ||
          window->objectName().startsWith(QLatin1String("qt_")))
        continue;
      if (window == form.get() || window->parentWidget() == form.get() || window->isVisible())
        widgets.push_back(window);
    }
    std::ranges::sort(widgets, {},
                      [](const QWidget* w) { return std::string(w->metaObject()->className()); });
    for (const QWidget* window : widgets) {
      const std::string top = window->metaObject()->className();
      if (window != form.get()) all.push_back({top + " (title)", ToStd(window->windowTitle()), true});
      for (const QWidget* widget : window->findChildren<QWidget*>()) AddWidget(*widget, top, all);
    }
    return all;
  }

 private:
  static void AddWidget(const QWidget& widget, const std::string& top, std::vector<TCaption>& all) {
    const std::string where =
        top + "/" + widget.metaObject()->className() + "/" + ToStd(widget.objectName());
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
      all.push_back({where + " (text)", ToStd(label->text()), true});
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
      all.push_back({where + " (text)", ToStd(button->text()), true});
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
      all.push_back({where + " (text)", ToStd(group->title()), true});
    if (const auto* line = qobject_cast<const QLineEdit*>(&widget))
      all.push_back({where + " (placeholder)", ToStd(line->placeholderText()), true});
    // A control of the desk that can be reached has a name for those who do not see it.
    const bool own = qobject_cast<const TMainForm*>(widget.window()) != nullptr &&
                     (qobject_cast<const Control*>(&widget) != nullptr ||
                      qobject_cast<const PanelButton*>(&widget) != nullptr);
    all.push_back({where + " (name)", ToStd(widget.accessibleName()), !own});
    // A tip may hold marks that let its lines break.
    const QString tip = QTextDocumentFragment::fromHtml(widget.toolTip()).toPlainText();
    all.push_back({where + " (tip)", ToStd(tip), true});
  }
};

/// Texts that are the same in both languages: names, signs, figures, and words that both have.
bool MayBeTheSame(const std::string& text) {
  static const std::set<std::string> words = {
      // Names
      "Sonarello", "Auto Revoicer", "GM Soundset", "GM Soundset → Port A",
      "Auto Revoicer - GM Soundset", "Motif DSPs", "Yamaha DSPs", "Deutsch", "English",
      // Words of both languages
      "Sounds", "Events", "Drums", "Panorama", "Expression", "Chorus", "Transport", "Intelligent",
      "Tempo", "Solo", "Mute", "Bank", "Instrument", "Master Equalizer", "Vocal Harmony", "MIDI",
      "MIDI IN", "MIDI Thru", "OK", "Format 0", "Format 1", "ms"};
  if (words.contains(text)) return true;
  // Signs and figures.
  return std::ranges::none_of(text, [](unsigned char c) { return std::isalpha(c) != 0; });
}

void Compare(const std::vector<TCaption>& english, const std::vector<TCaption>& german) {
  ASSERT_EQ(english.size(), german.size());
  std::set<std::string> same;
  for (std::size_t i = 0; i < english.size(); ++i) {
    ASSERT_EQ(english[i].Where, german[i].Where);
    EXPECT_TRUE(english[i].MayBeEmpty || !english[i].What.empty()) << english[i].Where;
    EXPECT_EQ(english[i].What.empty(), german[i].What.empty())
        << english[i].Where << ": \"" << english[i].What << "\" is \"" << german[i].What << '"';
    if (!english[i].What.empty() && english[i].What == german[i].What && !MayBeTheSame(english[i].What))
      same.insert(english[i].Where + ": " + english[i].What);
  }
  EXPECT_THAT(same, testing::IsEmpty());
}

TEST_F(Captions, AreThereInBothLanguagesWithoutASong) {
  Begin();
  const std::vector<TCaption> english = All();
  End();
  const InGerman german;
  Begin();
  Compare(english, All());
}

TEST_F(Captions, AreThereInBothLanguagesWithASong) {
  BeginWithSong();
  const std::vector<TCaption> english = All();
  End();
  store.DeleteValue("", "LastMidifilesList");
  const InGerman german;
  BeginWithSong();
  Compare(english, All());
}

TEST_F(Captions, OfTheMenuAreToTheLetterInGerman) {
  const InGerman german;
  Begin();
  for (const TMenuEntry& entry : MainMenuEntries()) {
    if (entry.Name.empty() || entry.Name == "<" || entry.Name.back() == '>') continue;
    EXPECT_EQ(ToStd(form->Menu().Entry(entry.Name).text()), std::string(entry.German)) << entry.Name;
    EXPECT_FALSE(entry.German.empty()) << entry.Name;
    EXPECT_FALSE(entry.English.empty()) << entry.Name;
    EXPECT_EQ(entry.GermanHint.empty(), entry.EnglishHint.empty()) << entry.Name;
  }
}

}  // namespace
}  // namespace Sonarello
