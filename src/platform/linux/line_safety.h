// Key up and PTT off on every way out of the process short of SIGKILL: a
// transmitter left keyed by a crashed keyer stays on the air.
//
// The ports enter each open line descriptor here; on a fatal signal or at
// exit every one of them is put at rest. Everything the handlers touch is a
// fixed table of atomics, so they need no allocation and no lock.
#pragma once

#include <cstddef>

namespace vantrel::platform::linuxos {

enum class LineKind {
  // A tty: DTR (key) and RTS (PTT) dropped.
  Serial,
  // A claimed ppdev port: the control register written with the idle byte.
  Parallel,
};

inline constexpr std::size_t kMaxSafeLines = 16;
// The control register at rest: key up (SELECT set), PTT off (INIT clear).
inline constexpr unsigned char kParallelIdleControl = 0x0B;

// Records an open descriptor. False when the table is full: the line then
// works, unprotected.
bool RegisterLine(int fd, LineKind kind);
// Must come before the descriptor is closed, or the number may be reused.
void UnregisterLine(int fd);
// Puts every line this process registered at rest. Async-signal-safe.
void ReleaseAllLines();
// True once after a stop released this line (or the logger's) while it was active: what was
// keyed on it before the stop is no longer on the line. The port then fails
// its next change with kStoppedReport, which ends the transmission.
bool TakeLineInterruption(int fd);
inline constexpr char kStoppedReport[] = "the keyer was stopped; key and PTT were released";

// The logger's socket on the shared serial route and the two requests that
// put its lines at rest (key up, PTT off), sent wherever the port lines are
// released. One at a time: a later call replaces the earlier.
void SetLoggerRest(int socketFd, int keyUp, int pttOff);
// Must come before the socket is closed.
void ClearLoggerRest(int socketFd);

// Installs handlers for every signal whose default ends the process (SIGINT,
// SIGTERM, SIGHUP, the crash signals, SIGUSR1, SIGALRM, SIGXFSZ, the
// real-time signals ...) and an atexit hook. A handler releases the lines,
// restores the default action and raises the signal again, so the exit
// status still tells what happened. The stop signals (SIGTSTP, SIGTTIN,
// SIGTTOU) release the lines before the process stops. SIGPIPE is ignored:
// a write to a closed pipe fails instead. A signal that was ignored at
// install time (nohup) stays ignored. Later calls do nothing.
void InstallLineSafety();

// For a program with an orderly shutdown (the window's close), after
// InstallLineSafety: the first SIGTERM, SIGINT or SIGHUP writes one byte to
// `notifyFd` and leaves `boundSeconds` for the shutdown, after which SIGALRM
// ends the process with the lines released; a second one ends it at once.
void RequestCloseOnSignals(int notifyFd, unsigned boundSeconds);

}  // namespace vantrel::platform::linuxos
