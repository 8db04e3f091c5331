#include "FitReport.h"

#include <fmt/format.h>

#include <algorithm>

#include "DisplayText.h"
#include "SoundLists.h"
#include "TextTable.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t ShownPlaces = 4;  ///< of one finding; of more the number is told

int NumberOf(const std::optional<DeskValue>& value) { return value ? value->Value : -1; }

/// The instrument's words for a sound as the song had it.
std::string NameAsAsked(const SongDesk& desk, const Setup& setup, const TSoundFinding& finding) {
  const auto channel = static_cast<std::size_t>(finding.Channel);
  const std::size_t route = desk.song.MidiOutIndex[channel];
  const auto& table = setup.routes.Table;
  const SoundSet* set = setup.sounds->Find(table[route < table.size() ? route : 0].InstrumValue);
  if (set == nullptr) return {};
  TNaming naming = NamingOf(setup.options);
  naming.AutoProgChange = false;
  const TSoundQuery query = {.Address = finding.Asked,
                             .Channel = finding.Channel,
                             .DrumPart = desk.song.MidiData[channel].DrumPart};
  return NameSound(*set, query, naming).Text();
}

void AddFinding(std::vector<FitFinding>& list, const SongDesk& desk, const Setup& setup,
                const TSoundFinding& finding) {
  const int channel = finding.Channel + 1;
  auto entry = std::ranges::find_if(list, [&](const FitFinding& f) {
    return f.Channel == channel && f.Asked == finding.Asked && f.Given == finding.Given;
  });
  if (entry == list.end()) {
    list.push_back({.Channel = channel,
                    .Asked = finding.Asked,
                    .AskedName = NameAsAsked(desk, setup, finding),
                    .Given = finding.Given,
                    .Name = finding.Name,
                    .Mended = finding.Mended,
                    .Places = {}});
    entry = list.end() - 1;
  }
  entry->Places.push_back(PlaceOf(desk.song, finding.Position));
}

/// The channel's sound is its first; a finding tells of it if it gave the same address.
SoundState StateOf(const FitChannel& channel, const FitReport& report) {
  if (channel.Name.empty()) return SoundState::None;
  const auto tells = [&](const FitFinding& finding) {
    return finding.Channel == channel.Channel && finding.Given == channel.Address;
  };
  if (std::ranges::any_of(report.Unknown, tells)) return SoundState::Unknown;
  return std::ranges::any_of(report.Mended, tells) ? SoundState::Mended : SoundState::Fits;
}

const char* StateMark(SoundState state) {
  switch (state) {
    case SoundState::Mended: return "~";
    case SoundState::Unknown: return "?";
    default: return " ";
  }
}

const char* StateName(SoundState state) {
  switch (state) {
    case SoundState::None: return "none";
    case SoundState::Fits: return "fits";
    case SoundState::Mended: return "mended";
    case SoundState::Unknown: return "unknown";
  }
  return "";
}

std::string HeaderText(const FitReport& report, const SongDesk& desk, const std::string& source,
                       const std::string& target) {
  const TMidiRouting& main = desk.MainRoute();
  const std::vector<std::pair<std::string, std::string>> lines = {
      {Text("Datei", "File"), VisibleText(source)},
      {Text("Gespeichert", "Saved as"), VisibleText(target)},
      {Text("Titel", "Title"), report.Title.empty() ? "-" : VisibleText(report.Title)},
      {"Instrument", fmt::format("{} ({})", main.Instrument, main.InstrumValue)},
  };
  std::string text;
  for (const auto& [name, value] : lines)
    text += name + std::string(14 - TextWidth(name), ' ') + value + "\n";
  return text;
}

std::string ChannelsText(const FitReport& report) {
  TextTable table({{Text("Kan", "Ch"), Align::Right},
                   {"", Align::Left},
                   {"MSB", Align::Right},
                   {"LSB", Align::Right},
                   {"Prog", Align::Right},
                   {Text("Klang", "Sound"), Align::Left}});
  for (const FitChannel& channel : report.Channels)
    table.AddRow({std::to_string(channel.Channel), StateMark(channel.State),
                  NumberText(channel.Address.CC00), NumberText(channel.Address.CC32),
                  NumberText(channel.Address.Patch),
                  channel.Name.empty() ? "-" : VisibleText(channel.Name)});
  return table.Render();
}

std::string PlacesText(const std::vector<Place>& places) {
  std::string text;
  for (std::size_t i = 0; i < std::min(places.size(), ShownPlaces); ++i)
    text += (i > 0 ? ", " : "") + places[i].Text;
  if (places.size() > ShownPlaces)
    text += Text(fmt::format(", … ({} Stellen)", places.size()),
                 fmt::format(", … ({} places)", places.size()));
  return text;
}

std::string SoundText(const TAddress& address, const std::string& name) {
  return PlainAddress(address) + (name.empty() ? "" : " " + VisibleText(name));
}

