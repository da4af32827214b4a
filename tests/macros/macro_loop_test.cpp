#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/keyer_fixture.h"

namespace vantrel::macros {
namespace {

using ::testing::ElementsAre;
using testing::KeyerFixture;

class MacroLoopTest : public KeyerFixture {
 protected:
  void StartLooping(const std::string& macro = "e $loop$ $loop$") {
    Start();
    keyer.macros.MacroTexts[1] = macro;
    At(0, [this] { keyer.mMacros.btnF_Click(1); });
  }
  void Esc() {
    int16_t key = 27;
    int16_t shift = 0;
    keyer.form.cwTextBox_KeyDown(key, shift);
  }
};

TEST_F(MacroLoopTest, TwoLoopWordsWaitTenSecondsFromTheEndOfEachTransmission) {
  StartLooping();
  platform::Colour pauseColour = -1;
  At(5000, [&] { pauseColour = p.CWTextBox.BackColor(); });
  At(25000, [&] { Esc(); });
  Run();
  const auto fires = TimesOf("macro 1");
  const auto ends = TimesOf("post 900 0");
  ASSERT_EQ(fires.size(), 3u);
  ASSERT_GE(ends.size(), 2u);
  EXPECT_GT(ends[0], fires[0]);
  EXPECT_DOUBLE_EQ(fires[1], ends[0] + 10000);
  EXPECT_DOUBLE_EQ(fires[2], ends[1] + 10000);
  EXPECT_EQ(TimesOf("loop cancelled"), std::vector<double>{25000});
  EXPECT_EQ(pauseColour, keyer.window.LoopingBackColor);
  EXPECT_EQ(p.CWTextBox.BackColor(), keyer.window.NormalBackColor);
  EXPECT_FALSE(p.LoopTimer.Enabled());
  EXPECT_EQ(p.LoopTimer.Interval(), 0);
}

struct Interruption {
  const char* name;
  std::function<void(app::Vantrel&)> act;
  bool ends;
};

class LoopInterruption : public MacroLoopTest,
                         public ::testing::WithParamInterface<Interruption> {};

TEST_P(LoopInterruption, EndsTheLoopOrNot) {
  StartLooping();
  At(5000, [this] { GetParam().act(keyer); });
  At(40000, [] {});
  Run();
  if (GetParam().ends) {
    EXPECT_EQ(TimesOf("macro 1").size(), 1u);
    EXPECT_EQ(TimesOf("loop cancelled"), std::vector<double>{5000});
  } else {
    EXPECT_GT(TimesOf("macro 1").size(), 1u);
    EXPECT_TRUE(TimesOf("loop cancelled").empty());
  }
}

int16_t Letter() { return 'A'; }

const Interruption kInterruptions[] = {
    {"KeyInBox", [](app::Vantrel& k) { int16_t a = Letter(); k.form.cwTextBox_KeyPress(a); }, true},
    {"KeyInCall", [](app::Vantrel& k) { int16_t a = Letter(); k.form.CallsignField_KeyPress(a); }, true},
    {"KeyInName", [](app::Vantrel& k) { int16_t a = Letter(); k.form.NameField_KeyPress(a); }, true},
    {"ClickInBox", [](app::Vantrel& k) { k.form.cwTextBox_MouseDown(1); }, true},
    {"ClickInCall", [](app::Vantrel& k) { k.form.CallsignField_MouseDown(1); }, true},
    {"ClickInName", [](app::Vantrel& k) { k.form.NameField_MouseDown(2); }, true},
    {"Abort", [](app::Vantrel& k) { k.control.mnuabort_click(); }, true},
    {"OtherButton", [](app::Vantrel& k) { k.mMacros.btnF_Click(2); }, true},
    {"KeyInSrx", [](app::Vantrel& k) { int16_t a = Letter(), shift = 0; k.form.FieldKeyDown(a, shift, "SRXField"); },
     false},
};

INSTANTIATE_TEST_SUITE_P(Macros, LoopInterruption, ::testing::ValuesIn(kInterruptions),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(MacroLoopTest, ItsOwnButtonDuringThePauseFiresAtOnceAndLoopsAgain) {
  StartLooping("e $loop$");
  At(3000, [this] { keyer.mMacros.btnF_Click(1); });
  At(6000, [this] { Esc(); });
  Run();
  EXPECT_THAT(TimesOf("macro 1"), ElementsAre(0, 3000));
  EXPECT_THAT(EventsStartingWith({"macro", "loop"}),
              ElementsAre("macro 1", "loop armed 5000", "loop cancelled", "macro 1",
                          "loop armed 5000", "loop cancelled"));
}

TEST_F(MacroLoopTest, LogWaitsForTheLastCharacterAndLogImmediateComesFirst) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [this] { keyer.mMacros.QueueMacro("ee $log$"); });
  At(1000, [this] { keyer.mMacros.QueueMacro("ee $logimmediate$"); });
  Run();
  EXPECT_THAT(EventsStartingWith({"log contact", "keybox green"}),
              ElementsAre("keybox green", "keybox green", "log contact",  // after the last
                          "log contact", "keybox green", "keybox green"));
}

TEST_F(MacroLoopTest, LogAloneGoesOutAtTheEndOfTheNextTransmission) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [this] { keyer.mMacros.QueueMacro("$log$"); });
  At(500, [this] { Type("E"); });
  Run();
  EXPECT_EQ(p.link.contactsLogged, 1);
  EXPECT_GT(TimesOf("log contact").at(0), TimesOf("keybox green").at(0));
}

TEST_F(MacroLoopTest, ClearDuringATransmissionClearsNothingAndAppends) {
  Start();
  p.CallsignField.SetText("W1AW");
  std::string during;
  platform::Colour appended = -1;
  At(0, [this] { p.CWTextBox.SetText("EEEE"); });
  At(500, [&] {  // all four sent: the macro's text must not look sent too
    keyer.mMacros.QueueMacro("$clear$t");
    during = p.CWTextBox.Text();
    appended = p.CWTextBox.ColourAt(5);
  });
  Run();
  EXPECT_EQ(during, "EEEE T");
  EXPECT_EQ(appended, cw.TextForeColor);
  EXPECT_EQ(p.CallsignField.Text(), "W1AW");
  EXPECT_EQ(TimesOf("keybox green").size(), 5u);  // four E and the T
}

}  // namespace
}  // namespace vantrel::macros
