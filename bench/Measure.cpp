#include "Measure.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <sstream>
#include <stdexcept>

namespace Sonarello::Bench {

namespace {

[[noreturn]] void BecomeMeasurement(const std::vector<std::string>& arguments, int output) {
  std::vector<char*> argv;
  std::string program = "sonarello_bench";
  argv.push_back(program.data());
  std::vector<std::string> copies = arguments;
  for (std::string& argument : copies) argv.push_back(argument.data());
  argv.push_back(nullptr);
  dup2(output, STDOUT_FILENO);
  close(output);
  execv("/proc/self/exe", argv.data());
  _exit(127);
}

double ProcessorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

}  // namespace

double Seconds(const std::function<void()>& work) {
  const double start = ProcessorSeconds();
  work();
  return ProcessorSeconds() - start;
}

Figures InFreshProcess(const std::vector<std::string>& arguments) {
  std::fflush(stdout);
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    close(ends[0]);
    BecomeMeasurement(arguments, ends[1]);
  }
  close(ends[1]);
  std::string text;
  std::array<char, 512> buffer{};
  for (ssize_t n = 0; (n = read(ends[0], buffer.data(), buffer.size())) > 0;)
    text.append(buffer.data(), static_cast<std::size_t>(n));
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::string what = "measurement failed:";
    for (const std::string& argument : arguments) what += " " + argument;
    throw std::runtime_error(what);
  }
  std::istringstream numbers(text);
  Figures figures;
  for (double number = 0; numbers >> number;) figures.push_back(number);
  return figures;
}

double Median(Figures figures) {
  std::sort(figures.begin(), figures.end());
  const std::size_t half = figures.size() / 2;
  return figures.size() % 2 == 1 ? figures[half] : (figures[half - 1] + figures[half]) / 2;
}

void Report::Row(const std::string& what, double ratio, Limit kind, double limit,
                 const std::string& how) {
  const bool met = kind == Limit::None || (kind == Limit::AtMost ? ratio <= limit : ratio >= limit);
  if (!met) ++missed;
  std::array<char, 32> wanted{};
  if (kind != Limit::None)
    std::snprintf(wanted.data(), wanted.size(), "%s %g", kind == Limit::AtMost ? "<=" : ">=", limit);
  std::printf("%-58s %8.2f  %-7s %-6s %s\n", what.c_str(), ratio, wanted.data(),
              kind == Limit::None ? ""
              : met               ? "ok"
                                  : "MISSED",
              how.c_str());
  std::fflush(stdout);
}

}  // namespace Sonarello::Bench
