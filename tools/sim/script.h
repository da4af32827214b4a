// The runner's script: one event a line, "<ms> <verb> [args]", times absolute
// and non-decreasing, "#" starting a comment line.
#pragma once

#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/main_window_design.h"

namespace vantrel::sim {

struct ScriptEvent {
  int64_t atNs = 0;
  std::string verb;
  std::string argument;  // TEXT arguments with their \xNN escapes resolved
  int line = 0;
  // Arguments read off for the verbs that take a control's name or numbers:
  // focus and field a name (field then its text in `argument`), key a code
  // and a shift state, resize a width and a height in twips, button and
  // macro a macro's index, slot a slot's number and its name; control the
  // dialog control's name when it names one (its value then in `argument`).
  // Of the editor's verbs: editor a macro's index; editor-field and
  // editor-type a box's name, then its text in `argument`; editor-click a
  // button's name; editor-mouse "enter" or "leave". pick-color a colour;
  // pick-font the colour, the size in `size`, the style in `name` and the
  // font's name in `argument`. menu the entry.
  std::string name;
  int first = 0;
  int second = 0;
  double size = 0;
  platform::MenuId menu = {};
};

class ScriptError : public std::runtime_error {
 public:
  ScriptError(int line, const std::string& what)
      : std::runtime_error("line " + std::to_string(line) + ": " + what) {}
};

// Every verb the runner knows, and whether it takes an argument.
bool KnownVerb(const std::string& verb, bool& takesArgument);
// Menu entries that the "menu" verb can click: every entry of the window's
// menu tree but the separators, by its name there.
std::optional<platform::MenuId> ClickableMenu(std::string_view name);
// The controls that "focus" and "field" name.
bool KnownFocus(const std::string& name);
// The macro editor's buttons that "editor-click" names.
bool KnownEditorButton(const std::string& name);

std::vector<ScriptEvent> ParseScript(std::istream& in);
// Resolves \xNN to the byte it names; other backslashes stay as they are.
std::string Unescape(const std::string& text, int line);

}  // namespace vantrel::sim
