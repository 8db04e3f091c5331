// Sonarello: the two streams that the program speaks on.
#pragma once

#include <string>
#include <string_view>

namespace Sonarello {

/// Exit status of the program.
enum ExitStatus : int {
  Done = 0,
  Refused = 1,  ///< a file was refused or could not be written
  WrongUsage = 2,
};

/// Results go to standard output, all else to standard error. A reader of the results that goes away (a
/// closed pipe) is no failure: the results then go nowhere and the work goes on.
class Console {
 public:
  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  ~Console() { Flush(); }

  /// Adds to the results.
  void Out(std::string_view text);
  /// False once nobody reads the results any more; what only prints may stop then.
  [[nodiscard]] bool HasReader() const noexcept { return fault == 0; }
  /// Writes a line to standard error, behind the results so far.
  void Err(std::string_view line);
  /// Shows how far a long work has come; only where standard error is a terminal. Empty text takes it
  /// away.
  void Progress(std::string_view line);
  /// Hands the results so far to their reader, for work that has no end of its own.
  void FlushResults() { Flush(); }
  /// Asks a yes-or-no question on the terminal; `otherwise` where there is none to ask on.
  [[nodiscard]] bool Ask(std::string_view question, bool otherwise);
  /// Writes what is left. The status of the program: `status`, or `Refused` (and a message) if the
  /// results could not be written.
  [[nodiscard]] int Finish(int status);

 private:
  void Flush() noexcept;

  std::string buffer;
  int fault = 0;  ///< errno of the first failed write
  bool progressShown = false;
};

}  // namespace Sonarello
