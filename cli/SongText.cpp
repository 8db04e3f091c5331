#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "DisplayText.h"
#include "SongFacts.h"
#include "TextTable.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t ShownEntries = 4;  ///< of tempo and signature; of more the number is told
constexpr std::size_t LongestWhat = 60;  ///< characters of an event in the table of changes

/// "120" or "119.5": as many decimals as are needed, two at most.
std::string BpmText(double bpm) {
  std::string text = fmt::format("{:.2f}", bpm);
  while (text.ends_with('0')) text.pop_back();
  if (text.ends_with('.')) text.pop_back();
  return text;
}

/// The first value, then the changes with their places ("4/4, 3/4 at 017.01.000"); of many the count
/// and what `rangeText` says of them.
template <class T, class F, class G>
std::string CourseText(const std::vector<T>& entries, F&& valueText, G&& rangeText) {
  if (entries.empty()) return "-";
  std::string text = valueText(entries.front());
  if (entries.size() > ShownEntries) {
    const std::string count = std::to_string(entries.size() - 1);
    return text + Text(", " + count + " Wechsel", ", " + count + " changes") + rangeText();
  }
  for (std::size_t i = 1; i < entries.size(); ++i)
    text += ", " + valueText(entries[i]) + Text(" ab ", " at ") + entries[i].At.Text;
  return text;
}

std::string TempoText(const std::vector<TempoFacts>& tempi) {
  return CourseText(
      tempi, [](const TempoFacts& tempo) { return BpmText(tempo.Bpm) + " bpm"; },
      [&] {
        const auto [low, high] =
            std::minmax_element(tempi.begin(), tempi.end(),
                                [](const TempoFacts& a, const TempoFacts& b) { return a.Bpm < b.Bpm; });
        return fmt::format(", {} … {} bpm", BpmText(low->Bpm), BpmText(high->Bpm));
      });
}

std::string SignatureText(const std::vector<SignatureFacts>& signatures) {
  return CourseText(
      signatures,
      [](const SignatureFacts& s) { return fmt::format("{}/{}", s.Numerator, s.Denominator); },
      [] { return std::string(); });
}

std::string FormatText(const SongFacts& facts) {
  if (facts.FormatRead == facts.FormatWorking) return std::to_string(facts.FormatWorking);
  return fmt::format("{} ({})", facts.FormatWorking,
                     Text("gelesen als ", "read as ") + std::to_string(facts.FormatRead));
}

std::string PlaceText(const Place& place) {
  return fmt::format("{} (Tick {}), {}", place.Text, place.Tick, TimeText(place.Milliseconds));
}

std::string CountInText(const std::optional<CountInFacts>& countIn) {
  if (!countIn) return Text("keiner", "none");
  return Text("Kanal ", "channel ") + fmt::format("{}, {} {}, {} … {}", countIn->Channel,
                                                  countIn->Notes, Text("Noten", "notes"),
                                                  countIn->First.Text, countIn->Last.Text);
}

/// Verdict of the note check on one line.
std::string NotesText(const std::string& verdict) {
  return verdict.empty() ? Text("in Ordnung", "fine") : VisibleText(OneLine(verdict));
}

std::string HeaderText(const SongDesk& desk, const SongFacts& facts, const std::string& file) {
  const TMidiRouting& main = desk.MainRoute();
  const std::vector<std::pair<std::string, std::string>> lines = {
      {Text("Datei", "File"), VisibleText(file)},
      {Text("Titel", "Title"), facts.Title.empty() ? "-" : VisibleText(facts.Title)},
      {"Instrument", fmt::format("{} ({})", main.Instrument, main.InstrumValue)},
      {"Format", FormatText(facts)},
      {Text("Spuren", "Tracks"), std::to_string(facts.Tracks)},
      {Text("Auflösung", "Time base"),
       std::to_string(facts.TimeBase) + Text(" Ticks je Viertel", " ticks per quarter note")},
      {"Tempo", TempoText(facts.Tempi)},
      {Text("Taktart", "Signature"), SignatureText(facts.Signatures)},
      {Text("Länge", "Length"), fmt::format("{} {}, {}", facts.Measures, Text("Takte", "measures"),
                                            TimeText(facts.End.Milliseconds))},
      {Text("Erste Note", "First note"),
       facts.FirstNote ? PlaceText(*facts.FirstNote) : Text("keine", "none")},
      {Text("Vorzähler", "Count-in"), CountInText(facts.CountIn)},
      {Text("Notenprüfung", "Note check"), NotesText(desk.NoteCheck)},
  };
  std::string text;
  for (const auto& [name, value] : lines)
    text += name + std::string(14 - TextWidth(name), ' ') + value + "\n";
  return text;
}

