#include "UIF/HotTimecodeControl.h"

#include <set>

#include "UIF/HotTimecodeWidget.h"
#include "UIF/ViewFocus.h"
#include "UIF/ViewWidget.h"
#include "zebcore/Localizer.h"
#include "zebcore/Trace.h"

namespace UIF {

namespace toolkit = zebui::toolkit;
using zebcore::utility::ImmutableString;
using zebmediatypes::FormatTime;
using zebmediatypes::ParseTime;

namespace {

constexpr int kPixelsPerFrame = 4;
constexpr int kTextMargin = 4;

unsigned sStations = 0;

std::set<const QWidget*>& OpenEditors() {
  static std::set<const QWidget*> editors;
  return editors;
}

ImmutableString MakeStation(const char* kind, unsigned number) {
  return ImmutableString((std::string(kind) + std::to_string(number)).c_str());
}

} // namespace

bool InlineEditText::AnyFocused() {
  return OpenEditors().count(toolkit::GetFocusWidget()) > 0;
}

struct HotTimecodeControl::Impl {
  unsigned id = 0;
  bool readOnly = false;
  bool takesFocus = false;
  bool shown = false;
  RectT<int> bounds;
  TickTime value;
  TickTime zero;
  TickTime minimum = zebmediatypes::kTime_Min;
  TickTime maximum = zebmediatypes::kTime_Max;
  TimeDisplay display;
  int displayOverride = 0;
  FrameRate rate;
  ImmutableString station;
  ImmutableString editStation;
  QPointer<HotTimecodeWidget> widget;

  InlineEditText editText;
  QPointer<InlineEditor> editor;
  UString openedWith;
  std::optional<TickTime> scrubbedFrom;
  std::shared_ptr<int> alive = std::make_shared<int>();

  Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;
  ~Impl() {
    DropEditor();
    if (!widget)
      return;
    widget->Orphan();
    toolkit::Dispose(widget);
  }

  // --- What it shows

  TimeDisplay Display() const { return displayOverride != 0 ? TimeDisplay(displayOverride) : display; }
  UString TextOf(TickTime time) const { return FormatTime(time + zero, Display(), rate); }
  void Refresh() {
    if (!widget)
      return;
    widget->update();
    if (!QAccessible::isActive())
      return;
    QAccessibleValueChangeEvent event(widget, widget->GetText());
    QAccessible::updateAccessibility(&event);
  }

  // --- Arithmetic

  TickTime Clamped(TickTime time) const { return std::max(minimum, std::min(maximum, time)); }

  // A frame of what is shown: a display that counts at a rate of its own steps at that.
  TickTime Stepped(TickTime from, int steps) const {
    const FrameRate counted = zebmediatypes::GetDisplayRate(Display(), rate);
    const std::int64_t frame = counted.IsValid() ? counted.GetTicksPerFrame() : zebmediatypes::kTicksPerSecond;
    std::int64_t away = 0;
    std::int64_t ticks = 0;
    const bool overflows = __builtin_mul_overflow(frame, std::int64_t{steps}, &away) ||
                           __builtin_add_overflow(from.GetTicks(), away, &ticks);
    return Clamped(overflows ? (steps > 0 ? maximum : minimum) : TickTime(ticks));
  }

  // A plus in front goes on from the value: "+10" is ten frames later.
  std::optional<TickTime> Parsed(const UString& text) const {
    const bool goesOn = text.size() > 1 && text.front() == u'+';
    const auto time = ParseTime(goesOn ? text.substr(1) : text, Display(), rate);
    if (!time)
      return std::nullopt;
    return Clamped(goesOn ? value + *time : *time - zero);
  }

  // --- Messages; each is the last thing that its caller does, since a listener may take the control away.

