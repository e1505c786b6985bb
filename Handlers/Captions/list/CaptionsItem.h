#pragma once

#include <array>
#include <cstdint>

#include <boost/enable_shared_from_this.hpp>

#include "Captions/shell/HostTypes.h"
#include "UIF/HotTimecodeControl.h"
#include "zebcore/Messaging.h"

namespace zebui::ui {
struct UI_InteractiveControlChangedMessage;
}

namespace Captivo {

class CaptionsPane;
class CaptionsTextEdit;

// One row of the list: a caption, its times and text as last read and, only while the row is in view, two timecode
// controls and a text control. It turns what a person does in them into calls on the pane, and never touches the
// stream.
//
// The text is kept with single line feeds, and ranges count its units (see LineEnds.h).
class CaptionsItem : public zebcore::messaging::Listener, public boost::enable_shared_from_this<CaptionsItem> {
 public:
  CaptionsItem(CaptionsPane* pane, const boost::intrusive_ptr<Caption>& caption);
  ~CaptionsItem() override;

  // Each does nothing when there is nothing to do.
  void CreateControls();
  void DestroyControls();
  bool HasControls() const { return mControlsCreated; }

  // Re-reads the caption, and writes to the controls what has become different: an unchanged text keeps its caret.
  void SyncFromCaption();
  // Both end the wait for the answer to a time edit.
  void SetTimes(const TickTime& begin, const TickTime& end);
  void ResetTimeControls();
  void UpdateTimeDisplay();
  // Sends the pane a text that differs from the stored one. flag goes on to the updater as it is.
  void CommitText(bool flag);

  // (0, 0) without a text control.
  void GetTextSelection(TextRange& range) const;
  void SetTextSelection(const TextRange& range);
  void SetStoredText(const UString& text) { mText = text; }
  // In the text, or in an inline editor of one of the timecodes.
  bool HasFocus() const;

  const TickTime& GetBeginTime() const { return mBeginTime; }
  const TickTime& GetEndTime() const { return mEndTime; }
  const UString& GetText() const { return mText; }
  const boost::intrusive_ptr<Caption>& GetCaption() const { return mCaption; }
  // Null while the row has no controls.
  const boost::intrusive_ptr<CaptionsTextEdit>& GetTextEdit() const { return mTextEdit; }
  UIF::HotTimecodeControl& GetInControl() { return mInControl; }
  UIF::HotTimecodeControl& GetOutControl() { return mOutControl; }

  void HandleMessage(const zebcore::messaging::Message& message) override;

 private:
  friend class CaptionsInspector;

  enum class FontProbe { NotProbed, Available, NotAvailable };

  void CreateTimecodeControls();
  void SetUpTimecodeControl(UIF::HotTimecodeControl& control, const TickTime& zeroPoint, const TickTime& value);
  void DestroyTimecodeControls();
  void CreateTextControl();
  void ApplyCaptionFont();
  void ReadCaption();
  void OnTimeChanged(const TickTime& value, std::uint32_t controlID);
  void OnTextChangedInteractively(const zebui::ui::UI_InteractiveControlChangedMessage& message);

  static FontProbe sFontProbe; // once in a process

  CaptionsPane* mPane;
  TickTime mBeginTime;
  TickTime mEndTime;
  bool mTimeEditPending = false;
  TickTime mOriginalBeginTime;
  std::array<std::uint8_t, 3> mColor{};
  UIF::HotTimecodeControl mInControl;
  UIF::HotTimecodeControl mOutControl;
  boost::intrusive_ptr<CaptionsTextEdit> mTextEdit;
  bool mControlsCreated = false;
  boost::intrusive_ptr<Caption> mCaption;
  UString mText;
};

} // namespace Captivo