std::string MendedText(const FitReport& report) {
  if (report.Mended.empty()) return {};
  TextTable table({{Text("Kan", "Ch"), Align::Right},
                   {Text("Im Song", "In the song"), Align::Left},
                   {Text("Gespeichert", "Saved"), Align::Left},
                   {Text("Stelle", "Place"), Align::Left}});
  for (const FitFinding& finding : report.Mended)
    table.AddRow({std::to_string(finding.Channel), SoundText(finding.Asked, finding.AskedName),
                  SoundText(finding.Given, finding.Name), PlacesText(finding.Places)});
  return "\n" + Text("Ersetzt:", "Mended:") + "\n" + table.Render();
}

std::string UnknownText(const FitReport& report) {
  if (report.Unknown.empty()) return {};
  TextTable table({{Text("Kan", "Ch"), Align::Right},
                   {Text("Klang", "Sound"), Align::Left},
                   {Text("Stelle", "Place"), Align::Left}});
  for (const FitFinding& finding : report.Unknown)
    table.AddRow({std::to_string(finding.Channel), SoundText(finding.Given, finding.Name),
                  PlacesText(finding.Places)});
  return "\n" + Text("Dem Instrument unbekannt:", "Unknown to the instrument:") + "\n" + table.Render();
}

std::size_t UsedChannels(const FitReport& report) {
  return static_cast<std::size_t>(std::ranges::count_if(
      report.Channels, [](const FitChannel& channel) { return !channel.Name.empty(); }));
}

std::string CountsText(const FitReport& report) {
  return Text(fmt::format("Kanäle mit Klang: {}; Klangwechsel ersetzt: {}, unbekannt: {}",
                          UsedChannels(report), report.MendedPlaces, report.UnknownPlaces),
              fmt::format("Channels with a sound: {}; sound changes mended: {}, unknown: {}",
                          UsedChannels(report), report.MendedPlaces, report.UnknownPlaces)) +
         "\n";
}

Json NamedJson(const TAddress& address, const std::string& name) {
  Json entry = AddressJson(address);
  entry["name"] = DecodedText(name);
  return entry;
}

Json FindingsJson(const std::vector<FitFinding>& findings) {
  Json list = Json::array();
  for (const FitFinding& finding : findings) {
    Json entry = {{"channel", finding.Channel}};
    if (finding.Mended) entry["asked"] = NamedJson(finding.Asked, finding.AskedName);
    entry["saved"] = NamedJson(finding.Given, finding.Name);
    entry["places"] = Json::array();
    for (const Place& place : finding.Places) entry["places"].push_back(PlaceJson(place));
    list.push_back(std::move(entry));
  }
  return list;
}

}  // namespace

FitReport GatherFit(const SongDesk& desk, const Setup& setup) {
  const SongFacts facts = GatherFacts(desk);
  FitReport report;
  report.Title = facts.Title;
  for (const TSoundFinding& finding : desk.names.Findings()) {
    AddFinding(finding.Mended ? report.Mended : report.Unknown, desk, setup, finding);
    ++(finding.Mended ? report.MendedPlaces : report.UnknownPlaces);
  }
  for (std::size_t c = 0; c < ChannelCount; ++c) {
    const ChannelFacts& from = facts.Channels[c];
    FitChannel& channel = report.Channels[c];
    channel.Channel = from.Channel;
    channel.Name = from.Sound;
    if (!from.Sound.empty())
      channel.Address = {NumberOf(from.BankMSB), NumberOf(from.BankLSB), NumberOf(from.Program)};
    channel.State = StateOf(channel, report);
  }
  return report;
}

std::string FitText(const FitReport& report, const SongDesk& desk, const std::string& source,
                    const std::string& target) {
  const bool marked = !report.Mended.empty() || !report.Unknown.empty();
  const std::string legend =
      Text("~  ersetzt   ?  dem Instrument unbekannt\n", "~  mended   ?  unknown to the instrument\n");
  return HeaderText(report, desk, source, target) + "\n" + ChannelsText(report) +
         (marked ? "\n" + legend : "") + MendedText(report) + UnknownText(report) + "\n" +
         CountsText(report);
}

Json FitJson(const FitReport& report, const SongDesk& desk) {
  Json facts = {
      {"title", DecodedText(report.Title)},
      {"instrument", {{"name", desk.MainRoute().Instrument}, {"value", desk.MainRoute().InstrumValue}}},
      {"channels", Json::array()}};
  for (const FitChannel& channel : report.Channels) {
    Json entry = {{"channel", channel.Channel}, {"state", StateName(channel.State)}};
    entry["sound"] = channel.Name.empty() ? Json(nullptr) : Json(DecodedText(channel.Name));
    entry.update(AddressJson(channel.Address));
    facts["channels"].push_back(std::move(entry));
  }
  facts["mended"] = FindingsJson(report.Mended);
  facts["unknown"] = FindingsJson(report.Unknown);
  facts["counts"] = {{"channels", UsedChannels(report)},
                     {"mended", report.MendedPlaces},
                     {"unknown", report.UnknownPlaces}};
  return facts;
}

}  // namespace Sonarello
