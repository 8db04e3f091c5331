#include "Batch.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "DisplayText.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

namespace fs = std::filesystem;

std::string Complaint(const std::string& german, const std::string& english) {
  return "sonarello-cli: " + Text(german, english);
}

bool IsFolder(const std::string& path) {
  std::error_code fault;
  return path.ends_with('/') || fs::is_directory(path, fault);
}

/// The target of each source; a complaint if they cannot all be written.
std::string PlanTargets(const Arguments& arguments, bool folder, std::vector<Job>& jobs) {
  std::map<std::string, std::string> sources;  // by target
  for (const std::string& source : arguments.Files) {
    const std::string target =
        folder ? (fs::path(arguments.Output) / fs::path(source).filename()).string() : arguments.Output;
    const auto [taken, isNew] = sources.emplace(target, source);
    if (!isNew)
      return Complaint(
          "\"" + taken->second + "\" und \"" + source + "\" hätten dasselbe Ziel \"" + target + "\"",
          "\"" + taken->second + "\" and \"" + source + "\" would have the same target \"" + target +
              "\"");
    Job& job = jobs.emplace_back();
    job.Source = source;
    job.Target = target;
  }
  return {};
}

bool MakeFolder(const std::string& path, Console& console) {
  std::error_code fault;
  fs::create_directories(path, fault);
  if (!fault || IsFolder(path)) return true;
  console.Err(
      Complaint("Der Ordner \"" + VisibleText(path) + "\" lässt sich nicht anlegen: " + fault.message(),
                "The folder \"" + VisibleText(path) + "\" cannot be made: " + fault.message()));
  return false;
}

using FileId = std::pair<dev_t, ino_t>;

std::optional<FileId> IdOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileId{status.st_dev, status.st_ino};
}

/// In a folder a source may be hit that the user did not name as a target: that is asked first.
void AskForSources(const Arguments& arguments, std::vector<Job>& jobs, Console& console) {
  std::set<FileId> sources;
  for (const Job& job : jobs)
    if (const auto id = IdOf(job.Source)) sources.insert(*id);
  for (Job& job : jobs) {
    const auto id = IdOf(job.Target);
    if (!id || !sources.contains(*id)) continue;
    const std::string name = VisibleText(job.Target);
    const std::string question = Text("Wollen Sie die Datei \"" + name + "\" überschreiben?",
                                      "Do you really want to overwrite the midifile \"" + name + "\"?");
    job.Declined = !(arguments.Answer ? *arguments.Answer : console.Ask(question, false));
    if (job.Declined)
      job.Messages.push_back(
          Text("Nicht gespeichert: das Ziel ist selbst eine Quelle (--yes überschreibt sie)",
               "Not saved: the target is itself a source (--yes overwrites it)"));
  }
}

void SaveOne(Job& job, const Arguments& arguments, const Setup& setup, const JobSteps& steps) {
  if (job.Declined) return;
  SongDesk desk(setup, arguments.Answer.value_or(false));
  if (desk.Open(job.Source)) {
    if (steps.BeforeSave) steps.BeforeSave(desk, job);
    job.Format = arguments.Format.value_or(desk.song.MidiFileOrgFormat == 0 ? 0 : 1);
    job.Saved = desk.Save(job.Target, job.Format);
    if (job.Saved && steps.AfterSave) steps.AfterSave(desk, job);
  }
  job.Messages = std::move(desk.messages.Shown);
}

/// Spreads the jobs over the cores; each thread has its own songs. `done` is called on this thread, in
/// the jobs' order.
template <class F>
void RunJobs(std::vector<Job>& jobs, const Arguments& arguments, const Setup& setup,
             const JobSteps& steps, F&& done) {
  // The diagnostic file has one name for all songs, so that with it they come one by one.
  const std::size_t cores =
      setup.options.DataPath.empty() ? std::max(1U, std::thread::hardware_concurrency()) : 1;
  std::atomic<std::size_t> next = 0;
  std::mutex gate;
  std::condition_variable changed;
  std::vector<std::jthread> threads;
  for (std::size_t n = 0; n < std::min(cores, jobs.size()); ++n)
    threads.emplace_back([&] {
      for (std::size_t i = next++; i < jobs.size(); i = next++) {
        try {
          SaveOne(jobs[i], arguments, setup, steps);
        } catch (const std::exception& error) {
          jobs[i].Messages.emplace_back(error.what());
        }
        const std::lock_guard lock(gate);
        jobs[i].Ready = true;
        changed.notify_one();
      }
    });
  for (std::size_t i = 0; i < jobs.size(); ++i) {
    {
      std::unique_lock lock(gate);
      changed.wait(lock, [&] { return jobs[i].Ready; });
    }
    done(i);
  }
}

std::string SummaryText(std::size_t saved, std::size_t all) {
  const std::string counts = fmt::format("{}/{}", saved, all);
  const std::string rest = std::to_string(all - saved);
  if (saved == all) return Text(counts + " Dateien gespeichert", counts + " files saved");
  return Text(counts + " Dateien gespeichert, " + rest + " nicht",
              counts + " files saved, " + rest + " not");
}

std::string JobsJson(const std::vector<Job>& jobs) {
  auto list = nlohmann::ordered_json::array();
  for (const Job& job : jobs) {
    nlohmann::ordered_json entry = {
        {"file", DecodedText(job.Source)}, {"output", DecodedText(job.Target)}, {"saved", job.Saved}};
    if (job.Saved) entry["format"] = job.Format;
    if (job.Saved && job.Facts.is_object()) entry.update(job.Facts);
    entry["messages"] = nlohmann::ordered_json::array();
    for (const std::string& message : job.Messages) entry["messages"].push_back(DecodedText(message));
    list.push_back(std::move(entry));
  }
  return list.dump(2) + "\n";
}

/// Prints what became of one file.
void TellJob(const Job& job, const Arguments& arguments, const JobSteps& steps, bool& isFirst,
             Console& console) {
  if (!job.Saved || !arguments.Quiet) TellMessages(console, job.Source, job.Messages);
  if (!arguments.Quiet) TellMessages(console, job.Source, job.Protocol);
  if (!job.Saved || job.Report.empty() || arguments.Json) return;
  if (!isFirst) console.Out(steps.Between);
  isFirst = false;
  console.Out(job.Report);
}

}  // namespace

int RunBatch(const Arguments& arguments, const Setup& setup, Console& console, const JobSteps& steps) {
  const bool several = arguments.Files.size() > 1;
  const bool folder = several || IsFolder(arguments.Output);
  std::vector<Job> jobs;
  if (const std::string complaint = PlanTargets(arguments, folder, jobs); !complaint.empty()) {
    console.Err(complaint);
    return WrongUsage;
  }
  if (folder && !MakeFolder(arguments.Output, console)) return Refused;
  if (folder) AskForSources(arguments, jobs, console);

  std::size_t saved = 0;
  bool isFirst = true;
  RunJobs(jobs, arguments, setup, steps, [&](std::size_t i) {
    saved += jobs[i].Saved;
    TellJob(jobs[i], arguments, steps, isFirst, console);
    if (several && !arguments.Quiet)
      console.Progress(fmt::format("{}/{} {}", i + 1, jobs.size(), VisibleText(jobs[i].Source)));
  });
  console.Progress({});
  if (several && !arguments.Quiet) console.Err(SummaryText(saved, jobs.size()));
  if (arguments.Json) console.Out(JobsJson(jobs));
  return saved == jobs.size() ? Done : Refused;
}

}  // namespace Sonarello
