// Sonarello: the main menu, built from its table.
#pragma once

#include <QAction>
#include <QMenuBar>
#include <functional>
#include <map>
#include <string_view>

#include "app/desk/MenuTable.h"

namespace Sonarello {

/// What the menu's entries depend on.
struct TMenuState {
  bool SongLoaded = false;
  bool Playing = false;
};

/// Fills a menu bar and keeps its entries enabled as the desk's state allows. An entry that cannot be
/// chosen tells why in its tooltip.
class MainMenu {
 public:
  /// `chosen` is told the name of an entry that the user chose.
  MainMenu(QMenuBar& bar, std::function<void(std::string_view name)> chosen);

  /// The entry of a name such as "MMF_OpenMidifile"; it must exist.
  [[nodiscard]] QAction& Entry(std::string_view name) const;
  /// The submenu of a name such as "MMF_OpenRecent".
  [[nodiscard]] QMenu& Submenu(std::string_view name) const;
  void SetState(const TMenuState& state);
  /// Rules out an entry that its state would allow; an empty reason lets it in again.
  void Forbid(std::string_view name, const QString& reason);

 private:
  void AddEntry(QMenu& menu, const TMenuEntry& entry);
  void Update(const TMenuEntry& entry);

  std::function<void(std::string_view)> told;
  std::map<std::string_view, QAction*> entries;
  std::map<std::string_view, QMenu*> menus;
  std::map<std::string_view, QString> forbidden;
  TMenuState now;
};

}  // namespace Sonarello
