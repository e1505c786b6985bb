#include <algorithm>

#include "Formats/CaptionEdit.h"
#include "Formats/CueTimes.h"
#include "Formats/Text.h"
#include "Formats/Treatment.h"

// Times of the captions of a file: offset, overlaps, shortest duration.
namespace Formats {

using zebcaptioning::CaptionState;
using zebmediatypes::TickTime;

namespace {

// Behind anything that a caption file can say.
constexpr TickTime kLatest{std::int64_t{10000} * 3600 * zebmediatypes::kTicksPerSecond};

std::string Number(std::size_t number) {
  return std::to_string(number);
}

bool HasSamePlace(const CaptionState& a, const CaptionState& b) {
  return a.paragraph.anchor == b.paragraph.anchor && a.paragraph.alignment == b.paragraph.alignment;
}

// What is told about all captions at once.
struct Counts {
  std::size_t moved = 0;
  std::size_t joined = 0;
  std::size_t placesLost = 0;
};

void Join(CaptionState& above, const CaptionState& below, StreamFormat format, Counts& counts) {
  if (!HasSamePlace(above, below))
    ++counts.placesLost;
  const UString before = above.text;
  AppendBelow(above, below);
  PlaceAgain(above, before, format);
}

void TellCounts(const Counts& counts, Problems& problems) {
  if (counts.moved > 0)
    problems.push_back({0, Say("$$$/Vidra/Formats/OverlapsMoved=Captions whose times were changed because they "
                               "overlapped: {0}.",
                               {Number(counts.moved)})});
  if (counts.joined > 0)
    problems.push_back({0, Say("$$$/Vidra/Formats/OverlapsJoined=Captions that were put below an earlier one, in the "
                               "same caption, because they overlapped: {0}.",
                               {Number(counts.joined)})});
  if (counts.placesLost > 0)
    problems.push_back({0, Say("$$$/Vidra/Formats/OverlapsPlaces=Captions that lost a position of their own because "
                               "they were put below one with another position: {0}.",
                               {Number(counts.placesLost)})});
}

// Captions one after the other, made of the ones that come; the last one may still change. Text is gathered and put
// together once, so that many captions of one time take no longer than others.
class Queue {
 public:
  Queue(StreamFormat format, Counts& counts) : mFormat(format), mCounts(counts) {}

  bool IsEmpty() const { return mDone.empty() && !mLast; }
  TickTime GetBegin() const { return mLast->begin; }
  TickTime GetEnd() const { return mLast->end; }
  void SetEnd(TickTime end) {
    mLast->end = end;
    mIsMoved = true;
  }
  void Push(const CaptionStatePtr& caption, TickTime begin) {
    Flush();
    mOriginal = caption;
    mLast = CopyCaption(*caption);
    mTextBefore = caption->text;
    mIsMoved = begin != caption->begin;
    mLast->begin = begin;
  }
  void Join(const CaptionStatePtr& below) {
    if (!HasSamePlace(*mLast, *below))
      ++mCounts.placesLost;
    AppendBelow(*mLast, *below);
    mLast->end = std::max(mLast->end, below->end);
    ++mCounts.joined;
  }
  void JoinWithin(const CaptionStatePtr& below) {
    const TickTime end = mLast->end;
    Join(below);
    mLast->end = end;
  }
  Captions Take() {
    Flush();
    return std::move(mDone);
  }

 private:
  void Flush() {
    if (!mLast)
      return;
    if (mLast->text.size() != mTextBefore.size())
      PlaceAgain(*mLast, mTextBefore, mFormat);
    mCounts.moved += mIsMoved ? 1 : 0;
    const bool isSame = !mIsMoved && mLast->end == mOriginal->end && mLast->text.size() == mTextBefore.size();
    mDone.push_back(isSame ? mOriginal : CaptionStatePtr(mLast));
    mLast = nullptr;
  }

  StreamFormat mFormat;
  Counts& mCounts;
  Captions mDone;
  CaptionStatePtr mOriginal;
  CaptionDraft mLast;
  UString mTextBefore;
  bool mIsMoved = false;
};

Captions EndEarlier(const Captions& captions, StreamFormat format, Counts& counts) {
  Queue queue(format, counts);
  for (const CaptionStatePtr& caption : captions) {
    if (!queue.IsEmpty() && queue.GetEnd() > caption->begin) {
      if (queue.GetBegin() == caption->begin) {
        queue.Join(caption);
        continue;
      }
      queue.SetEnd(caption->begin);
    }
    queue.Push(caption, caption->begin);
  }
  return queue.Take();
}

Captions BeginLater(const Captions& captions, StreamFormat format, Counts& counts) {
  Queue queue(format, counts);
  for (const CaptionStatePtr& caption : captions) {
    if (queue.IsEmpty() || caption->begin >= queue.GetEnd()) {
      queue.Push(caption, caption->begin);
    } else if (caption->end > queue.GetEnd()) {
      queue.Push(caption, queue.GetEnd());
    } else if (caption->begin > queue.GetBegin()) {
      queue.SetEnd(caption->begin);
      queue.Push(caption, caption->begin);
    } else {
      queue.JoinWithin(caption);
    }
  }
  return queue.Take();
}

// Goes through time from one change of what is on show to the next.
class Merger {
 public:
  Merger(StreamFormat format, Counts& counts, Problems& problems)
      : mFormat(format), mCounts(counts), mProblems(problems) {}

