#pragma once

#include <vector>

#include "Captions/shell/CaptionsSource.h"
#include "Captions/shell/HostTypes.h"
#include "HSL/Module.h"
#include "zebcore/Messaging.h"

namespace Captivo {

class CaptionsView;

// Stands for the panel while the panel may be closed: it makes the view when the host asks for it, opens the panel when
// captions are opened elsewhere, and follows the current master clip, panel or no panel.
class CaptionsHandler : public HSL::Handler, public zebcore::messaging::Listener {
 public:
  explicit CaptionsHandler(const UString& name);
  ~CaptionsHandler() override;

  bool ObeyCommand(const UIF::Command& command) override;
  const std::string& GetShortcutContextName() const override;
  // A further view takes the place of the first.
  UIF::TabView* CreateTabView(UIF::WorkspaceFrame* frame) override;
  void HandleMessage(const zebcore::messaging::Message& message) override;

 private:
  friend class CaptionsInspector;

  void RegisterWindow();
  // Makes the panel if need be, shows it and brings it to the front.
  void OpenPanel();
  bool HasCreatedView() const;
  void OnCaptioningTrackItemOpened(const TickTime& time);
  void OnCaptionsSelectionChanged(const std::vector<TickTime>& times, StreamFormat format);
  void OnMasterClipSelected(const InterfaceRef<BE::IMasterClip>& clip);
  void OnCaptionStreamFormatModified(const InterfaceRef<BE::ICaptioningStream>& stream);
  ImmutableString GetSourceStation() const;
  void MeasureNewCaptions();

  boost::shared_ptr<CaptionsView> mView;
  CaptionsSource mSource;
};

} // namespace Captivo
