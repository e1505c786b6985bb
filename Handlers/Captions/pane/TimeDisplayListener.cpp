#include "Captions/pane/TimeDisplayListener.h"

#include "Captions/contracts/SelectionMessages.h"
#include "Captions/contracts/Stations.h"
#include "Captions/pane/CaptionsPane.h"

namespace Captivo {

TimeDisplayListener::TimeDisplayListener(CaptionsPane* pane, const ImmutableString& station)
    : mStation(station), mPane(pane) {
  zebcore::messaging::AddListener(mStation, this);
}

TimeDisplayListener::~TimeDisplayListener() {
  zebcore::messaging::RemoveListener(mStation, this);
}

void TimeDisplayListener::HandleMessage(const zebcore::messaging::Message& message) {
  const auto* changed = zebcore::messaging::MessageCast<UIF::HotTimecodeVideoTimeDisplayChangedMessage>(message);
  if (!changed)
    return;
  const bool isSequence = mStation == ImmutableString(UIF::kStation_SequenceTimeDisplayChanged);
  mPane->OnTimeDisplayChosen(isSequence ? CaptionsSource::kKind_Sequence : CaptionsSource::kKind_MasterClip,
                             changed->display);
}

} // namespace Captivo
