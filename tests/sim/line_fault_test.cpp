// The fault test on the runner: vantrel-sim keying a real port on the real
// clock, hit by every terminating signal and a stop at random moments.
#include <fstream>
#include <string>
#include <vector>

#include "support/line_fault.h"

namespace {

using vantrel::testing::FaultPort;

class RunnerLineFault : public vantrel::testing::LineFaultFixture {
 protected:
  pid_t StartKeyer() override {
    std::ofstream(dir_ + "/send.vsim") << "0 send PARIS PARIS PARIS PARIS PARIS PARIS\n";
    std::vector<std::string> args = {VANTREL_SIM, "--real-time", "--quiet", "--dir", dir_,
                                     "--set", "PTT=ON", "--set", "Slow Typing=OFF"};
    for (const auto& [key, value] : PortSettings()) args.insert(args.end(), {"--set", key + "=" + value});
    args.push_back(dir_ + "/send.vsim");
    return Spawn(args, {});
  }
};

TEST_P(RunnerLineFault, EverySignalAtARandomMomentLeavesKeyUpAndPttOff) { HitWithEverySignal(); }

INSTANTIATE_TEST_SUITE_P(Ports, RunnerLineFault,
                         ::testing::Values(FaultPort::Serial, FaultPort::Parallel),
                         vantrel::testing::FaultPortName);

}  // namespace
