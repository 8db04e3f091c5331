// A JACK server with the dummy driver, for as long as a test needs one.
#pragma once

#include <fcntl.h>
#include <jack/jack.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

namespace Sonarello {

/// It waits for its clients (-S): without that, a client that a busy machine lets wait for a whole
/// cycle misses the events of that cycle, whatever we do. Every JACK client that the process opens goes
/// to it. One at a time on the machine, others wait: servers that start while others run take shared
/// memory from each other. All have one name, since JACK has eight places for servers, and a server
/// that was killed keeps its place until one of the same name takes it.
class JackServer {
 public:
  JackServer() : lock(open(LockFile().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (lock < 0 || flock(lock, LOCK_EX) != 0) {
      throw std::runtime_error("no lock for jackd");
    }
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    setenv("JACK_NO_START_SERVER", "1", 1);
    setenv("JACK_DEFAULT_SERVER", Name().c_str(), 1);
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
    Start();
  }
  ~JackServer() {
    Stop();
    close(lock);
  }
  JackServer(const JackServer&) = delete;
  JackServer& operator=(const JackServer&) = delete;

  void Start() {
    const pid_t parent = getpid();
    server = fork();
    if (server == 0) {
      prctl(PR_SET_PDEATHSIG, SIGTERM);
      const int nowhere = open("/dev/null", O_RDWR);
      dup2(nowhere, 0);
      dup2(nowhere, 1);
      dup2(nowhere, 2);
      if (getppid() == parent) {
        execlp("jackd", "jackd", "-n", Name().c_str(), "-r", "-S", "-t", "5000", "-d", "dummy", "-r",
               "44100", "-p", "64", static_cast<char*>(nullptr));
      }
      _exit(127);
    }
    for (int attempt = 0; attempt < 500; ++attempt) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      jack_status_t status{};
      if (jack_client_t* client = jack_client_open("probe", JackNoStartServer, &status)) {
        jack_client_close(client);
        return;
      }
    }
    Stop();
    throw std::runtime_error("jackd does not start");
  }

  /// Ends the server under the feet of its clients.
  void Stop() {
    if (server <= 0) {
      return;
    }
    kill(server, SIGCONT);
    kill(server, SIGTERM);
    for (int i = 0; waitpid(server, nullptr, WNOHANG) == 0; ++i) {
      if (i == 500) {
        kill(server, SIGKILL);
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    server = 0;
    RemoveOurs();
  }

  void Signal(int number) const { kill(server, number); }

 private:
  static const std::string& Name() {
    static const std::string name = "sonarello-test-" + std::to_string(getuid());
    return name;
  }

  static std::string LockFile() {
    return std::filesystem::temp_directory_path() / ("sonarello-jackd." + std::to_string(getuid()));
  }

  /// What clients that outlived the server leave in shared memory.
  static void RemoveOurs() {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm", ignored)) {
      if (entry.path().filename().string().find("_" + Name() + "_") != std::string::npos) {
        std::filesystem::remove_all(entry.path(), ignored);
      }
    }
  }

  const int lock;  ///< held from construction to destruction, freed by the system if the test dies
  pid_t server = 0;
};

}  // namespace Sonarello
