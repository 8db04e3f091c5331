#include <fmt/format.h>

#include "Batch.h"
#include "Commands.h"
#include "DisplayText.h"
#include "JsonParts.h"
#include "SoundLists.h"
#include "core/MidiFunctions.h"
#include "core/Texts.h"
#include "instruments/AutoRevoicer.h"
#include "instruments/SoundListReader.h"
#include "instruments/UserFiles.h"

namespace Sonarello {

namespace {

void Tell(Console& console, const std::string& file, const std::string& text) {
  TellMessages(console, file, {text});
}

/// Reads the rules. False, and told, if that is not possible or a line is faulty.
bool ReadRules(const std::string& file, TRevoicerRules& rules, Console& console) {
  std::string bytes;
  switch (ReadUserFile(file, bytes)) {
    case UserFile::Missing:
      Tell(console, file, Text("Die Datei gibt es nicht", "there is no such file"));
      return false;
    case UserFile::Unreadable:
      Tell(console, file, Text("Die Datei lässt sich nicht lesen", "the file cannot be read"));
      return false;
    case UserFile::Read: break;
  }
  rules = ReadRevoicerRules(DecodeListFile(bytes));
  for (const std::string& fault : rules.Faults) Tell(console, file, fault);
  return rules.Faults.empty();
}

/// A destination that the instrument lacks would be mended or sound wrong.
void TellForeignSounds(const std::string& file, const TRevoicerRules& rules, const Setup& setup,
                       Console& console) {
  const SoundSet* set = MainSounds(setup);
  if (set == nullptr) return;
  for (const TRevoicerRec& rule : rules.Rows) {
    if (NameSound(*set, {.Address = rule.Dest()}, NamingOf(setup.options)).Known) continue;
    const std::string sound = rule.DestVoiceName + " (" + AddressText(rule.Dest()) + ")";
    Tell(console, file,
         Text("Das Instrument hat diesen Klang nicht: " + sound,
              "the instrument does not have this sound: " + sound));
  }
}

std::string CountsText(const TRevoiceResult& result) {
  const auto counted = [](int count, const std::string& one, const std::string& several) {
    return fmt::format("{} {}", count, count == 1 ? one : several);
  };
  std::string text = counted(result.Replaced, Text("Klang ersetzt", "sound replaced"),
                             Text("Klänge ersetzt", "sounds replaced"));
  if (result.Inserted > 0)
    text += ", " + counted(result.Inserted, Text("Bankwahl eingefügt", "bank select inserted"),
                           Text("Bankwahlen eingefügt", "bank selects inserted"));
  return text;
}

void Apply(SongDesk& desk, Job& job, const Setup& setup, const TRevoicerRules& rules) {
  const TRevoiceResult result = Revoice(desk.song, setup.routes, rules.Rows);
  for (int channel = 0; channel < ChannelCount; ++channel)
    if (result.Channels.test(static_cast<std::size_t>(channel)))
      static_cast<void>(desk.names.DisplayPatchName(channel));
  job.Report = NameOnOneLine(job.Source) + ": " + CountsText(result) + "\n";
  job.Facts = {
      {"replaced", result.Replaced}, {"inserted", result.Inserted}, {"protocol", Json::array()}};
  for (const TRevoiceLine& line : result.Protocol) {
    const Place place = PlaceOf(desk.song, line.Position);
    job.Protocol.push_back(place.Text + line.Text);
    Json entry = PlaceJson(place);
    entry["track"] = line.Track;
    entry["text"] = job.Protocol.back();
    job.Facts["protocol"].push_back(std::move(entry));
  }
}

}  // namespace

int RevoiceCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  TRevoicerRules rules;
  if (!ReadRules(arguments.Rules, rules, console)) return Refused;
  if (!arguments.Quiet) TellForeignSounds(arguments.Rules, rules, setup, console);
  return RunBatch(arguments, setup, console,
                  {.BeforeSave = [&](SongDesk& desk, Job& job) { Apply(desk, job, setup, rules); },
                   .AfterSave = {},
                   .Between = {}});
}

}  // namespace Sonarello
