#include "Commands.h"
#include "SongFacts.h"

namespace Sonarello {

int ShowCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const std::string& file = arguments.Files.front();
  SongDesk desk(setup, arguments.Answer.value_or(false));
  if (arguments.Changes) desk.RecordChanges();
  const bool opened = desk.Open(file);
  if (!opened || !arguments.Quiet) TellMessages(console, file, desk.messages.Shown);
  if (!opened) return Refused;
  if (arguments.Json) {
    console.Out(SongJson(desk, file, arguments.Changes));
    return Done;
  }
  console.Out(SongText(desk, file));
  if (arguments.Changes) console.Out("\n" + ChangesText(desk));
  return Done;
}

}  // namespace Sonarello
