// The user's language: its number, and the string tables that translate the
// menus.
#pragma once

#include <cstdint>
#include <string>

#include "platform/link_channel.h"

namespace vantrel::platform {

class Language {
 public:
  virtual ~Language() = default;
  virtual int32_t GetThreadLocale() = 0;
  virtual int16_t GetUserDefaultLangID() = 0;
  // A string table by file name; 0 when there is none.
  virtual Handle LoadLibrary(const std::string& name) = 0;
  // The string, or empty when the table lacks it.
  virtual std::string LoadString(Handle module, int16_t id) = 0;
};

}  // namespace vantrel::platform
