#include "desk/Startup.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "core/TextOrder.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::string_view TrialText = "this is a test";

}  // namespace

bool IsFolderWritable(const std::string& folder) {
  const std::string trial = folder + "TestFile.txt";
  std::error_code error;
  // A file of the user's by this name is not ours to write over; its folder can be written to.
  if (std::filesystem::exists(trial, error)) return true;
  std::ofstream out(trial, std::ios::binary);
  out << TrialText;
  out.close();
  const bool written = !out.fail();
  std::filesystem::remove(trial, error);
  return written;
}

std::string FindDataPath(const std::string& documents, const std::string& applicationPath) {
  if (!documents.empty()) {
    const std::string path = documents + "/" + std::string(DataFolderName) + "/";
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (std::filesystem::is_directory(path, error) && IsFolderWritable(path)) return path;
  }
  return applicationPath.ends_with('/') ? applicationPath : applicationPath + "/";
}

TStartParameter ReadStartParameter(std::string_view parameter) {
  const std::string small = SmallLetters(parameter);
  TStartParameter start;
  if (small.find(".mid") != std::string::npos)
    start.AutoloadFileName = parameter;
  else if (small.find("reset_registry") != std::string::npos)
    start.ResetRegistry = true;
  return start;
}

std::string ResetQuestion() {
  return Text(
      "Soll der \"Sonarello XI\" zu Werkseinstellungen zurückgesetzt werden?\r(dabei gehen alle selbst "
      "gemachte Einstellungen verloren)",
      "Reset \"Sonarello XI\" to factory settings?");
}

std::string TerminateQuestion() { return Text("Sonarello XI beenden?", "Terminate Sonarello XI?"); }

}  // namespace Sonarello
