#include "App/window/StreamOnShow.h"

#include <QTimer>

#include <algorithm>
#include <utility>

#include "App/Session.h"
#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"

namespace App {

using zebcore::messaging::AddListener;
using zebcore::messaging::MessageCast;
using zebcore::messaging::RemoveListener;

StreamOnShow::StreamOnShow(std::function<bool()> isPanelShown)
    : mIsPanelShown(std::move(isPanelShown)), mLookSoon(new QTimer) {
  mLookSoon->setSingleShot(true);
  QObject::connect(mLookSoon, &QTimer::timeout, [this] { Look(); });
  AddListener(MZ::kStation_MasterClipActivation, this);
  for (const auto& station : {MZ::kStation_ClosedCaptionsActivation, MZ::kStation_Info, MZ::kStation_SequenceActivation,
                              MZ::kStation_BinActivation, HSL::kStation_CaptionSelection})
    AddListener(station, this);
}

StreamOnShow::~StreamOnShow() {
  delete mLookSoon;
}

void StreamOnShow::LookSoon() {
  mLookSoon->start(0);
}

void StreamOnShow::HandleMessage(const zebcore::messaging::Message& message) {
  if (mSaying)
    return;
  if (const auto* selected = MessageCast<MZ::MasterClipSelectedMessage>(message)) {
    OnClipSelected(selected->clip.Query<BE::MasterClip>());
  } else if (const auto* video = MessageCast<MZ::VideoTrackItemInfoMessage>(message)) {
    OnClipSelected(video->info.clip.Query<BE::MasterClip>());
  } else if (const auto* both = MessageCast<MZ::AudioVideoTrackItemInfoMessage>(message)) {
    OnClipSelected(both->info.clip.Query<BE::MasterClip>());
  } else if (const auto* source = MessageCast<HSL::SourceClipSelectedMessage>(message)) {
    OnSourceSelected(*source);
  } else if (MessageCast<MZ::AudioTrackItemInfoMessage>(message) ||
             MessageCast<MZ::TransitionTrackItemInfoMessage>(message) ||
             MessageCast<MZ::EmptyTrackItemInfoMessage>(message) || MessageCast<MZ::NothingInfoMessage>(message) ||
             MessageCast<MZ::SequenceSelectedMessage>(message) || MessageCast<MZ::BinSelectedMessage>(message)) {
    OnClipSelected(nullptr);
  } else if (const auto* chosen = MessageCast<MZ::CaptionsSelectionChangedMessage>(message)) {
    OnFormatChosen(chosen->format);
  } else if (const auto* modified = MessageCast<BE::CaptionStreamFormatModifiedMessage>(message)) {
    mFormatChanged = mFormatChanged || (mStream && modified->stream == mStream);
    LookSoon();
  } else if (MessageCast<BE::CaptioningStreamChangedMessage>(message)) {
    LookSoon();
  }
}

// A panel starts on the first stream of a clip. One that is on this clip already stays as it is; another, made anew,
// is told afterwards.
void StreamOnShow::OnClipSelected(const Clip& clip) {
  if (clip == mClip) {
    mSelectedAgain = true;
    LookSoon();
    return;
  }
  if (mClip)
    RemoveListener(mClip->GetStationID(), this);
  mClip = clip;
  if (mClip)
    AddListener(mClip->GetStationID(), this);
  mGone = nullptr;
  mFormatChanged = false;
  FollowStreams();
  const auto streams = mClip ? mClip->GetStreams() : std::vector<Stream>();
  Show(streams.empty() ? Stream() : streams.front());
}

void StreamOnShow::OnSourceSelected(const HSL::SourceClipSelectedMessage& source) {
  if (source.kind == 1)
    OnClipSelected(source.clip.Query<BE::MasterClip>());
  const auto item = source.item.Query<BE::IClipTrackItem>();
  const auto clip = item ? item->GetClip() : nullptr;
  if (source.kind == 2)
    OnClipSelected(clip ? clip->GetMasterClip().Query<BE::MasterClip>() : nullptr);
}

void StreamOnShow::OnFormatChosen(zebcaptioning::StreamFormat format) {
  if (!mStream || !mIsPanelShown()) // a clip whose streams the panel does not know yet
    return;
  for (const Stream& stream : mClip->GetStreams())
    if (stream->GetStreamFormat() == format)
      Show(stream);
}

void StreamOnShow::Look() {
  FollowStreams();
  const bool selectedAgain = std::exchange(mSelectedAgain, false);
  const bool formatChanged = std::exchange(mFormatChanged, false);
  if (!mClip)
    return;
  const auto clips = mClip->GetProject() ? mClip->GetProject()->GetClips() : std::vector<Clip>();
  if (std::find(clips.begin(), clips.end(), mClip) == clips.end()) {
    Session::Instance().SelectNothing();
    return;
  }
  const auto streams = mClip->GetStreams();
  if (mGone && Holds(mGone)) {
    SayAgain(std::exchange(mGone, nullptr));
  } else if (mStream && !Holds(mStream)) {
    mGone = mStream;
    SayAgain(streams.empty() ? Stream() : streams.front());
  } else if (!mStream && !streams.empty()) {
    SayAgain(streams.front());
  } else if (mStream && formatChanged) {
    SayAgain(mStream);
  } else if (mStream && selectedAgain && mStream != streams.front() && mIsPanelShown()) {
    Session::Instance().SelectStream(mStream);
  }
}

// A panel takes up a clip only when it is on none of its streams, so nothing is selected in between.
void StreamOnShow::SayAgain(const Stream& wanted) {
  if (whenSayingAgain)
    whenSayingAgain();
  Session& session = Session::Instance();
  const auto streams = mClip->GetStreams();
  Stream shown = streams.empty() ? Stream() : streams.front();
  mSaying = true;
  session.LeaveAndRepeatSelection();
  if (wanted != shown && mIsPanelShown()) {
    session.SelectStream(wanted);
    shown = wanted;
  }
  mSaying = false;
  Show(shown);
}

void StreamOnShow::Show(const Stream& stream) {
  if (stream == mStream)
    return;
  mStream = stream;
  if (whenChanged)
    whenChanged();
}

bool StreamOnShow::Holds(const Stream& stream) const {
  const auto streams = mClip->GetStreams();
  return std::find(streams.begin(), streams.end(), stream) != streams.end();
}

// A change of format is said by the stream itself.
void StreamOnShow::FollowStreams() {
  for (const Stream& stream : mFollowed)
    RemoveListener(stream->GetStationID(), this);
  mFollowed = mClip ? mClip->GetStreams() : std::vector<Stream>();
  for (const Stream& stream : mFollowed)
    AddListener(stream->GetStationID(), this);
}

} // namespace App
