#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "Captions/contracts/Caption.h"
#include "zebcore/Geometry.h"
#include "zebcore/ImmutableString.h"
#include "zebcore/InterfaceRef.h"
#include "zebcore/UString.h"
#include "zebmediatypes/FrameRate.h"
#include "zebmediatypes/TickTime.h"
#include "zebmediatypes/TimeDisplay.h"

// The host's everyday types, under the names by which the whole panel speaks of them.
namespace Captivo {

using zebcaptioning::Caption;
using zebcaptioning::StreamFormat;
using zebcaptioning::TextRange;
using zebcore::UString;
using zebcore::classref::InterfaceRef;
using zebcore::geom::PointT;
using zebcore::geom::RectT;
using zebcore::utility::ImmutableString;
using zebmediatypes::FrameRate;
using zebmediatypes::kTime_Max;
using zebmediatypes::kTime_Min;
using zebmediatypes::kTime_Zero;
using zebmediatypes::kTimeDisplay_Invalid;
using zebmediatypes::TickTime;
using zebmediatypes::TimeDisplay;

// A range of a text that means all of it, and one that means nothing.
inline constexpr TextRange kTextRange_Whole{0, zebcaptioning::kTextRange_End};
inline constexpr TextRange kTextRange_Empty{0, 0};

} // namespace Captivo
