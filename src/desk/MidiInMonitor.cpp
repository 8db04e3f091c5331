#include "desk/MidiInMonitor.h"

#include <algorithm>

namespace Sonarello {

void TMidiInMonitor::Listen(const std::string& name) {
  if (input != nullptr && name == listened) return;
  input.reset();
  listened.clear();
  failure.clear();
  const std::vector<std::string> names = driver.InputNames();
  if (name.empty() || std::ranges::find(names, name) == names.end()) return;
  try {
    auto opened = std::make_unique<TMidiInput>(driver);
    opened->SetProductName(name);
    opened->OpenAndStart();
    input = std::move(opened);
    listened = name;
  } catch (const EMidiInputError& error) {
    failure = error.what();
  }
}

bool TMidiInMonitor::TakeActivity() {
  if (input == nullptr) return false;
  const bool came = input->MessageCount() > 0;
  input->FlushQueue();
  return came;
}

}  // namespace Sonarello
