#include "BE/StreamObject.h"

#include "BE/ProjectObject.h"
#include "zebcaptioning/Conversion.h"
#include "zebcaptioning/Spans.h"
#include "zebcore/Trace.h"

namespace BE {

namespace {

using Entry = zebcaptioning::CaptionIndex::Entry;
using zebcaptioning::CaptionState;
using zebcaptioning::CaptionStatePtr;
using zebcaptioning::WithMeasure;

// For pictures of clips that have none of their own.
constexpr int kDefaultFrameWidth = 1920;
constexpr int kDefaultFrameHeight = 1080;

CaptionMeasurer& TheMeasurer() {
  static auto* const measurer = new CaptionMeasurer;
  return *measurer;
}

bool HasMeasure(const CaptionState& state) {
  return state.paragraph.lineWidth != zebcaptioning::ParagraphStyleAttributes::kLineWidth_Unknown;
}

// Whatever their times, the two take the same room.
bool MeasuresSame(const CaptionState& a, const CaptionState& b) {
  zebcaptioning::ParagraphStyleAttributes paragraph = a.paragraph;
  paragraph.lineWidth = b.paragraph.lineWidth;
  paragraph.blockHeight = b.paragraph.blockHeight;
  return a.text == b.text && paragraph == b.paragraph && a.runs == b.runs;
}

} // namespace

void SetCaptionMeasurer(CaptionMeasurer measurer) {
  TheMeasurer() = std::move(measurer);
}

bool LooksSame(const CaptionStatePtr& a, const CaptionStatePtr& b) {
  if (a == b || !a || !b)
    return a == b;
  return a->begin == b->begin && a->end == b->end && MeasuresSame(*a, *b);
}

StreamObject::StreamObject(ProjectObject* project, ClipObject* clip, std::string id, StreamRecord record)
    : mProject(project), mClip(clip), mID(std::move(id)), mRecord(std::move(record)),
      mStation(std::string_view("stream:" + mID)), mGuid(zebcore::utility::Guid::Random()),
      mRegions(new zebcaptioning::CaptionRegions), mKeyTag(zebcore::utility::Guid::Random().high | 1) {
  std::vector<zebcaptioning::CaptionRegions::Region> regions;
  for (const StreamDescription::Region& region : mRecord.description.regions)
    regions.push_back({zebcore::utility::ImmutableString(std::string_view(region.name)), region.area, region.percent});
  mRegions->SetRegions(std::move(regions));
}

std::size_t StreamObject::GetCaptionCount() const {
  return mCaptions.Size();
}

void StreamObject::GetCaptionKeys(std::vector<CaptionKey>& keys) const {
  keys.clear();
  keys.reserve(mCaptions.Size());
  mCaptions.ForEach([&keys](const Entry& entry) { keys.push_back(entry.key); });
}

StreamObject::CaptionPtr StreamObject::GetCaption(const CaptionKey& key) const {
  const Entry* entry = mCaptions.Find(key);
  return entry ? entry->caption : nullptr;
}

void StreamObject::GetCaptions(std::vector<CaptionPtr>& captions) const {
  captions.clear();
  captions.reserve(mCaptions.Size());
  mCaptions.ForEach([&captions](const Entry& entry) { captions.push_back(entry.caption); });
}

// CEA-708 counts fewer columns on a 4:3 picture.
bool StreamObject::IsStandardAspect() const {
  if (!mClip || mClip->GetMediaInfo().height <= 0)
    return false;
  const MediaInfo& info = mClip->GetMediaInfo();
  return info.width * info.pixelAspect.ToDouble() / info.height < 1.5;
}

void StreamObject::GetDisplaySettings(const TickTime&, zebcaptioning::CaptionDisplaySettings& settings) const {
  const StreamFormat format = GetStreamFormat();
  if (!zebcaptioning::IsOpenCaptions(format)) {
    settings.SetRegionBaseDimensions(format, zebcaptioning::GetCaptionColumns(format, IsStandardAspect()),
                                     zebcaptioning::GetCaptionRows(format));
    return;
  }
  const bool hasPicture = mClip && mClip->GetMediaInfo().width > 0;
  settings.SetRegionBaseDimensions(format, hasPicture ? mClip->GetMediaInfo().width : kDefaultFrameWidth,
                                   hasPicture ? mClip->GetMediaInfo().height : kDefaultFrameHeight);
}

boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel>
StreamObject::GetRenderableModel(const TickTime& time) const {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("CaptioningStream::GetRenderableModel", {{"stream", GetID()}, {"time", time.GetTicks()}});
  if (!zebcaptioning::IsOpenCaptions(GetStreamFormat()))
    return nullptr;
  std::vector<CaptionStatePtr> shown;
  for (const CaptionPtr& caption : FindAt(time))
    shown.push_back(caption->GetState());
  if (shown.empty())
    return nullptr;
  zebcaptioning::CaptionDisplaySettings settings;
  GetDisplaySettings(time, settings);
  int width = 0;
  int height = 0;
  settings.GetRegionBaseDimensions(width, height);
  const bool hasPicture = mClip && mClip->GetMediaInfo().width > 0;
  return new zebcaptioning::CaptioningRenderableModel(std::move(shown), width, height,
                                                      hasPicture ? mClip->GetMediaInfo().pixelAspect
                                                                 : zebmediatypes::kPixelAspectRatio_Square);
}

InterfaceRef<MasterClip> StreamObject::GetMasterClip() const {
  return InterfaceRef<MasterClip>(mClip);
}

StreamObject::CaptionPtr StreamObject::FindByBegin(TickTime begin) const {
  const Entry* newest = mCaptions.FindNewest(begin);
  return newest ? newest->caption : nullptr;
}

std::optional<ICaptioningStream::CaptionKey> StreamObject::FindKeyByBegin(TickTime begin) const {
  const Entry* newest = mCaptions.FindNewest(begin);
  return newest ? std::optional<CaptionKey>(newest->key) : std::nullopt;
}

std::vector<StreamObject::CaptionPtr> StreamObject::FindAt(TickTime time) const {
  std::vector<CaptionPtr> shown;
  mCaptions.ForEachShownAt(time, [&shown](const Entry& entry) { shown.push_back(entry.caption); });
  return shown;
}

void StreamObject::SetBusy(bool busy) {
  mBusy = std::max(0, mBusy + (busy ? 1 : -1));
}

std::shared_ptr<OpenChange> StreamObject::BeginChange() {
  return std::make_shared<OpenChangeObject>(InterfaceRef<StreamObject>(this));
}

void StreamObject::WriteMeasures(const std::vector<Measure>& measures) {
  std::vector<StoredCaption> measured;
  for (const Measure& measure : measures) {
    const Entry* entry = mCaptions.Find(measure.key);
    if (!entry)
      continue;
    const CaptionPtr caption = entry->caption;
    const auto& paragraph = caption->GetState()->paragraph;
    if (paragraph.lineWidth == measure.lineWidth && paragraph.blockHeight == measure.blockHeight)
      continue;
    caption->SetState(WithMeasure(*caption->GetState(), measure.lineWidth, measure.blockHeight, measure.frame));
    measured.push_back({measure.key, entry->age, caption->GetState()});
    if (!mProject)
      continue;
    for (OpenChangeObject* change : mProject->GetOpenChanges()) {
      if (change->GetStream().Get() == this)
        change->TakeMeasure(measure);
    }
  }
  if (!mProject || measured.empty())
    return;
  mProject->GetStorage().Write([number = GetNumber(), measured = std::move(measured)](ProjectFile& file) {
    for (const StoredCaption& caption : measured)
      file.PutCaption(number, caption.key, caption.age, *caption.state);
  });
}

bool StreamObject::IsGone() const {
  return IsRemoved() || (mClip && mClip->IsRemoved());
}

void StreamObject::SetFormat(StreamFormat format) {
  mRecord.description.format = format;
  RenewGuid();
}

void StreamObject::Detach() {
  mProject = nullptr;
  mClip = nullptr;
}

void StreamObject::RenewGuid() {
  mGuid = zebcore::utility::Guid::Random();
}

void StreamObject::Load(const std::vector<StoredCaption>& captions) {
  mLoaded = true;
  for (const StoredCaption& caption : captions)
    Put(caption.key, caption.age, caption.state);
}

StoredCaption StreamObject::MakeStoredCaption(const CaptionStatePtr& state) {
  const std::uint64_t age = mNextAge++;
  return {CaptionKey{mKeyTag, age}, age, state};
}

void StreamObject::Put(const CaptionKey& key, std::uint64_t age, const CaptionStatePtr& state, const CaptionPtr& made) {
  mNextAge = std::max(mNextAge, age + 1);
  if (const Entry* entry = mCaptions.Find(key)) {
    entry->caption->SetState(state);
    mCaptions.MoveToCaptionTimes(key);
    return;
  }
  const CaptionPtr caption = made ? made : CaptionPtr(new zebcaptioning::Caption(state));
  caption->SetRegions(mRegions);
  mCaptions.Insert(key, age, caption);
}

void StreamObject::Take(const CaptionKey& key) {
  mCaptions.Erase(key);
}

std::vector<CaptionDelta> StreamObject::Resolve(const std::vector<CaptionDelta>& deltas) {
  std::vector<CaptionDelta> resolved;
  std::map<CaptionKey, std::size_t> places;
  for (const CaptionDelta& delta : deltas) {
    CaptionDelta real = delta;
    if (const Entry* held = mCaptions.Find(delta.key)) {
      real.age = held->age;
      real.before = held->caption->GetState();
    } else if (delta.key == CaptionKey{} || !delta.before) {
      real.before = nullptr;
      if (real.age == 0)
        real.age = mNextAge;
      mNextAge = std::max(mNextAge, real.age + 1);
      if (delta.key == CaptionKey{})
        real.key = CaptionKey{mKeyTag, real.age};
    } else {
      continue;
    }
    const auto [place, isFirst] = places.try_emplace(real.key, resolved.size());
    if (isFirst)
      resolved.push_back(std::move(real));
    else
      resolved[place->second].after = real.after;
  }
  std::erase_if(resolved, [](const CaptionDelta& delta) {
    return delta.before == delta.after || (delta.before && delta.after && *delta.before == *delta.after);
  });
  return resolved;
}

std::vector<CaptionDelta> StreamObject::MakeShiftDeltas(TickTime from, TickTime to, TickTime offset) const {
  std::vector<CaptionDelta> deltas;
  mCaptions.ForEachBeginningIn(from, to, [&deltas, offset](const Entry& entry) {
    const CaptionStatePtr before = entry.caption->GetState();
    auto* after = new CaptionState(*before);
    after->begin = before->begin + offset;
    after->end = before->end + offset;
    deltas.push_back({entry.key, entry.age, before, after});
  });
  return deltas;
}

std::vector<CaptionDelta> StreamObject::MakeFormatDeltas(StreamFormat format) const {
  const bool hasPicture = mClip && mClip->GetMediaInfo().width > 0;
  const int width = hasPicture ? mClip->GetMediaInfo().width : kDefaultFrameWidth;
  const int height = hasPicture ? mClip->GetMediaInfo().height : kDefaultFrameHeight;
  const StreamFormat closed = zebcaptioning::IsOpenCaptions(format) ? GetStreamFormat() : format;
  const int columns = zebcaptioning::GetCaptionColumns(closed, IsStandardAspect());
  const int rows = zebcaptioning::GetCaptionRows(closed);
  std::vector<CaptionDelta> deltas;
  mCaptions.ForEach([&](const Entry& entry) {
    const CaptionStatePtr before = entry.caption->GetState();
    deltas.push_back({entry.key, entry.age, before,
                      zebcaptioning::ConvertToFormat(before, GetStreamFormat(), format, columns, rows, width, height)});
  });
  return deltas;
}

void StreamObject::RefreshMeasures(std::vector<CaptionDelta>& deltas, bool forward) const {
  if (!zebcaptioning::IsOpenCaptions(GetStreamFormat()))
    return;
  // The first caption stands for all of them.
  const Entry* first = mCaptions.At(0);
  const bool isMeasured = first && first->caption->HasLineWidth();
  std::vector<CaptionStatePtr*> places;
  std::vector<CaptionStatePtr> states;
  for (CaptionDelta& delta : deltas) {
    CaptionStatePtr& next = forward ? delta.after : delta.before;
    if (!next)
      continue;
    const CaptionPtr held = GetCaption(delta.key);
    const bool isHeldMeasured = held && held->HasLineWidth();
    if (!isMeasured && !isHeldMeasured && !HasMeasure(*next))
      continue;
    if (isHeldMeasured && MeasuresSame(*held->GetState(), *next)) {
      const CaptionState& state = *held->GetState();
      next = WithMeasure(*next, state.paragraph.lineWidth, state.paragraph.blockHeight, state.measured.frame);
    } else if (TheMeasurer()) {
      places.push_back(&next);
      states.push_back(next);
    }
  }
  if (states.empty())
    return;
  TheMeasurer()(*this, states);
  for (std::size_t i = 0; i < places.size(); ++i)
    *places[i] = std::move(states[i]);
}

CaptionReport StreamObject::Apply(const std::vector<CaptionDelta>& deltas, bool forward, const CaptionPtr& made) {
  struct Shown {
    CaptionPtr caption;
    CaptionStatePtr state;
  };
  std::map<TickTime, Shown> before;
  bool looksSame = true;
  for (const CaptionDelta& delta : deltas) {
    looksSame = looksSame && LooksSame(delta.before, delta.after);
    for (const CaptionStatePtr& state : {delta.before, delta.after}) {
      if (state)
        before.try_emplace(state->begin);
    }
  }
  for (auto& [begin, shown] : before) {
    shown.caption = FindByBegin(begin);
    if (shown.caption)
      shown.state = shown.caption->GetState();
  }
  for (const CaptionDelta& delta : deltas) {
    const CaptionStatePtr& state = forward ? delta.after : delta.before;
    if (state)
      Put(delta.key, delta.age, state, made);
    else
      Take(delta.key);
  }
  if (!looksSame)
    RenewGuid();

  CaptionReport report;
  for (const auto& [begin, shown] : before) {
    const CaptionPtr now = FindByBegin(begin);
    if (!shown.caption) {
      if (now)
        report.added.captions.emplace_back(Self(), now);
      continue;
    }
    if (now != shown.caption)
      report.removed.captions.emplace_back(Self(), begin);
    const bool isChanged = now && (now != shown.caption || !(*now->GetState() == *shown.state));
    if (isChanged)
      report.changed.captions.emplace_back(Self(), now);
  }
  ReportHidden(deltas, forward, report);
  return report;
}

// A caption that changed under a newer one with its begin time shows nowhere, yet whoever holds it has to hear of it.
// What shows at that begin comes before it.
void StreamObject::ReportHidden(const std::vector<CaptionDelta>& deltas, bool forward, CaptionReport& report) const {
  bool anyHidden = false;
  for (const CaptionDelta& delta : deltas) {
    const CaptionStatePtr& was = forward ? delta.before : delta.after;
    const CaptionStatePtr& is = forward ? delta.after : delta.before;
    if (!was || !is || *was == *is)
      continue;
    const CaptionPtr caption = GetCaption(delta.key);
    if (caption && FindByBegin(is->begin) != caption) {
      report.changed.captions.emplace_back(Self(), caption);
      anyHidden = true;
    }
  }
  const auto beginsBefore = [](const auto& a, const auto& b) {
    return a.second->GetBeginTime() < b.second->GetBeginTime();
  };
  if (anyHidden)
    std::stable_sort(report.changed.captions.begin(), report.changed.captions.end(), beginsBefore);
}

InterfaceRef<ICaptioningStream> StreamObject::Self() const {
  return InterfaceRef<ICaptioningStream>(const_cast<StreamObject*>(this));
}

void StreamObject::Send(const CaptionReport& report) const {
  if (!report.added.captions.empty())
    zebcore::messaging::BroadcastMessage(mStation, report.added);
  if (!report.removed.captions.empty())
    zebcore::messaging::BroadcastMessage(mStation, report.removed);
  if (!report.changed.captions.empty())
    zebcore::messaging::BroadcastMessage(mStation, report.changed);
}

void StreamObject::SendAsTheyAre(const std::vector<CaptionDelta>& refused) const {
  std::map<TickTime, CaptionPtr> shown;
  for (const CaptionDelta& delta : refused) {
    const CaptionPtr held = GetCaption(delta.key);
    for (const CaptionStatePtr& state : {held ? held->GetState() : nullptr, delta.before, delta.after}) {
      if (state)
        shown.emplace(state->begin, FindByBegin(state->begin));
    }
  }
  CaptionReport report;
  for (const auto& [begin, caption] : shown) {
    if (caption)
      report.added.captions.emplace_back(Self(), caption);
    else
      report.removed.captions.emplace_back(Self(), begin);
  }
  Send(report);
}

void StreamObject::SendStreamChanged() const {
  CaptioningStreamChangedMessage message;
  message.stream = Self();
  zebcore::messaging::BroadcastMessage(mStation, message);
}

} // namespace BE
