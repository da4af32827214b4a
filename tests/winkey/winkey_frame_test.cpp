#include "winkey/winkey_frame.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/trace.h"

namespace vantrel::winkey {
namespace {

// The stored defaults of a fresh settings file.
WinKeySettings Defaults() {
  WinKeySettings s;
  s.WinKeyKeyMode = 0;
  s.WinKeySpeed = 15;
  s.WinKeyTone = 752;
  s.WinKeyDitDahWeight = 50;
  s.WinKeyPTTLeadDelay = 100;
  s.WinKeyPTTLagDelay = 250;
  s.WinKeySpeedMin = 15;
  s.WinKeySpeedMax = 30;
  s.WinKeySpeedFarnsworth = 20;
  s.WinKeyPaddleSwitchpoint = 50;
  s.WinKeyDitDahRatio = 50;
  s.WinKeyPTT = true;
  s.WinKeyPin3 = true;
  s.WinKeyAutoSpace = true;
  return s;
}

std::string Hex(const std::string& bytes) { return platform::memory::Trace::Hex(bytes); }

TEST(WinKeyFrame, DefaultsGiveTheKnownFrameOnEachChip) {
  const WinKeySettings s = Defaults();
  EXPECT_EQ(Hex(LoadDefaultsFrame(s, false, 0)),
            "0F 16 0F 05 32 64 FA 0F 0F 00 00 14 32 32 05 FF");
  // A WinKey2 takes 1000 Hz for 752 and, with no radio yet, no key output bit.
  EXPECT_EQ(Hex(LoadDefaultsFrame(s, true, 0)), "0F 16 0F 04 32 64 FA 0F 0F 00 00 14 32 32 01 FF");
  EXPECT_EQ(LoadDefaultsFrame(s, false, 0), LoadDefaultsFrame(s, false, 0));
}

TEST(WinKeyFrame, KeyModesAreNotInTheOrderOfTheirBits) {
  WinKeySettings s = Defaults();
  s.WinKeyAutoSpace = false;
  const uint8_t want[] = {0x14, 0x04, 0x24, 0x34, 0x04, 0x04};
  const int16_t modes[] = {0, 1, 2, 3, 4, -1};
  for (int i = 0; i < 6; ++i) {
    s.WinKeyKeyMode = modes[i];
    EXPECT_EQ(ModeByte(s), want[i]) << "mode " << modes[i];
  }
  s.WinKeyKeyMode = 1;
  s.WinKeySwitchPaddles = true;
  s.WinKeyContestWordSpace = true;
  EXPECT_EQ(ModeByte(s), 0x0D);
}

TEST(WinKeyFrame, SidetoneComesFromTheChipsOwnTable) {
  WinKeySettings s = Defaults();
  s.WinKeyTone = 1000;
  EXPECT_EQ(SidetoneByte(s, false), 5);  // not a WinKey pitch: 752 Hz
  EXPECT_EQ(SidetoneByte(s, true), 4);
  s.WinKeyTone = 3759;
  EXPECT_EQ(SidetoneByte(s, false), 1);
  s.WinKeyTone = 400;
  EXPECT_EQ(SidetoneByte(s, true), 10);
  s.PaddleOnlySideTone = true;
  EXPECT_EQ(SidetoneByte(s, true), 0x8A);
  s.WinKeyTone = 375;
  EXPECT_EQ(SidetoneByte(s, false), 10);  // a WinKey has no paddle-only tone
}

TEST(WinKeyFrame, PinsFollowPin3OnAWinKeyAndTheRadioOnAWinKey2) {
  WinKeySettings s = Defaults();
  s.WinKeySideTone = true;
  s.WinKeyWordSpace = 3;
  s.WinKeyPaddleOperation = 2;
  EXPECT_EQ(BuildWinKeyPinByte(s), 0xB7);
  s.WinKeyPin3 = false;  // pin 5: no PTT and no sidetone, whatever is stored
  EXPECT_EQ(BuildWinKeyPinByte(s), 0xB8);
  EXPECT_TRUE(s.WinKeyPTT);
  s.WinKeyWordSpace = 4;
  s.WinKeyPaddleOperation = 1;
  EXPECT_EQ(BuildWinKeyPinByte(s), 0x48);
  EXPECT_EQ(BuildWinKey2PinByte(s, 0), 0x43);
  EXPECT_EQ(BuildWinKey2PinByte(s, 1), 0x47);
  EXPECT_EQ(BuildWinKey2PinByte(s, 2), 0x4B);
}

// Only a hand-edited file holds one; the span of the pot counts too.
TEST(WinKeyFrame, TheFirstNumberNoByteCarriesIsNamed) {
  WinKeySettings s = Defaults();
  EXPECT_FALSE(ValueOutOfByte(s));
  s.WinKeyFirstExtension = 256;
  s.WinKeyPTTLagDelay = 300;
  const auto lag = ValueOutOfByte(s);
  ASSERT_TRUE(lag);
  EXPECT_EQ(std::string(lag->key) + " " + std::to_string(lag->value), "WinKey PTT Lag Delay 300");
  s = Defaults();
  s.WinKeySpeedMax = 10;
  const auto span = ValueOutOfByte(s);
  ASSERT_TRUE(span);
  EXPECT_EQ(std::string(span->key) + " " + std::to_string(span->value), "WinKey Speed Max -5");
}

}  // namespace
}  // namespace vantrel::winkey
