#include "app/panels/PanelTexts.h"

#include <algorithm>
#include <array>

#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

/// Names of the keys from seven flats to seven sharps; minor keys stand three steps later.
constexpr std::array InternationalNames{"Cb", "Gb", "Db", "Ab", "Eb", "Bb", "F",  "C",  "G",
                                        "D",  "A",  "E",  "B",  "F#", "C#", "G#", "D#", "A#"};
constexpr std::array GermanNames{"Ces", "Ges", "Des", "As", "Es",  "B",   "F",   "C",   "G",
                                 "D",   "A",   "E",   "H",  "Fis", "Cis", "Gis", "Dis", "Ais"};
constexpr int MostSharps = 7, MinorSteps = 3;

QString TwoDigits(qint64 value, int digits = 2) {
  return QStringLiteral("%1").arg(value, digits, 10, QLatin1Char('0'));
}

}  // namespace

QString NoSongReason() { return QText("Kein Song geöffnet", "No song is open"); }

QString PositionText(int measure, int beat) {
  return QString::number(measure) + QLatin1Char(':') + TwoDigits(beat);
}

QString SpokenPosition(int measure, int beat) {
  return QText("Takt %1 Schlag %2", "Bar %1 beat %2").arg(measure).arg(beat);
}

QString TimeText(qint64 ms) {
  const qint64 time = std::max<qint64>(ms, 0);
  return LengthText(time) + QLatin1Char('.') + TwoDigits(time % 1000, 3);
}

QString LengthText(qint64 ms) {
  const qint64 seconds = std::max<qint64>(ms, 0) / 1000;
  return QString::number(seconds / 60) + QLatin1Char(':') + TwoDigits(seconds % 60);
}

QString KeyText(int sharps, bool minor, bool germanNames) {
  if (sharps < -MostSharps || sharps > MostSharps) return {};
  const auto index = static_cast<std::size_t>(sharps + MostSharps + (minor ? MinorSteps : 0));
  QString name = QString::fromLatin1(germanNames ? GermanNames[index] : InternationalNames[index]);
  if (germanNames && minor) name = name.toLower();
  return name + (minor ? QText("-Moll", " minor") : QText("-Dur", " major"));
}

QString SignatureText(int numerator, int denominator, const QString& key) {
  const QString meter = QStringLiteral("%1/%2").arg(numerator).arg(denominator);
  return key.isEmpty() ? meter : meter + QStringLiteral(" · ") + key;
}

}  // namespace Sonarello
