#include "app/controls/StripBank.h"

#include <QContextMenuEvent>
#include <QKeyEvent>

#include "app/controls/FocusRing.h"
#include "app/controls/LedButton.h"
#include "app/controls/NamePlate.h"
#include "app/controls/QtText.h"
#include "app/controls/Stepper.h"
#include "app/controls/TrackBar.h"
#include "app/controls/ValueBox.h"

namespace Sonarello {
namespace {

constexpr int page = 8;

bool IsDigit(int key) { return key >= Qt::Key_0 && key <= Qt::Key_9; }

/// Keys that are the strips' own while they have the focus, even if a menu has them as a shortcut.
bool IsOwn(const QKeyEvent& key) {
  const Qt::KeyboardModifiers held = key.modifiers() & ~Qt::KeypadModifier;
  switch (key.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Plus:
    case Qt::Key_Minus:
    case Qt::Key_Return:
    case Qt::Key_Enter: return held == Qt::NoModifier || held == Qt::ShiftModifier;
    case Qt::Key_Up:
    case Qt::Key_Down: return true;
    case Qt::Key_S:
    case Qt::Key_M: return held == Qt::NoModifier || held == Qt::ShiftModifier;
    case Qt::Key_R: return held == Qt::NoModifier;
    default: return IsDigit(key.key()) && held == Qt::NoModifier;
  }
}

}  // namespace

StripBank::StripBank(QWidget* parent) : Control(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setProperty(FocusRingProperty, true);
  setAccessibleName(QText("Kanäle", "Channels"));
  for (int channel = 0; channel < Strips; ++channel) {
    strips[static_cast<std::size_t>(channel)] = new ChannelStrip(this);
    setView(channel, {.Channel = channel, .WireChannel = channel, .Song = false});
    connectStrip(channel);
    connectSteppers(channel);
  }
}

void StripBank::connectStrip(int channel) {
  ChannelStrip* strip = strips[static_cast<std::size_t>(channel)];
  connect(strip, &ChannelStrip::chosen, this, [this, channel] { Q_EMIT channelSelected(channel); });
  connect(strip, &ChannelStrip::volumeMoved, this,
          [this, channel](int value) { Q_EMIT volumeMoved(channel, value); });
  connect(strip, &ChannelStrip::faderPressed, this, [this, channel] { Q_EMIT faderPressed(channel); });
  connect(strip, &ChannelStrip::faderReleased, this,
          [this, channel] { Q_EMIT faderReleased(channel); });
  connect(strip, &ChannelStrip::soundWanted, this, [this, channel] { Q_EMIT soundWanted(channel); });
  connect(strip, &ChannelStrip::redirectMenuWanted, this,
          [this, channel](const QPoint& at) { Q_EMIT redirectMenuWanted(channel, at); });
  connect(strip, &ChannelStrip::soloPressed, this,
          [this, channel](Qt::KeyboardModifiers held) { Q_EMIT soloPressed(channel, held); });
  connect(strip, &ChannelStrip::mutePressed, this,
          [this, channel](Qt::KeyboardModifiers held) { Q_EMIT mutePressed(channel, held); });
  connect(strip, &ChannelStrip::recPressed, this, [this, channel] { Q_EMIT recPressed(channel); });
}

void StripBank::connectSteppers(int channel) {
  ChannelStrip* strip = strips[static_cast<std::size_t>(channel)];
  connect(strip, &ChannelStrip::velocityPressed, this,
          [this, channel](int direction) { Q_EMIT velocityPressed(channel, direction); });
  connect(strip, &ChannelStrip::velocityReleased, this,
          [this, channel] { Q_EMIT velocityReleased(channel); });
  connect(strip, &ChannelStrip::velocityRangeWanted, this,
          [this, channel] { Q_EMIT velocityRangeWanted(channel); });
  connect(strip, &ChannelStrip::octavePressed, this,
          [this, channel](int direction) { Q_EMIT octavePressed(channel, direction); });
  connect(strip, &ChannelStrip::octaveReleased, this,
          [this, channel] { Q_EMIT octaveReleased(channel); });
}

void StripBank::setView(int channel, const StripView& view) {
  strip(channel).setView(view);
  strip(channel).volume().setAnnounces(view.Active);
  strip(channel).velocity().setAnnounces(view.Active);
  strip(channel).octave().setAnnounces(view.Active);
  if (!view.Active || channel == currentChannel) return;
  currentChannel = channel;
  if (!hasFocus()) return;
  FocusRing::Follow(this);
  QAccessibleEvent now(&strip(channel).volume(), QAccessible::Focus);
  QAccessible::updateAccessibility(&now);
}

Spoken StripBank::spoken() const { return {.role = QAccessible::Grouping}; }

QWidget* StripBank::ringPlace() { return &strip(currentChannel); }

bool StripBank::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && IsOwn(*static_cast<QKeyEvent*>(event))) {
    event->accept();
    return true;
  }
  return Control::event(event);
}

