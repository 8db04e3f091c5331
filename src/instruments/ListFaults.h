// Sonarello: how the user is told of the faulty rows of a list.
#pragma once

#include <string>
#include <string_view>

#include "core/Ports.h"
#include "instruments/ListTable.h"

namespace Sonarello {

/// Shows a message per faulty row of one list. A file that is no list at all would have thousands of
/// them: behind the first `Most` they are counted, and one message tells how many there were.
class ListFaults {
 public:
  static constexpr int Most = 25;

  /// `rows`: rows of the list's text. Without `messages` nothing is told.
  ListFaults(const TListSpec& spec, int rowCount, IMessages* m)
      : words(spec.Words.empty() ? spec.Name : spec.Words), rows(rowCount), messages(m) {}

  /// A row that cannot be read.
  void Row(int line, std::string_view row);
  /// A row with fewer cells than its layout needs.
  void TooFewCells(int needed, int line, std::string_view row);
  /// Tells how many messages were held back.
  void Finish();

 private:
  void Show(const std::string& text);

  std::string_view words;
  int rows;
  IMessages* messages;
  int count = 0;
};

}  // namespace Sonarello
