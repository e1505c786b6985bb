#include "zebui/HotNumber.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QApplication>
#include <QPointer>

#include "zebcore/Trace.h"
#include "zebui/HotField.h"
#include "zebui/NumberEntry.h"

namespace zebui::controls {

namespace {

constexpr int kMaxDecimals = 12;
constexpr int kPixelsPerStep = 3;
constexpr int kMargin = 3;
constexpr float kAroundText = 6.0F;
constexpr float kHeight = 20.0F;
constexpr int kEditorCharacters = 10; // that a sum can be seen in while it is typed
// Above this a double holds no decimals that could be rounded.
constexpr double kWholeAbove = 1e15;

QString NumberText(double value, int decimals) {
  if (std::isnan(value))
    return QStringLiteral("NaN");
  if (std::isinf(value))
    return value > 0 ? QStringLiteral("\u221E") : QStringLiteral("-\u221E");
  const QString text = QString::number(value, 'f', decimals);
  const bool isMinusZero =
      text.startsWith(QLatin1Char('-')) && std::ranges::none_of(text, [](QChar c) { return c >= u'1' && c <= u'9'; });
  return isMinusZero ? text.mid(1) : text;
}

nlohmann::json TraceNumber(double value) {
  if (std::isnan(value))
    return "nan";
  if (std::isinf(value))
    return value > 0 ? "inf" : "-inf";
  return value;
}

} // namespace

struct HotNumberState {
  ui::UI_InteractiveControlView& owner;
  std::function<void()> changed; // reports a change
  double value = 0.0;
  bool unknown = false;
  UString unknownText;
  int decimals = 0;
  double minimum = -std::numeric_limits<double>::infinity();
  double maximum = std::numeric_limits<double>::infinity();

  QPointer<HotFieldWidget> widget{};
  QPointer<InlineEditor> editor{};
  QString openedWith{};
  // Before a drag: what Escape goes back to.
  std::optional<double> scrubbedFrom{};

  HotNumberState(ui::UI_InteractiveControlView& control, std::function<void()> report)
      : owner(control), changed(std::move(report)) {}

  QString Text() const { return unknown ? toolkit::ToQt(unknownText) : NumberText(value, decimals); }
  std::optional<double> Known() const { return unknown ? std::nullopt : std::optional(value); }
  double Increment() const { return std::pow(10.0, -decimals); }
  bool CanChange() const { return owner.UI_IsEnabled() && !owner.IsDisabled(); }

  void Refresh() {
    if (!widget)
      return;
    widget->update();
    QAccessibleValueChangeEvent event(widget, Text());
    if (QAccessible::isActive())
      QAccessible::updateAccessibility(&event);
  }

  // --- What a person may enter

  std::optional<double> Bounded(double wanted) const {
    const bool hasRange = minimum <= maximum; // false too if a bound is no number
    if (!hasRange || std::isnan(wanted))
      return std::nullopt;
    return std::clamp(wanted, minimum, maximum);
  }

  std::optional<double> Rounded(double wanted) const {
    const double factor = std::pow(10.0, decimals);
    const bool hasDecimals = std::isfinite(wanted) && std::abs(wanted) < kWholeAbove / factor;
    return Bounded(hasDecimals ? std::round(wanted * factor) / factor : wanted);
  }

  std::optional<double> Parsed(const QString& text) const {
    const auto entered = ReadNumberEntry(toolkit::FromQt(text), Known());
    return entered ? Rounded(*entered) : std::nullopt;
  }

  void Take(double taken) {
    value = taken;
    unknown = false;
    Refresh();
  }

  void Shake() {
    if (editor)
      editor->Shake();
    else if (widget)
      widget->Shake();
  }

  // --- Steps

  // One change from start to finish.
  void ChangeTo(std::optional<double> wanted) {
    if (!CanChange())
      return;
    if (!wanted) {
      Shake();
      return;
    }
    if (!unknown && *wanted == value)
      return;
    Take(*wanted);
    const toolkit::KeepAlive alive(owner);
    changed();
    owner.FinishInteractiveChange();
  }

  std::optional<double> Stepped(std::optional<double> from, int steps) const {
    return from ? Rounded(*from + steps * Increment()) : std::nullopt;
  }

  void Step(int steps) { ChangeTo(Stepped(Known(), steps)); }

  void ToBound(double bound) {
    if (std::isfinite(bound) || std::isnan(bound))
      ChangeTo(Bounded(bound));
  }

