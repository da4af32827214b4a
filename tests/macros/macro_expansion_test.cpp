#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/keyer_fixture.h"

namespace vantrel::macros {
namespace {

using loggerlink::LinkSlot;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::KeyerFixture;

// Starts on MOX so that queued text waits in the box instead of going out.
class MacroFixture : public KeyerFixture {
 public:
  using KeyerFixture::keyer;
  using KeyerFixture::p;

  void Slot(LinkSlot slot, const std::string& text) {
    p.link.LoggerWrites(static_cast<int16_t>(slot), text);
  }
  // A WinKey2 answered on the open port.
  void OnWinKey2() {
    keyer.winKeyState.IsWinKey2 = true;
    p.cwControl.SetPortOpen(true);
  }

 protected:
  void StartWithLogger(const Settings& settings = {}) {
    p.linkChannel.loggerRunning = true;
    Settings all{{"Keying", "MOX"}};
    all.insert(all.end(), settings.begin(), settings.end());
    Start(all);
  }
  // What the macro leaves in an empty box.
  std::string Queued(const std::string& macro) {
    p.CWTextBox.SetText("");
    p.trace.Clear();
    keyer.mMacros.QueueMacro(macro);
    return p.CWTextBox.Text();
  }
  // What reached the logger and the chip, in order.
  std::vector<std::string> Outgoing() const {
    return EventsStartingWith({"link command", "winkey", "post 7", "post 8", "log contact"});
  }
};

struct Case {
  const char* name;
  std::function<void(MacroFixture&)> setup;
  const char* macro;
  std::string text;
  std::vector<std::string> outgoing;
};

class Expansion : public MacroFixture, public ::testing::WithParamInterface<Case> {};

TEST_P(Expansion, LeavesTheTextAndReachesTheLoggerAndChip) {
  StartWithLogger();
  const Case& c = GetParam();
  if (c.setup) c.setup(*this);
  EXPECT_EQ(Queued(c.macro), c.text);
  EXPECT_EQ(Outgoing(), c.outgoing);
}

auto Slots(std::vector<std::pair<LinkSlot, std::string>> slots) {
  return [slots](MacroFixture& f) {
    for (const auto& [slot, text] : slots) f.Slot(slot, text);
  };
}

const Case kCases[] = {
    // A field that spells a later word acts as that word; a report that
    // spells an earlier one stays text.
    {"NameSpellingLog", [](MacroFixture& f) { f.p.NameField.SetText("$log$"); }, "$name$ tu", " TU", {}},
    {"ReportSpellingCall", Slots({{LinkSlot::LinkSentRST, "$call$"}}), "$sentrst$", "$call$", {}},
    {"CallInsideCommand", [](MacroFixture& f) { f.p.CallsignField.SetText("W1AW"); },
     "$command dx $call$$", "", {"link command \"Command DX W1AW\""}},
    {"NameUpperCallAsTyped",
     [](MacroFixture& f) { f.p.NameField.SetText("Hiram"); f.p.CallsignField.SetText("w1aw"); },
     "tu $name$ $call$", "TU HIRAM w1aw", {}},
    {"MyCallAndBand", Slots({{LinkSlot::LinkMyCall, "SM5XYZ"}, {LinkSlot::LinkBand, "20"}}),
     "de $mycall$ $band$m", "DE SM5XYZ 20M", {}},
    {"SpeedMarks", nullptr, "$speed+$cq$speed-$", "\xBB" "CQ\xAB", {}},
    {"SameCommandTwice", nullptr, "$command A$$command A$", "", {"link command \"Command A\""}},
    {"TwoCommands", nullptr,
     "$command AB$ $command AC$", " ", {"link command \"Command AB\"", "link command \"Command AC\""}},
    {"CommandNeedsNoBlank", nullptr, "$commandQSY$", "", {"link command \"Command QSY\""}},
    {"UnclosedCommandStays", nullptr, "cq $command x", "CQ $COMMAND X", {}},
    {"RadioOne", Slots({{LinkSlot::LinkRadio, "1"}}), "$command a|b$", "", {"link command \"Command A\""}},
    {"RadioTwo", Slots({{LinkSlot::LinkRadio, "2"}}), "$command a | b$", "", {"link command \"Command B\""}},
    {"RadioUnknown", nullptr, "$command a|b$", "", {"link command \"Command A\""}},
    {"RadioTwoEmptyHalf", Slots({{LinkSlot::LinkRadio, "2"}}), "$command a|$", "", {}},
    {"HexTooShort", nullptr, "$hexcommand ABC$", "", {}},
    {"HexLongEnough", nullptr, "$hexcommand ABCD$", "", {"link command \"HexCommand ABCD\""}},
    {"HexRadioOneTooShort", Slots({{LinkSlot::LinkRadio, "1"}}), "$hexcommand AB|CDEF$", "", {}},
    {"HexRadioTwo", Slots({{LinkSlot::LinkRadio, "2"}}),
     "$hexcommand AB|CDEF$", "", {"link command \"HexCommand CDEF\""}},
    {"MessageOnWinKey2", [](MacroFixture& f) { f.OnWinKey2(); }, "$msg3$", "", {"winkey 00 0E 03"}},
    {"MessageSevenOrTwelve", [](MacroFixture& f) { f.OnWinKey2(); }, "$msg7$$msg12$", "", {}},
    {"MessageOnOtherKeyers", nullptr, "$msg3$", "", {}},
    {"MessageUnclosedStays", nullptr, "$msg3", "$MSG3", {}},
    {"ReportsDefault", nullptr, "$sentrst$ $sentrstn$", "599 5NN", {}},
    {"ReportNinesOnly", Slots({{LinkSlot::LinkReceivedRST, "579"}}),
     "$receivedrstn$ $receivedrst$", "57N 579", {}},
    // The table's order, not the text's.
    {"RotorWordsApart", nullptr, "$rotorlp$$rotor$", "", {"post 800 0", "post 800 1"}},
    {"LogWordsApart", nullptr, "$logimmediate$$clearlog$", "", {"log contact", "post 700 0"}},
    {"SerialZeroAsT",
     [](MacroFixture& f) { f.Slot(LinkSlot::LinkSerial, "100"); f.keyer.form.mnuSend0asT_Click(); },
     "$serialnum$", "1TT", {}},
    {"SerialLessOneFormatted",
     [](MacroFixture& f) { f.Slot(LinkSlot::LinkSerial, "010"); f.p.link.serialFormat = "000"; },
     "$serialnum-1$ $serialnum$", "009 010", {}},
    {"SerialLessOneZeroAsO",
     [](MacroFixture& f) {
       f.Slot(LinkSlot::LinkSerial, "010");
       f.p.link.serialFormat = "000";
       f.keyer.form.mnuSend0asO_Click();
     },
     "$serialnum-1$", "OO9", {}},
    {"SerialOne", Slots({{LinkSlot::LinkSerial, "1"}}), "[$serialnum-1$]", "[]", {}},
    {"SerialNone", Slots({{LinkSlot::LinkSerial, "###"}}), "[$serialnum-1$$serialnum$]", "[]", {}},
    {"UnknownWordStays", nullptr, "$foo$ ~ b^t", "$FOO$ ~ B^T", {}},
};

INSTANTIATE_TEST_SUITE_P(Macros, Expansion, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(MacroFixture, WithoutTheLoggerCommandsVanishAndTheLinkValuesAreEmpty) {
  Start({{"Keying", "MOX"}});
  EXPECT_EQ(Queued("$command a$de $mycall$$band$ $sentrst$ $serialnum$"), "DE  599 ");
  EXPECT_THAT(Outgoing(), IsEmpty());
  EXPECT_EQ(Queued("$bookmark$"), "");  // the posts go out in any case
  EXPECT_THAT(Outgoing(), ElementsAre("post 750 0"));
}

TEST_F(MacroFixture, FlagsAddUpPerOccurrence) {
  StartWithLogger();
  Queued("$loop$ $loop$ $receive$ $log$");
  EXPECT_EQ(cw.LoopDelay, 10000);
  EXPECT_TRUE(cw.ReceiveAfterSend);
  EXPECT_TRUE(cw.LogAfterSend);
  EXPECT_EQ(p.link.contactsLogged, 0);  // the log waits for the end of a transmission
}

TEST_F(MacroFixture, QueueingAddsOneBlankBehindTextAndNothingToAnEmptyBox) {
  StartWithLogger();
  keyer.mMacros.QueueMacro("");
  EXPECT_EQ(p.CWTextBox.Text(), "");
  keyer.mMacros.QueueMacro("cq");
  keyer.mMacros.QueueMacro("");
  EXPECT_EQ(p.CWTextBox.Text(), "CQ ");
  EXPECT_EQ(p.CWTextBox.SelStart(), 3);
  EXPECT_EQ(p.CWTextBox.ColourAt(2), cw.TextForeColor);
}

TEST_F(MacroFixture, ClearWhileIdleEmptiesBoxAndCallBeforeTheTextGoesIn) {
  StartWithLogger();
  p.CWTextBox.SetText("OLD");
  p.CallsignField.SetText("W1AW");
  keyer.mMacros.QueueMacro("$clear$qrz");
  EXPECT_EQ(p.CWTextBox.Text(), "QRZ");
  EXPECT_EQ(p.CallsignField.Text(), "");
}

TEST_F(MacroFixture, TransmitActsOnTheBoxBeforeTheMacrosTextArrives) {
  StartWithLogger();
  keyer.mMacros.QueueMacro("$transmit$cq");
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.CWTextBox.Text(), "CQ");  // on MOX it waits
  EXPECT_THAT(TimesOf("keybox green"), IsEmpty());
}

TEST_F(MacroFixture, SpeedWordsAreStoredForGood) {
  StartWithLogger({{"WPM", "20"}});
  Queued("$cwspeedup$$cwspeedup$$cwspeeddn$$cwspeedup$");
  EXPECT_EQ(cw.WPM, 22);
  EXPECT_EQ(cw.DotTime, cw.DotLength(22));
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "WPM"), "22");
  EXPECT_EQ(EventsStartingWith({"status"}).back(), "status \" Keying speed = 22 WPM\"");
}

