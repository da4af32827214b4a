// The keyer as a cwdaemon: loggers' datagrams become what the operator's
// keys, menus and speed panel do, on whichever keyer is in use.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cwdaemon/request.h"
#include "mainwindow/frm_vantrel.h"
#include "platform/controls.h"
#include "platform/datagram_socket.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/send_text.h"
#include "sending/transmit_control.h"
#include "settings/settings_store.h"

namespace vantrel::cwdaemon {

inline constexpr const char* kDefaultAddress = "127.0.0.1";
inline constexpr int kDefaultPort = 6789;

struct DaemonNeighbours {
  sending::CwState& cw;
  platform::MainWindowControls& controls;
  sending::TransmitControl& control;
  sending::SendText& text;
  mainwindow::FrmVantrel& form;
  settings::SettingsStore& store;
};

// `tuneTimer` ends a timed tune; `replyTimer` looks for keyed texts whose sender waits for an answer.
class CwDaemon {
 public:
  CwDaemon(DaemonNeighbours n, platform::DatagramSocket& socket, platform::Timer& tuneTimer,
           platform::Timer& replyTimer);

  // Told what each request did ("cwdaemon speed", "cwdaemon ignored tone",
  // "cwdaemon refused", "cwdaemon reply" ...) with its text where it has one.
  void OnNotice(std::function<void(const std::string& what, const std::string& text)> observer) {
    notice_ = std::move(observer);
  }

  // Opens the socket that the settings name, once the window is up. A port
  // that cannot be had is told to the operator in a message box, and the keyer goes on without it.
  void Listen();
  void Receive(const std::string& datagram, const platform::DatagramPeer& from);

 private:
  struct PendingReply {
    platform::DatagramPeer to;
    std::string bytes;
    bool keyed = false;  // some of the text before it has gone out
  };

  void AppendText(const Request& request, const platform::DatagramPeer& from);
  void Tune(int seconds);
  void EndTune();
  void HoldPtt(bool on);
  void Abort();
  void SendDueReplies();
  void Notice(const std::string& what, const std::string& text = "") const {
    if (notice_) notice_(what, text);
  }

  DaemonNeighbours n_;
  platform::DatagramSocket& socket_;
  platform::Timer& tuneTimer_;
  platform::Timer& replyTimer_;
  std::function<void(const std::string&, const std::string&)> notice_;
  // What <ESC>h asked to answer after the next text.
  std::optional<std::string> nextReply_;
  std::vector<PendingReply> replies_;
};

}  // namespace vantrel::cwdaemon
