#include "app/desk/MainMenu.h"

#include <QKeySequence>
#include <QMenu>
#include <vector>

#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

QString Caption(const TMenuEntry& entry) {
  return QText(entry.German, entry.English).replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace

MainMenu::MainMenu(QMenuBar& bar, std::function<void(std::string_view name)> chosen)
    : told(std::move(chosen)) {
  std::vector<QMenu*> open;
  for (const TMenuEntry& entry : MainMenuEntries()) {
    if (entry.Name == "<") {
      open.pop_back();
    } else if (entry.Name.empty()) {
      open.back()->addSeparator();
    } else if (entry.Name.back() == '>') {
      QMenu* const menu =
          open.empty() ? bar.addMenu(Caption(entry)) : open.back()->addMenu(Caption(entry));
      const std::string_view name = entry.Name.substr(0, entry.Name.size() - 1);
      menu->setObjectName(ToQt(name));
      menu->setToolTipsVisible(true);
      menus[name] = menu;
      open.push_back(menu);
    } else {
      AddEntry(*open.back(), entry);
    }
  }
  SetState({});
}

void MainMenu::AddEntry(QMenu& menu, const TMenuEntry& entry) {
  QAction* const action = menu.addAction(Caption(entry));
  action->setObjectName(ToQt(entry.Name));
  if (!entry.Shortcut.empty()) action->setShortcut(QKeySequence(ToQt(entry.Shortcut)));
  // The tool windows have no menu; its keys work there as well.
  action->setShortcutContext(Qt::ApplicationShortcut);
  QObject::connect(action, &QAction::triggered, action, [this, name = entry.Name] { told(name); });
  entries[entry.Name] = action;
}

QAction& MainMenu::Entry(std::string_view name) const { return *entries.at(name); }

QMenu& MainMenu::Submenu(std::string_view name) const { return *menus.at(name); }

void MainMenu::SetState(const TMenuState& state) {
  now = state;
  for (const TMenuEntry& entry : MainMenuEntries()) Update(entry);
}

void MainMenu::Forbid(std::string_view name, const QString& reason) {
  if (reason.isEmpty())
    forbidden.erase(name);
  else
    forbidden[name] = reason;
  for (const TMenuEntry& entry : MainMenuEntries())
    if (entry.Name == name) Update(entry);
}

void MainMenu::Update(const TMenuEntry& entry) {
  const auto found = entries.find(entry.Name);
  if (found == entries.end()) return;
  QAction& action = *found->second;
  bool allowed = entry.Needs != MenuNeeds::Room;
  if (entry.Needs == MenuNeeds::Song) allowed = now.SongLoaded;
  if (entry.Needs == MenuNeeds::Stopped) allowed = now.SongLoaded && !now.Playing;
  const auto reason = forbidden.find(entry.Name);
  const bool ruledOut = reason != forbidden.end();
  action.setEnabled(allowed && !ruledOut);
  QString hint = QText(entry.GermanHint, entry.EnglishHint);
  if (!allowed) hint = ToQt(WhyDisabled(entry));
  if (allowed && ruledOut) hint = reason->second;
  // Without a text of its own Qt would repeat the caption.
  action.setToolTip(hint.isEmpty() ? QStringLiteral(" ") : hint);
  action.setStatusTip(hint);
}

}  // namespace Sonarello
