#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "Captions/contracts/CaptionFormatInfo.h"
#include "Captions/list/CaptionsItemList.h"
#include "Captions/pane/TimeDisplayListener.h"
#include "Captions/shell/CaptionsSource.h"
#include "Captions/shell/HostTypes.h"
#include "UIF/View.h"
#include "zebcore/Guid.h"
#include "zebcore/Messaging.h"

namespace BE {
struct CaptionsAddedMessage;
struct CaptionsChangedMessage;
struct CaptionsMovedMessage;
struct CaptionsRemovedMessage;
struct PropertiesChangedMessage;
} // namespace BE

namespace HSL {
class CaptioningStreamUpdater;
struct SourceClipSelectedMessage;
} // namespace HSL

namespace MF {
class IVideoFrame;
}

namespace ML {
class IRenderFrame;
struct RenderFrameCompletionMessage;
} // namespace ML

namespace zebcaptioning {
class CaptioningRenderableModel;
}

namespace Captivo {

class CaptionsView;

// The scrolling list of caption rows: it shows the captions of one stream, takes every edit of them, and follows what
// the host selects and what the stream reports.
//
// An edit changes the row list first, the screen next and the stream last; the stream's report then finds the rows as
// they are to be. Rows in view have controls, all others are painted from what the row holds.
//
// A reload and a switch to another source wait, tried again every quarter of a second, while the updater is busy or the
// selected row is being edited. The pane counts as unavailable meanwhile.
class CaptionsPane : public UIF::SubView, public zebcore::messaging::Listener {
 public:
  // The commander is the CaptionsView above, or null.
  explicit CaptionsPane(UIF::Commander* owner);
  ~CaptionsPane() override;

  // Host's hooks.
  bool FindCommandStatus(int id, bool& enabled, bool& marked, UIF::MenuMark& mark, UString& name) override;
  bool ObeyCommand(const UIF::Command& command) override;
  void SetBounds(const RectT<int>& bounds) override;
  UIF::ViewBase* GetLayoutParent() const override;
  void HandleMessage(const zebcore::messaging::Message& message) override;

  // What rows and the view ask for.
  int GetRowHeight() const;
  // The scroll range in pixels: all rows, and one row's height below the last one unless told otherwise.
  int GetContentHeight(bool noExtraRow) const;
  std::size_t GetRowCount() const { return list->GetRowCount(); }
  bool IsUnavailable() const;
  int GetFirstSelectedIndex() const { return list->GetFirstSelectedIndex(); }
  bool HasSelection() const { return list->GetSelectedCount() > 0; }
  FrameRate GetFrameRate() const { return source.GetFrameRate(false); }
  TickTime GetZeroPoint() const { return source.GetZeroPoint(); }
  // A display that the user chose for the source holds at once.
  TimeDisplay GetTimeDisplay() const { return source.GetTimeDisplay(true); }

  // Source, stream and rows.
  void ReloadCaptions();
  // False if it was put off.
  bool SetSource(const CaptionsSource& newSource);
  // Remembers what is selected in the stream that is left. Null shows nothing.
  void ShowMasterClip(const InterfaceRef<BE::IMasterClip>& clip);
  // As ShowMasterClip, for what the host selected: aims a switch that waits anew, and leaves merged clips out.
  void ConsiderMasterClip(const InterfaceRef<BE::IMasterClip>& clip);
  // By position in the formats that the source offers.
  void SelectStreamFormat(int index);
  void SetFilterText(const UString& text);
  void UpdateStreamSettings();
  // The display of the video, chosen by the user for the source or for the sequence.
  void OnTimeDisplayChosen(CaptionsSource::Kind kind, const TimeDisplay& display);

  // Selection. From elsewhere, with neither a commit nor a broadcast.
  void SelectCaptionAtTime(const TickTime& time);
  void SelectCaptionTimes(const std::vector<TickTime>& times);
  void SelectAllCaptions();
  // The format of the selection to the format bar.
  void PublishSelectionFormat();

  // Edits.
  void CommitChanges();
  void AddNewCaption();
  void DeleteSelectedCaptions();
  void ApplyTextChange(const TickTime& begin, const UString& oldText, const UString& newText, const TextRange& range,
                       bool flag);
  void ChangeCaptionTimes(const TickTime& oldBegin, const TickTime& newBegin, const TickTime& duration);
  void RevertTextChange(bool takeFocus);
  // At the caret of the only selected row.
  void InsertText(const UString& text);
  // To the selected captions or, while the text of the only selected one has the focus, to what is selected there.
  void ApplyFormat(zebcaptioning::CaptionFormatParameter parameter, const zebcaptioning::CaptionFormatInfo& info);
  void RestoreTextFocus();
  // Clipboard commands of the only selected row's text; false for any other command, and without such a row.
  bool FindTextCommandStatus(int id, bool& enabled) const;
  bool ObeyTextCommand(const UIF::Command& command);

  // Layout.
  // Shows the rows from the one at this height on.
  void SetScrollOffset(unsigned pixels);
  // Controls for the rows in view and for no other ones.
  void UpdateVisibleRows();