void StripBank::keyPressEvent(QKeyEvent* event) {
  const bool taken = strip(currentChannel).view().Song && IsOwn(*event) && press(*event);
  if (taken)
    FocusRing::Show(this);
  else
    event->ignore();
}

bool StripBank::press(const QKeyEvent& key) {
  if (IsDigit(key.key())) {
    strip(currentChannel).valueBox().beginTyping(key.text());
    return true;
  }
  if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
    Q_EMIT soundWanted(currentChannel);
    return true;
  }
  return pressArrow(key.key(), key.modifiers() & ~Qt::KeypadModifier) ||
         pressLetter(key.key(), key.modifiers() & ~Qt::KeypadModifier);
}

bool StripBank::pressArrow(int key, Qt::KeyboardModifiers modifiers) {
  ChannelStrip& now = strip(currentChannel);
  const int direction = key == Qt::Key_Up || key == Qt::Key_Right ? 1 : -1;
  if (key == Qt::Key_Left || key == Qt::Key_Right) {
    choose(currentChannel + direction);
    return true;
  }
  if (key != Qt::Key_Up && key != Qt::Key_Down) return false;
  if (modifiers == Qt::ControlModifier) {
    if (!now.octave().isEnabled()) return true;
    Q_EMIT octavePressed(currentChannel, direction);
    Q_EMIT octaveReleased(currentChannel);
    return true;
  }
  if (modifiers != Qt::NoModifier && modifiers != Qt::ShiftModifier) return false;
  now.volume().step(modifiers == Qt::ShiftModifier ? direction * page : direction);
  return true;
}

bool StripBank::pressLetter(int key, Qt::KeyboardModifiers modifiers) {
  const ChannelStrip& now = strip(currentChannel);
  const bool shift = modifiers == Qt::ShiftModifier, plays = !now.view().Noteless();
  switch (key) {
    case Qt::Key_S:
      if (shift)
        Q_EMIT allSoloOff();
      else if (plays)
        Q_EMIT soloPressed(currentChannel, Qt::NoModifier);
      return true;
    case Qt::Key_M:
      if (shift)
        Q_EMIT allMuteOff();
      else if (plays)
        Q_EMIT mutePressed(currentChannel, Qt::NoModifier);
      return true;
    case Qt::Key_R: Q_EMIT recPressed(currentChannel); return true;
    case Qt::Key_Plus:
    case Qt::Key_Minus:
      if (!plays) return true;
      Q_EMIT velocityPressed(currentChannel, key == Qt::Key_Plus ? 1 : -1);
      Q_EMIT velocityReleased(currentChannel);
      return true;
    default: return false;
  }
}

void StripBank::choose(int channel) {
  if (channel >= 0 && channel < Strips) Q_EMIT channelSelected(channel);
}

void StripBank::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() != QContextMenuEvent::Keyboard || !strip(currentChannel).view().Song) return;
  const ChannelStrip& now = strip(currentChannel);
  Q_EMIT redirectMenuWanted(currentChannel,
                            now.mapToGlobal(QPoint(0, now.namePlate().geometry().top())));
}

}  // namespace Sonarello