  bool RunKey(const HotKey& key) {
    using Does = HotKey::Does;
    switch (key.does) {
    case Does::Step:
    case Does::Page:
      Step(key.steps);
      return true;
    case Does::ToMinimum:
      ToBound(minimum);
      return true;
    case Does::ToMaximum:
      ToBound(maximum);
      return true;
    case Does::Open:
    case Does::Type:
      OpenEditor(key.typed);
      return true;
    default:
      return false;
    }
  }

  // --- Drag

  void DragTo(int steps) {
    if (!CanChange())
      return;
    const auto wanted = Stepped(scrubbedFrom ? scrubbedFrom : Known(), steps);
    if (!wanted) {
      Shake();
      return;
    }
    if (!scrubbedFrom)
      scrubbedFrom = value;
    if (*wanted == value)
      return;
    Take(*wanted);
    changed();
  }

  void EndDrag() {
    if (!scrubbedFrom)
      return;
    const double from = *std::exchange(scrubbedFrom, std::nullopt);
    if (value != from)
      owner.FinishInteractiveChange();
    else
      owner.CancelInteractiveChange();
  }

  void CancelDrag() {
    if (!scrubbedFrom)
      return;
    Take(*std::exchange(scrubbedFrom, std::nullopt));
    owner.CancelInteractiveChange();
  }

  // --- The editor

  void OpenEditor(const QString& typed) {
    if (editor || !widget || !CanChange())
      return;
    openedWith = Text();
    InlineEditor::Owner toOwner;
    toOwner.node = &owner;
    toOwner.entered = [this] { Enter(editor->text()); };
    toOwner.cancelled = [this] { GiveUp(true); };
    toOwner.tabbed = [this](bool backwards) { TabOn(backwards); };
    toOwner.left = [this] { Leave(); };
    toOwner.stepped = [this](int steps) { StepText(steps); };
    toOwner.margin = kMargin;
    editor = new InlineEditor(toOwner, openedWith, typed, widget);
    editor->setAccessibleName(widget->accessibleName());
    GrowForEditor();
    editor->show();
    toolkit::MoveFocus(editor, ui::kFocusChange_Pointer);
    owner.StartInteractiveChange();
  }

  // A sum wants more room than its result: the field lies over its neighbours while it is typed.
  void GrowForEditor() {
    const int wanted = widget->fontMetrics().horizontalAdvance(QLatin1Char('0')) * kEditorCharacters;
    const QWidget* parent = widget->parentWidget();
    const int room = parent ? parent->width() - widget->x() : wanted;
    widget->raise();
    widget->resize(std::max(widget->width(), std::min(wanted, room)), widget->height());
    editor->setGeometry(widget->rect());
  }

  // Without a word. keepFocus: to the field, when the editor had it.
  void DropEditor(bool keepFocus) {
    InlineEditor* const dropped = editor;
    editor = nullptr;
    if (!dropped)
      return;
    dropped->Orphan();
    if (keepFocus && widget && toolkit::GetFocusWidget() == dropped)
      toolkit::MoveFocus(widget, ui::kFocusChange_Program);
    toolkit::TakeFocusAwayFrom(dropped);
    toolkit::Dispose(dropped);
    if (!widget)
      return;
    const auto rect = owner.UI_GetLocalRectF();
    widget->resize(static_cast<int>(std::lround(rect.width)), static_cast<int>(std::lround(rect.height)));
    widget->update();
  }

  // Text that was left as it was opened stands for the exact value, known or not.
  bool IsUntouched() const { return editor && editor->text() == openedWith; }

  void GiveUp(bool keepFocus) {
    DropEditor(keepFocus);
    owner.CancelInteractiveChange();
  }

  void TakeTyped(double typed, bool keepFocus) {
    const toolkit::KeepAlive alive(owner);
    DropEditor(keepFocus);
    const bool isSame = !unknown && typed == value;
    if (isSame) {
      owner.CancelInteractiveChange();
      return;
    }
    Take(typed);
    changed();
    owner.FinishInteractiveChange();
  }

  bool Enter(const QString& text) {
    if (IsUntouched()) {
      GiveUp(true);
      return true;
    }
    const auto typed = Parsed(text);
    if (!typed) {
      Shake();
      return false;
    }
    TakeTyped(*typed, true);
    return true;
  }

