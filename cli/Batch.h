// Sonarello: files that are opened, worked on and saved, several at a time.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "Arguments.h"
#include "Composition.h"
#include "Console.h"

namespace Sonarello {

/// One file's way from source to target.
struct Job {
  std::string Source;
  std::string Target;
  bool Declined = false;  ///< the target is a source, and the user wants to keep it

  bool Ready = false;
  bool Saved = false;
  int Format = 0;
  std::vector<std::string> Messages;  ///< what the user is told of the song
  std::vector<std::string> Protocol;  ///< what is told behind the messages, on standard error only
  std::string Report;                 ///< result of a saved file as text
  nlohmann::ordered_json Facts;       ///< the same as JSON, members of the file's entry; else null
};

/// What a command does beside opening and saving. Called on the job's own thread.
struct JobSteps {
  using Step = std::function<void(SongDesk&, Job&)>;
  Step BeforeSave;           ///< of an opened song
  Step AfterSave;            ///< of a saved song
  std::string_view Between;  ///< printed between two reports
};

/// Opens each of the arguments' files and saves it to the target: a file or, for several sources or
/// where the target is a folder, into that folder. Tells messages, reports and a summary. The program's
/// exit status.
[[nodiscard]] int RunBatch(const Arguments& arguments, const Setup& setup, Console& console,
                           const JobSteps& steps);

}  // namespace Sonarello
