#include "desk/UpdateList.h"

#include <algorithm>
#include <array>
#include <vector>

#include "core/TextOrder.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t LongestVersion = 32;
constexpr std::size_t LongestPage = 500;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\r')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

/// Takes the text up to a mark off its front, the mark too.
std::string_view Take(std::string_view& text, char mark) {
  const std::size_t end = std::min(text.find(mark), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return Trimmed(part);
}

/// The list comes from the web: what goes into a message is looked at first.
bool IsVersion(std::string_view text) {
  const auto allowed = [](char c) {
    return IsDigit(c) || IsLetter(c) || c == '.' || c == '-' || c == '+' || c == '_' || c == ' ';
  };
  return text.size() <= LongestVersion && std::ranges::any_of(text, IsDigit) &&
         std::ranges::all_of(text, allowed);
}

bool IsWebPage(std::string_view text) {
  const auto plain = [](char c) { return c > ' ' && c < '\x7F' && c != '"' && c != '<' && c != '>'; };
  return (text.starts_with("https://") || text.starts_with("http://")) && text.size() <= LongestPage &&
         std::ranges::all_of(text, plain);
}

}  // namespace

std::optional<TUpdateLine> ReadUpdateList(std::string_view text, std::string_view product) {
  if (text.starts_with(ByteOrderMark)) text.remove_prefix(ByteOrderMark.size());
  std::string_view head = Take(text, '\n');
  if (Take(head, '\t') != UpdateListHead) return std::nullopt;
  std::optional<TUpdateLine> newest;
  while (!text.empty()) {
    std::string_view line = Take(text, '\n');
    if (Take(line, '\t') != product) continue;
    const std::string_view version = Take(line, '\t');
    const std::string_view page = Take(line, '\t');
    if (!IsVersion(version) || (newest && CompareVersions(version, newest->Version) <= 0)) continue;
    newest = {std::string(version), std::string(IsWebPage(page) ? page : "")};
  }
  return newest;
}

// --- Versions

namespace {

/// A number, as its digits without zeros in front, or a word.
struct TVersionPart {
  bool IsNumber = false;
  std::string Text;
};

std::vector<TVersionPart> PartsOf(std::string_view version) {
  std::vector<TVersionPart> parts;
  // "1.2.0" is "1.2", and "1.2.0b" is "1.2b".
  const auto dropZeros = [&] {
    while (!parts.empty() && parts.back().IsNumber && parts.back().Text.empty()) parts.pop_back();
  };
  for (std::size_t i = 0; i < version.size();) {
    const auto same = IsDigit(version[i]) ? IsDigit : IsLetter;
    std::size_t end = i;
    while (end < version.size() && same(version[end])) ++end;
    if (end == i) {
      ++i;
      continue;
    }
    TVersionPart part{IsDigit(version[i]), std::string(version.substr(i, end - i))};
    i = end;
    if (part.IsNumber) {
      part.Text.erase(0, part.Text.find_first_not_of('0'));
    } else {
      part.Text = SmallLetters(part.Text);
      if (parts.empty() && part.Text == "v") continue;
      dropZeros();
    }
    parts.push_back(std::move(part));
  }
  dropZeros();
  return parts;
}

/// Rank of a word that announces a version, or -1.
int Announcement(const TVersionPart& part) {
  constexpr std::array<std::string_view, 4> words = {"alpha", "beta", "pre", "rc"};
  const auto found = std::ranges::find(words, part.Text);
  return part.IsNumber || found == words.end() ? -1 : static_cast<int>(found - words.begin());
}

/// What stands at a place, in ascending order: an announcement, nothing, a letter, a number.
int KindOf(const TVersionPart* part) {
  if (part == nullptr) return 1;
  if (Announcement(*part) >= 0) return 0;
  return part->IsNumber ? 3 : 2;
}

int Sign(int order) { return (order > 0) - (order < 0); }

int CompareParts(const TVersionPart* a, const TVersionPart* b) {
  if (KindOf(a) != KindOf(b)) return KindOf(a) - KindOf(b);
  if (a == nullptr) return 0;
  if (KindOf(a) == 0) return Announcement(*a) - Announcement(*b);
  if (a->IsNumber && a->Text.size() != b->Text.size()) return a->Text.size() < b->Text.size() ? -1 : 1;
  return a->Text.compare(b->Text);
}

}  // namespace

int CompareVersions(std::string_view a, std::string_view b) {
  const std::vector<TVersionPart> left = PartsOf(a);
  const std::vector<TVersionPart> right = PartsOf(b);
  for (std::size_t i = 0; i < std::max(left.size(), right.size()); ++i) {
    const int order =
        CompareParts(i < left.size() ? &left[i] : nullptr, i < right.size() ? &right[i] : nullptr);
    if (order != 0) return Sign(order);
  }
  return 0;
}

TUpdateResult JudgeUpdateList(std::string_view text, std::string_view ownVersion) {
  const std::optional<TUpdateLine> line = ReadUpdateList(text);
  if (!line) return {TUpdateOutcome::Failed, {}};
  const bool newer = CompareVersions(line->Version, ownVersion) > 0;
  return {newer ? TUpdateOutcome::Newer : TUpdateOutcome::UpToDate, *line};
}

// --- What the user is told

std::string UpdateText(const TUpdateResult& result) {
  const std::string& version = result.Line.Version;
  switch (result.Outcome) {
    case TUpdateOutcome::NoEndpoint:
      return Text(
          "Es ist keine Internet-Adresse für die Suche nach Updates eingestellt (Einstellung "
          "\"UpdateUrl\").",
          "No internet address is set for the update check (setting \"UpdateUrl\").");
    case TUpdateOutcome::Failed:
      return Text("Fehler beim Herunterladen der Daten über Internet!",
                  "Error retreaving data over internet!");
    case TUpdateOutcome::UpToDate:
      return Text("Sie haben bereits die neueste Version.", "You already have the latest version.");
    case TUpdateOutcome::Newer: break;
  }
  const std::string news = Text("Es gibt die neue Version: " + version + ".",
                                "There is a newer version available: " + version + ".");
  if (result.Line.Page.empty()) return news;
  return news + Text("Soll diese herunter geladen werden?", " Do you want to download it?");
}

std::string OpenPageFailureText(std::string_view page) {
  const std::string address(page);
  return Text("Die Internet-Seite konnte nicht geöffnet werden:\r" + address,
              "The web page could not be opened:\r" + address);
}

void TellUpdate(const TUpdateResult& result, IMessages& messages,
                const std::function<bool(const std::string&)>& openPage) {
  const std::string text = UpdateText(result);
  const std::string& page = result.Line.Page;
  if (result.Outcome != TUpdateOutcome::Newer || page.empty()) return messages.Show(text);
  if (messages.Ask(text) && (!openPage || !openPage(page))) messages.Show(OpenPageFailureText(page));
}

}  // namespace Sonarello