  // The focus went elsewhere: a number is taken, what is none is given up. So is all in a field that was put away,
  // since what it would change is on show no more.
  void Leave() {
    if (!editor)
      return;
    const auto typed = IsUntouched() ? std::nullopt : Parsed(editor->text());
    if (typed && CanChange() && owner.UI_IsShown())
      TakeTyped(*typed, false);
    else
      GiveUp(false);
  }

  void TabOn(bool backwards) {
    const QPointer<QWidget> next = toolkit::NextTabStop(widget, backwards);
    if (!Enter(editor->text()))
      return;
    if (next)
      toolkit::MoveFocus(next, backwards ? ui::kFocusChange_GoBack : ui::kFocusChange_Advance);
  }

  void StepText(int steps) {
    const auto from = IsUntouched() ? Known() : Parsed(editor->text());
    const auto stepped = Stepped(from, steps);
    if (!stepped) {
      Shake();
      return;
    }
    editor->setText(NumberText(*stepped, decimals));
    editor->selectAll();
  }

  // --- The widget

  QWidget* MakeWidget(QWidget* parent) {
    HotFieldWidget::Owner toOwner;
    toOwner.node = &owner;
    toOwner.text = [this] { return Text(); };
    toOwner.clicked = [this] { OpenEditor({}); };
    toOwner.key = [this](const HotKey& key) { return RunKey(key); };
    toOwner.dragged = [this](int steps) { DragTo(steps); };
    toOwner.dragEnded = [this] { EndDrag(); };
    toOwner.dragCancelled = [this] { CancelDrag(); };
    toOwner.stepped = [this](int steps) { Step(steps); };
    toOwner.number = [this] { return value; };
    toOwner.setNumber = [this](double wanted) { ChangeTo(Rounded(wanted)); };
    toOwner.bounds = [this] { return std::pair(minimum, maximum); };
    toOwner.increment = [this] { return Increment(); };
    toOwner.pixelsPerStep = kPixelsPerStep;
    toOwner.margin = kMargin;
    widget = new HotFieldWidget(std::move(toOwner), false, parent);
    widget->setFocusPolicy(Qt::StrongFocus);
    return widget;
  }

