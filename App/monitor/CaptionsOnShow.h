#pragma once

#include <vector>

#include "App/monitor/CaptionScreen.h"
#include "BE/Project.h"

namespace App::monitor {

using Stream = BE::InterfaceRef<BE::CaptioningStream>;

// The picture over which a caption is read: the one halfway through it.
zebmediatypes::TickTime GetPictureTime(const zebcaptioning::CaptionState& caption);

// What is on show at a time, by begin time. Of captions that roll up the newest, with those above it that it pushed up:
// they go on standing where the next caption begins no later than they end.
std::vector<CaptionOnShow> FindOnShow(const BE::CaptioningStream& stream, zebmediatypes::TickTime time);

// The screen of a stream with closed captions at a time.
CaptionScreen MakeScreen(const BE::CaptioningStream& stream, zebmediatypes::TickTime time);

} // namespace App::monitor
