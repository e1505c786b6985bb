#pragma once

#include <cstdint>
#include <set>

#include "zebcore/UString.h"

namespace zebcaptioning {

// A stream format, by number. A clip holds at most one stream for each number, so every channel, service, page or
// further track has a number and a label of its own: four characters read from the high byte down, as "6CC1".
using StreamFormat = std::uint32_t;

// How a caption comes on show: pop-on, roll-up, paint-on and the like. -1 is no type.
using CaptionType = std::int32_t;

inline constexpr StreamFormat kStreamFormat_None = 0;
// The CEA-608 family as such; its display types can be asked, no stream bears it.
inline constexpr StreamFormat kStreamFormat_608 = 608;
inline constexpr StreamFormat kStreamFormat_608_CC1 = 0x36434331; // to CC4 at ...34
inline constexpr CaptionType kCaptionType_None = -1;

// True for open (burnt-in, freely positioned) captions.
bool IsOpenCaptions(StreamFormat format);
bool IsTeletext(StreamFormat format);
bool IsAustralianCaption(StreamFormat format);
bool IsEbuN19(StreamFormat format);

// Grid of a format, in character cells; for open captions and for 0 the grid that an empty panel shows. With the flag,
// the columns of a 4:3 picture where the format (CEA-708) tells the two apart.
int GetCaptionRows(StreamFormat format);
int GetCaptionColumns(StreamFormat format, bool standardAspect);
// The first row that a caption may stand in.
int GetTopPosition(StreamFormat format);

// For people: "CEA-608 CC1", "Teletext page 888".
zebcore::UString GetFullStreamFormatLabel(StreamFormat format);
// The display types of a format, ascending; false if it has none.
bool GetSupportedCaptionTypes(StreamFormat format, std::set<CaptionType>& types);
zebcore::UString GetCaptionTypeDescription(CaptionType type);

} // namespace zebcaptioning
