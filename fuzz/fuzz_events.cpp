#include "Targets.h"

// An exception that leaves the target is a finding of libFuzzer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Sonarello::Fuzz::FuzzEvents({data, size});
  return 0;
}
