#include "script.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include "platform/main_window_design.h"
#include "platform/memory/memory_winkey_config.h"

namespace vantrel::sim {
namespace {

struct VerbInfo {
  const char* name;
  bool takesArgument;
};
constexpr std::array<VerbInfo, 30> kVerbs{{{"send", true},
                                          {"append", true},
                                          {"type", true},
                                          {"paste", true},
                                          {"key", true},
                                          {"focus", true},
                                          {"field", true},
                                          {"menu", true},
                                          {"resize", true},
                                          {"minimize", false},
                                          {"close", false},
                                          {"unplug", false},
                                          {"control", true},
                                          {"slot", true},
                                          {"button", true},
                                          {"macro", true},
                                          {"wait", false},
                                          {"chip", true},
                                          {"paddle", false},
                                          {"speed", true},
                                          {"editor", true},
                                          {"editor-field", true},
                                          {"editor-type", true},
                                          {"editor-click", true},
                                          {"editor-mouse", true},
                                          {"pick-color", true},
                                          {"pick-font", true},
                                          {"dialog", true},
                                          {"click", true},
                                          {"udp", true}}};
constexpr std::array<const char*, 4> kFocus{"CWTextBox", "CallsignField", "NameField", "SRXField"};
// The slots of the logger's shared block, in their order.
constexpr std::array<const char*, 10> kSlots{"LinkCall",    "LinkName",  "LinkSerial", "LinkMyCall",
                                             "LinkBand",    "LinkControl", "LinkSRX", "LinkRadio",
                                             "LinkSentRST", "LinkReceivedRST"};
constexpr std::array<const char*, 9> kEditorButtons{
    "Hbutton1", "BackColorButton", "Hbutton3", "Hbutton2", "Hbutton4",
    "Hbutton5", "Hbutton6",        "ARButton1", "Hbutton7"};
constexpr std::array<const char*, 4> kFontStyles{"regular", "bold", "italic", "bold-italic"};
// The largest Windows RGB colour, white.
constexpr int kWhite = 0xFFFFFF;
constexpr std::array<const char*, 3> kDialogs{"port", "winkey", "winkey2"};
// The keyer setup dialog's controls: those a click acts on, and those that
// take a value. The chip dialogs' are their own.
constexpr std::array<const char*, 13> kClickable{
    "btnTest",       "ARButton1",         "ARButton2",   "btnOK",  "btnCancel",    "btnStopTest", "CheckParallel",
    "CheckSharedSerial", "CheckSerial", "Check5", "ckSlowTyping", "Chk6",        "ckSidetone"};
// The keyer setup dialog's, then the Assign INS key dialog's list.
constexpr std::array<const char*, 9> kValued{"Text2", "Text3", "Text4", "Text5", "Text6", "cmbPort",
                                             "DotLengthSlider", "Pitch", "List1"};

template <size_t N>
bool Known(const std::array<const char*, N>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

int64_t ParseTime(const std::string& field, int line) {
  char* end = nullptr;
  const double ms = std::strtod(field.c_str(), &end);
  if (field.empty() || *end != '\0' || !std::isfinite(ms) || ms < 0 || ms > 1e12) {
    throw ScriptError(line, "'" + field + "' is not a time in ms");
  }
  return std::llround(ms * 1e6);
}

}  // namespace

bool KnownFocus(const std::string& name) {
  return std::find(kFocus.begin(), kFocus.end(), name) != kFocus.end();
}

bool KnownEditorButton(const std::string& name) {
  return std::find(kEditorButtons.begin(), kEditorButtons.end(), name) != kEditorButtons.end();
}

namespace {

// A whole number from `low` to `high`, or the line's error.
int Number(const std::string& text, int low, int high, const ScriptEvent& event, const char* what) {
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || value < low || value > high) {
    throw ScriptError(event.line, event.verb + ": " + what + " must be a whole number from " +
                                      std::to_string(low) + " to " + std::to_string(high));
  }
  return static_cast<int>(value);
}

void ReadArguments(ScriptEvent& event) {
  std::istringstream words(event.argument);
  std::string a, b, rest;
  if (event.verb == "key") {
    words >> a >> b >> rest;
    if (!rest.empty()) throw ScriptError(event.line, "key takes CODE [SHIFT]");
    event.first = Number(a, 1, 255, event, "the key code");
    event.second = b.empty() ? 0 : Number(b, 0, 7, event, "the shift state");
  } else if (event.verb == "resize") {
    words >> a >> b >> rest;
    if (!rest.empty()) throw ScriptError(event.line, "resize takes WIDTH HEIGHT");
    event.first = Number(a, 1, 100000, event, "the width");
    event.second = Number(b, 1, 100000, event, "the height");
  } else if (event.verb == "button") {
    words >> a >> rest;
    if (!rest.empty()) throw ScriptError(event.line, "button takes N");
    event.first = Number(a, 1, 36, event, "the button");
  } else if (event.verb == "speed") {
    words >> a >> rest;
    if (!rest.empty()) throw ScriptError(event.line, "speed takes a mouse button, 1 left or 2 right");
    event.first = Number(a, 1, 2, event, "the mouse button");
  } else if (event.verb == "chip") {
    // Hexadecimal bytes, blank-separated: what the chip sends.
    std::string bytes;
    for (std::string pair; words >> pair;) {
      const int high = pair.size() == 2 ? HexDigit(pair[0]) : -1;
      const int low = pair.size() == 2 ? HexDigit(pair[1]) : -1;
      if (high < 0 || low < 0) throw ScriptError(event.line, "chip takes bytes as two hexadecimal digits each");
      bytes += static_cast<char>(high * 16 + low);
    }
    event.argument = bytes;
  } else if (event.verb == "macro" || event.verb == "slot") {
    // The name or number, then the text after one blank, blanks and all.
    const auto blank = event.argument.find(' ');
    event.name = event.argument.substr(0, blank);
    event.argument = blank == std::string::npos ? "" : event.argument.substr(blank + 1);
    if (event.verb == "macro") {
      event.first = Number(event.name, 1, 36, event, "the macro");
    } else {
      const auto slot = std::find(kSlots.begin(), kSlots.end(), event.name);
      if (slot == kSlots.end()) throw ScriptError(event.line, "unknown slot '" + event.name + "'");
      event.first = static_cast<int>(slot - kSlots.begin());
    }
  } else if (event.verb == "editor") {
    words >> a >> rest;
    if (!rest.empty()) throw ScriptError(event.line, "editor takes N");
    event.first = Number(a, 1, 36, event, "the macro");
  } else if (event.verb == "editor-field" || event.verb == "editor-type") {
    const auto blank = event.argument.find(' ');
    event.name = event.argument.substr(0, blank);
    event.argument = blank == std::string::npos ? "" : event.argument.substr(blank + 1);
    if (event.name != "MacroText" && event.name != "CaptionText") {
      throw ScriptError(event.line, event.verb + " takes MacroText or CaptionText");
    }
  } else if (event.verb == "editor-click") {
    if (!KnownEditorButton(event.argument)) {
      throw ScriptError(event.line, "the editor has no button '" + event.argument + "'");
    }
    event.name = event.argument;
  } else if (event.verb == "editor-mouse") {
    if (event.argument != "enter" && event.argument != "leave") {
      throw ScriptError(event.line, "editor-mouse takes enter or leave");
    }
  } else if (event.verb == "pick-color") {
    event.first = Number(event.argument, 0, kWhite, event, "the colour");
  } else if (event.verb == "pick-font") {
    // SIZE COLOUR STYLE, then the font's name to the end of the line.
    std::string style;
    words >> a >> b >> style >> std::ws;
    std::getline(words, rest);
    char* end = nullptr;
    event.size = std::strtod(a.c_str(), &end);
    if (a.empty() || *end != '\0' || !(event.size > 0 && event.size < 1000)) {
      throw ScriptError(event.line, "pick-font: the size must be a number of points above 0");
    }
    event.first = Number(b, 0, kWhite, event, "the colour");
    if (std::find(kFontStyles.begin(), kFontStyles.end(), style) == kFontStyles.end()) {
      throw ScriptError(event.line, "pick-font: the style is regular, bold, italic or bold-italic");
    }
    if (rest.empty()) throw ScriptError(event.line, "pick-font takes SIZE COLOUR STYLE NAME");
    event.name = style;
    event.argument = rest;
  } else if (event.verb == "udp") {
    // The datagram as a logger sends it; \e stands for its Escape.
    for (auto at = event.argument.find("\\e"); at != std::string::npos; at = event.argument.find("\\e", at + 1)) {
      event.argument.replace(at, 2, "\x1B");
    }
  } else if (event.verb == "dialog") {
    if (!Known(kDialogs, event.argument)) throw ScriptError(event.line, "unknown dialog '" + event.argument + "'");
  } else if (event.verb == "click") {
    if (!Known(kClickable, event.argument) && !platform::memory::MemoryWinKeyConfig::KnownClick(event.argument)) {
      throw ScriptError(event.line, "no dialog button or check box '" + event.argument + "'");
    }
  } else if (event.verb == "control") {
    // A dialog's control by name and its value; any other text is the logger's command.
    const auto blank = event.argument.find(' ');
    const std::string first = event.argument.substr(0, blank);
    const bool chip = platform::memory::MemoryWinKeyConfig::KnownValue(first);
    if (Known(kValued, first) || chip) {
      event.name = first;
      event.argument = blank == std::string::npos ? "" : event.argument.substr(blank + 1);
      // Only a text takes nothing.
      const bool text = first.rfind("Text", 0) == 0 || first == "cmbPort" || first == "cmbTone";
      if (event.argument.empty() && !text) {
        throw ScriptError(event.line, "control " + first + " needs a value");
      }
      if (first == "List1") Number(event.argument, 0, 35, event, "the list's entry");
    }
  } else if (event.verb == "focus" || event.verb == "field") {
    const auto blank = event.argument.find(' ');
    event.name = event.argument.substr(0, blank);
    event.argument = blank == std::string::npos ? "" : event.argument.substr(blank + 1);
    const bool known = event.verb == "focus" ? KnownFocus(event.name)
                                             : KnownFocus(event.name) && event.name != "CWTextBox";
    if (!known) throw ScriptError(event.line, "unknown " + event.verb + " '" + event.name + "'");
    if (event.verb == "focus" && !event.argument.empty()) {
      throw ScriptError(event.line, "focus takes a control's name only");
    }
  }
}

}  // namespace

bool KnownVerb(const std::string& verb, bool& takesArgument) {
  for (const VerbInfo& info : kVerbs) {
    if (verb == info.name) {
      takesArgument = info.takesArgument;
      return true;
    }
  }
  return false;
}

std::optional<platform::MenuId> ClickableMenu(std::string_view name) {
  const std::optional<platform::MenuId> id = platform::MenuNamed(name);
  if (id && std::string_view(platform::EntryOf(*id).caption) == "-") return std::nullopt;
  return id;
}

std::string Unescape(const std::string& text, int line) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'x') {
      const int high = i + 2 < text.size() ? HexDigit(text[i + 2]) : -1;
      const int low = i + 3 < text.size() ? HexDigit(text[i + 3]) : -1;
      if (high < 0 || low < 0) throw ScriptError(line, "\\x needs two hexadecimal digits");
      out += static_cast<char>(high * 16 + low);
      i += 3;
    } else {
      out += text[i];
    }
  }
  return out;
}

