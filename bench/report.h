// What every benchmark reports alike: the median, p99 and max of a set of
// timings, and its own section of docs/performance.md, between markers of
// its name, printed and rewritten in place.
#pragma once

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace vantrel::bench {

struct Stats {
  double median = 0, p99 = 0, max = 0;
};

inline Stats Summarise(std::vector<double> values) {
  if (values.empty()) return {};
  std::sort(values.begin(), values.end());
  const auto at = [&](double q) { return values[static_cast<size_t>(q * (values.size() - 1))]; };
  return {at(0.5), at(0.99), values.back()};
}

// Prints the section; with a path, puts it in that file in place of the
// section of the same name, or at the end when there is none yet.
inline void Publish(const std::string& name, const std::string& body, const std::string& path) {
  const std::string begin = "<!-- " + name + ": begin -->";
  const std::string end = "<!-- " + name + ": end -->";
  const std::string section = begin + "\n" + body + end;
  std::printf("%s\n", section.c_str());
  if (path.empty()) return;
  std::ifstream in(path);
  std::stringstream old;
  old << in.rdbuf();
  std::string doc = old.str();
  const auto from = doc.find(begin), to = doc.find(end);
  if (from != std::string::npos && to != std::string::npos) {
    doc.replace(from, to + end.size() - from, section);
  } else {
    doc += "\n" + section + "\n";
  }
  std::ofstream(path) << doc;
}

}  // namespace vantrel::bench
