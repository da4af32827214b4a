#include "platform/linux/line_safety.h"

#include <linux/ppdev.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "platform/linux/link_protocol.h"

namespace vantrel::platform::linuxos {
namespace {

// One word per line, so that a handler never sees half an entry:
// pid << 32 | fd << 2 | interrupted << 1 | kind. No pid is 0, so the zeroed
// table starts free.
// The pid keeps a forked child, which inherits the table, from dropping the
// lines of its parent's transmission.
using Entry = std::uint64_t;
constexpr Entry kFree = 0;
static_assert(std::atomic<Entry>::is_always_lock_free);

std::atomic<Entry> lines[kMaxSafeLines];
std::atomic<bool> installed{false};

// The logger's rest: its socket (-1 while none or while being changed), the
// process that set it, the two requests, and whether a stop sent them.
std::atomic<int> restSocket{-1};
std::atomic<pid_t> restOwner{0};
std::atomic<bool> restInterrupted{false};
unsigned char restRequests[2][link::kSendSize];

constexpr Entry kInterrupted = 2;

// The signals whose default action ends the process, besides the
// real-time ones; SIGPIPE is ignored instead.
constexpr int kFatalSignals[] = {SIGHUP,  SIGINT,    SIGQUIT, SIGILL,    SIGTRAP, SIGABRT,
                                 SIGBUS,  SIGFPE,    SIGUSR1, SIGSEGV,   SIGUSR2, SIGALRM,
                                 SIGTERM, SIGSTKFLT, SIGXCPU, SIGXFSZ,   SIGVTALRM,
                                 SIGPROF, SIGIO,     SIGPWR,  SIGSYS};
constexpr int kStopSignals[] = {SIGTSTP, SIGTTIN, SIGTTOU};

// A stack overflow would leave the handler no stack to run on.
alignas(16) char alternateStack[64 * 1024];

Entry Encode(pid_t pid, int fd, LineKind kind) {
  return static_cast<Entry>(static_cast<std::uint32_t>(pid)) << 32 |
         static_cast<Entry>(static_cast<std::uint32_t>(fd)) << 2 |
         (kind == LineKind::Parallel ? 1U : 0U);
}
pid_t PidOf(Entry entry) { return static_cast<pid_t>(entry >> 32); }
int FdOf(Entry entry) { return static_cast<int>((entry & 0xFFFFFFFFU) >> 2); }
bool IsParallel(Entry entry) { return (entry & 1U) != 0; }

// Key down or PTT on, as the port has them now.
bool IsActive(Entry entry) {
  const int fd = FdOf(entry);
  if (IsParallel(entry)) {
    unsigned char control = 0;
    return ::ioctl(fd, PPRCONTROL, &control) == 0 && (control & 0x0C) != 0x08;
  }
  int bits = 0;
  return ::ioctl(fd, TIOCMGET, &bits) == 0 && (bits & (TIOCM_DTR | TIOCM_RTS)) != 0;
}

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

// Sent without waiting: a logger that reads nothing loses them, and the
// process goes on to end.
bool RestLogger() {
  const int fd = restSocket.load(std::memory_order_acquire);
  if (fd < 0 || restOwner.load(std::memory_order_acquire) != ::getpid()) return false;
  for (const auto& request : restRequests) {
    (void)::send(fd, request, sizeof request, MSG_DONTWAIT | MSG_NOSIGNAL);
  }
  return true;
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

// The lines go idle before the process stops, for as long as it may stay
// stopped; an active one is marked, so that its port reports the
// interruption at its next change instead of keying on as if nothing was.
void OnStopSignal(int sig) {
  const int savedErrno = errno;
  const pid_t self = ::getpid();
  for (auto& slot : lines) {
    Entry entry = slot.load(std::memory_order_acquire);
    if (entry == kFree || PidOf(entry) != self || !IsActive(entry)) continue;
    RestLine(entry);
    slot.compare_exchange_strong(entry, entry | kInterrupted, std::memory_order_acq_rel);
  }
  if (RestLogger()) restInterrupted.store(true, std::memory_order_release);
  struct sigaction ours {};
  struct sigaction dflt {};
  dflt.sa_handler = SIG_DFL;
  sigemptyset(&dflt.sa_mask);
  ::sigaction(sig, &dflt, &ours);
  ::raise(sig);
  sigset_t just;
  sigemptyset(&just);
  sigaddset(&just, sig);
  // The stop lands here; the process goes on from here once continued.
  ::sigprocmask(SIG_UNBLOCK, &just, nullptr);
  ::sigaction(sig, &ours, nullptr);
  errno = savedErrno;
}

std::atomic<int> closeNotifyFd{-1};
std::atomic<unsigned> closeBoundSeconds{0};
std::atomic<bool> closeRequested{false};

void OnCloseSignal(int sig) {
  const int savedErrno = errno;
  const char byte = static_cast<char>(sig);
  if (closeRequested.exchange(true) || ::write(closeNotifyFd.load(), &byte, 1) != 1) {
    OnFatalSignal(sig);
  } else {
    ::alarm(closeBoundSeconds.load());
  }
  errno = savedErrno;
}

void OnExit() { ReleaseAllLines(); }

// Leaves `sig` as it is when it was ignored at install time (nohup).
void Handle(int sig, const struct sigaction& action) {
  struct sigaction previous {};
  if (::sigaction(sig, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN &&
      (previous.sa_flags & SA_SIGINFO) == 0) {
    return;
  }
  ::sigaction(sig, &action, nullptr);
}

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

bool TakeLineInterruption(int fd) {
  if (fd < 0) return false;
  if (fd == restSocket.load(std::memory_order_acquire)) return restInterrupted.exchange(false);
  const pid_t self = ::getpid();
  for (auto& slot : lines) {
    Entry entry = slot.load(std::memory_order_acquire);
    if (entry != kFree && FdOf(entry) == fd && PidOf(entry) == self &&
        (entry & kInterrupted) != 0) {
      return slot.compare_exchange_strong(entry, entry & ~kInterrupted, std::memory_order_acq_rel);
    }
  }
  return false;
}

void ReleaseAllLines() {
  const int savedErrno = errno;
  const pid_t self = ::getpid();
  for (auto& slot : lines) {
    const Entry entry = slot.load(std::memory_order_acquire);
    if (entry != kFree && PidOf(entry) == self) RestLine(entry);
  }
  RestLogger();
  errno = savedErrno;
}

void SetLoggerRest(int socketFd, int keyUp, int pttOff) {
  restSocket.store(-1, std::memory_order_seq_cst);
  int index = 0;
  for (const int code : {keyUp, pttOff}) {
    unsigned char* request = restRequests[index++];
    link::PutInt32(request, code);
    link::PutInt32(request + 4, 0);
    // Sequence 0: no send of the keyer's own waits for that answer.
    link::PutInt32(request + 8, 0);
  }
  restInterrupted.store(false, std::memory_order_release);
  restOwner.store(::getpid(), std::memory_order_release);
  restSocket.store(socketFd, std::memory_order_release);
}

void ClearLoggerRest(int socketFd) {
  int expected = socketFd;
  restSocket.compare_exchange_strong(expected, -1, std::memory_order_acq_rel);
  restInterrupted.store(false, std::memory_order_release);
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

  std::vector<int> fatal(std::begin(kFatalSignals), std::end(kFatalSignals));
  for (int sig = SIGRTMIN; sig <= SIGRTMAX; ++sig) fatal.push_back(sig);

  struct sigaction action {};
  action.sa_flags = SA_ONSTACK;
  // One handler at a time: a SIGTERM during a crash has nothing to add.
  sigemptyset(&action.sa_mask);
  for (const int sig : fatal) sigaddset(&action.sa_mask, sig);
  for (const int sig : kStopSignals) sigaddset(&action.sa_mask, sig);

  action.sa_handler = OnFatalSignal;
  for (const int sig : fatal) Handle(sig, action);
  action.sa_handler = OnStopSignal;
  for (const int sig : kStopSignals) Handle(sig, action);
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigemptyset(&ignore.sa_mask);
  Handle(SIGPIPE, ignore);
  std::atexit(OnExit);
}

void RequestCloseOnSignals(int notifyFd, unsigned boundSeconds) {
  closeNotifyFd.store(notifyFd);
  closeBoundSeconds.store(boundSeconds);
  struct sigaction action {};
  action.sa_handler = OnCloseSignal;
  action.sa_flags = SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (const int sig : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&action.sa_mask, sig);
  for (const int sig : {SIGTERM, SIGINT, SIGHUP}) Handle(sig, action);
}

}  // namespace vantrel::platform::linuxos