std::vector<ScriptEvent> ParseScript(std::istream& in) {
  std::vector<ScriptEvent> events;
  std::string raw;
  int line = 0;
  int64_t last = 0;
  while (std::getline(in, raw)) {
    ++line;
    if (!raw.empty() && raw.back() == '\r') raw.pop_back();
    const auto first = raw.find_first_not_of(" \t");
    if (first == std::string::npos || raw[first] == '#') continue;

    // The time and the verb are words; the argument is the rest of the line.
    std::istringstream words(raw.substr(first));
    std::string time;
    std::string verb;
    words >> time >> verb;
    ScriptEvent event{ParseTime(time, line), verb, "", line, "", 0, 0, 0};
    if (event.atNs < last) throw ScriptError(line, "times must not go backwards");
    last = event.atNs;

    bool takesArgument = false;
    if (!KnownVerb(verb, takesArgument)) throw ScriptError(line, "unknown verb '" + verb + "'");
    const auto verbAt = raw.find(verb, first + time.size());
    const auto argumentAt = verbAt + verb.size() + 1;
    if (argumentAt <= raw.size()) event.argument = Unescape(raw.substr(argumentAt), line);
    if (takesArgument && event.argument.empty()) throw ScriptError(line, verb + " needs an argument");
    if (!takesArgument && !event.argument.empty()) throw ScriptError(line, verb + " takes no argument");
    if (verb == "menu") {
      const std::optional<platform::MenuId> menu = ClickableMenu(event.argument);
      if (!menu) throw ScriptError(line, "unknown menu entry '" + event.argument + "'");
      event.menu = *menu;
    }
    ReadArguments(event);
    events.push_back(std::move(event));
  }
  return events;
}

}  // namespace vantrel::sim
