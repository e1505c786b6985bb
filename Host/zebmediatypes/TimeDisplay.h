#pragma once

#include <compare>
#include <optional>

#include "zebcore/UString.h"
#include "zebmediatypes/FrameRate.h"
#include "zebmediatypes/TickTime.h"

namespace zebmediatypes {

// How a time is written: as a timecode of some rate (SMPTE ST 12-1), as a count of frames or samples, in feet and
// frames, or in milliseconds. A value by number; 999 is the invalid one.
class TimeDisplay {
 public:
  constexpr TimeDisplay() = default;
  constexpr explicit TimeDisplay(int number) : mNumber(number) {}
  constexpr int GetNumber() const { return mNumber; }

  friend constexpr auto operator<=>(TimeDisplay, TimeDisplay) = default;

 private:
  int mNumber = 0;
};

// The default display: non-drop timecode of whatever rate it is printed at.
inline constexpr TimeDisplay kTimeDisplay_Default{0};
inline constexpr TimeDisplay kTimeDisplay_Timecode23976{1};
inline constexpr TimeDisplay kTimeDisplay_Timecode24{2};
inline constexpr TimeDisplay kTimeDisplay_Timecode25{3};
inline constexpr TimeDisplay kTimeDisplay_Timecode2997Drop{4};
inline constexpr TimeDisplay kTimeDisplay_Timecode2997NonDrop{5};
inline constexpr TimeDisplay kTimeDisplay_Timecode30{6};
inline constexpr TimeDisplay kTimeDisplay_Timecode48{7};
inline constexpr TimeDisplay kTimeDisplay_Timecode50{8};
inline constexpr TimeDisplay kTimeDisplay_Timecode5994Drop{9};
inline constexpr TimeDisplay kTimeDisplay_Timecode5994NonDrop{10};
inline constexpr TimeDisplay kTimeDisplay_Timecode60{11};
inline constexpr TimeDisplay kTimeDisplay_Frames{12};
inline constexpr TimeDisplay kTimeDisplay_FeetAndFrames35mm{13};
inline constexpr TimeDisplay kTimeDisplay_FeetAndFrames16mm{14};
inline constexpr TimeDisplay kTimeDisplay_Milliseconds{15};
inline constexpr TimeDisplay kTimeDisplay_AudioSamples{16};
inline constexpr TimeDisplay kTimeDisplay_Invalid{999};

// The timecode display that goes with a rate; kTimeDisplay_Default for a rate that no timecode counts.
TimeDisplay GetTimecodeDisplay(FrameRate rate, bool dropFrame);
bool IsDropFrame(TimeDisplay display);
// The rate at which a timecode display counts; the given one for the displays that have none of their own.
FrameRate GetDisplayRate(TimeDisplay display, FrameRate rate);

// The time as text: "00:01:00;02" for drop frame, "00:00:59:29" else, "1798", "112+06" feet and frames, "00:00:59.960",
// samples at the given rate (48 kHz if that is no audio rate). Times before zero have a minus sign in front. A time
// inside a frame prints that frame. Hours run on past 24. What counts at a rate that is invalid prints milliseconds;
// the invalid time prints nothing, and the invalid display prints as the default one.
zebcore::UString FormatTime(TickTime time, TimeDisplay display, FrameRate rate);

// The inverse, for what people type. Separators may be any of : ; . , or blanks. Fields may be missing on the left, and
// digits without separators fill from the right ("1234" is 00:00:12:34). A drop-frame number that does not exist is
// taken as the next one that does. In milliseconds the digits after a point or comma are decimals ("59.5"), and feet
// may be divided from frames by a plus too. Nothing for a text that is no time, is past kTime_Max, or is out of range
// in a field but the first.
std::optional<TickTime> ParseTime(std::u16string_view text, TimeDisplay display, FrameRate rate);

// The name for a menu, English.
zebcore::UString GetTimeDisplayName(TimeDisplay display);

} // namespace zebmediatypes
