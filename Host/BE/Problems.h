#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "BE/Project.h"

namespace BE {

// A problem with the localised text of the key, in which %1, %2 ... stand for the arguments (UTF-8).
Problem MakeProblem(std::string_view keyWithDefault, std::initializer_list<std::string> arguments);

} // namespace BE
