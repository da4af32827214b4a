// Each request's effect on the whole keyer, in virtual time.
#include "cwdaemon/cw_daemon.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/memory/memory_datagram_socket.h"
#include "support/keyer_fixture.h"

namespace vantrel::cwdaemon {
namespace {

using namespace std::string_literals;

class CwDaemonTest : public testing::KeyerFixture {
 protected:
  void Listen(Settings settings = {}) {
    settings.insert(settings.begin(), {"Slow Typing", "OFF"});
    Start(settings);
    daemon.OnNotice([this](const std::string& what, const std::string& text) {
      p.trace.Emit(text.empty() ? what : what + " " + platform::memory::Trace::Quote(text));
    });
    daemon.Listen();
  }
  void Udp(double ms, const std::string& datagram) {
    At(ms, [this, datagram] { socket.Deliver(datagram); });
  }
  // How long each key-down lasted, in order.
  std::vector<double> Elements() const {
    const auto downs = TimesOf("keybox green");
    const auto ups = TimesOf("keybox red");
    std::vector<double> lengths;
    for (size_t i = 0; i < downs.size() && i < ups.size(); ++i) lengths.push_back(ups[i] - downs[i]);
    return lengths;
  }
  size_t Count(const std::string& prefix) const { return EventsStartingWith({prefix}).size(); }

  platform::memory::MemoryDatagramSocket socket;
  platform::memory::MemoryTimer tuneTimer{p.queue};
  platform::memory::MemoryTimer replyTimer{p.queue};
  CwDaemon daemon{{cw, p.controls, control, text, keyer.form, keyer.store},
                  socket,
                  tuneTimer,
                  replyTimer};
};

// --- the listener ---

TEST_F(CwDaemonTest, ListensOnLoopbackAtTheDaemonsPortByDefault) {
  Listen();
  EXPECT_TRUE(socket.open);
  EXPECT_EQ(socket.boundAddress, "127.0.0.1");
  EXPECT_EQ(socket.boundPort, 6789);
}

TEST_F(CwDaemonTest, TheNetworkSectionMovesIt) {
  Listen({{"Address", "0.0.0.0"}, {"Port", "7000"}});
  EXPECT_EQ(socket.boundAddress, "0.0.0.0");
  EXPECT_EQ(socket.boundPort, 7000);
  EXPECT_EQ(StoredSetting("Network", "Port"), "7000");
}

TEST_F(CwDaemonTest, PortZeroSwitchesItOffWithoutAWord) {
  Listen({{"Port", "0"}});
  EXPECT_FALSE(socket.open);
  EXPECT_EQ(Count("msgbox"), 0u);
  EXPECT_EQ(Count("cwdaemon off"), 1u);
}

TEST_F(CwDaemonTest, ATakenPortIsToldOnceOutsideTheBoxAndTheKeyerGoesOn) {
  socket.takenPorts = {6789};
  Listen();
  EXPECT_FALSE(socket.open);
  const auto boxes = EventsStartingWith({"msgbox"});
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_NE(boxes[0].find("Address already in use"), std::string::npos);
  EXPECT_EQ(p.CWTextBox.Text(), "");
  At(0, [&] { Type("E"); });
  Run();
  EXPECT_EQ(TimesOf("keybox green").size(), 1u);
}

TEST_F(CwDaemonTest, ABadPortSettingIsToldAndNothingListens) {
  Listen({{"Port", "67890"}});
  EXPECT_FALSE(socket.open);
  EXPECT_EQ(Count("msgbox"), 1u);
}

// --- text ---

TEST_F(CwDaemonTest, TextIsKeyedInCapitalsAsItStands) {
  Listen();
  Udp(0, "cq\n");
  Run();
  // C and Q, four elements each: -.-. --.-
  EXPECT_EQ(Elements(), (std::vector<double>{180, 60, 180, 60, 180, 180, 60, 180}));
  EXPECT_EQ(Count("cwdaemon text \"cq\""), 1u);
}

TEST_F(CwDaemonTest, OnMoxTheTextWaitsInTheBoxWhole) {
  Listen({{"Keying", "MOX"}});
  Udp(0, "tu = 73 &\r\n");
  Udp(10, "ee");
  Run();
  // Appended as a macro's text is, not typed: no prosign for = or &, no blank between datagrams.
  EXPECT_EQ(p.CWTextBox.Text(), "TU = 73 &EE");
  EXPECT_TRUE(TimesOf("keybox green").empty());
  EXPECT_TRUE(p.mnuTX.Enabled());
}

TEST_F(CwDaemonTest, PaddedDatagramsKeyOnlyTheirString) {
  Listen({{"Keying", "MOX"}});
  std::string padded = "test\0"s;
  padded.resize(80, 'X');
  Udp(0, padded);
  Udp(1, "\n");  // keys nothing
  Run();
  EXPECT_EQ(p.CWTextBox.Text(), "TEST");
}

TEST_F(CwDaemonTest, PlusAndMinusStepTheSpeedForTheRestOfTheText) {
  Listen();
  Udp(0, "dl1abc ++5nn--14\n");
  Run();
  const auto elements = Elements();
  // D L 1 A B C take 22 elements; the 5 after ++ runs at 24 WPM, the 4 after -- at 20 again.
  ASSERT_EQ(elements.size(), 41u);
  EXPECT_DOUBLE_EQ(elements[3], 60);   // the dot that starts L
  EXPECT_DOUBLE_EQ(elements[22], 50);  // the first dot of 5
  EXPECT_DOUBLE_EQ(elements[36], 60);  // the first dot of 4
  EXPECT_EQ(cw.WPM, 20);
}

TEST_F(CwDaemonTest, TextReachesTheChipOnTheWinKeyRoute) {
  StartWithChip("WinKey", "\x0A", {{"Slow Typing", "OFF"}});
  daemon.Listen();
  chip.written.clear();
  socket.Deliver("cq\n");
  EXPECT_TRUE(cw.Transmitting());
  EXPECT_EQ(chip.written.back(), 'C');
}

// --- speed ---

TEST_F(CwDaemonTest, SpeedIsSetAsThePanelSetsIt) {
  Listen();
  Udp(0, "\x1B" "2 6");
  Run();
  EXPECT_EQ(cw.WPM, 6);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "WPM"), "6");
  EXPECT_EQ(Count("cwdaemon speed \"6\""), 1u);
}

