// The cost of one PollLink on the real shared memory: the ten slot copies
// and the string work, when nothing has changed (the common case, once per
// character while sending) and when the logger changed the call, so that
// the field's change rule writes it back and posts.
//
//   bench_poll_link [--polls N] [--write docs/performance.md]
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "app/link_window.h"
#include "report.h"
#include "app/vantrel.h"
#include "loggerlink/logger_link.h"
#include "platform/linux/link_protocol.h"
#include "platform/linux/linux_link_channel.h"
#include "platform/memory/memory_platform.h"

namespace {

using namespace vantrel;
using Clock = std::chrono::steady_clock;
using bench::Stats;
using bench::Summarise;

// The logger's half: its memory and a socket that takes the posts.
struct Logger {
  Logger() {
    char pattern[] = "/tmp/vantrel-bench-XXXXXX";
    if (!::mkdtemp(pattern)) std::exit(1);
    dir = pattern;
    shm = "/vantrel-bench-" + std::to_string(::getpid());
    const int fd = ::shm_open(shm.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
    if (fd < 0 || ::ftruncate(fd, 1280) != 0) std::exit(1);
    block = static_cast<char*>(::mmap(nullptr, 1280, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0));
    ::close(fd);
    socket = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = dir + "/" + platform::linuxos::link::kSocketName;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    if (::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) std::exit(1);
  }
  ~Logger() {
    ::close(socket);
    ::unlink((dir + "/" + platform::linuxos::link::kSocketName).c_str());
    ::rmdir(dir.c_str());
    ::shm_unlink(shm.c_str());
  }
  void Write(int slot, const std::string& text) {
    char* at = block + slot * 128;
    std::memset(at, ' ', 64);
    std::memcpy(at, text.c_str(), text.size() + 1);
  }
  void Drain() {
    char datagram[64];
    while (::recv(socket, datagram, sizeof datagram, MSG_DONTWAIT) > 0) {
    }
  }
  std::string dir, shm;
  char* block = nullptr;
  int socket = -1;
};

struct Rig {
  explicit Rig(Logger& logger)
      : channel(logger.dir, logger.shm, [](const std::string& why) { std::fprintf(stderr, "%s\n", why.c_str()); },
                ::geteuid()) {
    m.trace.SetMuted(true);
    link.Attach(keyer.link, window, keyer.winKey);
    keyer.store.LocateSettingsFile("/bench", "");
    keyer.form.Form_Load();
  }
  platform::memory::MemoryPlatform m;
  platform::linuxos::LinuxLinkChannel channel;
  loggerlink::LoggerLinkLogic link{channel, m.controls};
  app::Vantrel keyer{platform::Platform{m.controls, m.clock, m.queue, m.profile, m.wallClock, m.language,
                                        m.parallel, m.cwControl, channel, m.sound, link,
                                        m.macroSetup},
                     {"/bench", ""}};
  app::FormLinkWindow window{keyer.form, [] {}, [](int16_t) {}};
};

double Micros(Clock::time_point since) {
  return std::chrono::duration<double, std::micro>(Clock::now() - since).count();
}

std::string Row(const char* what, const Stats& s) {
  char row[200];
  std::snprintf(row, sizeof row, "| %s | %.2f | %.2f | %.1f |\n", what, s.median, s.p99, s.max);
  return row;
}

}  // namespace

int main(int argc, char** argv) {
  int polls = 20000;
  std::string writePath;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--polls" && i + 1 < argc) polls = std::atoi(argv[++i]);
    else if (arg == "--write" && i + 1 < argc) writePath = argv[++i];
    else {
      std::fprintf(stderr, "usage: bench_poll_link [--polls N] [--write FILE]\n");
      return 2;
    }
  }
  if (polls < 100) polls = 100;

  Logger logger;
  logger.Write(0, "W1AW");
  logger.Write(1, "HIRAM");
  logger.Write(2, "042");
  logger.Write(3, "K1ABC");
  logger.Write(4, "20M");
  logger.Write(7, "1");
  Rig rig(logger);
  if (rig.keyer.link.LinkView == 0) {
    std::fprintf(stderr, "bench_poll_link: the keyer did not find the shared memory\n");
    return 1;
  }

  std::vector<double> quiet, changed;
  for (int i = 0; i < polls; ++i) {
    const auto start = Clock::now();
    rig.link.PollLink();
    quiet.push_back(Micros(start));
  }
  for (int i = 0; i < polls; ++i) {
    logger.Write(0, i % 2 ? "W1AW" : "K9XYZ");
    const auto start = Clock::now();
    rig.link.PollLink();
    changed.push_back(Micros(start));
    logger.Drain();
  }
  const Stats q = Summarise(quiet), c = Summarise(changed);

  std::ostringstream section;
  section << "## Polling the logger link\n\n"
          << "Made by `./build/bench/loggerlink/bench_poll_link --polls " << polls
          << " --write docs/performance.md`. `PollLink` on the real shared memory (POSIX, "
          << "1280 bytes) with the window's fields in memory, " << polls
          << " polls each: with nothing changed, as between two characters of a transmission, "
          << "and with the logger changing the call before every poll, so that the field's "
          << "change rule writes the slot back and posts over the socket. The send loop takes "
          << "what a poll costs off the letter gap; the shortest, at 99 WPM, is 36 ms.\n\n"
          << "| poll | median µs | p99 µs | max µs |\n|---|---:|---:|---:|\n"
          << Row("nothing changed", q) << Row("the call changed: written back and posted", c) << "\n"
         ;
  bench::Publish("poll link", section.str(), writePath);
  return 0;
}
