#include "App/window/ReadOnlyWatch.h"

#include <utility>

#include "App/Session.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"

namespace App {

ReadOnlyWatch::ReadOnlyWatch(std::function<void()> whenChanged) : mWhenChanged(std::move(whenChanged)) {
  zebcore::messaging::AddListener(BE::kBackendProjectActivationStationID, this);
}

void ReadOnlyWatch::HandleMessage(const zebcore::messaging::Message& message) {
  const auto* changed = zebcore::messaging::MessageCast<BE::ReadOnlyStateChangedMessage>(message);
  if (changed && changed->project.Query<BE::Project>() == Session::Instance().GetProject())
    mWhenChanged();
}

} // namespace App