  void SayChanging(TickTime time) const {
    HotTimecodeValueChangingMessage message;
    message.time = time;
    message.id = id;
    Broadcast(station, message);
  }
  void SayChanged(TickTime time) const {
    HotTimecodeValueChangedMessage message;
    message.time = time;
    message.id = id;
    Broadcast(station, message);
  }
  void SayEditing() const {
    InlineEditTextActiveMessage message;
    message.id = id;
    Broadcast(editStation, message);
  }
  template <class Message> static void Broadcast(const ImmutableString& where, const Message& message) {
    // A listener may take the control away, and with it what where is part of.
    const ImmutableString station = where; // NOLINT(performance-unnecessary-copy-initialization)
    const toolkit::WidgetScope scope;
    zebcore::messaging::BroadcastMessage(station, message);
  }

  // --- A person's hand

  void ChangeByHand(TickTime wanted) {
    const TickTime time = Clamped(wanted);
    if (time == value)
      return;
    value = time;
    Refresh();
    SayChanged(time);
  }

  void DragTo(TickTime wanted) {
    if (!scrubbedFrom)
      scrubbedFrom = value;
    value = Clamped(wanted);
    Refresh();
    SayChanging(value);
  }

  void EndDrag() {
    if (!scrubbedFrom)
      return;
    const TickTime from = *std::exchange(scrubbedFrom, std::nullopt);
    if (value != from)
      SayChanged(value);
  }

  void CancelDrag() {
    if (!scrubbedFrom)
      return;
    value = *std::exchange(scrubbedFrom, std::nullopt);
    Refresh();
    SayChanging(value);
  }

  // --- The inline editor

  // typed: what a person began with instead of the text that is there.
  void OpenEditor(const QString& typed) {
    if (readOnly || editor || !widget)
      return;
    FollowViewFocus();
    openedWith = TextOf(value);
    InlineEditor::Owner toOwner;
    toOwner.entered = [this] { Enter(toolkit::FromQt(editor->text())); };
    toOwner.cancelled = [this] { CloseEditor(); };
    toOwner.tabbed = [this](bool backwards) { TabOn(backwards); };
    toOwner.left = [this] { Leave(); };
    toOwner.stepped = [this](int steps) { StepText(steps); };
    toOwner.margin = kTextMargin;
    editor = new InlineEditor(toOwner, toolkit::ToQt(openedWith), typed, widget);
    editor->setGeometry(widget->rect());
    editor->setAccessibleName(widget->accessibleName());
    editor->show();
    OpenEditors().insert(editor);
    toolkit::MoveFocus(editor, zebui::ui::kFocusChange_Pointer);
    SayEditing();
  }

  // Without a word.
  void DropEditor() {
    InlineEditor* const dropped = editor;
    editor = nullptr;
    if (!dropped)
      return;
    dropped->Orphan();
    toolkit::TakeFocusAwayFrom(dropped);
    OpenEditors().erase(dropped);
    toolkit::Dispose(dropped);
  }

  void CloseEditor() {
    DropEditor();
    Refresh();
  }

  bool RunKey(const HotKey& key) {
    switch (key.does) {
    case HotKey::Does::Step:
      ChangeByHand(Stepped(value, key.steps));
      return true;
    case HotKey::Does::Open:
    case HotKey::Does::Type:
      OpenEditor(key.typed);
      return true;
    default:
      return false;
    }
  }

  bool Enter(const UString& text) {
    // The text that was there stands for the exact value, which may lie inside a frame.
    const std::optional<TickTime> time = text == openedWith ? value : Parsed(text);
    if (!time) {
      editor->Shake();
      return false;
    }
    CloseEditor();
    ChangeByHand(*time);
    return true;
  }

  // The focus went elsewhere: a time is taken, what is none is given up.
  void Leave() {
    if (!editor)
      return;
    const UString text = toolkit::FromQt(editor->text());
    const std::optional<TickTime> time = text == openedWith ? value : Parsed(text);
    CloseEditor();
    if (time)
      ChangeByHand(*time);
  }

