#include "Drive/TimeDisplayNames.h"

#include <map>

namespace Drive {

zebmediatypes::TimeDisplay ReadTimeDisplay(const Fields& fields, const char* name) {
  using namespace zebmediatypes;
  static const std::map<std::string, TimeDisplay> names = {
      {"default", kTimeDisplay_Default},
      {"23.976", kTimeDisplay_Timecode23976},
      {"24", kTimeDisplay_Timecode24},
      {"25", kTimeDisplay_Timecode25},
      {"29.97 drop", kTimeDisplay_Timecode2997Drop},
      {"29.97", kTimeDisplay_Timecode2997NonDrop},
      {"30", kTimeDisplay_Timecode30},
      {"48", kTimeDisplay_Timecode48},
      {"50", kTimeDisplay_Timecode50},
      {"59.94 drop", kTimeDisplay_Timecode5994Drop},
      {"59.94", kTimeDisplay_Timecode5994NonDrop},
      {"60", kTimeDisplay_Timecode60},
      {"frames", kTimeDisplay_Frames},
      {"feet 35mm", kTimeDisplay_FeetAndFrames35mm},
      {"feet 16mm", kTimeDisplay_FeetAndFrames16mm},
      {"milliseconds", kTimeDisplay_Milliseconds},
      {"samples", kTimeDisplay_AudioSamples},
      {"invalid", kTimeDisplay_Invalid},
  };
  if (!fields.Get(name).is_string())
    return TimeDisplay(fields.Int(name));
  const auto found = names.find(fields.Text(name));
  if (found == names.end())
    fields.Refuse(name, "must be a time display's number or name");
  return found->second;
}

} // namespace Drive
