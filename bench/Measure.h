// Sonarello: measurements in fresh processes, and the table of results.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Sonarello::Bench {

using Figures = std::vector<double>;

/// Seconds of processor time that a piece of work takes, that of the system for it included; what other
/// programs do on the machine leaves it nearly alone.
[[nodiscard]] double Seconds(const std::function<void()>& work);

/// Runs this program anew with arguments and returns the numbers that it prints, so that every
/// measurement meets memory as a freshly started program does. Raises std::runtime_error if it fails.
[[nodiscard]] Figures InFreshProcess(const std::vector<std::string>& arguments);

/// The middle of the figures; of an even number the mean of the two in the middle.
[[nodiscard]] double Median(Figures figures);

/// The table of results.
class Report {
 public:
  enum class Limit { AtMost, AtLeast, None };

  /// Prints a row: what, the ratio, its limit, and how it came about.
  void Row(const std::string& what, double ratio, Limit kind, double limit, const std::string& how);
  [[nodiscard]] int Missed() const noexcept { return missed; }

 private:
  int missed = 0;
};

}  // namespace Sonarello::Bench
