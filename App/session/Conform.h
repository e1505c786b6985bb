#pragma once

#include "BE/Project.h"

// The captions of one format as another one can hold them.
namespace App {

// What positions of a stream are reckoned in: cells of its grid, or pixels of the frame.
struct Grid {
  zebcaptioning::StreamFormat format = zebcaptioning::kStreamFormat_None;
  int columns = 0;
  int rows = 0;
};
Grid GridOf(const BE::InterfaceRef<BE::CaptioningStream>& stream);
Grid GridOf(zebcaptioning::StreamFormat format, const BE::MediaInfo& media);

// Times and text stay, positions keep their place in the picture, and each attribute that the format does not allow
// takes the nearest that it does. Nothing is measured yet.
zebcaptioning::CaptionStatePtr Conform(const zebcaptioning::CaptionStatePtr& state, const Grid& from, const Grid& to);

} // namespace App
