#pragma once

#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "Captions/contracts/CaptionFormatInfo.h"
#include "Captions/contracts/ParagraphStyleAttributes.h"
#include "Captions/contracts/StreamFormat.h"
#include "Captions/contracts/TextSpanAttributes.h"
#include "zebcore/UString.h"
#include "zebmediatypes/TickTime.h"

namespace zebcaptioning {

// A range of a text, start and end in UTF-16 units of the stored text. (0, -1), the end all ones, is the whole text.
using TextRange = std::pair<std::size_t, std::size_t>;
inline constexpr std::size_t kTextRange_End = std::numeric_limits<std::size_t>::max();

// One run of equal attributes: from start to the start of the next run, or to the end of the text.
struct TextRun {
  std::uint32_t start = 0;
  SharedSpan attributes;

  friend bool operator==(const TextRun& a, const TextRun& b) {
    return a.start == b.start && (a.attributes == b.attributes || *a.attributes == *b.attributes);
  }
};

// In what frame an open caption's line width and block height were measured; 0 for none known. A copy of a state is
// made to be changed, so it starts without.
struct MeasureMark {
  std::uint32_t frame = 0;

  MeasureMark() = default;
  MeasureMark(const MeasureMark&) {}
  MeasureMark& operator=(const MeasureMark&) = default;
};

// All that a caption holds, as one immutable value: changing a caption puts a new one in its place, and remembering how
// a caption was is keeping a pointer. There is always at least one run, the first at 0, starts rise, and no two
// neighbours are equal. typing is the style of what is typed next at the caret, null to take the run before the caret.
struct CaptionState : boost::intrusive_ref_counter<CaptionState> {
  // What merging many captions reads lies together.
  zebcore::UString text;
  std::vector<TextRun> runs;
  ParagraphStyleAttributes paragraph;
  zebmediatypes::TickTime begin;
  zebmediatypes::TickTime end;
  SharedSpan typing;
  std::uint32_t typingAt = 0;
  MeasureMark measured; // no part of the value

  CaptionState() = default;
  // Shares nothing mutable with the original and starts with no reference.
  CaptionState(const CaptionState& other) = default;
  CaptionState& operator=(const CaptionState&) = delete;

  // Asks the processor for what merging reads.
  void Prefetch() const {
    __builtin_prefetch(&runs);
    __builtin_prefetch(&paragraph);
    __builtin_prefetch(reinterpret_cast<const char*>(&paragraph + 1) - 1);
  }
};
using CaptionStatePtr = boost::intrusive_ptr<const CaptionState>;

bool operator==(const CaptionState& a, const CaptionState& b);

class CaptionRegions;

// One caption: times, text and attributes. The object stays the same through all edits, undo included, while it is in
// its stream, so that whoever holds it sees it change.
class Caption : public boost::intrusive_ref_counter<Caption> {
 public:
  Caption();
  // A caption with no text, taking its format from the pattern: all paragraph attributes but line width and block
  // height, and the attributes of its first character. Where the format does not allow one of them, the nearest that it
  // does.
  Caption(const zebmediatypes::TickTime& begin, const zebmediatypes::TickTime& end,
          const boost::intrusive_ptr<Caption>& pattern, StreamFormat format, int columns, int rows);
  explicit Caption(CaptionStatePtr state);
  virtual ~Caption();

  zebmediatypes::TickTime GetBeginTime() const { return mState->begin; }
  zebmediatypes::TickTime GetEndTime() const { return mState->end; }
  // The stored text. The flag asks for the text as typed, which is what is stored; without it, trailing line feeds are
  // left out.
  void GetCaptionText(zebcore::UString& text, bool asTyped) const;
  // Merges the format of a range into info: with first it replaces what info holds, without it clears the uniform flag
  // of each attribute that differs. An empty range gives the style of what would be typed there. info may be null with
  // first, and is then made.
  void GetFormatInfo(boost::intrusive_ptr<CaptionFormatInfo>& info, const TextRange& range, int columns, int rows,
                     bool first) const;
  // False until the line width was computed.
  bool HasLineWidth() const;

  const CaptionStatePtr& GetState() const { return mState; }
  // For the stream that holds the caption, and for nobody else once it is held.
  void SetState(CaptionStatePtr state);
  // The regions of the stream that holds the caption, from which the format takes the area of the caption's region. Set
  // by the stream when it takes the caption; without them, or without its region among them, there is no area.
  void SetRegions(boost::intrusive_ptr<const CaptionRegions> regions);

 private:
  CaptionStatePtr mState;
  boost::intrusive_ptr<const CaptionRegions> mRegions;
};

} // namespace zebcaptioning