  // Drops the pictures of a video.
  void ForgetPreview(const InterfaceRef<BE::IVideoSegments>& video);

 protected:
  void CreateSelf(const RectT<int>& bounds) override;
  void DestroySelf() override;
  void PaintSelf(UIF::DC& dc) override;
  void LeftButtonUpSelf(const PointT<int>& point, const UIF::KeyModifiers& modifiers) override;
  void RightButtonDownSelf(const PointT<int>& point, const UIF::KeyModifiers& modifiers) override;
  bool KeyDownSelf(wchar_t character, short keyCode, bool repeat) override;
  bool TimerNotifySelf(std::uint32_t id) override;

 private:
  friend class CaptionsInspector;

  enum class GestureKind { None = 0, Keyboard = 1, Mouse = 2 };

  // A picture of the video, and the open captions to draw over it.
  struct PreviewEntry {
    InterfaceRef<MF::IVideoFrame> frame;
    boost::intrusive_ptr<zebcaptioning::CaptioningRenderableModel> model;
    zebcore::utility::Guid requestHash;
  };
  using Previews = std::map<InterfaceRef<BE::IVideoSegments>, std::map<TickTime, PreviewEntry>>;

  // How a row and what is in it lie; the same for all rows but for the top.
  struct RowGeometry;

  void ForgetVisibleRows();

  // Timers.
  void Defer();
  void RunDeferredSteps();

  // Messages.
  void OnCaptionsAdded(const BE::CaptionsAddedMessage& message);
  void OnCaptionsRemoved(const BE::CaptionsRemovedMessage& message);
  void OnCaptionsChanged(const BE::CaptionsChangedMessage& message);
  void OnCaptioningStreamChanged(const InterfaceRef<BE::ICaptioningStream>& stream);
  void OnCaptionsMoved(const BE::CaptionsMovedMessage& message);
  void OnMasterClipClosed(const InterfaceRef<BE::IMasterClip>& clip);
  void OnPropertiesChanged(const BE::PropertiesChangedMessage& message);
  void OnSourceClipSelected(const HSL::SourceClipSelectedMessage& message);
  void OnRenderFrameCompleted(const ML::RenderFrameCompletionMessage& message);
  void RefreshSequenceTimeDisplay(const InterfaceRef<BE::ISequence>& sequence);

  // Reload.
  void ReadRows();
  bool PassesFilter(const Caption& caption) const;
  void SelectRememberedOrFirst();
  void LeaveSource();
  void JoinSource();

  // Selection.
  void ApplySelectionGesture(const TickTime& time, const UIF::KeyModifiers& modifiers, GestureKind kind);
  void BroadcastSelectedCaption();
  bool FindTimeForKey(short keyCode, TickTime& time);

  // Edits.
  void RefreshAfterRowChange();
  void UpdateViewAfterRowChange();
  void RemoveSelectedCaptions();

  // Painting.
  RowGeometry ComputeRowGeometry() const;
  void PaintRow(UIF::DC& dc, CaptionsItem& item, int index, const RowGeometry& geometry, int rowTop);
  void PaintTimeLine(UIF::DC& dc, const RowGeometry& geometry, const UString& label, int top,
                     UIF::HotTimecodeControl* control);

  // Previews.
  TickTime GetLastFrameTime(const TickTime& end) const;
  void RequestPreview(const TickTime& time, const CaptionsSource& ofSource);
  PreviewEntry& FindPreviewEntry(const InterfaceRef<BE::IVideoSegments>& video, const TickTime& time,
                                 const InterfaceRef<MF::IVideoFrame>& frame);
  void PaintThumbnail(UIF::DC& dc, const InterfaceRef<BE::IVideoSegments>& video, const TickTime& time,
                      const RectT<int>& sourceRect, const RectT<int>& targetRect);

  CaptionsView* view;
  bool created = false;
  CaptionsSource source;
  boost::shared_ptr<CaptionsItemList> list;
  boost::shared_ptr<HSL::CaptioningStreamUpdater> updater;
  InterfaceRef<ML::IRenderFrame> renderer;
  ImmutableString rendererStation;
  Previews previewCache;
  std::map<std::uint32_t, InterfaceRef<BE::IVideoSegments>> pendingRenders;
  std::uint32_t scrollOffset = 0; // pixels, always whole rows
  std::int32_t firstVisibleRow = -1;
  std::int32_t lastVisibleRow = -2;
  bool resetScrollPending = true;
  std::uint32_t pollTimer;
  std::uint32_t deferTimer;
  bool deferActive = false;
  bool reloadPending = false;
  bool sourcePending = false;
  CaptionsSource pendingSource;
  std::unique_ptr<TimeDisplayListener> sourceTimeDisplayListener;
  std::unique_ptr<TimeDisplayListener> sequenceTimeDisplayListener;
  UString filterText;
  bool keepTextFocus = false;
  std::map<const void*, TickTime> lastTimeByStream;
};

} // namespace Captivo
