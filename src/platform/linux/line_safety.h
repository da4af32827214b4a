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

// Installs the handlers for SIGINT, SIGTERM, SIGHUP, SIGQUIT and the crash
// signals (SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT), and an atexit hook.
// A handler releases the lines, restores the default action and raises the
// signal again, so the exit status still tells what happened. A signal that
// was ignored at install time (nohup) stays ignored. Later calls do nothing.
void InstallLineSafety();

}  // namespace vantrel::platform::linuxos
