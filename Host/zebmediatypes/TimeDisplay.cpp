#include "zebmediatypes/TimeDisplay.h"

#include <algorithm>
#include <iterator>

namespace zebmediatypes {

namespace {

struct TimecodeKind {
  TimeDisplay display;
  FrameRate rate;
  bool dropFrame;
  const char16_t* name;
};

// Of a rate that is counted both ways, non-drop stands first.
constexpr TimecodeKind kTimecodes[] = {
    {kTimeDisplay_Timecode23976, kFrameRate_23976, false, u"Timecode 23.976"},
    {kTimeDisplay_Timecode24, kFrameRate_24, false, u"Timecode 24"},
    {kTimeDisplay_Timecode25, kFrameRate_25, false, u"Timecode 25"},
    {kTimeDisplay_Timecode2997NonDrop, kFrameRate_2997, false, u"Timecode 29.97 non-drop"},
    {kTimeDisplay_Timecode2997Drop, kFrameRate_2997, true, u"Timecode 29.97 drop-frame"},
    {kTimeDisplay_Timecode30, kFrameRate_30, false, u"Timecode 30"},
    {kTimeDisplay_Timecode48, kFrameRate_48, false, u"Timecode 48"},
    {kTimeDisplay_Timecode50, kFrameRate_50, false, u"Timecode 50"},
    {kTimeDisplay_Timecode5994NonDrop, kFrameRate_5994, false, u"Timecode 59.94 non-drop"},
    {kTimeDisplay_Timecode5994Drop, kFrameRate_5994, true, u"Timecode 59.94 drop-frame"},
    {kTimeDisplay_Timecode60, kFrameRate_60, false, u"Timecode 60"},
};

struct OtherKind {
  TimeDisplay display;
  const char16_t* name;
};

constexpr OtherKind kOthers[] = {
    {kTimeDisplay_Default, u"Timecode"},
    {kTimeDisplay_Frames, u"Frames"},
    {kTimeDisplay_FeetAndFrames35mm, u"Feet and frames 35 mm"},
    {kTimeDisplay_FeetAndFrames16mm, u"Feet and frames 16 mm"},
    {kTimeDisplay_Milliseconds, u"Milliseconds"},
    {kTimeDisplay_AudioSamples, u"Audio samples"},
};

const TimecodeKind* FindTimecode(TimeDisplay display) {
  const auto found = std::find_if(std::begin(kTimecodes), std::end(kTimecodes),
                                  [display](const TimecodeKind& kind) { return kind.display == display; });
  return found == std::end(kTimecodes) ? nullptr : found;
}

} // namespace

TimeDisplay GetTimecodeDisplay(FrameRate rate, bool dropFrame) {
  TimeDisplay display = kTimeDisplay_Default;
  for (const TimecodeKind& kind : kTimecodes)
    if (kind.rate == rate && (!kind.dropFrame || dropFrame))
      display = kind.display;
  return display;
}

bool IsDropFrame(TimeDisplay display) {
  const TimecodeKind* kind = FindTimecode(display);
  return kind && kind->dropFrame;
}

FrameRate GetDisplayRate(TimeDisplay display, FrameRate rate) {
  const TimecodeKind* kind = FindTimecode(display);
  return kind ? kind->rate : rate;
}

zebcore::UString GetTimeDisplayName(TimeDisplay display) {
  if (const TimecodeKind* kind = FindTimecode(display))
    return kind->name;
  const auto found = std::find_if(std::begin(kOthers), std::end(kOthers),
                                  [display](const OtherKind& kind) { return kind.display == display; });
  return found == std::end(kOthers) ? zebcore::UString() : zebcore::UString(found->name);
}

} // namespace zebmediatypes
