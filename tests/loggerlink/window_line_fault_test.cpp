// The fault test on the window program, offscreen: a logger fires the macro
// that keys a real port, and every terminating signal and a stop hit the
// keyer at random moments of the sending.
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "logger_process.h"
#include "support/line_fault.h"

namespace {

using vantrel::testing::FaultPort;
using vantrel::testing::LoggerProcess;

class WindowLineFault : public vantrel::testing::LineFaultFixture {
 protected:
  pid_t StartKeyer() override {
    // The configuration folder is the fixture's, where the parport link is.
    std::ofstream settings(dir_ + "/Vantrel.INI");
    settings << "[frmVantrel Settings]\nPTT=ON\nSlow Typing=OFF\n"
             << "Macro #1=PARIS PARIS PARIS PARIS PARIS PARIS\n";
    for (const auto& [key, value] : PortSettings()) settings << key << "=" << value << "\n";
    settings.close();
    // A logger of its own each time: a keyer leaves its number placeholder in
    // the block, and the next one would then have nothing to send back.
    logger_.reset();
    shm_ = "/vantrel-window-fault-" + std::to_string(::getpid()) + "-" + std::to_string(++starts_);
    logger_ = std::make_unique<LoggerProcess>(runtime_.path(), shm_);
    logger_->Command("call W1AW", "wrote 0");
    return Spawn({VANTREL_PROGRAM}, {"QT_QPA_PLATFORM=offscreen", "XDG_RUNTIME_DIR=" + runtime_.path(),
                                     "VANTREL_LINK_SHM=" + shm_, "VANTREL_HOME=" + dir_});
  }

  // Start-up is over when its poll has sent the call back, twice; a command
  // written before then would be cleared unread. F1 then fires macro 1.
  void WhenStarted() override {
    logger_->WaitFor("post 200", 60000);
    logger_->WaitFor("post 200", 60000);
    ::usleep(100000);
    logger_->Command("control 112", "wrote 5");
  }

  bool ClosesInOrder(int sig) const override {
    return sig == SIGTERM || sig == SIGINT || sig == SIGHUP;
  }

  vantrel::testing::TempFolder runtime_;
  std::string shm_;
  std::unique_ptr<LoggerProcess> logger_;
  int starts_ = 0;
};

TEST_P(WindowLineFault, EverySignalAtARandomMomentLeavesKeyUpAndPttOff) { HitWithEverySignal(); }

INSTANTIATE_TEST_SUITE_P(Ports, WindowLineFault,
                         ::testing::Values(FaultPort::Serial, FaultPort::Parallel),
                         vantrel::testing::FaultPortName);

}  // namespace
