#include "macros/frm_assign_key.h"

#include <string>
#include <utility>

#include "platform/key_codes.h"
#include "settings/settings_store.h"

namespace vantrel::macros {
namespace {

// The first twelve are the keys' own codes; the rest are the codes that the
// function keys fold into the ALT and CTRL rows.
constexpr int16_t kFirstCode = platform::keys::kF1;
constexpr int kKeysPerRow = platform::keys::kFunctionKeysPerRow;

}  // namespace

FrmAssignKey::FrmAssignKey(AssignKeyControls controls, int16_t& InsertKeyCode,
                           settings::SettingWriter& settings)
    : c_(std::move(controls)), insertKeyCode_(InsertKeyCode), settings_(settings) {
  c_.List1.OnClick([this] { List1_Click(); });
}

void FrmAssignKey::Form_Load() {
  ListReady = false;
  for (const char* prefix : {"  ", "  ALT ", "  CTL "}) {
    for (int key = 1; key <= kKeysPerRow; ++key) {
      c_.List1.AddItem(std::string(prefix) + "F" + std::to_string(key));
    }
  }
  c_.List1.SetListIndex(static_cast<int16_t>(insertKeyCode_ - kFirstCode));
  ListReady = true;
}

void FrmAssignKey::List1_Click() {
  if (!ListReady) return;
  insertKeyCode_ = static_cast<int16_t>(c_.List1.ListIndex() + kFirstCode);
  settings_.WriteSetting(settings::kMainSection, "Insert Key", std::to_string(insertKeyCode_));
  c_.Unload();
}

}  // namespace vantrel::macros