/// Digits stand in line whether in brackets or not.
std::string ValueText(const std::optional<DeskValue>& value) {
  if (!value) return "- ";
  return value->Placeholder ? fmt::format("({})", value->Value) : fmt::format("{} ", value->Value);
}

std::string ChannelTable(const SongFacts& facts, bool routes) {
  std::vector<TextTable::Column> columns = {{Text("Kan", "Ch"), Align::Right},
                                            {"", Align::Left},
                                            {Text("Aus", "Out"), Align::Right},
                                            {"MSB ", Align::Right},
                                            {"LSB ", Align::Right},
                                            {"Prog ", Align::Right},
                                            {Text("Klang", "Sound"), Align::Left},
                                            {"Drum", Align::Right},
                                            {Text("Noten", "Notes"), Align::Right}};
  if (routes) columns.insert(columns.begin() + 3, {"Route", Align::Right});
  for (const int controller : DeskControllers)
    columns.push_back({fmt::format("CC{} ", controller), Align::Right});
  TextTable table(columns);
  for (const ChannelFacts& channel : facts.Channels) {
    std::vector<std::string> row = {std::to_string(channel.Channel), channel.Active ? "*" : " ",
                                    std::to_string(channel.Output)};
    if (routes) row.push_back(std::to_string(channel.Route));
    row.push_back(ValueText(channel.BankMSB));
    row.push_back(ValueText(channel.BankLSB));
    row.push_back(ValueText(channel.Program));
    row.push_back(VisibleText(channel.Sound));
    row.push_back(channel.DrumPart == 0 ? "-" : std::to_string(channel.DrumPart));
    row.push_back(channel.Notes == 0 ? "-" : std::to_string(channel.Notes));
    for (const auto& controller : channel.Controllers) row.push_back(ValueText(controller));
    table.AddRow(std::move(row));
  }
  return table.Render();
}

std::string Legend() {
  return Text(
      "*  der Kanal ist belegt; Prog wie gespeichert, 0 bis 127\n"
      "(n)  Platzhalter: fehlt im Song, wird weder gespielt noch gespeichert\n",
      "*  the channel is in use; Prog as stored, 0 to 127\n"
      "(n)  placeholder: not in the song, neither played nor saved\n");
}

std::string CountsText(const std::vector<TChange>& changes) {
  std::string text =
      std::to_string(changes.size()) +
      (changes.size() == 1 ? Text(" Änderung", " change") : Text(" Änderungen", " changes"));
  const char* separator = ": ";
  for (const ChangeKind kind :
       {ChangeKind::Dropped, ChangeKind::Inserted, ChangeKind::Moved, ChangeKind::Rewritten}) {
    const auto count = std::count_if(changes.begin(), changes.end(),
                                     [&](const TChange& change) { return change.Kind == kind; });
    if (count == 0) continue;
    text += fmt::format("{}{} {}", separator, count, KindText(kind));
    separator = ", ";
  }
  return text;
}

std::string TickText(const TChange& change) {
  if (change.OldPosition == change.Position) return std::to_string(change.Position);
  return fmt::format("{} -> {}", change.OldPosition, change.Position);
}

}  // namespace

std::string SongText(const SongDesk& desk, const std::string& file) {
  const SongFacts facts = GatherFacts(desk);
  return HeaderText(desk, facts, file) + "\n" + ChannelTable(facts, desk.RouteCount() > 1) + "\n" +
         Legend();
}

std::string ChangesText(const SongDesk& desk) {
  const std::vector<TChange> changes = ChangesInOrder(desk);
  if (changes.empty()) return Text("Das Anpassen hat nichts geändert.\n", "Fitting changed nothing.\n");
  TextTable table({{Text("Spur", "Track"), Align::Right},
                   {"Position", Align::Left},
                   {"Tick", Align::Right},
                   {Text("Art", "Kind"), Align::Left},
                   {Text("Was", "What"), Align::Left},
                   {Text("Warum", "Why"), Align::Left}});
  for (const TChange& change : changes)
    table.AddRow({std::to_string(change.Track), SongPositionToMTC(desk.song, change.Position),
                  TickText(change), KindText(change.Kind),
                  Shortened(VisibleText(change.What), LongestWhat), VisibleText(change.Why)});
  return CountsText(changes) + "\n\n" + table.Render();
}

}  // namespace Sonarello
