#pragma once

#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "Captions/contracts/StreamFormat.h"

namespace zebcaptioning {

// How a stream is laid out at a time; the stream fills it.
class CaptionDisplaySettings : public boost::intrusive_ref_counter<CaptionDisplaySettings> {
 public:
  CaptionDisplaySettings() = default;

  // The grid in cells (closed), or the frame in pixels (open); returns the stream's format.
  StreamFormat GetRegionBaseDimensions(int& columns, int& rows) const {
    columns = mColumns;
    rows = mRows;
    return mFormat;
  }
  void SetRegionBaseDimensions(StreamFormat format, int columns, int rows) {
    mFormat = format;
    mColumns = columns;
    mRows = rows;
  }

 private:
  StreamFormat mFormat = kStreamFormat_None;
  int mColumns = 0;
  int mRows = 0;
};

} // namespace zebcaptioning
