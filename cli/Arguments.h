// Sonarello: what the user asked for on the command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/NewMidiData.h"

namespace Sonarello {

struct Arguments {
  std::string Command;  ///< show, events, decode, save, new or instruments
  std::vector<std::string> Files;

  // Everywhere
  std::string Instrument;  ///< main instrument: a name, a part of one or a value; may be empty
  std::vector<std::string> Settings;  ///< KEY=VALUE
  std::string DataPath;               ///< folder of the diagnostic files; empty: none is written
  bool Json = false;
  bool Quiet = false;
  std::optional<bool> Answer;  ///< to every question

  bool Changes = false;        ///< show
  std::optional<int> Track;    ///< events: index from 0
  std::optional<int> Channel;  ///< events: 1 to 16
  bool Decoded = false;        ///< events
  std::string Output;          ///< save, new
  std::optional<int> Format;   ///< save: 0 or 1; else the format that the file had
  TNewSong NewSong;            ///< new
};

/// Either what to do, or that the program is done: with a help text, or with a complaint.
struct ParsedArguments {
  std::optional<Arguments> Todo;
  std::string Help;       ///< for standard output
  std::string Complaint;  ///< for standard error; the usage was wrong
};

/// Sets the language from `--lang`, else from the environment, before anything is said. An unknown
/// language is left to `ParseArguments`.
void ChooseLanguage(const std::vector<std::string>& arguments);

/// Reads the command line, the program's own name not included.
[[nodiscard]] ParsedArguments ParseArguments(const std::vector<std::string>& arguments);

}  // namespace Sonarello
