// The sidetone through a real sound server: a PulseAudio null sink takes the
// keyer's tone, a recorder listens to its monitor, and the recording must
// hold the pitch and the key's own timing.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/temp_folder.h"

namespace {

constexpr int kRate = 22050;
constexpr double kPitch = 700;

struct Burst {
  double startMs, endMs;
  double droppedMs = 0;  // silence inside, from samples lost on the way
  std::vector<double> crossings;  // rising zero crossings inside, in samples
};

// Stretches where the recording sounds, found on 1 ms windows.
std::vector<Burst> BurstsIn(const std::vector<int16_t>& samples) {
  constexpr size_t kWindow = kRate / 1000;
  std::vector<Burst> bursts;
  bool on = false;
  for (size_t at = 0; at + kWindow <= samples.size(); at += kWindow) {
    int peak = 0;
    for (size_t i = at; i < at + kWindow; ++i) peak = std::max(peak, std::abs(int{samples[i]}));
    const double ms = at * 1000.0 / kRate;
    if (peak > 8000 && !on) bursts.push_back({ms, ms, 0, {}});
    if (peak > 8000) bursts.back().endMs = ms + 1;
    on = peak > 8000;
  }
  // No silence of 20 WPM is shorter than a dot of 60 ms: a shorter one is
  // samples the server or the recorder dropped, inside one tone. A busy
  // machine drops up to a few tens of ms at once; the stutter check below
  // still counts every one of them.
  std::vector<Burst> joined;
  for (const Burst& burst : bursts) {
    if (!joined.empty() && burst.startMs - joined.back().endMs < 45) {
      joined.back().droppedMs += burst.startMs - joined.back().endMs;
      joined.back().endMs = burst.endMs;
    } else {
      joined.push_back(burst);
    }
  }
  bursts = std::move(joined);
  for (Burst& burst : bursts) {
    const auto from = static_cast<size_t>(burst.startMs * kRate / 1000);
    const auto to = static_cast<size_t>(burst.endMs * kRate / 1000);
    for (size_t i = from + 1; i < to && i < samples.size(); ++i) {
      if (samples[i - 1] >= 0 || samples[i] < 0) continue;
      // Where the line between the two samples crosses zero.
      burst.crossings.push_back(static_cast<double>(i - 1) +
                                samples[i - 1] / double(samples[i - 1] - samples[i]));
    }
  }
  return bursts;
}

class SoundPath : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v pulseaudio && command -v pactl && command -v parec") != 0) {
      GTEST_SKIP() << "no PulseAudio here (pulseaudio, pactl and parec are needed): "
                      "the sound path is NOT checked";
    }
    ::setenv("XDG_RUNTIME_DIR", runtime_.path().c_str(), 1);
    Shell("pulseaudio -n --daemonize=yes --exit-idle-time=-1 --disallow-exit "
          "--load=module-native-protocol-unix "
          "--load='module-null-sink sink_name=vantrel_test' 2>/dev/null");
    for (int tries = 0; tries < 50 && Shell("pactl info >/dev/null 2>&1") != 0; ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    if (Shell("pactl set-default-sink vantrel_test") != 0) {
      GTEST_SKIP() << "PulseAudio would not start here: the sound path is NOT checked";
    }
    started_ = true;
  }
  void TearDown() override {
    if (started_) Shell("pactl exit 2>/dev/null");
  }

  static int Shell(const std::string& command) { return std::system(command.c_str()); }

  // Records the sink while the keyer sends PARIS; the keyer's trace back.
  std::string KeyWhileRecording(std::vector<int16_t>& recording) {
    const std::string raw = dir_.path() + "/tone.raw";
    const pid_t recorder = ::fork();
    if (recorder == 0) {
      const std::string command = "exec parec -d vantrel_test.monitor --raw --format=s16le "
                                  "--rate=22050 --channels=1 --latency-msec=5 > " + raw;
      ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
      ::_exit(127);
    }
    // The recorder takes a while to hear anything.
    std::this_thread::sleep_for(std::chrono::milliseconds(1000));
    // A sink that has just woken may drop its first sound: an E wakes it,
    // and the last line keeps the keyer alive until the tone has played out.
    // PARIS is appended, not sent in place of the box: on a busy machine the
    // start-up can make the E late enough to be still going at 1000 ms, and a
    // replaced box would then be keyed from the E's position on.
    std::ofstream(dir_.path() + "/paris.vsim")
        << "0 send E\n1000 append PARIS\n4500 focus CWTextBox\n";
    // The sound system's plugins leave memory behind at exit, and a leak
    // report would end the keyer before its trace is out of the pipe.
    const std::string command = "ASAN_OPTIONS=detect_leaks=0 " + std::string(VANTREL_SIM) +
                                " --real-time --dir " + dir_.path() +
                                " --set SideTone=ON --set Frequency=700 --set WPM=20"
                                " --set \"Slow Typing=OFF\" " +
                                dir_.path() + "/paris.vsim 2>/dev/null";
    std::string trace;
    if (FILE* sim = ::popen(command.c_str(), "r")) {
      char line[512];
      while (std::fgets(line, sizeof line, sim)) trace += line;
      ::pclose(sim);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ::kill(recorder, SIGINT);
    ::waitpid(recorder, nullptr, 0);
    std::ifstream in(raw, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    recording.resize(bytes.size() / 2);
    std::copy_n(bytes.data(), recording.size() * 2, reinterpret_cast<char*>(recording.data()));
    return trace;
  }

  vantrel::testing::TempFolder runtime_, dir_;
  bool started_ = false;
};

TEST_F(SoundPath, TheToneHasItsPitchAndTheKeysTiming) {
  std::vector<int16_t> recording;
  std::istringstream trace(KeyWhileRecording(recording));
  std::vector<double> keyEdges;  // down, up, down, up, ... in ms
  for (std::string line; std::getline(trace, line);) {
    std::istringstream fields(line);
    double ms;
    std::string what, colour;
    fields >> ms >> what >> colour;
    if (what == "keybox" && (colour == "green" || !keyEdges.empty())) keyEdges.push_back(ms);
  }
  // E, then PARIS: 14 elements, .--. .- .-. .. ...
  ASSERT_EQ(keyEdges.size(), 30u);
  keyEdges.erase(keyEdges.begin(), keyEdges.begin() + 2);

  std::vector<Burst> bursts = BurstsIn(recording);
  std::ostringstream heard;
  for (const Burst& burst : bursts) heard << burst.startMs << "+" << burst.endMs - burst.startMs << " ";
  ASSERT_GE(bursts.size(), 14u) << "stretches of tone heard (start+length ms): " << heard.str();
  bursts.erase(bursts.begin(), bursts.end() - 14);
  // Each tone and each silence against the key-down or key-up it follows.
  // Lengths, not times: a recorder on a busy machine drops a few ms now
  // and then, which would shift every later time.
  std::vector<double> periods, errors;
  std::ostringstream lengths;
  double toneMs = 0, droppedMs = 0;
  for (size_t k = 0; k < bursts.size(); ++k) {
    toneMs += bursts[k].endMs - bursts[k].startMs;
    droppedMs += bursts[k].droppedMs;
    const std::vector<double>& at = bursts[k].crossings;
    for (size_t i = 1; i < at.size(); ++i) periods.push_back(at[i] - at[i - 1]);
    const double tone = bursts[k].endMs - bursts[k].startMs;
    const double down = keyEdges[2 * k + 1] - keyEdges[2 * k];
    errors.push_back(std::abs(tone - down));
    lengths << tone << "/" << down << " ";
    if (k + 1 == bursts.size()) break;
    const double silence = bursts[k + 1].startMs - bursts[k].endMs;
    const double up = keyEdges[2 * k + 2] - keyEdges[2 * k + 1];
    errors.push_back(std::abs(silence - up));
    lengths << silence << "/" << up << " ";
  }
  // Medians: a sample the server drops breaks one period, not the pitch.
  const auto median = [](std::vector<double> v) {
    std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
    return v[v.size() / 2];
  };
  ASSERT_FALSE(periods.empty());
  // A tone that stutters is no sidetone, whatever its lengths.
  EXPECT_LT(droppedMs, toneMs * 0.05) << droppedMs << " ms of the tone were silent";
  EXPECT_NEAR(kRate / median(periods), kPitch, kPitch * 0.01);
  // The 1 ms of finding the edges, and a few ms of the keyer's own waits.
  const auto close = std::count_if(errors.begin(), errors.end(), [](double e) { return e < 5; });
  EXPECT_GE(close, 24) << "of 27 tone and silence lengths (heard/keyed ms): " << lengths.str();
}

}  // namespace
