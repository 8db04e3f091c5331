// Sonarello: the windows beside the main window: made once, hidden and shown, found again where they
// were.
#pragma once

#include <QObject>
#include <QWidget>
#include <array>
#include <functional>
#include <string_view>

#include "desk/MyRegistry.h"

namespace Sonarello {

enum class ToolWindow { Sounds, Revoicer, Keyboard, Events, Controllers };
inline constexpr int ToolWindowCount = 5;

/// Brings a window to where it was left, or into the middle of the main screen, so that it can be seen.
/// `name` is that of its settings, such as "Patch"; the size is its own unless one was stored.
void RestorePlace(QWidget& window, const IRegistryStore& store, std::string_view name, QSize usual);
/// Keeps a window's place, size and visibility.
void StorePlace(const QWidget& window, IRegistryStore& store, std::string_view name);
/// True if a window was open when the program ended.
[[nodiscard]] bool WasShown(const IRegistryStore& store, std::string_view name);

/// Knows the tool windows and tells when one is shown or hidden.
class ToolWindows : public QObject {
  Q_OBJECT

 public:
  explicit ToolWindows(IRegistryStore& s, QWidget* owner) : QObject(owner), store(s) {}

  /// Adds a window with the name of its settings and its usual size.
  void Add(ToolWindow which, QWidget& window, std::string_view name, QSize usual);
  void Show(ToolWindow which);
  void Hide(ToolWindow which);
  void Toggle(ToolWindow which) { IsShown(which) ? Hide(which) : Show(which); }
  [[nodiscard]] bool IsShown(ToolWindow which) const;
  void HideAll();
  /// Nothing of them is painted for a while, as what they show may not be read.
  void Freeze(bool frozen);
  /// Shows those that were open when the program ended last.
  void Restore();
  void Store();

 Q_SIGNALS:
  /// A window was shown or hidden, by whomever.
  void shownChanged();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct TEntry {
    QWidget* Window = nullptr;
    std::string_view Name;
    QSize Usual;
    bool Placed = false;
  };
  [[nodiscard]] TEntry& Of(ToolWindow which) { return entries[static_cast<std::size_t>(which)]; }
  [[nodiscard]] const TEntry& Of(ToolWindow which) const {
    return entries[static_cast<std::size_t>(which)];
  }
  void Place(TEntry& entry);

  IRegistryStore& store;
  std::array<TEntry, ToolWindowCount> entries{};
};

}  // namespace Sonarello
