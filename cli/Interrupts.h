// Sonarello: Ctrl-C as a wish, not an end.
#pragma once

namespace Sonarello {

/// While it lives, Ctrl-C and a request to terminate end the work at hand, not the program: no note may
/// be left hanging.
class InterruptGuard {
 public:
  InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;
  ~InterruptGuard();

  /// True once one of them came.
  [[nodiscard]] static bool Came() noexcept;
};

}  // namespace Sonarello
