#include "Captions/list/CaptionsItem.h"

#include <algorithm>

#include <boost/bind.hpp>

#include "Captions/list/LineEnds.h"
#include "Captions/pane/CaptionsPane.h"
#include "Captions/pane/CaptionsTextEdit.h"
#include "HSL/TimecodeInfo.h"
#include "MZ/Actions.h"
#include "zebcore/SystemFonts.h"

namespace Captivo {

using zebcore::messaging::AddListener;
using zebcore::messaging::MessageCast;
using zebcore::messaging::RemoveListener;
using zebui::ui::UI_ControlChangedMessage;
using zebui::ui::UI_InteractiveControlChangedMessage;

namespace {

// The painter moves it to its place in the row.
constexpr RectT<int> kTimecodeRect{0, 0, 80, 17};
constexpr unsigned kInControlID = 0;
constexpr unsigned kOutControlID = 1;
constexpr UIF::TimecodeOptions kTimecodeOptions_HotText = 2;
constexpr std::uint8_t kMediumGray = 127;
constexpr const wchar_t* kCaptionFontFamily = L"Arial Unicode MS";
constexpr unsigned kCharSet_Default = 1;

bool IsCaptionFontInstalled() {
  void* font = zebcore::CreateFontW(0, 0, 0, 0, 0, 0, 0, 0, kCharSet_Default, 0, 0, 0, 0, kCaptionFontFamily);
  if (!font)
    return false;
  zebcore::DeleteObject(font);
  return true;
}

} // namespace

CaptionsItem::FontProbe CaptionsItem::sFontProbe = FontProbe::NotProbed;

CaptionsItem::CaptionsItem(CaptionsPane* pane, const boost::intrusive_ptr<Caption>& caption)
    : mPane(pane), mInControl(pane), mOutControl(pane), mCaption(caption) {
  ReadCaption();
}

CaptionsItem::~CaptionsItem() {
  DestroyControls();
}

void CaptionsItem::ReadCaption() {
  mBeginTime = mCaption->GetBeginTime();
  mEndTime = mCaption->GetEndTime();
  mOriginalBeginTime = mBeginTime;
  mCaption->GetCaptionText(mText, true);
  LineEnds::Normalize(mText);
}

void CaptionsItem::SyncFromCaption() {
  ReadCaption();
  if (!mControlsCreated)
    return;
  mInControl.SetValue(mBeginTime, true);
  mOutControl.SetValue(mEndTime, true);
  UString shown = mTextEdit->GetValue();
  LineEnds::Normalize(shown);
  if (shown != mText)
    mTextEdit->SetValue(mText, false);
}

void CaptionsItem::SetTimes(const TickTime& begin, const TickTime& end) {
  mBeginTime = begin;
  mEndTime = end;
  ResetTimeControls();
}

void CaptionsItem::ResetTimeControls() {
  if (mControlsCreated) {
    mInControl.SetValue(mBeginTime, true);
    mOutControl.SetValue(mEndTime, true);
  }
  mTimeEditPending = false;
}

void CaptionsItem::CreateControls() {
  if (mControlsCreated)
    return;
  mColor.fill(kMediumGray);
  CreateTimecodeControls();
  CreateTextControl();
  ApplyCaptionFont();
  mInControl.Show(true);
  mOutControl.Show(true);
  mControlsCreated = true;
}

void CaptionsItem::CreateTimecodeControls() {
  const TickTime zeroPoint = mPane->GetZeroPoint();
  const auto info =
      HSL::GetTimecodeInfo(MZ::GetProject(), zebmediatypes::kFrameRate_Zero, zebmediatypes::kFrameRate_Zero);
  mInControl.Create(mPane, kTimecodeRect, info, kInControlID, false, false, true, kTimecodeOptions_HotText);
  mOutControl.Create(mPane, kTimecodeRect, info, kOutControlID, false, false, true, kTimecodeOptions_HotText);
  SetUpTimecodeControl(mInControl, zeroPoint, mBeginTime);
  SetUpTimecodeControl(mOutControl, zeroPoint, mEndTime);
}

void CaptionsItem::SetUpTimecodeControl(UIF::HotTimecodeControl& control, const TickTime& zeroPoint,
                                        const TickTime& value) {
  control.SetZeroPoint(zeroPoint);
  control.SetValue(value, true);
  control.SetMinimum(kTime_Zero);
  control.SetMaximum(kTime_Max);
  control.SetWantsKeyboardFocusFromAdvance(false);
  AddListener(control.GetStationID(), this);
  AddListener(control.GetTimecodeEditTextStationID(), this);
}

void CaptionsItem::CreateTextControl() {
  mTextEdit.reset(new CaptionsTextEdit);
  UString text;
  mCaption->GetCaptionText(text, true);
  mTextEdit->SetValue(text, false);
  mPane->GetZEBNode()->ChildPushBack(mTextEdit);
  mTextEdit->NotifyWhenChanged([this](const UI_ControlChangedMessage&) { CommitText(false); });
  mTextEdit->NotifyWhenChangedInteractively(boost::bind(&CaptionsItem::OnTextChangedInteractively, this, _1));
  mTextEdit->SetDisabled(false);
}

void CaptionsItem::ApplyCaptionFont() {
  if (sFontProbe == FontProbe::NotProbed)
    sFontProbe = IsCaptionFontInstalled() ? FontProbe::Available : FontProbe::NotAvailable;
  if (sFontProbe != FontProbe::Available)
    return;
  UString family;
  UString style;
  float size = 0;
  mTextEdit->GetFont(family, style, size);
  mTextEdit->SetFont(kCaptionFontFamily, size, &style);
}

void CaptionsItem::DestroyControls() {
  if (!mControlsCreated)
    return;
  DestroyTimecodeControls();
  mPane->GetZEBNode()->ChildRemove(mTextEdit);
  // The toolkit may hold the control a little longer than the row lives.
  mTextEdit->NotifyWhenChanged({});
  mTextEdit->NotifyWhenChangedInteractively({});
  mTextEdit.reset();
  mControlsCreated = false;
}

void CaptionsItem::DestroyTimecodeControls() {
  RemoveListener(mInControl.GetStationID(), this);
  RemoveListener(mOutControl.GetStationID(), this);
  RemoveListener(mInControl.GetTimecodeEditTextStationID(), this);
  RemoveListener(mOutControl.GetTimecodeEditTextStationID(), this);
  mInControl.Destroy();
  mOutControl.Destroy();
}

void CaptionsItem::UpdateTimeDisplay() {
  const TimeDisplay display = mPane->GetTimeDisplay();
  if (!mControlsCreated || display == kTimeDisplay_Invalid)
    return;
  const FrameRate rate = mPane->GetFrameRate();
  for (UIF::HotTimecodeControl* control : {&mInControl, &mOutControl}) {
    control->SetDisplayOverride(0);
    control->SetTimeDisplay(display, rate, false);
  }
  TickTime alignedBegin = mBeginTime;
  alignedBegin.AlignToFrame(rate);
  if (alignedBegin != mBeginTime)
    mInControl.SetValue(alignedBegin, true);
  TickTime alignedEnd = mEndTime;
  alignedEnd.AlignToFrame(rate);
  // Deliberately the stored time: only the in control ever shows an aligned one.
  if (alignedEnd != mEndTime)
    mOutControl.SetValue(mEndTime, true);
}

void CaptionsItem::HandleMessage(const zebcore::messaging::Message& message) {
  if (MessageCast<UIF::HotTimecodeValueChangingMessage>(message))
    return;
  if (const auto* changed = MessageCast<UIF::HotTimecodeValueChangedMessage>(message))
    OnTimeChanged(changed->time, changed->id);
  else if (MessageCast<UIF::InlineEditTextActiveMessage>(message))
    mPane->SelectCaptionAtTime(mCaption->GetBeginTime());
}

// Whichever end was moved, the other one makes way, so that one frame is left.
void CaptionsItem::OnTimeChanged(const TickTime& value, std::uint32_t controlID) {
  if (mTimeEditPending)
    return;
  const TickTime oldIn = mBeginTime;
  TickTime newIn = mBeginTime;
  TickTime newOut = mEndTime;
  const TickTime frame = mPane->GetFrameRate().GetFrameDuration();
  // A control that reports its own unchanged value leaves this set: the next SetTimes or ResetTimeControls clears it.
  mTimeEditPending = true;
  if ((controlID & kOutControlID) != 0) {
    if (value == mEndTime)
      return;
    // One frame from time zero, whatever the in point.
    newOut = std::max(value, frame);
    if (mBeginTime >= newOut)
      newIn = newOut - frame;
  } else {
    if (value == mBeginTime)
      return;
    newIn = value;
    if (value >= mEndTime)
      newOut = newIn + frame;
  }
  mPane->ChangeCaptionTimes(oldIn, newIn, newOut - newIn);
}

void CaptionsItem::OnTextChangedInteractively(const UI_InteractiveControlChangedMessage& message) {
  switch (message.GetChangeMessage()) {
  case UI_InteractiveControlChangedMessage::kChange_Started:
    mPane->SelectCaptionAtTime(mCaption->GetBeginTime());
    break;
  case UI_InteractiveControlChangedMessage::kChange_Changed:
  case UI_InteractiveControlChangedMessage::kChange_Finished:
    CommitText(false);
    break;
  case UI_InteractiveControlChangedMessage::kChange_Cancelled:
    mPane->RevertTextChange(true);
    break;
  }
}

void CaptionsItem::CommitText(bool flag) {
  if (!mTextEdit)
    return;
  // Whoever hears of the change may have all rows read again, this one included.
  const boost::shared_ptr<CaptionsItem> keep = weak_from_this().lock();
  TextRange range;
  GetTextSelection(range);
  UString text = mTextEdit->GetValue();
  LineEnds::Normalize(text);
  if (text == mText)
    return;
  const UString oldText = mText;
  mPane->ApplyTextChange(mBeginTime, oldText, text, range, flag);
  mText = text;
}

void CaptionsItem::GetTextSelection(TextRange& range) const {
  range = mTextEdit ? LineEnds::ToStoredRange(mTextEdit->GetValue(), mTextEdit->GetSelection()) : kTextRange_Empty;
}

void CaptionsItem::SetTextSelection(const TextRange& range) {
  if (mTextEdit)
    mTextEdit->SetSelection(LineEnds::ToControlRange(mTextEdit->GetValue(), range));
}

bool CaptionsItem::HasFocus() const {
  if (!mControlsCreated)
    return false;
  if (mTextEdit->UI_HasKeyboardFocus(false))
    return true;
  // One question for the whole process: any inline editor counts, once one of this row's controls has its own.
  return (mInControl.GetInlineEditText() || mOutControl.GetInlineEditText()) && UIF::InlineEditText::AnyFocused();
}

} // namespace Captivo
