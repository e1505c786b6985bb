#include "Captions/contracts/CaptioningStreamUpdater.h"

#include <set>

#include "BE/Project.h"
#include "HSL/CaptioningStreamUpdaterSteps.h"
#include "zebcore/Boundary.h"
#include "zebcore/Trace.h"

namespace HSL {

namespace {

using BE::CaptionDelta;
using Json = nlohmann::json;
using zebcaptioning::CaptionFormatInfo;
using zebcaptioning::CaptionFormatParameter;
using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcore::trace::IsOn;
using zebmediatypes::TickTime;

Json WriteTimes(const std::vector<TickTime>& times) {
  Json array = Json::array();
  for (const TickTime& time : times)
    array.push_back(time.GetTicks());
  return array;
}

Json WriteRange(const std::pair<std::size_t, std::size_t>& range) {
  const auto write = [](std::size_t at) {
    return at == zebcaptioning::kTextRange_End ? -1 : static_cast<std::int64_t>(at);
  };
  return {write(range.first), write(range.second)};
}

} // namespace

struct CaptioningStreamUpdater::Impl {
  zebcore::classref::InterfaceRef<BE::CaptioningStream> stream;
  std::shared_ptr<BE::OpenChange> change;

  void Record(const char* operation, Json args = Json::object()) const {
    args["stream"] = stream ? Json(stream->GetID()) : Json();
    zebcore::trace::Record((std::string("CaptioningStreamUpdater::") + operation).c_str(), std::move(args));
  }

  // Held by the caller while it applies: a listener may close the change meanwhile.
  std::shared_ptr<BE::OpenChange> Change() {
    if (!change)
      change = stream->BeginChange();
    return change;
  }

  // Commits what is open, and lets go of it. Throws nothing: it happens in the panel's destructors too.
  void Close() {
    zebcore::boundary::Guard("HSL::CaptioningStreamUpdater, committing", [this] {
      if (const std::shared_ptr<BE::OpenChange> closed = std::exchange(change, nullptr))
        closed->Commit();
    });
  }

  // A delta for each time that names a caption, whose state after comes from the given function.
  template <class Make> std::vector<CaptionDelta> MakeDeltas(const std::vector<TickTime>& times, Make&& make) const {
    std::vector<CaptionDelta> deltas;
    for (const TickTime& time : std::set<TickTime>(times.begin(), times.end())) {
      const auto key = stream->FindKeyByBegin(time);
      if (!key)
        continue;
      const CaptionStatePtr before = stream->GetCaption(*key)->GetState();
      deltas.push_back({*key, 0, before, make(before)});
    }
    return deltas;
  }

