#include "App/session/Text.h"

#include "zebcore/Localizer.h"
#include "zebcore/UString.h"

namespace App {

std::string Text(std::string_view keyWithDefault, std::initializer_list<std::string> arguments) {
  const std::string pattern = zebcore::ToUTF8(zebcore::config::Localizer::Get().Localize(keyWithDefault));
  std::string text;
  text.reserve(pattern.size());
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool place = pattern[i] == '{' && i + 2 < pattern.size() && pattern[i + 2] == '}';
    const std::size_t index = place ? static_cast<std::size_t>(pattern[i + 1] - '1') : arguments.size();
    if (index < arguments.size()) {
      text += arguments.begin()[index];
      i += 2;
    } else {
      text += pattern[i];
    }
  }
  return text;
}

std::string Quoted(const std::string& name) {
  return Text("$$$/Vidra/Captivo/Quoted=“{1}”", {name});
}

} // namespace App
