// Sonarello: what the commands' options are put together from.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Arguments.h"

namespace Sonarello {

/// Wrong usage; what() is told to the user.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A number in a range; raises UsageError for anything else.
[[nodiscard]] int Number(const std::string& option, const std::string& text, int min, int max);
/// Index of a word in a list; raises UsageError for any other.
int OneOf(const std::string& option, const std::string& text, const std::vector<std::string>& allowed);

using Reader = std::function<void(const std::string&)>;

/// An option with one value, which a function reads.
CLI::Option* AddValue(CLI::App& app, const std::string& names, const Reader& read,
                      const std::string& help, const std::string& type);
/// The options of every command.
void AddCommonOptions(CLI::App& app, Arguments& a);
CLI::App* AddCommand(CLI::App& app, Arguments& a, const std::string& name, const std::string& help);
void AddFiles(CLI::App& command, Arguments& a, bool several);

/// rows.
void AddRows(CLI::App& app, Arguments& a);
/// ports, play, render, monitor.
void AddPlaybackCommands(CLI::App& app, Arguments& a);

}  // namespace Sonarello