  zebmediatypes::FrameRate GetVideoRate() const {
    const auto clip = stream->GetMasterClip();
    const auto video = clip ? clip->GetClip(BE::kMediaType_Video, 0) : nullptr;
    return video ? video->GetFrameRate() : zebmediatypes::FrameRate();
  }
};

CaptioningStreamUpdater::CaptioningStreamUpdater(const StreamRef& stream) : mImpl(std::make_unique<Impl>()) {
  mImpl->stream = stream.Query<BE::CaptioningStream>();
  if (IsOn())
    mImpl->Record("CaptioningStreamUpdater");
}

CaptioningStreamUpdater::~CaptioningStreamUpdater() {
  zebcore::boundary::Guard("HSL::CaptioningStreamUpdater::~CaptioningStreamUpdater", [this] {
    if (IsOn())
      mImpl->Record("~CaptioningStreamUpdater");
  });
  mImpl->Close();
}

void CaptioningStreamUpdater::UpdateCaptioningStream(const StreamRef& stream) {
  const auto next = stream.Query<BE::CaptioningStream>();
  if (IsOn())
    mImpl->Record("UpdateCaptioningStream", {{"to", next ? Json(next->GetID()) : Json()}});
  if (next == mImpl->stream)
    return;
  mImpl->Close();
  mImpl->stream = next;
}

bool CaptioningStreamUpdater::IsBusy() const {
  if (IsOn())
    mImpl->Record("IsBusy");
  return mImpl->stream && mImpl->stream->IsBusy();
}

void CaptioningStreamUpdater::CommitChangesUndoable(bool endsPassage) {
  if (IsOn())
    mImpl->Record("CommitChangesUndoable", {{"ends_passage", endsPassage}});
  mImpl->Close();
}

void CaptioningStreamUpdater::RevertChanges() {
  if (IsOn())
    mImpl->Record("RevertChanges");
  if (const std::shared_ptr<BE::OpenChange> reverted = std::exchange(mImpl->change, nullptr))
    reverted->Revert();
}

void CaptioningStreamUpdater::AddCaption(const boost::intrusive_ptr<zebcaptioning::Caption>& caption) {
  if (IsOn())
    mImpl->Record("AddCaption", caption ? Json{{"begin", caption->GetBeginTime().GetTicks()},
                                               {"end", caption->GetEndTime().GetTicks()}}
                                        : Json::object());
  if (mImpl->stream && caption)
    mImpl->Change()->Add(caption, steps::AddName());
}

void CaptioningStreamUpdater::RemoveCaptions(const std::vector<TickTime>& times, bool closeGap) {
  if (IsOn())
    mImpl->Record("RemoveCaptions", {{"times", WriteTimes(times)}, {"close_gap", closeGap}});
  if (!mImpl->stream)
    return;
  std::vector<CaptionDelta> deltas = mImpl->MakeDeltas(times, [](const CaptionStatePtr&) { return CaptionStatePtr(); });
  if (closeGap)
    steps::CloseGaps(*mImpl->stream, deltas);
  if (!deltas.empty())
    mImpl->Change()->Apply(deltas, steps::DeleteName());
}

void CaptioningStreamUpdater::ApplyTextChange(const TickTime& begin, const UString& oldText, const UString& newText,
                                              const std::pair<std::size_t, std::size_t>& caret, bool withoutFocus) {
  if (IsOn())
    mImpl->Record("ApplyTextChange", {{"begin", begin.GetTicks()},
                                      {"old_text", zebcore::ToUTF8(oldText)},
                                      {"new_text", zebcore::ToUTF8(newText)},
                                      {"range", WriteRange(caret)},
                                      {"without_focus", withoutFocus}});
  if (!mImpl->stream)
    return;
  std::vector<CaptionDelta> deltas = mImpl->MakeDeltas(
      {begin}, [&](const CaptionStatePtr& state) { return steps::Retype(state, oldText, newText, caret); });
  steps::MeasureChanged(*mImpl->stream, deltas);
  if (!deltas.empty())
    mImpl->Change()->Apply(deltas, steps::TypeName());
}

void CaptioningStreamUpdater::UpdateCaptionStartAndDuration(const TickTime& oldBegin, const TickTime& newBegin,
                                                            const TickTime& duration, bool alignToFrame,
                                                            const zebmediatypes::TimeDisplay& display) {
  if (IsOn())
    mImpl->Record("UpdateCaptionStartAndDuration", {{"old_begin", oldBegin.GetTicks()},
                                                    {"new_begin", newBegin.GetTicks()},
                                                    {"duration", duration.GetTicks()},
                                                    {"align_to_frame", alignToFrame},
                                                    {"time_display", display.GetNumber()}});
  if (!mImpl->stream)
    return;
  const std::vector<CaptionDelta> deltas = mImpl->MakeDeltas({oldBegin}, [&](const CaptionStatePtr& state) {
    auto* moved = new CaptionState(*state);
    moved->begin = newBegin;
    moved->end = newBegin + duration;
    if (alignToFrame) {
      const zebmediatypes::FrameRate rate = zebmediatypes::GetDisplayRate(display, mImpl->GetVideoRate());
      moved->begin.AlignToFrame(rate);
      moved->end.AlignToFrame(rate);
    }
    return CaptionStatePtr(moved);
  });
  if (!deltas.empty())
    mImpl->Change()->Apply(deltas, steps::MoveName());
}

void CaptioningStreamUpdater::ApplyFormatParameter(CaptionFormatParameter parameter, const CaptionFormatInfo& info,
                                                   const std::vector<TickTime>& times,
                                                   const std::pair<std::size_t, std::size_t>& range) {
  if (IsOn())
    mImpl->Record(
        "ApplyFormatParameter",
        {{"parameter", static_cast<int>(parameter)}, {"times", WriteTimes(times)}, {"range", WriteRange(range)}});
  if (!mImpl->stream)
    return;
  std::vector<CaptionDelta> deltas = mImpl->MakeDeltas(times, [&](const CaptionStatePtr& state) {
    return steps::Reformat(*mImpl->stream, state, parameter, info, range);
  });
  steps::MeasureChanged(*mImpl->stream, deltas);
  if (!deltas.empty())
    mImpl->Change()->Apply(deltas, steps::FormatName(parameter));
}

void CaptioningStreamUpdater::UpdateTextWidthAndPositioning(bool all) {
  if (IsOn())
    mImpl->Record("UpdateTextWidthAndPositioning", {{"all", all}});
  if (!mImpl->stream || !zebcaptioning::IsOpenCaptions(mImpl->stream->GetStreamFormat()))
    return;
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  mImpl->stream->GetCaptionKeys(keys);
  std::erase_if(keys, [&](const auto& key) { return !all && mImpl->stream->GetCaption(key)->HasLineWidth(); });
  std::vector<CaptionStatePtr> states;
  states.reserve(keys.size());
  for (const auto& key : keys)
    states.push_back(mImpl->stream->GetCaption(key)->GetState());
  steps::Measure(*mImpl->stream, states);
  std::vector<BE::CaptioningStream::Measure> measures;
  measures.reserve(keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i)
    measures.push_back(
        {keys[i], states[i]->paragraph.lineWidth, states[i]->paragraph.blockHeight, states[i]->measured.frame});
  mImpl->stream->WriteMeasures(measures);
}

void CaptioningStreamUpdater::GetRegionNames(std::vector<UString>& names) const {
  if (IsOn())
    mImpl->Record("GetRegionNames");
  names.clear();
  if (!mImpl->stream)
    return;
  for (const BE::StreamDescription::Region& region : mImpl->stream->GetDescription().regions)
    names.push_back(zebcore::FromUTF8(region.name));
}

void CaptioningStreamUpdater::GetStyleNames(std::vector<UString>& names) const {
  if (IsOn())
    mImpl->Record("GetStyleNames");
  names.clear();
  if (!mImpl->stream)
    return;
  for (const std::string& style : mImpl->stream->GetDescription().styles)
    names.push_back(zebcore::FromUTF8(style));
}

} // namespace HSL
