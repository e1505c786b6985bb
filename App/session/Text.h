#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace App {

// A text for people in their language, UTF-8, with {1}, {2} and so on replaced by the arguments.
std::string Text(std::string_view keyWithDefault, std::initializer_list<std::string> arguments = {});

// The last part of a path, in quotation marks, as messages name a file.
std::string Quoted(const std::string& name);

} // namespace App
