#pragma once

#include "Captions/shell/HostTypes.h"
#include "zebcore/Messaging.h"

namespace Captivo {

class CaptionsPane;

// Follows the user's choice of a time display, for the source or for the sequence, as long as it lives.
class TimeDisplayListener : public zebcore::messaging::Listener {
 public:
  TimeDisplayListener(CaptionsPane* pane, const ImmutableString& station);
  ~TimeDisplayListener() override;

  void HandleMessage(const zebcore::messaging::Message& message) override;

 private:
  ImmutableString mStation;
  CaptionsPane* mPane;
};

} // namespace Captivo
