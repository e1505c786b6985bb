#pragma once

#include <vector>

#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "zebcore/Geometry.h"
#include "zebcore/ImmutableString.h"

namespace zebcaptioning {

// The regions of a stream, shared by its captions: one object for a stream's life, which the stream fills.
class CaptionRegions : public boost::intrusive_ref_counter<CaptionRegions> {
 public:
  struct Region {
    zebcore::utility::ImmutableString name; // UTF-8
    zebcore::geom::RectT<float> area;       // of the frame, in percent or in the units of a caption's x and y
    bool percent = true;
  };

  void SetRegions(std::vector<Region> regions) { mRegions = std::move(regions); }
  // Of several with one name the first; null if there is none.
  const Region* Find(const zebcore::utility::ImmutableString& name) const {
    for (const Region& region : mRegions) {
      if (region.name == name && !name.IsNull())
        return &region;
    }
    return nullptr;
  }

 private:
  std::vector<Region> mRegions;
};

} // namespace zebcaptioning
