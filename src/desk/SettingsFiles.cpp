#include "desk/SettingsFiles.h"

#include "core/SafeFile.h"
#include "core/Texts.h"
#include "desk/RegistryText.h"
#include "instruments/UserFiles.h"

namespace Sonarello {

bool ExportSettingsFile(const IRegistryStore& store, const std::string& file, IMessages& messages,
                        FileCalls& calls) {
  const std::vector<std::uint8_t> bytes = ExportRegistry(store);
  const TSaveResult result = SaveFile(file, bytes, calls);
  if (result.Step == TSaveStep::Done) return true;
  std::string text =
      Text("Die Datei konnte nicht geschrieben werden:\r", "The file could not be written:\r") + file;
  if (!result.Copy.empty())
    text += Text("\rEine vollständige Kopie ist:\r", "\rA complete copy is:\r") + result.Copy;
  messages.Show(text);
  return false;
}

bool ImportSettingsFile(IRegistryStore& store, const std::string& file, IMessages& messages) {
  std::string bytes;
  if (ReadUserFile(file, bytes) != UserFile::Read) {
    messages.Show(Text("Die Datei konnte nicht gelesen werden:\r", "The file could not be read:\r") +
                  file);
    return false;
  }
  const TRegistryImport import =
      ReadRegistryFile({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  if (!import.IsGood()) {
    messages.Show(import.Error);
    return false;
  }
  if (!messages.Ask(ImportQuestion(import))) return false;
  ApplyImport(store, import);
  return true;
}

}  // namespace Sonarello
