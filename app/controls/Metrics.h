// Lengths and fonts of the program at the user's window scale.
#pragma once

#include <QFont>
#include <QRectF>
#include <QString>
#include <Qt>
#include <array>

class QPainter;

namespace Sonarello {

/// What a text is for; decides its family, size and weight.
enum class Role {
  Display,         ///< measure and beat, 36
  DisplayCompact,  ///< the same on a low desk, 32
  Chord,           ///< the chord that sounds, 34 bold
  ChordCompact,    ///< 28 bold
  Lyric,           ///< line of lyrics, 22
  LyricCompact,    ///< 19
  LyricChord,      ///< chords above the lyrics, 14
  NextChord,       ///< the chord to come, 16
  Headline,        ///< sentence of an empty desk, 20
  Figure,          ///< tempo, transpose, 22
  Time,            ///< minutes and seconds, 20
  ChordBox,        ///< chord of the key editor, 20 bold
  KnobValue,       ///< controller values, 17
  Channel,         ///< channel number, 16 bold
  FileName,        ///< 16
  Value,           ///< fader value, sound of the active channel, 15
  Title,           ///< title of a group, 14
  Body,            ///< menus, lists, buttons, 13
  Strong,          ///< default button, head of a popup, 13 medium
  Letter,          ///< letters of LED buttons, 12 bold
  ToolTip,         ///< 12
  Plate,           ///< sound names in strips, 12 condensed
  EffectName,      ///< 12.5 condensed
  KnobName,        ///< controller names, 12 condensed
  Caption,         ///< captions, units, 11
  ScaleFigure,     ///< figures beside a fader, 10.5 condensed
  Mono,            ///< bytes, 12
};

enum class FontStack { Text, Condensed, Mono };

inline constexpr std::array WindowScales{100, 120, 130, 150, 160, 180};

struct Metrics {
  int percent = 100;

  /// Factor of the window scale, 1.0 to 1.8.
  [[nodiscard]] double k() const { return percent / 100.0; }
  /// A length at 100 % in pixels of the scale, rounded half up.
  [[nodiscard]] int px(double length) const;
  /// The same without rounding, for curves.
  [[nodiscard]] double f(double length) const { return length * percent / 100.0; }
  /// Width of a hairline.
  [[nodiscard]] int hair() const { return percent >= 200 ? 2 : 1; }
  [[nodiscard]] const QFont& font(Role role) const;
  /// Height of a line of text of the role.
  [[nodiscard]] int lineHeight(Role role) const;
};

/// The metrics in force.
[[nodiscard]] const Metrics& metrics();

/// Sets the window scale of all windows, at once; one of WindowScales, others become the next lower
/// one.
void SetScale(int percent);

/// A font of a size in pixels of the scale in force; sizes may be fractions.
[[nodiscard]] QFont FontOf(FontStack stack, double pixels, QFont::Weight weight);

/// Draws a running number so that it stands still while it runs: digits share one width, whatever the
/// font; other characters keep their own.
void drawFigures(QPainter& painter, const QRectF& rect, const QString& text, Qt::Alignment alignment);

/// The width that drawFigures needs with a font.
[[nodiscard]] double FiguresWidth(const QFont& font, const QString& text);

/// The text, or as much of it as fits with three dots at its end.
[[nodiscard]] QString Elided(const QFont& font, const QString& text, double width);

}  // namespace Sonarello
