// Sonarello: the program with windows, put together.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/adapters/IniSettings.h"
#include "app/adapters/QtMessages.h"
#include "app/desk/Aside.h"
#include "app/desk/MainForm.h"
#include "desk/Startup.h"
#include "desk/Workplace.h"
#include "playback/MidiPlayerThread.h"
#include "playback/drivers/RtMidiDriver.h"

namespace Sonarello {

/// Where the program finds and keeps things; UTF-8, folders end in "/" where it says so.
struct TProgramPlaces {
  std::string Documents;    ///< the user's documents
  std::string Application;  ///< folder of the program's file, ends in "/"
  std::string Manual;       ///< folder of the manual, or empty

  /// The places of this user and this installation.
  [[nodiscard]] static TProgramPlaces OfThisUser();
};

/// Creates settings, desk and windows in the order in which they need each other.
class Program {
 public:
  /// `parameter` is the first one of the command line.
  Program(const TProgramPlaces& places, const std::string& parameter);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program();

  /// Shows the main window.
  void Start();
  [[nodiscard]] TMainForm& Window() { return *window; }

 private:
  void ChooseLanguage();

  IniSettings store;
  QtMessages messages;
  AsideMessages aside{messages};
  std::string dataPath;
  TStartParameter parameter;
  RtMidiDriver midi;
  SteadyClock clock;
  std::unique_ptr<Workplace> work;
  std::unique_ptr<TMainForm> window;
};

}  // namespace Sonarello
