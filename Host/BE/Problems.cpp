#include "BE/Problems.h"

#include "zebcore/Localizer.h"

namespace BE {

Problem MakeProblem(std::string_view keyWithDefault, std::initializer_list<std::string> arguments) {
  const std::string pattern = zebcore::ToUTF8(zebcore::config::Localizer::Get().Localize(keyWithDefault));
  Problem problem;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const bool isPlace =
        pattern[at] == '%' && at + 1 < pattern.size() && pattern[at + 1] > '0' && pattern[at + 1] <= '9';
    if (!isPlace) {
      problem.text += pattern[at];
      continue;
    }
    const std::size_t index = static_cast<std::size_t>(pattern[++at] - '1');
    if (index < arguments.size())
      problem.text += *(arguments.begin() + index);
  }
  return problem;
}

} // namespace BE
