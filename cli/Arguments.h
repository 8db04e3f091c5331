// Sonarello: what the user asked for on the command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/NewMidiData.h"

namespace Sonarello {

struct Arguments {
  std::string Command;  ///< its name, such as "show"
  std::vector<std::string> Files;

  // Everywhere
  std::string Instrument;  ///< main instrument: a name, a part of one or a value; may be empty
  std::vector<std::string> Settings;  ///< KEY=VALUE
  std::string DataPath;               ///< folder of sound lists and diagnostic files; may be empty
  bool Json = false;
  bool Quiet = false;
  std::optional<bool> Answer;  ///< to every question

  bool Changes = false;        ///< show
  std::optional<int> Track;    ///< events, rows: index from 0
  std::optional<int> Channel;  ///< events, name: 1 to 16
  bool Decoded = false;        ///< events
  std::optional<int> Filter;   ///< rows: 0 to 8
  bool SysexList = false;      ///< rows: the sysex list
  std::string Output;          ///< save, fit, revoice, new
  std::optional<int> Format;   ///< save, fit, revoice: 0 or 1; else the format that the file had
  std::string Rules;           ///< revoice: file of the rules
  TNewSong NewSong;            ///< new

  bool Coverage = false;        ///< instruments
  std::string List;             ///< sounds: name of a list or a part of it; may be empty
  std::string Search;           ///< sounds: a part of a sound's name; may be empty
  std::optional<int> MSB, LSB;  ///< name, drums: bank select, 0-127
  std::optional<int> Program;   ///< name, drums: 0-127
  std::optional<int> DrumPart;  ///< name: 0 to 3, 0 for a melodic part
  std::string From, To;         ///< play, render: places as measure:beat; may be empty
  std::string Loop;             ///< play: two places, "-" between; may be empty
  std::string Port;             ///< play, monitor: a port's name or a part of it; may be empty
  std::string SoundFont;    ///< play, render: file of the built-in synthesizer's sounds; may be empty
  std::string Bits = "16";  ///< render: 16, 16d or 32

  std::string Kit;  ///< drums: name of a kit or a part of it; may be empty

  std::vector<std::string> Sysexs;  ///< explain: bytes as hexadecimal words; empty for standard input
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
