// winkey-sim: a WinKey or WinKey2 chip on a pseudo-terminal, for trying the
// keyer without a chip and for testing it. Prints the terminal's path, then
// logs every byte both ways with its time: "< 00 02" from the host, "> 0A"
// from the chip. Lines on standard input play the operator or a fault:
//   paddle      a break-in from the paddle
//   pot N       the speed pot turned to N WPM
//   mute        answer nothing from now on
//   vanish      the device goes away (the program ends)
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "chip_model.h"

namespace {

using vantrel::winkeysim::ChipModel;
using vantrel::winkeysim::ChipOptions;

constexpr const char* kUsage =
    "usage: winkey-sim [--winkey2] [--revision N] [--no-answer] [--late MS] [--garbage]\n"
    "                  [--pot WPM] [--link PATH]\n"
    "       winkey-sim --help | --version\n"
    "  --winkey2      answer host open as a WinKey2 (revision 23; default a WinKey, 10)\n"
    "  --revision N   answer host open with revision N\n"
    "  --no-answer    never answer host open\n"
    "  --late MS      answer host open MS milliseconds late\n"
    "  --garbage      send junk bytes before the revision\n"
    "  --pot WPM      where the speed pot stands (default 25)\n"
    "  --link PATH    also make PATH a link to the terminal (such as ~/.config/vantrel/com3)\n"
    "Standard input: paddle | pot N | mute | vanish\n";

double NowMs() {
  static const auto start = std::chrono::steady_clock::now();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void Log(char direction, const uint8_t* bytes, size_t count) {
  std::printf("%10.3f %c", NowMs(), direction);
  for (size_t i = 0; i < count; ++i) std::printf(" %02X", bytes[i]);
  std::printf("\n");
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  ChipOptions options;
  std::string link;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    const bool hasValue = i + 1 < argc;
    if (arg == "--help" || arg == "-h") {
      std::fputs(kUsage, stdout);
      return 0;
    }
    if (arg == "--version") {
      std::puts("winkey-sim " VANTREL_VERSION);
      return 0;
    }
    if (arg == "--winkey2") options.revision = vantrel::winkeysim::chip::kWinKey2Revision;
    else if (arg == "--revision" && hasValue) options.revision = static_cast<uint8_t>(std::atoi(argv[++i]));
    else if (arg == "--no-answer") options.answers = false;
    else if (arg == "--late" && hasValue) options.answerDelayMs = std::atof(argv[++i]);
    else if (arg == "--garbage") options.garbage = true;
    else if (arg == "--pot" && hasValue) options.potWpm = std::atof(argv[++i]);
    else if (arg == "--link" && hasValue) link = argv[++i];
    else {
      std::fprintf(stderr, "winkey-sim: unknown or incomplete option %s\n", arg.c_str());
      std::fputs(kUsage, stderr);
      return 2;
    }
  }

  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) {
    std::perror("winkey-sim: no pseudo-terminal");
    return 1;
  }
  const std::string path = ::ptsname(master);
  // Held open so that the host's closing and reopening never hangs us up,
  // and raw so that nothing the chip sends is echoed or changed.
  const int slave = ::open(path.c_str(), O_RDWR | O_NOCTTY);
  termios raw{};
  ::tcgetattr(slave, &raw);
  ::cfmakeraw(&raw);
  ::tcsetattr(slave, TCSANOW, &raw);
  if (!link.empty()) {
    std::error_code error;
    std::filesystem::remove(link, error);
    std::filesystem::create_symlink(path, link, error);
    if (error) {
      std::fprintf(stderr, "winkey-sim: cannot link %s: %s\n", link.c_str(), error.message().c_str());
      return 1;
    }
  }
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);

  ChipModel chip(options);
  bool muted = false;
  // Without an operator on standard input the chip goes on alone.
  int operatorInput = STDIN_FILENO;
  std::string line;
  for (;;) {
    const double next = chip.NextEventMs();
    const int timeout = next < 0 ? -1 : std::max(0, static_cast<int>(std::ceil(next - NowMs())));
    pollfd fds[2] = {{master, POLLIN, 0}, {operatorInput, POLLIN, 0}};
    ::poll(fds, 2, timeout);
    if (fds[0].revents & POLLIN) {
      uint8_t bytes[256];
      const ssize_t got = ::read(master, bytes, sizeof bytes);
      if (got > 0) {
        Log('<', bytes, static_cast<size_t>(got));
        for (ssize_t i = 0; i < got; ++i) chip.Receive(bytes[i], NowMs());
      }
    }
    if (fds[1].revents & (POLLIN | POLLHUP)) {
      char chunk[256];
      const ssize_t got = ::read(STDIN_FILENO, chunk, sizeof chunk);
      if (got <= 0) operatorInput = -1;
      for (ssize_t i = 0; i < got; ++i) {
        if (chunk[i] != '\n') {
          line += chunk[i];
          continue;
        }
        if (line == "paddle") chip.Paddle(NowMs());
        else if (line.rfind("pot ", 0) == 0) chip.TurnPot(std::atof(line.c_str() + 4));
        else if (line == "mute") muted = true;
        else if (line == "vanish") {
          ::close(master);
          ::close(slave);
          if (!link.empty()) std::filesystem::remove(link);
          return 0;
        } else std::fprintf(stderr, "winkey-sim: %s?\n", line.c_str());
        line.clear();
      }
    }
    chip.Advance(NowMs());
    const std::vector<uint8_t> out = chip.TakeOutput();
    if (!out.empty() && !muted) {
      Log('>', out.data(), out.size());
      if (::write(master, out.data(), out.size()) < 0) std::perror("winkey-sim: write");
    }
  }
}
