// vantrel-logger, or another logger, as a child process.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/child_process.h"

namespace vantrel::testing {

class LoggerProcess : public ChildProcess {
 public:
  // vantrel-logger on the socket folder `dir` and the memory `shm`.
  LoggerProcess(const std::string& dir, const std::string& shm, const std::vector<std::string>& extra = {})
      : ChildProcess(Arguments(dir, shm, extra), {}, "ready") {}

  // Any logger, started with `args` and the variables of `environment`.
  LoggerProcess(std::vector<std::string> args,
                const std::vector<std::pair<std::string, std::string>>& environment)
      : ChildProcess(std::move(args), environment, "ready") {}

 private:
  static std::vector<std::string> Arguments(const std::string& dir, const std::string& shm,
                                            const std::vector<std::string>& extra) {
    std::vector<std::string> args{VANTREL_LOGGER, "--dir", dir, "--shm", shm};
    args.insert(args.end(), extra.begin(), extra.end());
    return args;
  }
};

}  // namespace vantrel::testing
