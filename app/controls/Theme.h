// The colours of the program: one token for one meaning, in a dark and a light theme.
//
// SetTheme and SetScale (Metrics.h) work at once: they set the application's palette and font and send
// QEvent::StyleChange to every widget, as a change of the style does. QWidget answers with a new layout
// and a repaint. A widget that keeps lengths, fonts, icons or pictures of its own takes them anew in
//
//     void changeEvent(QEvent* event) override {
//       QWidget::changeEvent(event);
//       if (AppearanceChanged(*event)) ...
//     }
#pragma once

#include <QColor>
#include <QEvent>
#include <QPalette>
#include <array>

namespace Sonarello {

enum class ThemeKind { Dark, Light };

/// Kinds of events in the editors; the kind is always also written, never told by its colour alone.
enum class EventKind {
  Note,
  Program,
  Controller,
  KeyAftertouch,
  ChannelAftertouch,
  PitchBend,
  Sysex,
  Meta
};
inline constexpr int EventKinds = 8;

struct Theme {
  ThemeKind kind;
  // Grounds and faces.
  QColor bg0;      ///< window ground
  QColor bg1;      ///< panel, menu bar, status bar, group box
  QColor bg2;      ///< strip, list head
  QColor bg2a;     ///< active strip
  QColor bg3;      ///< button, name plate, knob face
  QColor bg3h;     ///< button under the pointer
  QColor bg3p;     ///< button held down
  QColor well;     ///< value box, edit field, fader slot, position display
  QColor line;     ///< hairline: panel borders, list grid
  QColor line2;    ///< button border, separator, scroll handle
  QColor edge;     ///< border of edit fields, combos, check and radio boxes
  QColor tx1;      ///< text
  QColor tx2;      ///< secondary text, button letters
  QColor tx3;      ///< captions, units, placeholders
  QColor dis;      ///< text of disabled controls
  QColor acc;      ///< accent: focus ring, active strip, value arcs, checked border
  QColor accd;     ///< accent as a face under white text
  QColor accbg;    ///< face of a checked toggle
  QColor onaccd;   ///< ink on accd
  QColor sel;      ///< selected row
  QColor drum;     ///< drum ink
  QColor drumbg;   ///< drum strip
  QColor drumbg2;  ///< drum name plate
  // Lights and their inks.
  QColor solo, solob, mute, mute2, rec, onrec, play, onplay, onlit;
  QColor muteface;    ///< face of a mute that a solo caused
  QColor redirected;  ///< number of a strip that goes out on another channel
  QColor warn, err;
  QColor warnbg, errbg;  ///< grounds of messages
  // Fader caps, meters, tracks.
  QColor cap1, cap2, caped, capline;
  QColor m1, m2, m3, moff;
  QColor track;
  // Lists, keys, roll.
  QColor row, rowalt;
  QColor kw, kb;
  QColor keyline;    ///< line between white keys
  QColor keyline2;   ///< line in the middle of a black key's row
  QColor keytext;    ///< octave names on white keys
  QColor keysounds;  ///< a white key that sounds
  QColor rollw, rollb, grid1, grid2, grid3;
  QColor syllable;  ///< ink of the syllable that is sung now; its face is acc
  QColor shadow;    ///< drop shadow of popups
  std::array<QColor, EventKinds> kinds;

  [[nodiscard]] const QColor& kindColour(EventKind of) const {
    return kinds[static_cast<std::size_t>(of)];
  }
};

/// The theme in force.
[[nodiscard]] const Theme& th();

/// Puts a theme in force for all windows, at once.
void SetTheme(ThemeKind kind);

/// One of the two themes, whichever is in force.
[[nodiscard]] const Theme& ThemeOf(ThemeKind kind);

/// True for the event by which a widget learns that theme or scale changed.
[[nodiscard]] inline bool AppearanceChanged(const QEvent& event) {
  return event.type() == QEvent::StyleChange;
}

/// Hands palette and font of theme and scale to the application and tells every widget. Does nothing
/// without an application.
void ApplyAppearance();

[[nodiscard]] QPalette PaletteOf(const Theme& theme);

/// The colour that is `share` (0..1) of `top` over `ground`; both opaque.
[[nodiscard]] QColor Mixed(const QColor& top, double share, const QColor& ground);

/// A colour at an opacity of 0..1.
[[nodiscard]] QColor WithAlpha(QColor colour, double alpha);

/// Face of a note of a velocity of 0..127, the same in both themes.
[[nodiscard]] const QColor& VelocityColour(int velocity);

/// Ink on that face.
[[nodiscard]] QColor VelocityInk(int velocity);

}  // namespace Sonarello
