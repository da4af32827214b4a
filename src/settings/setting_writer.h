// How a module persists a setting the moment the operator changes it.
#pragma once

#include <string>

namespace vantrel::settings {

// The file's sections that the modules write.
inline constexpr const char* kMainSection = "frmVantrel Settings";
inline constexpr const char* kKeyerSection = "WinKey Settings";
// Where loggers reach the keyer over the network: its Address and Port keys.
inline constexpr const char* kNetworkSection = "Network";

class SettingWriter {
 public:
  virtual ~SettingWriter() = default;
  // False when the value did not reach the file.
  virtual bool WriteSetting(const std::string& section, const std::string& key,
                            const std::string& value) = 0;
  // While held, a write waits, and reads see it; on release the waiting
  // writes reach the file in order. A durable write takes milliseconds, tens
  // on a busy disk, so a transmission holds them: in one of its waits a write
  // would move a key edge.
  virtual void HoldWrites(bool hold) = 0;
  // Writes at once whatever the hold: for a writer that must tell the
  // operator at once when the file did not take it.
  virtual bool WriteSettingNow(const std::string& section, const std::string& key,
                               const std::string& value) = 0;
};

}  // namespace vantrel::settings
