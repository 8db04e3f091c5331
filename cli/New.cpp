#include <nlohmann/json.hpp>

#include "Commands.h"
#include "DisplayText.h"
#include "core/TextEncoding.h"

namespace Sonarello {

int NewCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  constexpr int format = 1;
  SongDesk desk(setup, arguments.Answer.value_or(false));
  const std::string& file = arguments.Output;
  const bool saved = desk.Create(file, arguments.NewSong) && desk.Save(file, format);
  if (!saved || !arguments.Quiet) TellMessages(console, file, desk.messages.Shown);
  if (arguments.Json)
    console.Out(
        nlohmann::ordered_json{{"output", DecodedText(file)}, {"saved", saved}, {"format", format}}
            .dump(2) +
        "\n");
  return saved ? Done : Refused;
}

}  // namespace Sonarello
