#include "platform/qt/qt_fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <array>
#include <string_view>

namespace vantrel::platform::qt {
namespace {

constexpr std::array<std::string_view, 11> kSansFaces{
    "MS Sans Serif", "Microsoft Sans Serif", "MS Shell Dlg", "MS Shell Dlg 2", "Tahoma", "Segoe UI",
    "Arial",         "Verdana",              "System",       "Small Fonts",    "MS Reference Sans Serif"};
constexpr std::array<std::string_view, 6> kFixedFaces{"Courier New", "Courier", "Lucida Console",
                                                      "Consolas",    "Fixedsys", "Terminal"};
constexpr std::array<std::string_view, 3> kSerifFaces{"Times New Roman", "MS Serif", "Georgia"};

template <size_t N>
bool Among(const QString& name, const std::array<std::string_view, N>& faces) {
  for (std::string_view face : faces) {
    if (name.compare(QLatin1String(face.data(), static_cast<qsizetype>(face.size())),
                     Qt::CaseInsensitive) == 0) {
      return true;
    }
  }
  return false;
}

}  // namespace

QString DesktopFamily(const std::string& name) {
  const QString given = QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())).trimmed();
  // A face that really is installed is the operator's choice, Windows name or not.
  if (QFontDatabase::hasFamily(given)) return given;
  if (Among(given, kSansFaces)) return QApplication::font().family();
  if (Among(given, kFixedFaces)) return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
  if (Among(given, kSerifFaces)) return QStringLiteral("Serif");
  return given;
}

}  // namespace vantrel::platform::qt
