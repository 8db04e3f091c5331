// Sonarello: the commands, one file each. Each returns the program's exit status.
#pragma once

#include "Arguments.h"
#include "Composition.h"
#include "Console.h"

namespace Sonarello {

int ShowCommand(const Arguments& arguments, const Setup& setup, Console& console);
int EventsCommand(const Arguments& arguments, const Setup& setup, Console& console);
int RowsCommand(const Arguments& arguments, const Setup& setup, Console& console);
int DecodeCommand(const Arguments& arguments, const Setup& setup, Console& console);
int SaveCommand(const Arguments& arguments, const Setup& setup, Console& console);
int PortsCommand(const Arguments& arguments, const Setup& setup, Console& console);
int PlayCommand(const Arguments& arguments, const Setup& setup, Console& console);
int RenderCommand(const Arguments& arguments, const Setup& setup, Console& console);
int MonitorCommand(const Arguments& arguments, const Setup& setup, Console& console);
int NewCommand(const Arguments& arguments, const Setup& setup, Console& console);
int FitCommand(const Arguments& arguments, const Setup& setup, Console& console);
int RevoiceCommand(const Arguments& arguments, const Setup& setup, Console& console);
int InstrumentsCommand(const Arguments& arguments, const Setup& setup, Console& console);
int SoundsCommand(const Arguments& arguments, const Setup& setup, Console& console);
int NameCommand(const Arguments& arguments, const Setup& setup, Console& console);
int DrumsCommand(const Arguments& arguments, const Setup& setup, Console& console);
int ExplainCommand(const Arguments& arguments, const Setup& setup, Console& console);

}  // namespace Sonarello
