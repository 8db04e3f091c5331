#include "Console.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t BufferSize = 1 << 16;
constexpr std::string_view ProgramName = "sonarello-cli";

/// 0, or errno.
int WriteAll(int descriptor, std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written >= 0)
      text.remove_prefix(static_cast<std::size_t>(written));
    else if (errno != EINTR)
      return errno;
  }
  return 0;
}

}  // namespace

void Console::Out(std::string_view text) {
  if (!HasReader()) return;
  buffer += text;
  if (buffer.size() >= BufferSize) Flush();
}

void Console::Flush() noexcept {
  if (!buffer.empty()) Progress({});  // results do not run into its line
  if (fault == 0) fault = WriteAll(STDOUT_FILENO, buffer);
  buffer.clear();
}

void Console::Err(std::string_view line) {
  Flush();
  Progress({});
  WriteAll(STDERR_FILENO, std::string(line) + '\n');
}

void Console::Progress(std::string_view line) {
  if (line.empty() && !progressShown) return;
  if (::isatty(STDERR_FILENO) == 0) return;
  WriteAll(STDERR_FILENO, "\r\x1b[K" + std::string(line));
  progressShown = !line.empty();
}

bool Console::Ask(std::string_view question, bool otherwise) {
  if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0) return otherwise;
  Flush();
  Progress({});
  WriteAll(STDERR_FILENO, std::string(question) + Text(" [j/N] ", " [y/N] "));
  std::string answer;
  if (!std::getline(std::cin, answer) || answer.empty()) return otherwise;
  return std::string_view("jJyY").find(answer.front()) != std::string_view::npos;
}

int Console::Finish(int status) {
  Flush();
  Progress({});
  if (fault == 0 || fault == EPIPE) return status;
  Err(std::string(ProgramName) +
      Text(": Die Ausgabe konnte nicht geschrieben werden: ", ": The output could not be written: ") +
      std::strerror(fault));
  return status == WrongUsage ? status : Refused;
}

}  // namespace Sonarello