  void Take(const CaptionStatePtr& caption) {
    GoTo(caption->begin);
    if (mOnShow.size() >= kMostMerged) {
      mProblems.push_back({0, Say("$$$/Vidra/Formats/TooManyToMerge=The caption \"{0}\" at {1} still overlaps others: "
                                  "more than {2} are on show at that time.",
                                  {Quote(caption->text), PrintCueTime(caption->begin), Number(kMostMerged)})});
      mDone.push_back(caption);
      return;
    }
    if (mOnShow.empty())
      mAt = caption->begin;
    else
      ++mCounts.joined;
    mOnShow.push_back(caption);
  }

  Captions Finish() {
    GoTo(zebmediatypes::kTime_Max);
    return std::move(mDone);
  }

 private:
  void GoTo(TickTime time) {
    while (!mOnShow.empty()) {
      const auto first = std::min_element(mOnShow.begin(), mOnShow.end(),
                                          [](const auto& a, const auto& b) { return a->end < b->end; });
      const TickTime end = (*first)->end;
      Emit(std::min(end, time));
      if (end > time)
        return;
      std::erase_if(mOnShow, [&](const CaptionStatePtr& caption) { return caption->end <= end; });
    }
  }

  void Emit(TickTime end) {
    if (end <= mAt)
      return;
    const CaptionStatePtr& first = mOnShow.front();
    if (mOnShow.size() == 1 && first->begin == mAt && first->end == end) {
      mDone.push_back(first);
    } else {
      CaptionDraft draft = CopyCaption(*first);
      Counts ignored;
      for (std::size_t i = 1; i < mOnShow.size(); ++i)
        Join(*draft, *mOnShow[i], mFormat, mOnShow[i]->begin == mAt ? mCounts : ignored);
      draft->begin = mAt;
      draft->end = end;
      mDone.push_back(draft);
    }
    mAt = end;
  }

  StreamFormat mFormat;
  Counts& mCounts;
  Problems& mProblems;
  Captions mDone;
  Captions mOnShow; // as they came
  TickTime mAt;
};

} // namespace

Captions ShiftTimes(Captions captions, TickTime offset, Problems& problems) {
  if (offset == TickTime())
    return captions;
  offset = std::clamp(offset, TickTime() - kLatest, kLatest);
  Captions shifted;
  shifted.reserve(captions.size());
  for (const CaptionStatePtr& caption : captions) {
    const TickTime begin = caption->begin + offset;
    const TickTime end = caption->end + offset;
    if (end <= TickTime() || begin >= kLatest) {
      problems.push_back(
          {0, Say("$$$/Vidra/Formats/ShiftedOut=The caption \"{0}\" at {1} is left out: the offset takes "
                  "it to a time that no clip has.",
                  {Quote(caption->text), PrintCueTime(caption->begin)})});
      continue;
    }
    if (begin < TickTime())
      problems.push_back({0, Say("$$$/Vidra/Formats/ShiftedPart=The caption \"{0}\" at {1} begins at zero now: the "
                                 "offset takes a part of its time to before that.",
                                 {Quote(caption->text), PrintCueTime(caption->begin)})});
    CaptionDraft draft = CopyCaption(*caption);
    draft->begin = std::max(begin, TickTime());
    draft->end = end;
    shifted.push_back(draft);
  }
  return shifted;
}

Captions ResolveOverlaps(Captions captions, BE::Overlaps how, StreamFormat format, Problems& problems) {
  SortByBegin(captions);
  Counts counts;
  switch (how) {
  case BE::Overlaps::Keep:
    break;
  case BE::Overlaps::EndEarlier:
    captions = EndEarlier(captions, format, counts);
    break;
  case BE::Overlaps::BeginLater:
    captions = BeginLater(captions, format, counts);
    break;
  case BE::Overlaps::Merge: {
    Merger merger(format, counts, problems);
    for (const CaptionStatePtr& caption : captions)
      merger.Take(caption);
    captions = merger.Finish();
    break;
  }
  }
  TellCounts(counts, problems);
  return captions;
}

Captions LengthenCaptions(Captions captions, TickTime minimum, Problems& problems) {
  std::size_t longer = 0;
  std::size_t stillShort = 0;
  minimum = std::min(minimum, kLatest);
  for (std::size_t i = 0; i < captions.size(); ++i) {
    CaptionStatePtr& caption = captions[i];
    const TickTime wanted = caption->begin + minimum;
    if (caption->end >= wanted)
      continue;
    TickTime end = wanted;
    if (i + 1 < captions.size())
      end = std::max(std::min(end, captions[i + 1]->begin), caption->end);
    stillShort += end < wanted ? 1 : 0;
    if (end == caption->end)
      continue;
    CaptionDraft draft = CopyCaption(*caption);
    draft->end = end;
    caption = draft;
    ++longer;
  }
  if (longer > 0)
    problems.push_back(
        {0, Say("$$$/Vidra/Formats/Lengthened=Captions that are on show for longer than in the file because of the "
                "shortest duration: {0}.",
                {Number(longer)})});
  if (stillShort > 0)
    problems.push_back({0, Say("$$$/Vidra/Formats/StillShort=Captions that stay below the shortest duration because "
                               "the next one begins too soon: {0}.",
                               {Number(stillShort)})});
  return captions;
}

} // namespace Formats
