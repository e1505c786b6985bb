#pragma once

#include <boost/multi_index/member.hpp>
#include <boost/multi_index/ranked_index.hpp>
#include <boost/multi_index_container.hpp>

#include "Captions/shell/HostTypes.h"

namespace Captivo {

class CaptionsItem;

// A row under the time that it was filed at, which an edit from elsewhere can make differ from the row's own begin time
// until the rows are read again.
struct CaptionsRow {
  TickTime time;
  mutable boost::shared_ptr<CaptionsItem> item;
};

// Rows ascending by time, one for each time. It counts as it goes, so that the row at a position and the position of a
// row are found in logarithmic time too.
using CaptionsRowMap =
    boost::multi_index_container<CaptionsRow,
                                 boost::multi_index::indexed_by<boost::multi_index::ranked_unique<
                                     boost::multi_index::member<CaptionsRow, TickTime, &CaptionsRow::time>>>>;

} // namespace Captivo