// A durable write inside one of the keyer's waits would move a key edge: the
// speed reaches the file when the transmission ends.
TEST_F(MacroFixture, ASpeedWordWhileSendingIsStoredWhenTheTransmissionEnds) {
  Start({{"WPM", "20"}, {"Slow Typing", "OFF"}});
  std::string storedWhileSending;
  bool sending = false;
  At(100, [this] { keyer.mMacros.QueueMacro("$cwspeedup$"); });
  At(300, [this, &storedWhileSending, &sending] {
    sending = cw.Transmitting();
    storedWhileSending = StoredSetting("frmVantrel Settings", "WPM");
  });
  At(0, [this] { Type("TEST"); });
  Run();
  EXPECT_TRUE(sending);
  EXPECT_EQ(storedWhileSending, "20");
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "WPM"), "21");
}

TEST_F(MacroFixture, SpeedWordsOnAChipGoToItUnlessThePotRules) {
  StartWithLogger({{"WinKey Speed", "15"}});
  UseChip(winkey::ChipModel::WinKey);
  p.cwControl.SetPortOpen(true);
  Queued("$cwspeedup$");
  EXPECT_THAT(Outgoing(), ElementsAre("winkey 1C 10"));
  EXPECT_EQ(StoredSetting("WinKey Settings", "WinKey Speed"), "16");
  EXPECT_EQ(cw.WPM, 16);

  keyer.winKeySettings.WinKeyAnalogSpeed = true;
  Queued("$cwspeeddn$$cwspeeddn$");
  EXPECT_THAT(Outgoing(), IsEmpty());
  EXPECT_EQ(StoredSetting("WinKey Settings", "WinKey Speed"), "14");
  EXPECT_EQ(cw.WPM, 16);
}

