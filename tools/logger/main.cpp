// vantrel-logger: the logger's end of the link, for trying the keyer without
// a logger and for testing it. It makes the shared memory and the socket,
// prints every message, answers sends, and takes commands on standard input
// to write slots or to misbehave.
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <sstream>
#include <string>

#include "platform/linux/link_protocol.h"
#include "platform/neighbours.h"

namespace {

namespace link = vantrel::platform::linuxos::link;

constexpr const char* kUsage =
    "usage: vantrel-logger [--dir DIR] [--shm NAME] [--size BYTES]\n"
    "       vantrel-logger --help | --version\n"
    "  --dir DIR     the folder of the socket (default $XDG_RUNTIME_DIR)\n"
    "  --shm NAME    the shared memory (default $VANTREL_LINK_SHM, else /CW)\n"
    "  --size BYTES  the size of the shared memory (default 1280)\n"
    "commands on standard input, one a line:\n"
    "  call|name|serial|mycall|band|control|srx|radio|sentrst|rcvdrst TEXT\n"
    "                write TEXT into that slot (no TEXT: empty)\n"
    "  slot N TEXT   write TEXT into slot N, 0 to 9\n"
    "  show          print every slot\n"
    "  mute          stop answering sends\n"
    "  late MS       answer sends MS ms late\n"
    "  answer        answer sends at once again\n"
    "  vanish        end at once, leaving socket and memory behind, as a crash does\n"
    "  quit          end, removing socket and memory (also at the end of input)\n";

constexpr int kSlotSpacing = 128;
constexpr int kSlotText = 64;
constexpr std::array<const char*, 10> kSlotNames{"call",    "name",  "serial", "mycall",  "band",
                                                 "control", "srx",   "radio",  "sentrst", "rcvdrst"};

int64_t NowMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

[[noreturn]] void Fail(const std::string& message) {
  std::fprintf(stderr, "vantrel-logger: %s\n", message.c_str());
  std::exit(2);
}

struct PendingAnswer {
  int64_t dueMs;
  sockaddr_un to;
  socklen_t toLength;
  unsigned char bytes[link::kAnswerSize];
};

class Logger {
 public:
  Logger(std::string socketPath, std::string shmName, size_t size)
      : socketPath_(std::move(socketPath)), shmName_(std::move(shmName)), size_(size) {}

