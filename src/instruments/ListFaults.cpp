#include "instruments/ListFaults.h"

#include "core/TextEncoding.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t LongestRow = 1000;  ///< bytes of a row that a message shows

/// A row as a message shows it: a long one is cut, never inside a UTF-8 character.
std::string Shown(std::string_view row) {
  if (row.size() <= LongestRow) return std::string(row);
  return std::string(CutToBytes(row, LongestRow)) + "…";
}

}  // namespace

// These messages are German in both languages.

void ListFaults::Row(int line, std::string_view row) {
  if (messages == nullptr) return;
  Show("Fehler in Zeile " + std::to_string(line) + " beim Import der " + std::string(words) + "\r" +
       Shown(row));
}

void ListFaults::TooFewCells(int needed, int line, std::string_view row) {
  if (messages == nullptr) return;
  Show("Weniger als " + std::to_string(needed) + " Felder in Zeile " + std::to_string(line) + " von " +
       std::to_string(rows) + " beim Import der " + std::string(words) + "\r\"" + Shown(row) + "\"");
}

void ListFaults::Finish() {
  if (messages == nullptr || count <= Most) return;
  const std::string held = std::to_string(count - Most);
  messages->Show(Text("Weitere Zeilen mit Fehlern: " + held + " (" + std::string(words) + ")",
                      "Further rows with errors: " + held + " (" + std::string(words) + ")"));
}

void ListFaults::Show(const std::string& text) {
  if (++count <= Most) messages->Show(text);
}

}  // namespace Sonarello
