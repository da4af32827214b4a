// Fonts named as on Windows, as the settings file holds them, drawn in the
// desktop's own faces. Left alone, a Windows name the desktop lacks falls
// back to whatever fontconfig finds first, which differs from one machine to
// the next.
#pragma once

#include <QString>
#include <string>

namespace vantrel::platform::qt {

// The desktop family that stands for `name`: its user interface font for the
// Windows sans serif faces, its fixed font for the fixed ones, serif for the
// serif ones; any other name is itself.
QString DesktopFamily(const std::string& name);

}  // namespace vantrel::platform::qt
