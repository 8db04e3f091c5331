#include <fmt/format.h>

#include <array>
#include <utility>

#include "Commands.h"
#include "DisplayText.h"
#include "JsonParts.h"
#include "SoundLists.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"
#include "instruments/Naming.h"

namespace Sonarello {

namespace {

/// Without a drum part given, part 10 plays drums where parts decide, as it does in an opened song.
int DrumPartOf(const Arguments& arguments, int channel, const TFamily& family) {
  const bool byPart = family.Drums == DrumRule::Part || family.Drums == DrumRule::Channel10OrPart;
  return arguments.DrumPart.value_or(byPart && channel == DrumChannel ? 1 : 0);
}

TSoundQuery QueryOf(const Arguments& arguments, const TFamily& family) {
  const int channel = arguments.Channel.value_or(1) - 1;
  return {.Address = {arguments.MSB.value_or(-1), arguments.LSB.value_or(-1),
                      arguments.Program.value_or(-1)},
          .Channel = channel,
          .DrumPart = DrumPartOf(arguments, channel, family)};
}

/// The numbers that repair writes and that differ from the song's.
TAddress Written(const TAddress& mended, const TAddress& asked) {
  const auto number = [](int to, int from) { return to == from ? -1 : to; };
  return {number(mended.CC00, asked.CC00), number(mended.CC32, asked.CC32),
          number(mended.Patch, asked.Patch)};
}

/// What is to be said beside the name; empty for a sound that the instrument has.
std::string Remark(const TSoundName& name, const TAddress& written) {
  if (written == TAddress{})
    return name.Known ? ""
                      : Text("unbekannt: das Instrument hat diesen Klang nicht",
                             "unknown: the instrument does not have this sound");
  const std::array<std::pair<std::string, int>, 3> parts = {
      {{"MSB", written.CC00}, {"LSB", written.CC32}, {Text("Programm", "program"), written.Patch}}};
  std::string numbers;
  for (const auto& [word, number] : parts)
    if (number >= 0) numbers += fmt::format("{}{} {}", numbers.empty() ? "" : ", ", word, number);
  return Text("ersetzt: geschrieben würde " + numbers, "mended: " + numbers + " would be written");
}

}  // namespace

int NameCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const SoundSet* set = MainSounds(setup);
  const TMember* member = set == nullptr ? nullptr : MemberOf(set->Value());
  if (member == nullptr) {
    console.Err("sonarello-cli: " + Text("Von diesem Instrument sind keine Klänge bekannt",
                                         "No sounds of this instrument are known"));
    return Refused;
  }
  const TSoundQuery query = QueryOf(arguments, *member->Family);
  const TSoundName name = NameSound(*set, query, NamingOf(setup.options));
  const TAddress written = Written(name.Mended, query.Address);
  const TSoundList* list = name.Row == nullptr ? nullptr : ListOf(*set, name.Row);
  if (arguments.Json) {
    const Json result = {{"name", DecodedText(name.Text())},
                         {"known", name.Known},
                         {"drums", name.IsDrums},
                         {"mended", written == TAddress{} ? Json(nullptr) : AddressJson(written)},
                         {"list", list == nullptr ? Json(nullptr) : Json(list->Spec->Name)}};
    console.Out(result.dump(2) + "\n");
    return Done;
  }
  console.Out(VisibleText(name.Text()) + "\n");
  if (const std::string remark = Remark(name, written); !remark.empty()) console.Out(remark + "\n");
  return Done;
}

}  // namespace Sonarello
