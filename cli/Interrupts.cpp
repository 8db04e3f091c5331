#include "Interrupts.h"

#include <csignal>

namespace Sonarello {

namespace {

volatile std::sig_atomic_t Interrupted = 0;

void Note(int) { Interrupted = 1; }

}  // namespace

InterruptGuard::InterruptGuard() {
  Interrupted = 0;
  std::signal(SIGINT, Note);
  std::signal(SIGTERM, Note);
}

InterruptGuard::~InterruptGuard() {
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
}

bool InterruptGuard::Came() noexcept { return Interrupted != 0; }

}  // namespace Sonarello
