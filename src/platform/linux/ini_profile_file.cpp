#include "platform/linux/ini_profile_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include "vb/vb.h"

namespace vantrel::platform::linuxos {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Nothing when the file is there but unreadable, or is no regular file (a
// FIFO would block the keyer), so that a write never replaces a file it
// could not read; a missing file reads as empty only where the caller says so.
std::optional<std::string> ReadWhole(const std::string& path, bool missingIsEmpty = true) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) {
    if (errno == ENOENT && missingIsEmpty) return std::string();
    return std::nullopt;
  }
  if (struct stat info {}; ::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
    ::close(fd);
    errno = EINVAL;
    return std::nullopt;
  }
  std::string text;
  char buffer[8192];
  for (;;) {
    const ssize_t got = ::read(fd, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      ::close(fd);
      return std::nullopt;
    }
    if (got == 0) break;
    text.append(buffer, static_cast<size_t>(got));
  }
  ::close(fd);
  return text;
}

struct Line {
  std::string text;  // with its line end, as it stands in the file
  // Every carriage return before the end goes with it: a last line ended by a
  // lone one, or one that an older writer doubled, still reads.
  std::string_view Body() const {
    std::string_view body = text;
    if (!body.empty() && body.back() == '\n') body.remove_suffix(1);
    while (!body.empty() && body.back() == '\r') body.remove_suffix(1);
    return body;
  }
  bool Ended() const { return !text.empty() && text.back() == '\n'; }
  void End(const std::string& eol) {
    text.resize(Body().size());
    text += eol;
  }
};

// The file's lines; a UTF-8 byte order mark, as editors leave it, stands apart
// so that the first section is found and the mark is written back.
struct IniText {
  std::string mark;
  std::vector<Line> lines;
};

IniText SplitLines(const std::string& text) {
  IniText ini;
  if (text.starts_with(kByteOrderMark)) ini.mark = kByteOrderMark;
  std::vector<Line>& lines = ini.lines;
  size_t start = ini.mark.size();
  while (start < text.size()) {
    const size_t end = text.find('\n', start);
    const size_t next = end == std::string::npos ? text.size() : end + 1;
    lines.push_back(Line{text.substr(start, next - start)});
    start = next;
  }
  return ini;
}

enum class Kind { kOther, kBlank, kSection, kKey };

struct Parsed {
  Kind kind = Kind::kOther;
  std::string_view name;   // section or key name, trimmed
  std::string_view value;  // as it stands in the file
  size_t afterEquals = 0;  // offset into the body just past '='
};

Parsed Parse(std::string_view body) {
  Parsed parsed;
  const std::string_view trimmed = vb::TrimBlanks(body);
  if (trimmed.empty()) {
    parsed.kind = Kind::kBlank;
  } else if (trimmed.front() == ';') {
    parsed.kind = Kind::kOther;
  } else if (trimmed.front() == '[') {
    // A head without its closing bracket still names a section, as Windows reads it.
    std::string_view name = trimmed.substr(1);
    name = name.substr(0, name.find(']'));
    parsed.kind = Kind::kSection;
    parsed.name = vb::TrimBlanks(name);
  } else if (const size_t equals = body.find('='); equals != std::string_view::npos) {
    parsed.kind = Kind::kKey;
    parsed.name = vb::TrimBlanks(body.substr(0, equals));
    parsed.value = body.substr(equals + 1);
    parsed.afterEquals = equals + 1;
  }
  return parsed;
}

// Where the first matching section's lines lie: [head, end).
struct SectionSpan {
  size_t head;
  size_t end;
};

std::optional<SectionSpan> FindSection(const std::vector<Line>& lines, const std::string& section) {
  for (size_t i = 0; i < lines.size(); ++i) {
    const Parsed head = Parse(lines[i].Body());
    if (head.kind != Kind::kSection || !vb::SameText(head.name, section)) continue;
    size_t end = i + 1;
    while (end < lines.size() && Parse(lines[end].Body()).kind != Kind::kSection) ++end;
    return SectionSpan{i, end};
  }
  return std::nullopt;
}

std::optional<size_t> FindKey(const std::vector<Line>& lines, SectionSpan span, const std::string& key) {
  for (size_t i = span.head + 1; i < span.end; ++i) {
    const Parsed entry = Parse(lines[i].Body());
    if (entry.kind == Kind::kKey && vb::SameText(entry.name, key)) return i;
  }
  return std::nullopt;
}

// A new line ends the way the file's lines already end.
std::string LineEnd(const std::vector<Line>& lines) {
  for (const Line& line : lines) {
    if (line.Ended()) return line.text.size() >= 2 && line.text[line.text.size() - 2] == '\r' ? "\r\n" : "\n";
  }
  return "\n";
}

