#include "instruments/SoundListReader.h"

#include <algorithm>
#include <utility>

#include "core/Texts.h"
#include "instruments/InstrumentFiles.h"
#include "instruments/ListReading.h"
#include "instruments/UserFiles.h"

namespace Sonarello {

namespace {

/// Lists of an extension that not every user has.
bool IsLeftOut(const TListSpec& spec, const TLoadSettings& settings) {
  return spec.Name.starts_with("TE200") && !settings.LimexTE200;
}

std::string_view ShippedRows(const TListSpec& spec) {
  return spec.File.empty() ? std::string_view() : InstrumentFile(spec.File);
}

/// The user's file of a list, decoded; false if there is none or it cannot be read, which is told.
bool ReadUserList(const TListSpec& spec, const std::string& dataPath, std::string& text,
                  IMessages& messages) {
  if (dataPath.empty()) return false;
  std::string bytes;
  std::string_view names = spec.UserFiles;
  while (!names.empty()) {
    const std::size_t end = std::min(names.find('|'), names.size());
    const std::string file = PathInFolder(dataPath, names.substr(0, end));
    names.remove_prefix(std::min(end + 1, names.size()));
    const UserFile state = ReadUserFile(file, bytes);
    if (state == UserFile::Missing) continue;
    if (state == UserFile::Read) {
      text = DecodeListFile(bytes);
      return true;
    }
    messages.Show(Text(
        "Fehler beim Lesen der Datei\r\"" + file + "\"\rEs gelten die mitgelieferten Klänge der Liste.",
        "Error reading the file\r\"" + file + "\"\rThe sounds that come with the program are used."));
    return false;
  }
  return false;
}

}  // namespace

TSoundList ReadSoundList(const TListSpec& spec, std::string_view text, IMessages* messages, bool sort) {
  TSoundList list;
  list.Spec = &spec;
  ListReading(list, text, messages).Run(sort);
  return list;
}

TSoundList LoadSoundList(const TListSpec& spec, const TLoadSettings& settings, IMessages& messages) {
  TSoundList list;
  list.Spec = &spec;
  if (IsLeftOut(spec, settings)) return list;
  std::string text;
  list.FromUser = ReadUserList(spec, settings.DataPath, text, messages);
  if (list.FromUser)
    ListReading(list, list.Texts.emplace_back(std::move(text)), &messages).Run(settings.SortSounds);
  else
    ListReading(list, ShippedRows(spec), nullptr).Run(settings.SortSounds);
  return list;
}

void LoadCompanion(TSoundList& list, const TListSpec& companion, const TLoadSettings& settings,
                   IMessages& messages) {
  std::string text;
  const std::int32_t dspIndex = TXTPatch().DSPIndex;
  if (ReadUserList(companion, settings.DataPath, text, messages))
    ReadCompanion(list, companion, text, dspIndex, &messages);
  else if (const std::string_view shipped = ShippedRows(companion); !shipped.empty())
    ReadCompanion(list, companion, shipped, dspIndex, nullptr);
}

}  // namespace Sonarello
