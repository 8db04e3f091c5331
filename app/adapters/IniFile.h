// The file of the settings, looked at before it is trusted.
#pragma once

#include <QByteArray>
#include <QString>

namespace Sonarello {

enum class IniState { Absent, Good, Damaged };

/// What stands at a path. Anything but a readable INI file of a sensible size is damaged.
[[nodiscard]] IniState LookAtIniFile(const QString& fileName);

/// True if bytes are an INI file: UTF-8 without control characters, each line empty, a comment, a
/// section or a value, and no quotation left open at the end.
[[nodiscard]] bool IsIniText(const QByteArray& bytes);

/// Renames what stands at a path to "... .damaged-YYYYMMDD-hhmmss". Its new path; empty if that failed.
[[nodiscard]] QString SetAside(const QString& fileName);

}  // namespace Sonarello
