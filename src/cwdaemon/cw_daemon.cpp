#include "cwdaemon/cw_daemon.h"

#include <charconv>

#include "platform/window.h"
#include "vb/vb.h"

namespace vantrel::cwdaemon {
namespace {

constexpr unsigned char kSpeedUp = 187;    // »
constexpr unsigned char kSpeedDown = 171;  // «
// How often a sender waiting for its answer is looked at: well under a character.
constexpr int32_t kReplyLookMs = 10;
constexpr const char* kReplyEnd = "\r\n";

}  // namespace

CwDaemon::CwDaemon(DaemonNeighbours n, platform::DatagramSocket& socket, platform::Timer& tuneTimer,
                   platform::Timer& replyTimer)
    : n_(n), socket_(socket), tuneTimer_(tuneTimer), replyTimer_(replyTimer) {
  socket_.OnDatagram([this](const std::string& datagram, const platform::DatagramPeer& from) {
    Receive(datagram, from);
  });
  tuneTimer_.OnTimer([this] { EndTune(); });
  replyTimer_.SetInterval(kReplyLookMs);
  replyTimer_.OnTimer([this] { SendDueReplies(); });
  n_.text.OnMark([this](int16_t) {
    for (PendingReply& reply : replies_) reply.keyed = true;
  });
}

void CwDaemon::Listen() {
  settings::SettingsStore& store = n_.store;
  const std::string section = store.SettingsSection;
  store.SettingsSection = settings::kNetworkSection;
  const std::string address = store.ReadSetting("Address", kDefaultAddress);
  const std::string portText = store.ReadSetting("Port", std::to_string(kDefaultPort));
  store.SettingsSection = section;

  int port = -1;
  const auto [end, fault] = std::from_chars(portText.data(), portText.data() + portText.size(), port);
  std::string error;
  if (fault != std::errc() || end != portText.data() + portText.size() || port < 0 || port > 65535) {
    error = "Port=" + portText + " in [Network] is not a port number";
  } else if (port == 0) {
    Notice("cwdaemon off");
    return;
  } else if (socket_.Open(address, static_cast<uint16_t>(port), error)) {
    Notice("cwdaemon listening", address + ":" + std::to_string(port));
    return;
  }
  Notice("cwdaemon not listening", error);
  n_.controls.frmVantrel.MsgBox("Loggers cannot key Vantrel over the network (cwdaemon protocol): " + error,
                                platform::kMsgBoxExclamation, "Vantrel");
}

void CwDaemon::Receive(const std::string& datagram, const platform::DatagramPeer& from) {
  const Request request = ParseRequest(datagram);
  const std::string name = NameOf(request.kind);
  switch (request.kind) {
    case RequestKind::Text:
      AppendText(request, from);
      break;
    case RequestKind::Reset:
      Notice("cwdaemon reset");
      Abort();
      EndTune();
      HoldPtt(false);
      nextReply_.reset();
      break;
    case RequestKind::Speed:
      Notice("cwdaemon speed", std::to_string(request.value));
      n_.form.SetSpeed(static_cast<int16_t>(request.value));
      break;
    case RequestKind::Abort:
      Notice("cwdaemon abort");
      Abort();
      break;
    case RequestKind::Ptt:
      Notice(request.value ? "cwdaemon ptt on" : "cwdaemon ptt off");
      HoldPtt(request.value == 1);
      break;
    case RequestKind::Tune:
      Tune(request.value);
      break;
    case RequestKind::Reply:
      Notice("cwdaemon reply asked", request.text);
      nextReply_ = "h" + request.text + kReplyEnd;
      break;
    case RequestKind::Refused:
      Notice("cwdaemon refused", request.text);
      break;
    default: {
      // The sound, the device, the band lines and the daemon's own life are this keyer's business.
      Notice("cwdaemon ignored " + name, TakesNumber(request.kind) ? std::to_string(request.value) : request.text);
      break;
    }
  }
}

// At the end of the box in capitals as a macro's text goes, so that VOX
// starts sending and MOX waits for TX; the protocol's speed steps are the keyer's own marks.
void CwDaemon::AppendText(const Request& request, const platform::DatagramPeer& from) {
  std::string text = vb::UCase(request.text);
  for (char& character : text) {
    if (character == '+') character = static_cast<char>(kSpeedUp);
    if (character == '-') character = static_cast<char>(kSpeedDown);
  }
  Notice("cwdaemon text", request.text);
  std::optional<std::string> reply = request.echo ? std::optional<std::string>(request.text + kReplyEnd) : nextReply_;
  nextReply_.reset();
  if (reply) {
    replies_.push_back(PendingReply{from, *reply, false});
    replyTimer_.SetEnabled(true);
  }
  if (!text.empty()) {
    platform::TextBox& box = n_.controls.CWTextBox;
    box.SetSelStart(static_cast<int>(box.Text().size()));
    box.SetSelColor(n_.cw.TextForeColor);
    box.SetSelText(text);
    box.SetSelStart(static_cast<int>(box.Text().size()));
  } else if (!replies_.empty()) {
    // Nothing to key: the text before it is all there is to wait for.
    replies_.back().keyed = true;
  }
  SendDueReplies();
}

void CwDaemon::Abort() {
  replies_.clear();
  replyTimer_.SetEnabled(false);
  n_.control.mnuabort_click();
}

// Down for the seconds asked, then up by itself; 0 ends a tune the logger began.
void CwDaemon::Tune(int seconds) {
  if (seconds == 0) {
    Notice("cwdaemon tune", "0");
    EndTune();
    return;
  }
  const sending::Keyer& keyer = n_.control.keyer();
  if (n_.cw.Transmitting() && !keyer.Tuning()) {
    Notice("cwdaemon refused", "tune: busy sending");
    return;
  }
  Notice("cwdaemon tune", std::to_string(seconds));
  if (!keyer.Tuning()) n_.control.mnuTune_Click();
  tuneTimer_.SetEnabled(false);
  tuneTimer_.SetInterval(seconds * 1000);
  tuneTimer_.SetEnabled(true);
}

void CwDaemon::EndTune() {
  if (!tuneTimer_.Enabled()) return;
  tuneTimer_.SetEnabled(false);
  if (n_.control.keyer().Tuning()) {
    Notice("cwdaemon tune end");
    n_.control.mnuTune_Click();
  }
}

void CwDaemon::HoldPtt(bool on) {
  sending::CwState& cw = n_.cw;
  if (on == cw.PTTHeld) return;
  cw.PTTHeld = on;
  n_.control.keyer().HoldPtt(on);
}

// A reply goes once the keyer has sent some of the text before it and then
// stopped, or holds the transmission open waiting for more text.
void CwDaemon::SendDueReplies() {
  if (n_.cw.Tx == sending::TxState::Sending) return;
  std::erase_if(replies_, [this](const PendingReply& reply) {
    if (!reply.keyed) return false;
    Notice("cwdaemon reply", reply.bytes);
    socket_.SendTo(reply.to, reply.bytes);
    return true;
  });
  if (replies_.empty()) replyTimer_.SetEnabled(false);
}

}  // namespace vantrel::cwdaemon