bool WriteAll(int fd, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t put = ::write(fd, text.data() + done, text.size() - done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    done += static_cast<size_t>(put);
  }
  return true;
}

// Writes a temporary file beside `path` and renames it over, so that a crash
// leaves the old file or the new one, whole. False when `path` is unchanged.
bool ReplaceFile(const std::string& path, const std::string& text, mode_t newMode) {
  const size_t slash = path.rfind('/');
  const std::string dir = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);

  struct stat existing {};
  const mode_t mode = ::stat(path.c_str(), &existing) == 0 ? (existing.st_mode & 07777) : newMode;

  std::string temp = TemporaryPrefix(path) + std::string(kTemporaryUniqueLength, 'X');
  const int fd = ::mkostemp(temp.data(), O_CLOEXEC);
  if (fd < 0) return false;
  bool ok = ::fchmod(fd, mode) == 0 && WriteAll(fd, text) && ::fsync(fd) == 0;
  ok = ::close(fd) == 0 && ok;
  if (!ok || ::rename(temp.c_str(), path.c_str()) != 0) {
    ::unlink(temp.c_str());
    return false;
  }
  // The rename itself is only durable once the directory is.
  const int dirFd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dirFd >= 0) {
    ::fsync(dirFd);
    ::close(dirFd);
  }
  return true;
}

// Replacing a link would cut it off from its target; write through it instead.
std::string ThroughLinks(const std::string& path) {
  if (char resolved[PATH_MAX]; ::realpath(path.c_str(), resolved) != nullptr) return resolved;
  return path;
}

}  // namespace

std::string TemporaryPrefix(const std::string& file) {
  const size_t slash = file.rfind('/');
  if (slash == std::string::npos) return "." + file + ".";
  return file.substr(0, slash + 1) + "." + file.substr(slash + 1) + ".";
}

std::string IniProfileFile::GetPrivateProfileString(const std::string& section, const std::string& key,
                                                    const std::string& fallback, int size,
                                                    const std::string& file) {
  std::string value(vb::TrimBlanks(fallback));
  if (const std::optional<std::string> text = ReadWhole(file)) {
    const std::vector<Line> lines = SplitLines(*text).lines;
    if (const auto span = FindSection(lines, section)) {
      if (const auto at = FindKey(lines, *span, key)) value = ValueFromFile(Parse(lines[*at].Body()).value);
    }
  }
  if (size > 0 && value.size() > static_cast<size_t>(size - 1)) value.resize(static_cast<size_t>(size - 1));
  return value;
}

bool IniProfileFile::WritePrivateProfileString(const std::string& section, const std::string& key,
                                               const std::string& value, const std::string& file) {
  const std::string target = ThroughLinks(file);
  const std::optional<std::string> text = ReadWhole(target);
  if (!text) return false;
  IniText ini = SplitLines(*text);
  std::vector<Line>& lines = ini.lines;
  const std::string eol = LineEnd(lines);
  // A line break in the value would split it into lines the file never meant.
  const std::string clean = ValueForFile(value.substr(0, value.find_first_of("\r\n")));

  if (const auto span = FindSection(lines, section)) {
    if (const auto at = FindKey(lines, *span, key)) {
      Line& line = lines[*at];
      const std::string_view body = line.Body();
      const std::string ending = line.text.substr(body.size());
      line.text = std::string(body.substr(0, Parse(body).afterEquals)) + clean + ending;
    } else {
      size_t insert = span->end;
      while (insert > span->head + 1 && Parse(lines[insert - 1].Body()).kind == Kind::kBlank) --insert;
      if (!lines[insert - 1].Ended()) lines[insert - 1].End(eol);
      lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(insert), Line{key + "=" + clean + eol});
    }
  } else {
    if (!lines.empty() && !lines.back().Ended()) lines.back().End(eol);
    lines.push_back(Line{"[" + section + "]" + eol});
    lines.push_back(Line{key + "=" + clean + eol});
  }

  std::string out = ini.mark;
  out.reserve(text->size() + key.size() + clean.size() + section.size() + 8);
  for (const Line& line : lines) out += line.text;
  return ReplaceFile(target, out, 0644);
}

bool IniProfileFile::FileExists(const std::string& file) {
  struct stat info {};
  return ::stat(file.c_str(), &info) == 0;
}

bool IniProfileFile::CopyFile(const std::string& from, const std::string& to) {
  struct stat source {};
  if (::stat(from.c_str(), &source) != 0 || !S_ISREG(source.st_mode)) return false;
  const std::optional<std::string> text = ReadWhole(from, false);
  return text && ReplaceFile(ThroughLinks(to), *text, source.st_mode & 07777);
}

}  // namespace vantrel::platform::linuxos
