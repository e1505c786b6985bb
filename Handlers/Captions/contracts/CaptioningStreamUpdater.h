#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "Captions/contracts/Caption.h"
#include "Captions/contracts/CaptionFormatInfo.h"
#include "zebcore/InterfaceRef.h"
#include "zebcore/UString.h"
#include "zebmediatypes/TickTime.h"
#include "zebmediatypes/TimeDisplay.h"

namespace BE {
class ICaptioningStream;
}

namespace HSL {

// The single door through which captions of a stream are changed by hand. It holds one open change, all edits since the
// last commit; committing makes one undoable step of it, reverting drops it and puts the stream back. A caption is
// named by its begin time; of several with one begin time the newest is meant, and times that name none are ignored.
// The stream reports every change on its station before the operation returns. UI thread.
class CaptioningStreamUpdater {
 public:
  using UString = zebcore::UString;
  using TickTime = zebmediatypes::TickTime;
  using StreamRef = zebcore::classref::InterfaceRef<BE::ICaptioningStream>;

  // A null stream is allowed: nothing can then be changed, and nothing is busy.
  explicit CaptioningStreamUpdater(const StreamRef& stream);
  // Commits what is open.
  ~CaptioningStreamUpdater();
  CaptioningStreamUpdater(const CaptioningStreamUpdater&) = delete;
  CaptioningStreamUpdater& operator=(const CaptioningStreamUpdater&) = delete;

  // Points at another stream; what is open on the old one is committed. The same stream again changes nothing.
  void UpdateCaptioningStream(const StreamRef& stream);
  // A long job of the host holds the stream. It ends by itself.
  bool IsBusy() const;
  // Makes one undoable step of the open change. With nothing open, or with a change that left everything as it was, no
  // step comes into being. The flag says whether the user did something that ends a passage of edits (true) or whether
  // the host or the panel asks in passing (false); both commit alike.
  void CommitChangesUndoable(bool endsPassage);
  // Drops the open change and reports the captions as they were.
  void RevertChanges();
  // The stream takes this very object.
  void AddCaption(const boost::intrusive_ptr<zebcaptioning::Caption>& caption);
  // The flag asks for the gap to be closed by the captions behind; false leaves them.
  void RemoveCaptions(const std::vector<TickTime>& times, bool closeGap);
  // caret is the selection after the change. withoutFocus says that no text control held the focus; the change is taken
  // alike.
  void ApplyTextChange(const TickTime& begin, const UString& oldText, const UString& newText,
                       const std::pair<std::size_t, std::size_t>& caret, bool withoutFocus);
  // alignToFrame moves both times to frames of the display; false takes them as they are.
  void UpdateCaptionStartAndDuration(const TickTime& oldBegin, const TickTime& newBegin, const TickTime& duration,
                                     bool alignToFrame, const zebmediatypes::TimeDisplay& display);
  // One attribute of info to the range of each caption; paragraph attributes to the whole caption. What the stream's
  // format does not allow is not stored.
  void ApplyFormatParameter(zebcaptioning::CaptionFormatParameter parameter,
                            const zebcaptioning::CaptionFormatInfo& info, const std::vector<TickTime>& times,
                            const std::pair<std::size_t, std::size_t>& range);
  // Measures open captions: line widths and block heights, of all captions or, without the flag, of those never
  // measured. Writes at once, outside the open change and with no undo step.
  void UpdateTextWidthAndPositioning(bool all);
  // In the stream's order; empty without a stream.
  void GetRegionNames(std::vector<UString>& names) const;
  void GetStyleNames(std::vector<UString>& names) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

} // namespace HSL
