#include "core/MidiFileWriter.h"

#include <new>

#include "core/FileEncoding.h"
#include "core/SafeFile.h"
#include "core/Texts.h"
#include "core/WriterTexts.h"

namespace Sonarello {

namespace {

TWriterBranch BranchOf(const Song& song, int format) {
  return format == 0                   ? TWriterBranch::Mixed
         : song.MidiFileOrgFormat == 0 ? TWriterBranch::Split
                                       : TWriterBranch::Tracks;
}

std::string FailureText(const TSaveResult& result, TWriterBranch branch, const std::string& fileName,
                        std::size_t total) {
  switch (result.Step) {
    case TSaveStep::ReadOnly: return ReadOnlyText(branch, fileName);
    case TSaveStep::Opening: return OpeningText(branch, fileName);
    case TSaveStep::Incomplete: return IncompleteText(branch, fileName, result.Written, total);
    default: return WritingText(branch, fileName);
  }
}

}  // namespace

std::vector<std::uint8_t> MidiFileWriter::Encode(const std::string& fileName, int format) {
  try {
    return FileEncoding(song, options, routes.MidiRouting(), messages, hooks, fileName, format).Run();
  } catch (const EMidiError& error) {
    messages.Show(error.what());
    throw;
  } catch (const std::bad_alloc&) {
    const std::string text = (GermanLanguage ? "1003: " : "") + OutOfMemoryText();
    messages.Show(text);
    throw EMidiError(text);
  }
}

bool MidiFileWriter::Save(const std::string& fileName, int format) {
  std::vector<std::uint8_t> file;
  try {
    file = Encode(fileName, format);
  } catch (const EMidiError&) {
    return false;  // it was shown
  }
  const TSaveResult result = SaveFile(fileName, file, files);
  if (result.Step == TSaveStep::Done) return true;
  messages.Show(FailureText(result, BranchOf(song, format), fileName, file.size()));
  if (!result.Copy.empty()) messages.Show(CopyText(result.Copy));
  return false;
}

}  // namespace Sonarello
