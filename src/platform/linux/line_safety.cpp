#include "platform/linux/line_safety.h"

#include <linux/ppdev.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

namespace vantrel::platform::linuxos {
namespace {

// One word per line, so that a handler never sees half an entry:
// pid << 32 | fd << 1 | kind. No pid is 0, so the zeroed table starts free.
// The pid keeps a forked child, which inherits the table, from dropping the
// lines of its parent's transmission.
using Entry = std::uint64_t;
constexpr Entry kFree = 0;
static_assert(std::atomic<Entry>::is_always_lock_free);

std::atomic<Entry> lines[kMaxSafeLines];
std::atomic<bool> installed{false};

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGSEGV,
                            SIGBUS, SIGILL,  SIGFPE, SIGABRT};

// A stack overflow would leave the handler no stack to run on.
alignas(16) char alternateStack[64 * 1024];

Entry Encode(pid_t pid, int fd, LineKind kind) {
  return static_cast<Entry>(static_cast<std::uint32_t>(pid)) << 32 |
         static_cast<Entry>(static_cast<std::uint32_t>(fd)) << 1 |
         (kind == LineKind::Parallel ? 1U : 0U);
}
pid_t PidOf(Entry entry) { return static_cast<pid_t>(entry >> 32); }
int FdOf(Entry entry) { return static_cast<int>((entry & 0xFFFFFFFFU) >> 1); }
bool IsParallel(Entry entry) { return (entry & 1U) != 0; }

void RestLine(Entry entry) {
  const int fd = FdOf(entry);
  if (IsParallel(entry)) {
    unsigned char idle = kParallelIdleControl;
    ::ioctl(fd, PPWCONTROL, &idle);
  } else {
    int bits = TIOCM_DTR | TIOCM_RTS;
    ::ioctl(fd, TIOCMBIC, &bits);
  }
}

void OnFatalSignal(int sig) {
  ReleaseAllLines();
  struct sigaction dflt {};
  dflt.sa_handler = SIG_DFL;
  sigemptyset(&dflt.sa_mask);
  ::sigaction(sig, &dflt, nullptr);
  // Still blocked while we are in here: it lands, with the default action,
  // the moment the handler returns.
  ::raise(sig);
}

void OnExit() { ReleaseAllLines(); }

}  // namespace

bool RegisterLine(int fd, LineKind kind) {
  if (fd < 0) return false;
  const Entry entry = Encode(::getpid(), fd, kind);
  for (auto& slot : lines) {
    Entry expected = kFree;
    if (slot.compare_exchange_strong(expected, entry, std::memory_order_acq_rel)) return true;
  }
  return false;
}

void UnregisterLine(int fd) {
  if (fd < 0) return;
  const pid_t self = ::getpid();
  for (auto& slot : lines) {
    Entry entry = slot.load(std::memory_order_acquire);
    if (entry != kFree && FdOf(entry) == fd && PidOf(entry) == self) {
      slot.compare_exchange_strong(entry, kFree, std::memory_order_acq_rel);
    }
  }
}

void ReleaseAllLines() {
  const int savedErrno = errno;
  const pid_t self = ::getpid();
  for (auto& slot : lines) {
    const Entry entry = slot.load(std::memory_order_acquire);
    if (entry != kFree && PidOf(entry) == self) RestLine(entry);
  }
  errno = savedErrno;
}

void InstallLineSafety() {
  if (installed.exchange(true)) return;

  stack_t current{};
  if (::sigaltstack(nullptr, &current) == 0 && (current.ss_flags & SS_DISABLE) != 0) {
    stack_t ours{};
    ours.ss_sp = alternateStack;
    ours.ss_size = sizeof alternateStack;
    ::sigaltstack(&ours, nullptr);
  }

  struct sigaction action {};
  action.sa_handler = OnFatalSignal;
  action.sa_flags = SA_ONSTACK;
  // One handler at a time: a SIGTERM during a crash has nothing to add.
  sigemptyset(&action.sa_mask);
  for (const int sig : kSignals) sigaddset(&action.sa_mask, sig);

  for (const int sig : kSignals) {
    struct sigaction previous {};
    if (::sigaction(sig, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN &&
        (previous.sa_flags & SA_SIGINFO) == 0) {
      continue;
    }
    ::sigaction(sig, &action, nullptr);
  }
  std::atexit(OnExit);
}

}  // namespace vantrel::platform::linuxos
