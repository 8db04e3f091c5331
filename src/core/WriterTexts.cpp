#include "core/WriterTexts.h"

#include "core/Texts.h"

namespace Sonarello {

namespace {

// The English texts say "midifile" for format 1 and "midi file" for format 0, and "Bytes" in one
// branch only; "konnnte" has three n. All of that is deliberate.

bool Mixed(TWriterBranch branch) { return branch == TWriterBranch::Mixed; }

}  // namespace

std::string CodingText(TWriterBranch branch, bool storing) {
  const char* english = Mixed(branch) ? "Error coding the midi file!"
                        : storing     ? "Error coding midifile!"
                                      : "Error coding the midifile!";
  return Text("Fehler bei der Kodierung der MidiDatei!", english);
}

std::string IncompleteText(TWriterBranch branch, const std::string& name, std::size_t written,
                           std::size_t total) {
  const std::string done = std::to_string(written);
  const std::string all = std::to_string(total);
  if (GermanLanguage)
    return "Beim Speichern der Datei \"" + name + "\" sind nur " + done + " aus " + all +
           " Bytes gespeichert";
  return (Mixed(branch) ? "Error saving the midi file \"" : "Error saving the midifile \"") + name +
         "\"\rThere were only " + done + " from " + all +
         (branch == TWriterBranch::Split ? " Bytes saved" : " bytes saved");
}

std::string WritingText(TWriterBranch branch, const std::string& name) {
  return Text("Fehler beim Schreiben der Datei \"",
              Mixed(branch) ? "Error writing the midi file \"" : "Error writing the midifile \"") +
         name + "\"";
}

std::string OpeningText(TWriterBranch branch, const std::string& name) {
  if (GermanLanguage)
    return "Fehler: Schreibvorgang der Datei \"" + name + "\" konnnte nicht eingeleitet werden!";
  return (Mixed(branch) ? "Error rewriting the midi file \"" : "Error saving the midifile \"") + name +
         "\"!";
}

std::string ReadOnlyText(TWriterBranch branch, const std::string& name) {
  if (GermanLanguage)
    return "Fehler: Schreibschutz der Datei \"" + name + "\" konnnte nicht entfernt werden!";
  return (Mixed(branch) ? "Error removing read only flag for the midi file \""
                        : "Error removing read only flag for midifile \"") +
         name + "\"!";
}

std::string CopyText(const std::string& copy) {
  return Text("Der vollständige Song steht in der Datei ", "The complete song stands in the file ") +
         "\"" + copy + "\"";
}

}  // namespace Sonarello