TEST_F(MacroFixture, SpeedWordsStopAtOneWpmOnly) {
  StartWithLogger({{"WPM", "2"}});
  Queued("$cwspeeddn$$cwspeeddn$$cwspeeddn$");
  EXPECT_EQ(cw.WPM, 1);

  // Past the speed panel's 99: the dot stays at its floor.
  cw.WPM = 99;
  Queued("$cwspeedup$");
  EXPECT_EQ(cw.WPM, 100);
  EXPECT_EQ(cw.DotTime, 12);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "WPM"), "100");
}

TEST_F(MacroFixture, SpeedWordsOnAChipStopAtWhatAByteHolds) {
  StartWithLogger({{"WinKey Speed", "99"}});
  UseChip(winkey::ChipModel::WinKey);
  p.cwControl.SetPortOpen(true);
  Queued("$cwspeedup$");
  EXPECT_THAT(Outgoing(), ElementsAre("winkey 1C 64"));
  EXPECT_EQ(StoredSetting("WinKey Settings", "WinKey Speed"), "100");

  keyer.winKeySettings.WinKeySpeed = 255;
  Queued("$cwspeedup$");
  EXPECT_THAT(Outgoing(), ElementsAre("winkey 1C FF"));
  EXPECT_EQ(StoredSetting("WinKey Settings", "WinKey Speed"), "255");
}

}  // namespace
}  // namespace vantrel::macros
