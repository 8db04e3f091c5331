// The texts of the song's world as Qt shows them.
#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "core/Texts.h"

namespace Sonarello {

/// A UTF-8 text for display. "\r" and "\r\n" become line breaks.
[[nodiscard]] inline QString ToQt(std::string_view text) {
  QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return shown;
}

/// A text that the user typed or chose, as UTF-8.
[[nodiscard]] inline std::string ToStd(const QString& text) { return text.toStdString(); }

/// Picks the user's language, as Text does.
[[nodiscard]] inline QString QText(std::string_view german, std::string_view english) {
  return ToQt(GermanLanguage ? german : english);
}

/// A signed value as the desk writes it: +5, −8 (with the minus sign, which is as wide as the plus), 0.
[[nodiscard]] inline QString SignedText(int value) {
  if (value == 0) return QString(QLatin1Char('0'));
  return (value > 0 ? QString(QLatin1Char('+')) : QString(QChar(0x2212))) +
         QString::number(value > 0 ? value : -value);
}

}  // namespace Sonarello
