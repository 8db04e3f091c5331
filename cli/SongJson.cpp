#include <cmath>

#include "DisplayText.h"
#include "JsonParts.h"
#include "core/TextEncoding.h"

namespace Sonarello {

namespace {

Json ValueJson(const std::optional<DeskValue>& value) {
  if (!value) return nullptr;
  return {{"value", value->Value}, {"placeholder", value->Placeholder}};
}

Json ChannelJson(const ChannelFacts& channel) {
  Json controllers = Json::object();
  for (std::size_t i = 0; i < DeskControllers.size(); ++i)
    controllers[std::to_string(DeskControllers[i])] = ValueJson(channel.Controllers[i]);
  return {{"channel", channel.Channel},
          {"active", channel.Active},
          {"output", channel.Output},
          {"route", channel.Route},
          {"bankMSB", ValueJson(channel.BankMSB)},
          {"bankLSB", ValueJson(channel.BankLSB)},
          {"program", channel.Program ? Json(channel.Program->Value) : Json(nullptr)},
          {"sound", channel.Sound.empty() ? Json(nullptr) : Json(DecodedText(channel.Sound))},
          {"drumPart", channel.DrumPart},
          {"notes", channel.Notes},
          {"controllers", std::move(controllers)}};
}

Json TempiJson(const std::vector<TempoFacts>& tempi) {
  constexpr double thousandths = 1000;
  Json list = Json::array();
  for (const TempoFacts& tempo : tempi) {
    Json entry = PlaceJson(tempo.At);
    entry["bpm"] = std::round(tempo.Bpm * thousandths) / thousandths;
    list.push_back(std::move(entry));
  }
  return list;
}

Json SignaturesJson(const std::vector<SignatureFacts>& signatures) {
  Json list = Json::array();
  for (const SignatureFacts& signature : signatures) {
    Json entry = PlaceJson(signature.At);
    entry["numerator"] = signature.Numerator;
    entry["denominator"] = signature.Denominator;
    list.push_back(std::move(entry));
  }
  return list;
}

Json CountInJson(const std::optional<CountInFacts>& countIn) {
  if (!countIn) return nullptr;
  return {{"channel", countIn->Channel},
          {"notes", countIn->Notes},
          {"first", PlaceJson(countIn->First)},
          {"last", PlaceJson(countIn->Last)}};
}

const char* KindName(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::Dropped: return "dropped";
    case ChangeKind::Inserted: return "inserted";
    case ChangeKind::Moved: return "moved";
    case ChangeKind::Rewritten: return "rewritten";
  }
  return "";
}

Json ChangesJson(const SongDesk& desk) {
  Json list = Json::array();
  for (const TChange& change : ChangesInOrder(desk))
    list.push_back({{"track", change.Track},
                    {"position", SongPositionToMTC(desk.song, change.Position)},
                    {"tick", change.Position},
                    {"oldTick", change.OldPosition},
                    {"kind", KindName(change.Kind)},
                    {"what", DecodedText(change.What)},
                    {"why", DecodedText(change.Why)}});
  return list;
}

}  // namespace

std::string SongJson(const SongDesk& desk, const std::string& file, bool changes) {
  const SongFacts facts = GatherFacts(desk);
  Json song = {
      {"file", DecodedText(file)},
      {"title", DecodedText(facts.Title)},
      {"instrument", {{"name", desk.MainRoute().Instrument}, {"value", desk.MainRoute().InstrumValue}}},
      {"format", {{"read", facts.FormatRead}, {"working", facts.FormatWorking}}},
      {"tracks", facts.Tracks},
      {"timeBase", facts.TimeBase},
      {"tempi", TempiJson(facts.Tempi)},
      {"signatures", SignaturesJson(facts.Signatures)},
      {"length", PlaceJson(facts.End)},
      {"firstNote", facts.FirstNote ? PlaceJson(*facts.FirstNote) : Json(nullptr)},
      {"countIn", CountInJson(facts.CountIn)},
      {"noteCheck", desk.NoteCheck.empty() ? Json(nullptr) : Json(DecodedText(desk.NoteCheck))},
  };
  song["length"]["measures"] = facts.Measures;
  song["channels"] = Json::array();
  for (const ChannelFacts& channel : facts.Channels) song["channels"].push_back(ChannelJson(channel));
  if (changes) song["changes"] = ChangesJson(desk);
  return song.dump(2) + "\n";
}

}  // namespace Sonarello
