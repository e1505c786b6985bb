#pragma once

#include "Captions/shell/HostTypes.h"
#include "zebmediatypes/PixelAspectRatio.h"

namespace Captivo::Thumbnail {

// The picture of a video without one.
inline constexpr RectT<int> kDefaultRect{0, 0, 64, 64};

// (0, 0, width, height) of a picture of the video, 64 pixels high and at most 196 wide: a wider one is squeezed.
RectT<int> GetSourceRect(const RectT<int>& frameRect, const zebmediatypes::PixelAspectRatio& pixelAspectRatio);

// Its place in a row whose top left corner is at the origin, centred in the height that is left for it.
RectT<int> GetTargetRect(const RectT<int>& sourceRect, const PointT<int>& origin);

} // namespace Captivo::Thumbnail
