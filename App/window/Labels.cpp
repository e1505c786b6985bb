#include "App/window/Labels.h"

#include "App/session/Text.h"

namespace App {

QString Label(std::string_view keyWithDefault, std::initializer_list<std::string> arguments) {
  return QString::fromStdString(Text(keyWithDefault, arguments));
}

QString ToQString(const zebcore::UString& text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

zebcore::UString FromQString(const QString& text) {
  return text.toStdU16String();
}

} // namespace App
