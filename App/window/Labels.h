#pragma once

#include <QString>

#include <initializer_list>
#include <string>
#include <string_view>

#include "zebcore/UString.h"

// Texts between the host and the toolkit.
namespace App {

QString Label(std::string_view keyWithDefault, std::initializer_list<std::string> arguments = {});
QString ToQString(const zebcore::UString& text);
zebcore::UString FromQString(const QString& text);

} // namespace App
