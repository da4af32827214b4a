// A helper program as a child process: commands go to its standard input,
// and its lines are read back with a time limit.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vantrel::testing {

class ChildProcess {
 public:
  // Started with `args` and the variables of `environment`, ready once it
  // prints a line that starts with `ready`.
  ChildProcess(std::vector<std::string> args,
               const std::vector<std::pair<std::string, std::string>>& environment,
               const std::string& ready) {
    int in[2], out[2];
    if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    pid_ = ::fork();
    if (pid_ < 0) throw std::runtime_error("fork");
    if (pid_ == 0) {
      ::dup2(in[0], STDIN_FILENO);
      ::dup2(out[1], STDOUT_FILENO);
      for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
      std::vector<char*> argv;
      for (std::string& arg : args) argv.push_back(arg.data());
      argv.push_back(nullptr);
      ::execv(argv[0], argv.data());
      ::_exit(127);
    }
    ::close(in[0]);
    ::close(out[1]);
    input_ = in[1];
    output_ = out[0];
    readyLine_ = WaitFor(ready);
    if (readyLine_.empty()) throw std::runtime_error(args[0] + " did not start");
  }
  ~ChildProcess() {
    if (input_ >= 0) ::close(input_);
    if (pid_ > 0) {
      // The end of its input makes a helper clean up and end.
      if (!Exited(500)) ::kill(pid_, SIGKILL);
      ::waitpid(pid_, nullptr, 0);
    }
    if (output_ >= 0) ::close(output_);
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // The line that said the program was ready.
  const std::string& ReadyLine() const { return readyLine_; }

  // Sends one command and waits for the line that confirms it.
  std::string Command(const std::string& line, const std::string& confirmation) {
    const std::string text = line + "\n";
    if (::write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
      throw std::runtime_error("write to a child process");
    }
    return confirmation.empty() ? "" : WaitFor(confirmation);
  }

  // The first line from now on that starts with `prefix`; empty after `ms`.
  std::string WaitFor(const std::string& prefix, int ms = 3000) {
    return WaitForLine([&](const std::string& line) { return line.rfind(prefix, 0) == 0; }, ms);
  }
  // The same for a line that holds `part` anywhere, as a time-stamped log's do.
  std::string WaitForPart(const std::string& part, int ms = 3000) {
    return WaitForLine([&](const std::string& line) { return line.find(part) != std::string::npos; }, ms);
  }

  // Every line read so far, and whatever else arrives within `ms`.
  const std::vector<std::string>& Lines(int ms = 100) {
    const int64_t deadline = NowMs() + ms;
    for (int64_t left = ms; left > 0 && ReadSome(static_cast<int>(left)); left = deadline - NowMs()) {
    }
    return lines_;
  }

  // True once the process has ended, waiting at most `ms`.
  bool Exited(int ms) {
    const int64_t deadline = NowMs() + ms;
    do {
      if (::waitpid(pid_, nullptr, WNOHANG) == pid_) {
        pid_ = -1;
        return true;
      }
      ::usleep(5000);
    } while (NowMs() < deadline);
    return false;
  }

  static int64_t NowMs() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
  }

 private:
  template <typename Match>
  std::string WaitForLine(Match matches, int ms) {
    const int64_t deadline = NowMs() + ms;
    for (;;) {
      for (size_t i = seen_; i < lines_.size(); ++i) {
        if (matches(lines_[i])) {
          seen_ = i + 1;
          return lines_[i];
        }
      }
      seen_ = lines_.size();
      const int64_t left = deadline - NowMs();
      if (left <= 0 || !ReadSome(static_cast<int>(left))) return "";
    }
  }

  bool ReadSome(int ms) {
    pollfd waiting{output_, POLLIN, 0};
    if (::poll(&waiting, 1, ms) <= 0) return false;
    char chunk[4096];
    const ssize_t got = ::read(output_, chunk, sizeof chunk);
    if (got <= 0) return false;
    partial_.append(chunk, static_cast<size_t>(got));
    for (size_t end; (end = partial_.find('\n')) != std::string::npos;) {
      lines_.push_back(partial_.substr(0, end));
      partial_.erase(0, end + 1);
    }
    return true;
  }

  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string partial_;
  std::vector<std::string> lines_;
  size_t seen_ = 0;
  std::string readyLine_;
};

}  // namespace vantrel::testing
