#include "Batch.h"
#include "Commands.h"

namespace Sonarello {

int SaveCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  return RunBatch(arguments, setup, console, {});
}

}  // namespace Sonarello
