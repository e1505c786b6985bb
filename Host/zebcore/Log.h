#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zebcore::log {

enum class Level { Info, Warning, Error };

// One line of the host's log. Any thread.
void Write(Level level, std::string_view text);

// Where lines go; standard error by default. Null restores that.
using Sink = std::function<void(Level, std::string_view)>;
void SetSink(Sink sink);

} // namespace zebcore::log
