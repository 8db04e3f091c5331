#include "Batch.h"
#include "Commands.h"
#include "FitReport.h"

namespace Sonarello {

int FitCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const auto report = [&](SongDesk& desk, Job& job) {
    const FitReport fit = GatherFit(desk, setup);
    job.Report = FitText(fit, desk, job.Source, job.Target);
    job.Facts = FitJson(fit, desk);
  };
  return RunBatch(arguments, setup, console, {.BeforeSave = {}, .AfterSave = report, .Between = "\n"});
}

}  // namespace Sonarello
