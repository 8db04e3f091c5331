#include "desk/SilentOutput.h"

namespace Sonarello {

namespace {

class Swallow final : public IDriverOutput {
 public:
  void Send(std::span<const std::uint8_t> /*message*/) override {}
};

}  // namespace

std::vector<std::string> SilentOutput::OutputNames() {
  std::vector<std::string> names = driver.OutputNames();
  own = static_cast<int>(names.size());
  names.emplace_back(Name);
  return names;
}

std::unique_ptr<IDriverOutput> SilentOutput::OpenOutput(int device) {
  if (device == own) return std::make_unique<Swallow>();
  return driver.OpenOutput(device);
}

}  // namespace Sonarello