  void TabOn(bool backwards) {
    const QPointer<QWidget> next = toolkit::NextTabStop(widget, backwards);
    if (!Enter(toolkit::FromQt(editor->text())))
      return;
    if (next)
      toolkit::MoveFocus(next, backwards ? zebui::ui::kFocusChange_GoBack : zebui::ui::kFocusChange_Advance);
  }

  void StepText(int steps) {
    const auto time = Parsed(toolkit::FromQt(editor->text()));
    if (!time) {
      editor->Shake();
      return;
    }
    editor->setText(toolkit::ToQt(TextOf(Stepped(*time, steps))));
    editor->selectAll();
  }
};

HotTimecodeControl::HotTimecodeControl(Commander* super) : mSuper(super) {}

HotTimecodeControl::~HotTimecodeControl() = default;

void HotTimecodeControl::Create(ViewBase* parent, const RectT<int>& bounds, const TimecodeControlInfo& info,
                                unsigned id, bool readOnly, bool, bool takesFocus, TimecodeOptions) {
  if (mImpl || !parent || !WidgetOf(parent))
    return;
  mImpl = std::make_unique<Impl>();
  Impl* const impl = mImpl.get();
  impl->id = id;
  impl->readOnly = readOnly;
  impl->takesFocus = takesFocus;
  impl->bounds = bounds;
  impl->display = info.display;
  impl->rate = info.videoRate;
  const unsigned number = ++sStations;
  impl->station = MakeStation("timecode:", number);
  impl->editStation = MakeStation("timecodeEdit:", number);

  HotTimecodeWidget::Owner toOwner;
  toOwner.text = [impl] { return toolkit::ToQt(impl->TextOf(impl->value)); };
  toOwner.clicked = [impl] { impl->OpenEditor({}); };
  toOwner.key = [impl](const HotKey& key) { return impl->RunKey(key); };
  toOwner.dragged = [impl](int steps) { impl->DragTo(impl->Stepped(impl->scrubbedFrom.value_or(impl->value), steps)); };
  toOwner.dragEnded = [impl] { impl->EndDrag(); };
  toOwner.dragCancelled = [impl] { impl->CancelDrag(); };
  toOwner.stepped = [impl](int steps) { impl->ChangeByHand(impl->Stepped(impl->value, steps)); };
  toOwner.pixelsPerStep = kPixelsPerFrame;
  toOwner.margin = kTextMargin;
  impl->widget = new HotTimecodeWidget(std::move(toOwner), readOnly, WidgetOf(parent));
  impl->widget->setGeometry(ToQt(bounds));
  impl->widget->setFocusPolicy(takesFocus ? Qt::StrongFocus : Qt::NoFocus);
  impl->widget->setAccessibleName(
      toolkit::ToQt(zebcore::config::Localizer::Get().Localize("$$$/Vidra/UIF/Timecode=Timecode")));
  impl->widget->hide();
}

void HotTimecodeControl::Destroy() {
  const toolkit::WidgetScope scope;
  mImpl.reset();
}

bool HotTimecodeControl::IsCreated() const {
  return mImpl != nullptr;
}

ImmutableString HotTimecodeControl::GetStationID() const {
  return mImpl ? mImpl->station : ImmutableString();
}

ImmutableString HotTimecodeControl::GetTimecodeEditTextStationID() const {
  return mImpl ? mImpl->editStation : ImmutableString();
}

void HotTimecodeControl::SetWantsKeyboardFocusFromAdvance(bool wants) {
  if (mImpl && mImpl->widget && mImpl->takesFocus)
    mImpl->widget->setFocusPolicy(wants ? Qt::StrongFocus : Qt::ClickFocus);
}

InlineEditText* HotTimecodeControl::GetInlineEditText() const {
  return mImpl && mImpl->editor ? &mImpl->editText : nullptr;
}

void HotTimecodeControl::SetZeroPoint(const TickTime& zero) {
  if (!mImpl)
    return;
  mImpl->zero = zero;
  mImpl->Refresh();
}

void HotTimecodeControl::SetValue(const TickTime& value, bool notify) {
  if (!mImpl)
    return;
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("HotTimecodeControl::SetValue",
                           {{"id", mImpl->id}, {"value", value.GetTicks()}, {"notify", notify}});
  // What is under the hand stays under the hand; this is what Escape goes back to.
  if (mImpl->scrubbedFrom)
    mImpl->scrubbedFrom = value;
  else
    mImpl->value = value;
  mImpl->Refresh();
}

TickTime HotTimecodeControl::GetValue() const {
  return mImpl ? mImpl->value : TickTime();
}

void HotTimecodeControl::SetMinimum(const TickTime& minimum) {
  if (mImpl)
    mImpl->minimum = minimum;
}

void HotTimecodeControl::SetMaximum(const TickTime& maximum) {
  if (mImpl)
    mImpl->maximum = maximum;
}

void HotTimecodeControl::SetDisplayOverride(int display) {
  if (!mImpl)
    return;
  mImpl->displayOverride = display;
  mImpl->Refresh();
}

void HotTimecodeControl::SetTimeDisplay(const TimeDisplay& display, const FrameRate& rate, bool) {
  if (!mImpl)
    return;
  mImpl->display = display;
  mImpl->rate = rate;
  mImpl->Refresh();
}

void HotTimecodeControl::Show(bool show) {
  if (!mImpl)
    return;
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("HotTimecodeControl::Show", {{"id", mImpl->id}, {"show", show}});
  mImpl->shown = show;
  if (!show) {
    mImpl->DropEditor();
    toolkit::TakeFocusAwayFrom(mImpl->widget);
  }
  if (mImpl->widget)
    mImpl->widget->setVisible(show);
}

bool HotTimecodeControl::IsShown() const {
  return mImpl && mImpl->shown;
}

void HotTimecodeControl::SetBounds(const RectT<int>& bounds) {
  if (!mImpl)
    return;
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("HotTimecodeControl::SetBounds", {{"id", mImpl->id}, {"bounds", TraceRect(bounds)}});
  mImpl->bounds = bounds;
  if (!mImpl->widget)
    return;
  mImpl->widget->setGeometry(ToQt(bounds));
  if (mImpl->editor)
    mImpl->editor->resize(bounds.width, bounds.height);
}

RectT<int> HotTimecodeControl::GetBounds() const {
  return mImpl ? mImpl->bounds : RectT<int>();
}

UString HotTimecodeControl::GetText() const {
  return mImpl ? mImpl->TextOf(mImpl->value) : UString();
}

void HotTimecodeControl::OpenInlineEditor() {
  const toolkit::WidgetScope scope;
  if (mImpl)
    mImpl->OpenEditor({});
}

bool HotTimecodeControl::EnterText(const UString& text) {
  const toolkit::WidgetScope scope;
  if (!mImpl || !mImpl->editor)
    return false;
  mImpl->editor->setText(toolkit::ToQt(text));
  return mImpl->Enter(text);
}

void HotTimecodeControl::CloseInlineEditor(bool cancel) {
  const toolkit::WidgetScope scope;
  if (!mImpl || !mImpl->editor)
    return;
  if (cancel)
    mImpl->CloseEditor();
  else
    mImpl->Leave();
}

void HotTimecodeControl::Scrub(const TickTime& value, bool end) {
  const toolkit::WidgetScope scope;
  if (!mImpl || mImpl->readOnly)
    return;
  // A listener of the first message may take the control away.
  Impl* const impl = mImpl.get();
  const std::weak_ptr<int> alive = impl->alive;
  impl->DragTo(value);
  if (end && !alive.expired())
    impl->EndDrag();
}

void HotTimecodeControl::ReportValue(const TickTime& value) {
  if (mImpl)
    mImpl->SayChanged(value);
}

} // namespace UIF