  void Open() {
    ::shm_unlink(shmName_.c_str());
    const int fd = ::shm_open(shmName_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) Fail("cannot create shared memory " + shmName_ + ": " + std::strerror(errno));
    if (::ftruncate(fd, static_cast<off_t>(size_)) != 0) Fail(std::string("ftruncate: ") + std::strerror(errno));
    void* view = ::mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (view == MAP_FAILED) Fail(std::string("mmap: ") + std::strerror(errno));
    ::close(fd);
    block_ = static_cast<char*>(view);

    socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socket_ < 0) Fail(std::string("socket: ") + std::strerror(errno));
    sockaddr_un address{};
    if (socketPath_.size() >= sizeof address.sun_path) Fail("socket path too long: " + socketPath_);
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, socketPath_.c_str(), socketPath_.size() + 1);
    ::unlink(socketPath_.c_str());
    if (::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
      Fail("cannot bind " + socketPath_ + ": " + std::strerror(errno));
    }
    ::chmod(socketPath_.c_str(), 0600);
    Say("ready " + socketPath_ + " " + shmName_ + " " + std::to_string(size_));
  }

  void Close() {
    ::unlink(socketPath_.c_str());
    ::shm_unlink(shmName_.c_str());
  }

  // Runs until the end of input or quit; false on vanish.
  bool Run() {
    std::string input;
    for (;;) {
      pollfd fds[2] = {{socket_, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
      int timeout = -1;
      if (!pending_.empty()) timeout = static_cast<int>(std::max<int64_t>(0, pending_.front().dueMs - NowMs()));
      const int ready = ::poll(fds, inputOpen_ ? 2 : 1, timeout);
      if (ready < 0 && errno != EINTR) Fail(std::string("poll: ") + std::strerror(errno));
      SendDueAnswers();
      if (fds[0].revents & POLLIN) Receive();
      if (inputOpen_ && (fds[1].revents & (POLLIN | POLLHUP))) {
        char chunk[512];
        const ssize_t got = ::read(STDIN_FILENO, chunk, sizeof chunk);
        if (got <= 0) {
          inputOpen_ = false;
          return true;
        }
        input.append(chunk, static_cast<size_t>(got));
        for (size_t end; (end = input.find('\n')) != std::string::npos;) {
          std::string line = input.substr(0, end);
          input.erase(0, end + 1);
          if (!line.empty() && line.back() == '\r') line.pop_back();
          const int verdict = Command(line);
          if (verdict != 0) return verdict > 0;
        }
      }
    }
  }

 private:
  static void Say(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
  }

  std::string SlotText(int slot) const {
    const char* at = block_ + slot * kSlotSpacing;
    const void* nul = std::memchr(at, '\0', kSlotText);
    return nul ? std::string(at, static_cast<const char*>(nul)) : std::string();
  }

  void WriteSlot(int slot, const std::string& text) {
    char* at = block_ + slot * kSlotSpacing;
    std::memset(at, ' ', kSlotText);
    std::memcpy(at, text.data(), std::min<size_t>(text.size(), kSlotText));
    if (text.size() < kSlotText) at[text.size()] = '\0';
    Say("wrote " + std::to_string(slot) + " \"" + text + "\"");
  }

  void Receive() {
    unsigned char datagram[64];
    sockaddr_un from{};
    socklen_t fromLength = sizeof from;
    const ssize_t got = ::recvfrom(socket_, datagram, sizeof datagram, MSG_DONTWAIT,
                                   reinterpret_cast<sockaddr*>(&from), &fromLength);
    if (got == static_cast<ssize_t>(link::kPostSize)) {
      const int32_t code = link::GetInt32(datagram);
      std::string line = "post " + std::to_string(code) + " " + std::to_string(link::GetInt32(datagram + 4));
      if (code == static_cast<int32_t>(vantrel::platform::LinkCode::SlotChanged)) {
        line += " call \"" + SlotText(0) + "\" name \"" + SlotText(1) + "\" srx \"" + SlotText(6) + "\"";
      }
      Say(line);
    } else if (got == static_cast<ssize_t>(link::kSendSize)) {
      Say("send " + std::to_string(link::GetInt32(datagram)) + " " + std::to_string(link::GetInt32(datagram + 4)));
      if (mute_) return;
      PendingAnswer answer{NowMs() + lateMs_, from, fromLength, {}};
      std::memcpy(answer.bytes, datagram + 8, 4);
      link::PutInt32(answer.bytes + 4, 1);
      pending_.push_back(answer);
      SendDueAnswers();
    } else if (got > 0) {
      Say("junk " + std::to_string(got) + " bytes");
    }
  }

  void SendDueAnswers() {
    while (!pending_.empty() && pending_.front().dueMs <= NowMs()) {
      PendingAnswer& answer = pending_.front();
      (void)::sendto(socket_, answer.bytes, sizeof answer.bytes, MSG_DONTWAIT,
                     reinterpret_cast<sockaddr*>(&answer.to), answer.toLength);
      pending_.pop_front();
    }
  }

  // 0 goes on, 1 ends cleanly, -1 vanishes.
  int Command(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    const auto space = line.find(' ');
    const std::string text = space == std::string::npos ? "" : line.substr(space + 1);
    for (size_t slot = 0; slot < kSlotNames.size(); ++slot) {
      if (verb == kSlotNames[slot]) {
        WriteSlot(static_cast<int>(slot), text);
        return 0;
      }
    }
    if (verb == "slot") {
      int slot = -1;
      words >> slot;
      if (slot < 0 || slot > 9) {
        Say("error: slot takes a number from 0 to 9");
        return 0;
      }
      const auto at = text.find(' ');
      WriteSlot(slot, at == std::string::npos ? "" : text.substr(at + 1));
    } else if (verb == "show") {
      for (size_t slot = 0; slot < kSlotNames.size(); ++slot) {
        Say(std::string(kSlotNames[slot]) + " \"" + SlotText(static_cast<int>(slot)) + "\"");
      }
    } else if (verb == "mute") {
      mute_ = true;
      Say("muted");
    } else if (verb == "answer") {
      mute_ = false;
      lateMs_ = 0;
      Say("answering");
    } else if (verb == "late") {
      words >> lateMs_;
      mute_ = false;
      Say("late " + std::to_string(lateMs_));
    } else if (verb == "vanish") {
      return -1;
    } else if (verb == "quit") {
      return 1;
    } else if (!verb.empty()) {
      Say("error: unknown command " + verb);
    }
    return 0;
  }

  std::string socketPath_;
  std::string shmName_;
  size_t size_;
  char* block_ = nullptr;
  int socket_ = -1;
  bool inputOpen_ = true;
  bool mute_ = false;
  int64_t lateMs_ = 0;
  std::deque<PendingAnswer> pending_;
};

}  // namespace

int main(int argc, char** argv) {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  const char* shmEnv = std::getenv(link::kMappingNameVariable);
  std::string dir = runtime ? runtime : "";
  std::string shm = shmEnv && *shmEnv ? shmEnv : link::kMappingName;
  size_t size = 10 * kSlotSpacing;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    const bool hasValue = i + 1 < argc;
    if (arg == "--help" || arg == "-h") {
      std::fputs(kUsage, stdout);
      return 0;
    } else if (arg == "--version") {
      std::puts("vantrel-logger " VANTREL_VERSION);
      return 0;
    } else if (arg == "--dir" && hasValue) {
      dir = argv[++i];
    } else if (arg == "--shm" && hasValue) {
      shm = argv[++i];
    } else if (arg == "--size" && hasValue) {
      const long value = std::strtol(argv[++i], nullptr, 10);
      if (value < 1 || value > 1 << 20) Fail("--size takes a number of bytes from 1 to 1048576");
      size = static_cast<size_t>(value);
    } else {
      std::fprintf(stderr, "vantrel-logger: unknown or incomplete option %s\n%s", arg.c_str(), kUsage);
      return 2;
    }
  }
  if (dir.empty()) Fail("no folder for the socket: set XDG_RUNTIME_DIR or give --dir");
  if (shm.empty() || shm[0] != '/') Fail("the shared memory's name starts with /");

  Logger logger(dir + "/" + link::kSocketName, shm, size);
  logger.Open();
  if (logger.Run()) logger.Close();
  return 0;
}
