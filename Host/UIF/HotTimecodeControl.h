#pragma once

#include <memory>

#include "UIF/TimecodeControlInfo.h"
#include "UIF/View.h"
#include "zebcore/ImmutableString.h"
#include "zebcore/Messaging.h"
#include "zebmediatypes/TickTime.h"

namespace UIF {

using zebmediatypes::FrameRate;
using zebmediatypes::TickTime;
using zebmediatypes::TimeDisplay;
using TimecodeOptions = int;

struct HotTimecodeValueChangingMessage : zebcore::messaging::MessageOf<HotTimecodeValueChangingMessage> {
  static constexpr const char* kTypeName = "UIF::HotTimecodeValueChangingMessage";
  TickTime time;
  std::uint32_t id = 0;
};
struct HotTimecodeValueChangedMessage : zebcore::messaging::MessageOf<HotTimecodeValueChangedMessage> {
  static constexpr const char* kTypeName = "UIF::HotTimecodeValueChangedMessage";
  TickTime time;
  std::uint32_t id = 0;
};
struct InlineEditTextActiveMessage : zebcore::messaging::MessageOf<InlineEditTextActiveMessage> {
  static constexpr const char* kTypeName = "UIF::InlineEditTextActiveMessage";
  std::uint32_t id = 0;
};

// The line editor that opens inside a control while a person types a value.
class InlineEditText {
 public:
  // Of all in the process.
  static bool AnyFocused();
};

// A timecode that can be dragged (Shift: ten frames a step), clicked and typed over, and stepped with arrows and wheel.
// Values are times of the clip; what is shown is the value plus the zero point. It reports what a person did, on its
// station; a value set by the program is not reported. Escape while typing or dragging puts the old value back. A text
// that is no time shakes and stays. As a member, before Create, it is three words.
class HotTimecodeControl {
 public:
  explicit HotTimecodeControl(Commander* super);
  virtual ~HotTimecodeControl();
  HotTimecodeControl(const HotTimecodeControl&) = delete;
  HotTimecodeControl& operator=(const HotTimecodeControl&) = delete;

  // Hidden until shown. takesFocus, readOnly and underlined are the three flags; options 2 shows the value as hot text.
  void Create(ViewBase* parent, const RectT<int>& bounds, const TimecodeControlInfo& info, unsigned id, bool readOnly,
              bool boxed, bool takesFocus, TimecodeOptions options);
  void Destroy();
  bool IsCreated() const;

  // Values that change by a person's hand are broadcast here: ...Changing while dragged, ...Changed when done.
  zebcore::utility::ImmutableString GetStationID() const;
  // The inline editor opening is broadcast here.
  zebcore::utility::ImmutableString GetTimecodeEditTextStationID() const;
  // Whether Tab stops here.
  void SetWantsKeyboardFocusFromAdvance(bool wants);
  // The inline editor; null while none is open.
  InlineEditText* GetInlineEditText() const;

  virtual void SetZeroPoint(const TickTime& zero);
  // notify refreshes what is shown at once; it is not reported as a change.
  virtual void SetValue(const TickTime& value, bool notify);
  virtual TickTime GetValue() const;
  virtual void SetMinimum(const TickTime& minimum);
  virtual void SetMaximum(const TickTime& maximum);
  // 0 clears the control's own choice of display.
  virtual void SetDisplayOverride(int display);
  virtual void SetTimeDisplay(const TimeDisplay& display, const FrameRate& rate, bool byUser);
  virtual void Show(bool show);
  virtual bool IsShown() const;
  virtual void SetBounds(const RectT<int>& bounds);
  virtual RectT<int> GetBounds() const;

  // What it shows.
  UString GetText() const;
  // For whoever drives the program: what a person would do.
  void OpenInlineEditor();
  // Into the open editor; true if it was taken and the editor closed, false if it is no time and the editor stays.
  bool EnterText(const UString& text);
  void CloseInlineEditor(bool cancel);
  void Scrub(const TickTime& value, bool end);
  // Sends the changed message though nothing changed.
  void ReportValue(const TickTime& value);

 private:
  struct Impl;
  Commander* mSuper;
  std::unique_ptr<Impl> mImpl;
};

} // namespace UIF
