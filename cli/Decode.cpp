#include <nlohmann/json.hpp>

#include "Commands.h"
#include "DisplayText.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

struct Verdict {
  bool Ok = false;
  std::string Message;
  std::optional<int> OtherMode;  ///< the `PrevCommandMode` that would open the file
};

Verdict Decode(const std::string& file, const Setup& setup) {
  SongDesk desk(setup, false);
  Verdict verdict;
  verdict.Ok = desk.Decode(file);
  if (verdict.Ok) return verdict;
  if (!desk.messages.Shown.empty()) verdict.Message = desk.messages.Shown.back();
  Setup other = setup;
  other.options.PrevCommandMode = setup.options.PrevCommandMode == 0 ? 1 : 0;
  if (SongDesk(other, false).Decode(file)) verdict.OtherMode = other.options.PrevCommandMode;
  return verdict;
}

void Hint(Console& console, const std::string& file, int mode) {
  const std::string option = "--set PrevCommandMode=" + std::to_string(mode);
  console.Err(VisibleText(file) + ": " +
              Text("Hinweis: lesbar mit " + option, "hint: can be read with " + option));
}

}  // namespace

int DecodeCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const Setup reader = ReaderSetup(setup);
  auto list = nlohmann::ordered_json::array();
  int status = Done;
  for (const std::string& file : arguments.Files) {
    const Verdict verdict = Decode(file, reader);
    if (!verdict.Ok) status = Refused;
    if (arguments.Json) {
      nlohmann::ordered_json entry = {{"file", DecodedText(file)}, {"ok", verdict.Ok}};
      if (!verdict.Ok) entry["message"] = DecodedText(verdict.Message);
      if (verdict.OtherMode) entry["opensWithPrevCommandMode"] = *verdict.OtherMode;
      list.push_back(std::move(entry));
    } else {
      const std::string words = verdict.Ok ? "ok" : VisibleText(OneLine(verdict.Message));
      console.Out(NameOnOneLine(file) + "\t" + words + "\n");
    }
    if (verdict.OtherMode && !arguments.Quiet) Hint(console, file, *verdict.OtherMode);
  }
  if (arguments.Json) console.Out(list.dump(2) + "\n");
  return status;
}

}  // namespace Sonarello