TEST_F(CwDaemonTest, RefusedSpeedsChangeNothing) {
  Listen();
  for (const char* bad : {"\x1B" "261", "\x1B" "23", "\x1B" "2abc", "\x1B" "2"}) socket.Deliver(bad);
  EXPECT_EQ(cw.WPM, 20);
  EXPECT_EQ(Count("cwdaemon refused"), 4u);
}

TEST_F(CwDaemonTest, SpeedReachesTheChip) {
  StartWithChip("WinKey", "\x0A");
  daemon.Listen();
  chip.written.clear();
  socket.Deliver("\x1B" "235");
  EXPECT_EQ(chip.written, "\x1C\x23");
}

// --- abort ---

TEST_F(CwDaemonTest, AbortStopsInMidCharacter) {
  Listen();
  Udp(0, "test test\n");
  Udp(150, "\x1B" "4");  // inside the dash of the first T, keyed after the Tx delay from 100 to 280
  Run();
  // As Esc does: the dash ends whole and the character already in hand (the
  // E) goes out; nothing of the rest of TEST TEST follows.
  EXPECT_EQ(TimesOf("keybox green"), (std::vector<double>{100, 460}));
  EXPECT_EQ(TimesOf("keybox red"), (std::vector<double>{280, 520}));
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_FALSE(cw.Transmitting());
}

TEST_F(CwDaemonTest, AbortWithNothingGoingOutHarmsNothing) {
  Listen();
  Udp(0, "\x1B" "4");
  Udp(10, "e\n");
  Run();
  EXPECT_EQ(TimesOf("keybox green").size(), 1u);
}

// --- tune ---

TEST_F(CwDaemonTest, TuneKeysDownForTheSecondsAskedAndUpByItself) {
  Listen();
  Udp(0, "\x1B" "c2");
  At(5000, [] {});  // time goes on with nothing else to do
  Run();
  EXPECT_EQ(TimesOf("keybox green"), (std::vector<double>{0}));
  EXPECT_EQ(TimesOf("keybox red"), (std::vector<double>{2000}));
  EXPECT_FALSE(keyer.control.keyer().Tuning());
}

TEST_F(CwDaemonTest, TuneIsRefusedWhileTextGoesOutAndEndedByAbort) {
  Listen();
  Udp(0, "e\n");
  Udp(10, "\x1B" "c5");
  Udp(1000, "\x1B" "c5");
  Udp(1500, "\x1B" "4");
  Run();
  EXPECT_EQ(Count("cwdaemon refused \"tune: busy sending\""), 1u);
  EXPECT_EQ(TimesOf("keybox red"), (std::vector<double>{160, 1500}));
  EXPECT_FALSE(keyer.control.keyer().Tuning());
}

// --- PTT ---

TEST_F(CwDaemonTest, PttIsHeldAcrossTextsUntilReleased) {
  Listen({{"PTT", "ON"}});
  Udp(0, "\x1B" "a1");
  Udp(10, "e\n");
  Udp(1000, "\x1B" "a0");
  Run();
  // The text's own start keys PTT again; its end leaves it on.
  EXPECT_EQ(TimesOf("pttbox green").front(), 0);
  EXPECT_EQ(TimesOf("pttbox red"), (std::vector<double>{1000}));
  EXPECT_EQ(TimesOf("keybox green").size(), 1u);
  EXPECT_FALSE(cw.PTTHeld);
}

