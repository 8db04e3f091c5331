#include "desk/OptionsEdit.h"

#include <algorithm>
#include <utility>

#include "core/Texts.h"
#include "desk/OptionsEditFields.h"
#include "desk/SettingsKeys.h"

namespace Sonarello {

namespace {

constexpr int LeastShownRoutes = 8;
constexpr int MenuRoutes = 16;  ///< what the menu of a channel can offer

constexpr std::string_view MainInstrumentKey = "MidiInstrument00";
constexpr std::string_view MainOutputKey = "MidiOutput00";

std::string RouteKey(std::string_view name, std::size_t index) {
  const std::string number = std::to_string(index);
  return std::string(name) + (number.size() < 2 ? "0" : "") + number;
}

unsigned Bits(std::initializer_list<TOptionChange> changes) {
  unsigned bits = 0;
  for (const TOptionChange change : changes) bits |= static_cast<unsigned>(change);
  return bits;
}

unsigned BitsOfKey(std::string_view key) {
  using enum TOptionChange;
  if (key == "Lang") return Bits({Language});
  if (key == "SkinIndex") return Bits({Theme});
  if (key == "ScaleIndex") return Bits({Scale});
  if (key == "MultiMidi" || key == "VirtualSynthDelay") return Bits({Routes});
  if (key == "LimexTE200" || key.starts_with("RolandSC")) return Bits({Sounds});
  if (key == "MidiInputName" || key.starts_with("Rec")) return Bits({Recording});
  if (key == "DisplayActive" || key == "ShowLyrics" || key == "ShowXFChords" ||
      key == "UseGermanChords" || key.starts_with("Lyrics"))
    return Bits({Display});
  return 0;
}

std::string Marked(std::string_view name) {
  return Text("„" + std::string(name) + "“", "“" + std::string(name) + "”");
}

void AddUnlessThere(std::vector<std::string>& names, const std::string& name) {
  if (!name.empty() && std::ranges::find(names, name) == names.end()) names.push_back(name);
}

}  // namespace

TOptionsInput LoadOptionsInput(const ISettings& settings, std::vector<std::string> outputs,
                               std::vector<std::string> inputs) {
  TOptionsInput input;
  LoadSettings(settings, input.SongOptions, input.Desk);
  TRoutes routes;
  routes.LoadSettings(settings, true);
  for (std::size_t i = 0; i < input.Routes.size(); ++i)
    input.Routes[i] = {routes.MidiRouteLoad[i].Instrument, routes.MidiRouteLoad[i].OutputName};
  input.Outputs = std::move(outputs);
  input.Inputs = std::move(inputs);
  return input;
}

OptionsEdit::OptionsEdit(TOptionsInput input) : onEntry(std::move(input)), now(onEntry) {}

// --- Values

std::string OptionsEdit::Value(std::string_view key) const {
  const TSettingsKey* row = FindSettingsKey(key);
  if (row == nullptr) return {};
  if (row->Key == MainInstrumentKey) return now.Routes[0].Instrument;
  if (row->Key == MainOutputKey) return now.Routes[0].OutputName;
  if (row->Key == "Lang") return IsGerman(now.Desk, GermanLanguage ? "de" : "en") ? "de" : "en";
  return SettingText(*row, now.SongOptions, now.Desk);
}

bool OptionsEdit::SetValue(std::string_view key, std::string_view text) {
  const TSettingsKey* row = FindSettingsKey(key);
  if (row == nullptr) return false;
  if (row->Key == "Lang" && text == Value(key))
    return true;  // the system's language need not be stored
  if (row->Key == MainInstrumentKey) {
    SetRouteInstrument(0, std::string(text));
    return true;
  }
  if (row->Key == MainOutputKey) {
    SetRouteOutput(0, std::string(text));
    return true;
  }
  return SetSetting(*row, text, now.SongOptions, now.Desk);
}

std::string OptionsEdit::WhyDisabled(std::string_view key) const {
  const TOptionField* field = FindOptionField(key);
  if (field == nullptr) return {};
  if (field->Room != TOptionRoom::Built) return RoomReason(field->Room);
  if (field->Needs.empty() || Value(field->Needs) != "0") return {};
  const TOptionField* needed = FindOptionField(field->Needs);
  const std::string name =
      needed != nullptr ? Text(needed->German, needed->English) : std::string(field->Needs);
  return Text("Wirkt erst mit " + Marked(name) + ".", "Takes effect with " + Marked(name) + " only.");
}

std::string OptionsEdit::Explanation(std::string_view key) const {
  const TSettingsKey* row = FindSettingsKey(key);
  if (row == nullptr) return {};
  std::string text = WhyDisabled(key);
  if (!text.empty()) text += '\n';
  text += Text(row->German, row->English) + '.';
  const TOptionField* field = FindOptionField(key);
  if (field != nullptr && field->Control == TOptionControl::Number) {
    const std::string min = std::to_string(row->Min);
    const std::string max = std::to_string(row->Max);
    text += '\n' + Text(min + " bis " + max + ", Vorgabe ", min + " to " + max + ", default ") +
            DefaultText(*row) + '.';
  }
  return text;
}

// --- Routes

const TEditedRoute& OptionsEdit::Route(int index) const {
  return now.Routes[static_cast<std::size_t>(index)];
}

void OptionsEdit::SetRouteInstrument(int index, const std::string& instrument) {
  TEditedRoute& route = now.Routes[static_cast<std::size_t>(index)];
  route.Instrument = instrument;
  if (!route.OutputName.empty() || now.Outputs.empty()) return;
  const auto isFree = [&](const std::string& output) {
    return std::ranges::find(now.Routes, output, &TEditedRoute::OutputName) == now.Routes.end();
  };
  const auto free = std::ranges::find_if(now.Outputs, isFree);
  route.OutputName = free != now.Outputs.end() ? *free : now.Outputs.front();
}

void OptionsEdit::SetRouteOutput(int index, const std::string& output) {
  now.Routes[static_cast<std::size_t>(index)].OutputName = output;
}

void OptionsEdit::RemoveRoute(int index) {
  if (index <= 0 || index >= MostRoutes) return;
  const auto removed = now.Routes.begin() + index;
  std::move(removed + 1, now.Routes.end(), removed);
  now.Routes.back() = {};
}

int OptionsEdit::UsedRoutes() const {
  const auto isUsed = [](const TEditedRoute& route) { return route != TEditedRoute{}; };
  const auto last = std::find_if(now.Routes.rbegin(), now.Routes.rend(), isUsed);
  return static_cast<int>(std::distance(last, now.Routes.rend()));
}

int OptionsEdit::ShownRoutes() const {
  return std::clamp(UsedRoutes() + 1, LeastShownRoutes, MostRoutes);
}

bool OptionsEdit::IsRouteOpen(int index) const {
  if (index == 0) return true;
  return now.SongOptions.MultiMidi && index <= UsedRoutes() && index < MostRoutes;
}

std::vector<std::string> OptionsEdit::OutputChoices(int index) const {
  std::vector<std::string> choices = now.Outputs;
  AddUnlessThere(choices, Route(index).OutputName);
  return choices;
}

std::vector<std::string> OptionsEdit::InputChoices() const {
  std::vector<std::string> choices = now.Inputs;
  AddUnlessThere(choices, now.Desk.MidiInputName);
  return choices;
}

bool OptionsEdit::IsOutputMissing(int index) const {
  const std::string& output = Route(index).OutputName;
  return !output.empty() && std::ranges::find(now.Outputs, output) == now.Outputs.end();
}

std::string OptionsEdit::RoutesWarning() const {
  std::vector<std::string> missing;
  const int used = now.SongOptions.MultiMidi ? UsedRoutes() : 1;
  int playing = 0;
  for (int i = 0; i < used; ++i) {
    if (IsOutputMissing(i))
      AddUnlessThere(missing, Route(i).OutputName);
    else if (!Route(i).OutputName.empty())
      ++playing;
  }
  if (missing.empty() && used > MenuRoutes)
    return Text("Das Menü eines Kanals bietet nur die ersten 16 Routen an.",
                "The menu of a channel offers the first 16 routes only.");
  if (missing.empty()) return {};
  std::string names;
  for (const std::string& name : missing) names += (names.empty() ? "" : ", ") + Marked(name);
  if (missing.size() > 1)
    return names +
           Text(
               " sind nicht angeschlossen. Die Routen werden übersprungen, bis die Ausgänge wieder "
               "da sind.",
               " are not connected. The routes are skipped until the outputs are back.");
  if (playing == 0 && !now.Outputs.empty())
    return names + Text(" ist nicht angeschlossen. Bis der Ausgang wieder da ist, spielt " +
                            Marked(now.Outputs.front()) + '.',
                        " is not connected. Until the output is back, " + Marked(now.Outputs.front()) +
                            " plays.");
  return names +
         Text(" ist nicht angeschlossen. Die Route wird übersprungen, bis der Ausgang wieder da ist.",
              " is not connected. The route is skipped until the output is back.");
}

// --- Changes

TOptionChanges OptionsEdit::Changes() const {
  TOptionChanges changes;
  for (const TSettingsKey& key : SettingsKeys())
    if (SettingText(key, now.SongOptions, now.Desk) !=
        SettingText(key, onEntry.SongOptions, onEntry.Desk)) {
      changes.Keys.emplace_back(key.Key);
      changes.Flags |= BitsOfKey(key.Key);
    }
  for (std::size_t i = 0; i < now.Routes.size(); ++i) {
    if (now.Routes[i] == onEntry.Routes[i]) continue;
    if (now.Routes[i].Instrument != onEntry.Routes[i].Instrument)
      changes.Keys.push_back(RouteKey("MidiInstrument", i));
    if (now.Routes[i].OutputName != onEntry.Routes[i].OutputName)
      changes.Keys.push_back(RouteKey("MidiOutput", i));
    changes.Flags |= Bits({TOptionChange::Routes});
  }
  if (now.Routes[0].Instrument != onEntry.Routes[0].Instrument)
    changes.Flags |= Bits({TOptionChange::MainInstrument, TOptionChange::Sounds});
  return changes;
}

void OptionsEdit::Store(ISettings& settings) const {
  for (const TSettingsKey& key : SettingsKeys()) {
    const std::string text = SettingText(key, now.SongOptions, now.Desk);
    if (text != SettingText(key, onEntry.SongOptions, onEntry.Desk))
      settings.WriteString({}, key.Key, text);
  }
  for (std::size_t i = 0; i < now.Routes.size(); ++i) {
    const auto store = [&](std::string_view name, const std::string& before, const std::string& after) {
      if (before == after) return;
      if (after.empty())
        settings.DeleteValue({}, RouteKey(name, i));
      else
        settings.WriteString({}, RouteKey(name, i), after);
    };
    store("MidiInstrument", onEntry.Routes[i].Instrument, now.Routes[i].Instrument);
    store("MidiOutput", onEntry.Routes[i].OutputName, now.Routes[i].OutputName);
  }
}

}  // namespace Sonarello