  void WidgetGoes() {
    scrubbedFrom.reset();
    DropEditor(false);
    if (widget)
      widget->Orphan();
    widget = nullptr;
  }
};

template <class Value> UI_HotEditControlBaseT<Value>::UI_HotEditControlBaseT() {
  mState = std::make_unique<HotNumberState>(*this, [this] {
    const toolkit::KeepAlive alive(*this);
    InteractivelyChanged();
    Changed();
  });
  Impl().makeWidget = [this](QWidget* parent) { return mState->MakeWidget(parent); };
  Impl().widgetGoes = [this] { mState->WidgetGoes(); };
  Impl().recommend = [this] {
    float widest = TextWidth(mState->Text(), mState->widget);
    widest = std::max(widest, TextWidth(toolkit::ToQt(mState->unknownText), mState->widget));
    for (const double bound : {mState->minimum, mState->maximum})
      widest = std::max(widest, TextWidth(NumberText(bound, mState->decimals), mState->widget));
    return zebcore::geom::PointT<float>{widest + kAroundText, kHeight};
  };
}

template <class Value> UI_HotEditControlBaseT<Value>::~UI_HotEditControlBaseT() {
  mState->WidgetGoes();
  Impl().widgetGoes = nullptr;
  Impl().makeWidget = nullptr;
  Impl().recommend = nullptr;
}

template <class Value> void UI_HotEditControlBaseT<Value>::SetUnknownStateText(const zebcore::UString& text) {
  mState->unknownText = text;
  mState->Refresh();
}

template <class Value> zebcore::UString UI_HotEditControlBaseT<Value>::GetUnknownStateText() const {
  return mState->unknownText;
}

template <class Value> void UI_HotEditControlBaseT<Value>::SetValueUnknown() {
  toolkit::TraceNode("UI_HotTextNumber::SetValueUnknown", *this, "unknown", true);
  mState->unknown = true;
  mState->Refresh();
}

template <class Value> bool UI_HotEditControlBaseT<Value>::IsValueUnknown() const {
  return mState->unknown;
}

template <class Value> zebcore::UString UI_HotEditControlBaseT<Value>::GetText() const {
  return toolkit::FromQt(mState->Text());
}

template <class Value> void UI_HotEditControlBaseT<Value>::OpenEditor() {
  const toolkit::WidgetScope scope;
  mState->OpenEditor({});
}

template <class Value> bool UI_HotEditControlBaseT<Value>::EnterText(const zebcore::UString& text) {
  const toolkit::WidgetScope scope;
  if (!mState->editor)
    return false;
  mState->editor->setText(toolkit::ToQt(text));
  return mState->Enter(toolkit::ToQt(text));
}

template <class Value>
bool UI_HotEditControlBaseT<Value>::UI_DoKeyboardEvent(ui::UI_Node*, const ui::KeyboardEvent& event) {
  const int type = event.GetType();
  if (type != ui::kKeyboardEvent_Shortcut && type != ui::kKeyboardEvent_KeyDown)
    return false;
  const toolkit::KeepAlive alive(*this);
  const toolkit::WidgetScope scope;
  const QKeyEvent key = ToQtKeyEvent(event);
  const bool asks = type == ui::kKeyboardEvent_Shortcut;
  if (mState->editor)
    return asks ? InlineEditor::WantsKey(key) : mState->editor->RunKey(key);
  if (mState->widget)
    return asks ? mState->widget->WantsKey(key) : mState->widget->RunKey(key);
  const HotKey meant = ReadHotKey(key);
  return asks ? meant.does != HotKey::Does::Nothing : mState->RunKey(meant);
}

template <class Value> void UI_HotEditControlBaseT<Value>::UI_FocusChanged(ui::FocusChangeReason reason) {
  if (mState->widget)
    mState->widget->update();
  if (reason != ui::kFocusChange_Window && !UI_HasKeyboardFocus(false))
    mState->Leave();
}

template <class Value> UI_HotTextNumberT<Value>::UI_HotTextNumberT() = default;
template <class Value> UI_HotTextNumberT<Value>::~UI_HotTextNumberT() = default;

template <class Value> void UI_HotTextNumberT<Value>::SetDecimalPlaces(int places) {
  this->mState->decimals = std::clamp(places, 0, kMaxDecimals);
  this->mState->Refresh();
}

template <class Value> int UI_HotTextNumberT<Value>::GetDecimalPlaces() const {
  return this->mState->decimals;
}

template <class Value> void UI_HotTextNumberT<Value>::SetMinValue(Value value) {
  toolkit::TraceNode("UI_HotTextNumber::SetMinValue", *this, "value", TraceNumber(value));
  this->mState->minimum = value;
}

template <class Value> Value UI_HotTextNumberT<Value>::GetMinValue() const {
  return this->mState->minimum;
}

template <class Value> void UI_HotTextNumberT<Value>::SetMaxValue(Value value) {
  toolkit::TraceNode("UI_HotTextNumber::SetMaxValue", *this, "value", TraceNumber(value));
  this->mState->maximum = value;
}

template <class Value> Value UI_HotTextNumberT<Value>::GetMaxValue() const {
  return this->mState->maximum;
}

template <class Value> void UI_HotTextNumberT<Value>::SetValue(Value value) {
  toolkit::TraceNode("UI_HotTextNumber::SetValue", *this, "value", TraceNumber(value));
  HotNumberState& state = *this->mState;
  // What is under the hand stays under the hand; this is what Escape goes back to.
  if (state.scrubbedFrom)
    state.scrubbedFrom = value;
  else
    state.Take(value);
}

template <class Value> Value UI_HotTextNumberT<Value>::GetValue() const {
  return this->mState->value;
}

template <class Value>
void UI_HotTextNumberT<Value>::Enter(Value value, ui::UI_InteractiveControlChangedMessage::ChangeMessage phases) {
  using Changes = ui::UI_InteractiveControlChangedMessage;
  HotNumberState& state = *this->mState;
  const auto bounded = state.Bounded(value);
  if (!state.CanChange() || !bounded)
    return;
  const toolkit::KeepAlive alive(*this);
  const toolkit::WidgetScope scope;
  const double oldValue = state.value;
  const bool wasUnknown = state.unknown;
  this->StartInteractiveChange();
  if (phases == Changes::kChange_Started)
    return;
  state.Take(*bounded);
  state.changed();
  if (phases == Changes::kChange_Finished)
    this->FinishInteractiveChange();
  if (phases != Changes::kChange_Cancelled)
    return;
  state.value = oldValue;
  state.unknown = wasUnknown;
  state.Refresh();
  this->CancelInteractiveChange();
}

template class UI_HotEditControlBaseT<double>;
template class UI_HotTextNumberT<double>;

} // namespace zebui::controls