TEST_F(CwDaemonTest, PttReachesTheChip) {
  StartWithChip("WinKey", "\x0A");
  daemon.Listen();
  chip.written.clear();
  socket.Deliver("\x1B" "a1");
  socket.Deliver("\x1B" "a0");
  EXPECT_EQ(chip.written, "\x18\x01\x18\x00"s);
}

// --- replies ---

TEST_F(CwDaemonTest, AskedReplyGoesOnceTheNextTextIsKeyed) {
  Listen();
  Udp(0, "\x1B" "hcat");
  Udp(1, "e\n");
  Udp(500, "e\n");  // no reply asked this time
  Run();
  ASSERT_EQ(socket.sent.size(), 1u);
  EXPECT_EQ(socket.sent[0].first, "127.0.0.1:40000");
  EXPECT_EQ(socket.sent[0].second, "hcat\r\n");
  const auto replies = EventsStartingWith({"cwdaemon reply \"hcat"});
  ASSERT_EQ(replies.size(), 1u);
  const auto lines = p.trace.Lines();
  double repliedAt = -1;
  for (const std::string& line : lines) {
    if (line.find("cwdaemon reply \"hcat") != std::string::npos) repliedAt = std::stod(line);
  }
  EXPECT_GE(repliedAt, TimesOf("keybox red")[0]);
  EXPECT_LT(repliedAt, 500);
}

TEST_F(CwDaemonTest, ACaretAtTheEndEchoesTheTextAfterItIsKeyed) {
  Listen();
  Udp(0, "tu^");
  Run();
  ASSERT_EQ(socket.sent.size(), 1u);
  EXPECT_EQ(socket.sent[0].second, "tu\r\n");
  EXPECT_EQ(TimesOf("keybox green").size(), 4u);  // T and U; the caret keys nothing
}

TEST_F(CwDaemonTest, NoReplyForATextThatWasAborted) {
  Listen({{"Keying", "MOX"}});
  Udp(0, "qrz^");
  Udp(100, "\x1B" "4");
  Run();
  EXPECT_TRUE(socket.sent.empty());
}

// --- what loggers send at start-up, and the requests that mean nothing here ---

TEST_F(CwDaemonTest, TlfStartUpBurstTakesEffectAndKeyingGoesOn) {
  Listen();
  for (const char* request : {"\x1B" "0", "\x1B" "3600", "\x1B" "g70", "\x1B" "230", "\x1B" "70", "\x1B" "d10"}) {
    Udp(0, request);
  }
  Udp(1, "e\n");
  Run();
  EXPECT_EQ(cw.WPM, 30);
  EXPECT_EQ(Elements(), (std::vector<double>{40}));
  EXPECT_EQ(Count("cwdaemon ignored"), 4u);
  EXPECT_EQ(Count("msgbox"), 0u);
}

TEST_F(CwDaemonTest, ResetStopsSendingAndTuningAndLetsPttGo) {
  Listen({{"PTT", "ON"}});
  Udp(0, "\x1B" "a1");
  Udp(10, "\x1B" "c5");
  Udp(100, "\x1B" "0");
  Udp(200, "e\n");
  Run();
  EXPECT_FALSE(cw.PTTHeld);
  EXPECT_FALSE(keyer.control.keyer().Tuning());
  EXPECT_EQ(TimesOf("keybox green").size(), 2u);  // the tune, then the E after the reset
  EXPECT_EQ(EventsStartingWith({"pttbox"}).back(), "pttbox red");
}

TEST_F(CwDaemonTest, MeaninglessRequestsAreTracedAndIgnored) {
  Listen();
  for (const char* request : {"\x1B" "5", "\x1B" "8ttyS0", "\x1B" "e1001", "\x1B" "fp", "\x1B" "6", "\x1B" "b1"}) {
    socket.Deliver(request);
  }
  EXPECT_EQ(Count("cwdaemon ignored"), 6u);
  EXPECT_EQ(Count("cwdaemon ignored device \"ttyS0\""), 1u);
  EXPECT_TRUE(socket.open);
}

TEST_F(CwDaemonTest, DatagramsThatAreNotTextKeyNothing) {
  Listen();
  Udp(0, "cq\x01\x02");
  Udp(0, "\x1B" "z");
  Run();
  EXPECT_EQ(Count("cwdaemon refused"), 2u);
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_TRUE(TimesOf("keybox green").empty());
}

}  // namespace
}  // namespace vantrel::cwdaemon
