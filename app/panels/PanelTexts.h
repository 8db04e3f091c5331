// How the panels write positions, times, keys and signatures.
#pragma once

#include <QString>

namespace Sonarello {

/// Why a control that works on a song is out of order.
[[nodiscard]] QString NoSongReason();

/// Measure and beat, both counted from 1: "17:03".
[[nodiscard]] QString PositionText(int measure, int beat);

/// The same for assistive programs: "Takt 17 Schlag 3" / "Bar 17 beat 3".
[[nodiscard]] QString SpokenPosition(int measure, int beat);

/// Minutes, seconds and thousandths: "0:41.382"; below 0 as 0.
[[nodiscard]] QString TimeText(qint64 ms);

/// A length in minutes and seconds, cut: "2:51".
[[nodiscard]] QString LengthText(qint64 ms);

/// A key by its sharps (flats negative, -7 to 7): "F-Dur", "a-Moll" / "F major", "A minor". German note
/// names (Es, Fis, H) if `germanNames`. Empty if there is no such key.
[[nodiscard]] QString KeyText(int sharps, bool minor, bool germanNames);

/// Time signature and key: "4/4 · C-Dur"; the key may be empty.
[[nodiscard]] QString SignatureText(int numerator, int denominator, const QString& key);

}  // namespace Sonarello
