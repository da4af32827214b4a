#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "support/keyer_fixture.h"

namespace vantrel {
namespace {

using ::testing::ElementsAre;

class Sidetone : public testing::KeyerFixture {
 protected:
  void StartWithTone(const std::string& frequency) {
    Start({{"SideTone", "ON"}, {"Frequency", frequency}, {"Slow Typing", "OFF"}});
  }
  const platform::memory::MemorySoundSystem& sound() const { return p.sound; }
};

TEST_F(Sidetone, BufferHoldsHalfOfFifteenHundredWholePeriods) {
  // Written to the file before start-up, so the load builds the tone.
  StartWithTone("1000");
  EXPECT_EQ(sound().lastDescription.bytes, 33000);
  EXPECT_EQ(sound().lastDescription.flags, 128);
  EXPECT_EQ(sound().lastDescription.format.averageBytesPerSecond, 44100);
  ASSERT_EQ(keyer.sidetone.Samples().size(), 33001u);
  EXPECT_EQ(keyer.sidetone.Samples().back(), 0);
  EXPECT_EQ(sound().lastWritten.size(), 16500u);  // 0.748 s
  // The sine uses the frequency as set, not rounded: 700.4 Hz drifts from 700.
  cw.SidetoneFrequency = 700.4;
  keyer.sidetone.CreateSidetone();
  EXPECT_EQ(sound().lastDescription.bytes, 46500);
  const double want = std::round(32767 * std::sin(1000 * 8 * std::atan(1.0) * 700.4 / 22050));
  EXPECT_EQ(keyer.sidetone.Samples()[1000], static_cast<int16_t>(want));
}

TEST_F(Sidetone, CreationRunsItsStepsInOrderAndEveryCallRebuilds) {
  StartWithTone("700");
  keyer.sidetone.CreateSidetone();
  // The new objects replace the old, which go buffer first.
  EXPECT_THAT(p.trace.Events(),
              ElementsAre("sound device", "sound buffer released", "sound device released",
                          "sound level 2", "sound buffer 46500", "sound write",
                          "sound volume -10000"));
  // A new frequency sounds only once the tone is built again.
  cw.SidetoneFrequency = 1000;
  software.SidetoneOn();
  software.SidetoneOff();
  EXPECT_EQ(sound().lastDescription.bytes, 46500);
  keyer.sidetone.CreateSidetone();
  EXPECT_EQ(sound().lastDescription.bytes, 33000);
}

TEST_F(Sidetone, DisabledToneMakesNoSoundCallsAtAll) {
  Start();
  At(0, [&] { Type("E"); });
  Run();
  keyer.form.Form_Unload();
  EXPECT_EQ(EventsStartingWith({"keybox"}).size(), 2u);
  EXPECT_TRUE(EventsStartingWith({"sound"}).empty());
}

TEST_F(Sidetone, UnloadSilencesThenReleasesBufferBeforeDevice) {
  StartWithTone("1000");
  keyer.form.Form_Unload();
  EXPECT_THAT(EventsStartingWith({"sound"}),
              ElementsAre("sound volume -10000", "sound stop", "sound position 0",
                          "sound buffer released", "sound device released"));
}

TEST_F(Sidetone, MissingSoundSaysSoAndKeyingGoesOnSilently) {
  p.sound.missing = true;
  StartWithTone("1000");
  EXPECT_FALSE(cw.SidetoneEnabled);
  EXPECT_EQ(p.CWTextBox.Text(), "Unable to create DirectX 8 sound.");
  EXPECT_EQ(StoredSetting(settings::kMainSection, "SideTone"), "ON");  // the file keeps the operator's choice
  p.CWTextBox.SetText("");
  At(0, [&] { Type("E"); });
  Run();
  EXPECT_EQ(EventsStartingWith({"keybox"}), (std::vector<std::string>{"keybox green", "keybox red"}));
  EXPECT_TRUE(EventsStartingWith({"sound"}).empty());
}

TEST_F(Sidetone, HandEditedFrequencyWithoutAWholePeriodGivesNoTone) {
  StartWithTone("1000");
  for (const double frequency : {0.0, 22051.0, -5.0}) {
    cw.SidetoneFrequency = frequency;
    keyer.sidetone.CreateSidetone();
    p.trace.Clear();
    p.CWTextBox.SetText("");
    At(p.clock.NowMs(), [&] { Type("E"); });
    Run();
    EXPECT_TRUE(cw.SidetoneEnabled) << frequency;
    EXPECT_TRUE(EventsStartingWith({"sound play", "sound write"}).empty()) << frequency;
    EXPECT_EQ(EventsStartingWith({"keybox"}).size(), 2u) << frequency;
  }
}

}  // namespace
}  // namespace vantrel
