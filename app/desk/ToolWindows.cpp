#include "app/desk/ToolWindows.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <vector>

#include "app/controls/Metrics.h"
#include "desk/WindowPlaces.h"

namespace Sonarello {

namespace {

/// The free areas of all screens, the main one first.
std::vector<TFormPlace> ScreenPlaces() {
  std::vector<TFormPlace> places;
  const QScreen* const first = QGuiApplication::primaryScreen();
  const auto add = [&places](const QScreen& screen) {
    const QRect area = screen.availableGeometry();
    places.push_back({area.left(), area.top(), area.width(), area.height()});
  };
  if (first != nullptr) add(*first);
  for (const QScreen* const screen : QGuiApplication::screens())
    if (screen != first) add(*screen);
  return places;
}

std::string Key(std::string_view name, std::string_view what) {
  return std::string(name) + "Form" + std::string(what);
}

}  // namespace

void RestorePlace(QWidget& window, const IRegistryStore& store, std::string_view name, QSize usual) {
  const TStoredPlace stored = LoadWindowPlace(store, name);
  TFormPlace place{stored.Left, stored.Top, store.ReadInteger("", Key(name, "Width"), usual.width()),
                   store.ReadInteger("", Key(name, "Height"), usual.height())};
  const QSize least = window.minimumSize().expandedTo(window.minimumSizeHint());
  place = CheckFormLayout(place, ScreenPlaces(), least.width(), least.height());
  window.resize(place.Width, place.Height);
  window.move(place.Left, place.Top);
}

void StorePlace(const QWidget& window, IRegistryStore& store, std::string_view name) {
  TStoredPlace place;
  const bool large = window.isMaximized() || window.isFullScreen();
  const QRect usual = large ? window.normalGeometry() : QRect(window.pos(), window.size());
  place.Left = usual.left();
  place.Top = usual.top();
  place.Width = usual.width();
  place.Height = usual.height();
  place.Visible = window.isVisible();
  StoreWindowPlace(store, name, place);
  store.WriteInteger("", Key(name, "Width"), usual.width());
  store.WriteInteger("", Key(name, "Height"), usual.height());
  store.WriteBool("", Key(name, "Vis"), place.Visible);
}

bool WasShown(const IRegistryStore& store, std::string_view name) {
  return store.ReadBool("", Key(name, "Vis"), false);
}

void ToolWindows::Add(ToolWindow which, QWidget& window, std::string_view name, QSize usual) {
  Of(which) = {&window, name, usual, false};
  window.installEventFilter(this);
}

void ToolWindows::Place(TEntry& entry) {
  if (entry.Placed) return;
  entry.Placed = true;
  RestorePlace(*entry.Window, store, entry.Name,
               QSize(metrics().px(entry.Usual.width()), metrics().px(entry.Usual.height())));
}

void ToolWindows::Show(ToolWindow which) {
  TEntry& entry = Of(which);
  if (entry.Window == nullptr) return;
  Place(entry);
  entry.Window->show();
  entry.Window->raise();
  entry.Window->activateWindow();
}

void ToolWindows::Hide(ToolWindow which) {
  if (Of(which).Window != nullptr) Of(which).Window->close();
}

bool ToolWindows::IsShown(ToolWindow which) const {
  return Of(which).Window != nullptr && Of(which).Window->isVisible();
}

void ToolWindows::HideAll() {
  for (const TEntry& entry : entries)
    if (entry.Window != nullptr) entry.Window->close();
}

void ToolWindows::Freeze(bool frozen) {
  for (const TEntry& entry : entries)
    if (entry.Window != nullptr) entry.Window->setUpdatesEnabled(!frozen);
}

void ToolWindows::Restore() {
  for (const ToolWindow which : {ToolWindow::Sounds, ToolWindow::Revoicer, ToolWindow::Keyboard,
                                 ToolWindow::Events, ToolWindow::Controllers})
    if (Of(which).Window != nullptr && WasShown(store, Of(which).Name)) Show(which);
}

void ToolWindows::Store() {
  for (const TEntry& entry : entries)
    if (entry.Window != nullptr && entry.Placed) StorePlace(*entry.Window, store, entry.Name);
}

bool ToolWindows::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show || event->type() == QEvent::Hide) Q_EMIT shownChanged();
  return QObject::eventFilter(watched, event);
}

}  // namespace Sonarello
