#include "zebui/Popup.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QMouseEvent>
#include <QStyleOptionComboBox>
#include <QTextDocument>
#include <QWheelEvent>

#include "zebcore/Clock.h"
#include "zebcore/Trace.h"
#include "zebui/ControlWidget.h"
#include "zebui/PopupList.h"

namespace zebui::controls {

namespace {

constexpr float kAroundText = 30.0F; // frame, padding and arrow
constexpr float kMinimumWidth = 44.0F;
constexpr float kEmptyWidth = 88.0F; // so that it still looks like a list
constexpr char16_t kNothing = u'\u2013';
constexpr float kHeight = 20.0F;
constexpr int kPage = 10;
constexpr int kEighthsPerNotch = 120;
constexpr std::int64_t kTypeAheadMilliseconds = 1000;

class PopupWidget : public NodeWidget<QWidget>, public Described {
 public:
  struct Owner {
    std::function<QString()> text;
    std::function<bool()> isEmpty; // no items and no text
    std::function<void()> open;
    std::function<void()> close;
    std::function<void(int steps)> stepped;
  };
  PopupWidget(UI_Popup* node, Owner owner, QWidget* parent) : NodeWidget(node, parent), mOwner(std::move(owner)) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
  }
  void Orphan() override {
    NodeWidget::Orphan();
    mOwner = {};
  }
  QString Text() const { return mOwner.text ? mOwner.text() : QString(); }
  bool IsEmpty() const { return mOwner.isEmpty && mOwner.isEmpty(); }
  void Press() const {
    if (mOwner.open)
      mOwner.open();
  }
  void ShowOpen(bool open) {
    mOpen = open;
    update();
  }
  bool IsOpen() const { return mOpen; }
  bool IsCut() const { return fontMetrics().horizontalAdvance(Text()) > TextRect().width(); }

  QAccessibleInterface* MakeAccessible() override;

 protected:
  bool event(QEvent* event) override {
    // The whole text, where only a part of it is to be seen.
    if (event->type() == QEvent::ToolTip && IsCut())
      ShowWholeText();
    else if (event->type() == QEvent::ToolTip)
      RestoreTip();
    return NodeWidget::event(event);
  }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QStyleOptionComboBox option = Option();
    style()->drawComplexControl(QStyle::CC_ComboBox, &option, &painter, this);
    const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(palette().color(group, QPalette::ButtonText));
    const QRect text = TextRect();
    // A dash where there is nothing to choose from.
    const QString shown = IsEmpty() ? QString(QChar(kNothing)) : Text();
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(shown, Qt::ElideRight, text.width()));
    if (toolkit::GetFocusWidget() == this)
      PaintFocusRing(painter, rect(), palette());
  }

  void mousePressEvent(QMouseEvent* event) override {
    event->setAccepted(event->button() == Qt::LeftButton);
    if (!event->isAccepted())
      return;
    if (focusPolicy() != Qt::NoFocus)
      toolkit::MoveFocus(this, ui::kFocusChange_Pointer);
    Press();
  }

  void wheelEvent(QWheelEvent* event) override {
    // Only with the focus: a wheel that passes over it scrolls what it lies in.
    const bool ours = toolkit::GetFocusWidget() == this;
    event->setAccepted(ours);
    if (!ours)
      return;
    mWheelRest += event->angleDelta().y();
    const int notches = mWheelRest / kEighthsPerNotch;
    mWheelRest -= notches * kEighthsPerNotch;
    const auto stepped = mOwner.stepped;
    if (notches != 0 && stepped)
      stepped(-notches);
  }

  void changeEvent(QEvent* event) override {
    QWidget::changeEvent(event);
    const auto close = mOwner.close;
    if (event->type() == QEvent::EnabledChange && !isEnabled() && close)
      close();
  }
  void hideEvent(QHideEvent* event) override {
    QWidget::hideEvent(event);
    const auto close = mOwner.close;
    if (close)
      close();
  }
  void focusInEvent(QFocusEvent* event) override {
    QWidget::focusInEvent(event);
    update();
  }
  void focusOutEvent(QFocusEvent* event) override {
    QWidget::focusOutEvent(event);
    update();
  }

 private:
  QStyleOptionComboBox Option() const {
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = false;
    option.frame = true;
    option.subControls = QStyle::SC_All;
    // The ring is this widget's own.
    option.state &= ~QStyle::State_HasFocus;
    if (mOpen)
      option.state |= QStyle::State_On;
    return option;
  }
  QRect TextRect() const {
    const QStyleOptionComboBox option = Option();
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    return field.adjusted(2, 0, 0, 0);
  }
  void ShowWholeText() {
    const QString tip = Node() ? toolkit::ToQt(Node()->UI_GetToolTip()) : QString();
    const QString whole = tip.isEmpty() ? Text() : Text() + QLatin1Char('\n') + tip;
    setToolTip(Qt::mightBeRichText(whole) ? whole.toHtmlEscaped() : whole);
  }
  void RestoreTip() {
    const QString tip = Node() ? toolkit::ToQt(Node()->UI_GetToolTip()) : QString();
    setToolTip(Qt::mightBeRichText(tip) ? tip.toHtmlEscaped() : tip);
  }

  Owner mOwner;
  bool mOpen = false;
  int mWheelRest = 0;
};

class AccessiblePopup : public QAccessibleWidget {
 public:
  explicit AccessiblePopup(PopupWidget* popup) : QAccessibleWidget(popup, QAccessible::ComboBox) {}

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? Popup()->Text() : QAccessibleWidget::text(kind);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.hasPopup = true;
    state.expandable = true;
    state.expanded = Popup()->IsOpen();
    state.collapsed = !state.expanded;
    return state;
  }
  QStringList actionNames() const override { return QStringList{showMenuAction()} + QAccessibleWidget::actionNames(); }
  void doAction(const QString& name) override {
    if (name == showMenuAction() || name == pressAction())
      Popup()->Press();
    else
      QAccessibleWidget::doAction(name);
  }

 private:
  PopupWidget* Popup() const { return static_cast<PopupWidget*>(widget()); }
};

QAccessibleInterface* PopupWidget::MakeAccessible() {
  return new AccessiblePopup(this);
}

} // namespace

struct UI_Popup::List {
  UI_Popup& owner;
  std::vector<UString> items;
  std::int64_t value = kNoItem;
  UString shown;
  bool marksValue = false;
  QPointer<PopupWidget> widget;
  QPointer<PopupList> open;

  // What was typed to find an item, and when.
  UString typed;
  std::int64_t typedAt = 0;

  // The widths of the items in the font they were measured in; -1 is not measured yet.
  std::vector<float> widths;
  QString measuredIn;

  bool IsItem(std::int64_t index) const { return index >= 0 && index < static_cast<std::int64_t>(items.size()); }

  void Show(std::int64_t index) {
    value = IsItem(index) ? index : kNoItem;
    shown = value == kNoItem ? UString() : items[static_cast<std::size_t>(value)];
    Refresh();
  }

  void Refresh() {
    if (!widget)
      return;
    widget->update();
    QAccessibleValueChangeEvent event(widget, widget->Text());
    if (QAccessible::isActive())
      QAccessible::updateAccessibility(&event);
  }

  // What is on show in an open list is the list as it was.
  void Close() {
    if (open)
      open->hide();
  }

  float WidestItem() {
    const QString font = toolkit::HasApplication() ? (widget ? widget->font() : QApplication::font()).key() : QString();
    if (font != measuredIn)
      widths.clear();
    measuredIn = font;
    const std::size_t known = widths.size();
    for (std::size_t i = known; i < items.size(); ++i)
      widths.push_back(TextWidth(toolkit::ToQt(items[i]), widget));
    const auto widest = std::ranges::max_element(widths);
    return widest == widths.end() ? 0.0F : *widest;
  }

  void Open() {
    if (!widget || items.empty() || (open && open->isVisible()))
      return;
    typed.clear();
    const PopupList::Content content{items, value, marksValue, static_cast<int>(WidestItem())};
    PopupList::Owner toOwner;
    toOwner.chosen = [this](std::int64_t index) { owner.Choose(index); };
    toOwner.closed = [popup = widget] {
      if (popup)
        popup->ShowOpen(false);
    };
    open = new PopupList(content, widget, std::move(toOwner));
    widget->ShowOpen(true);
    open->Open();
  }

  void Step(std::int64_t steps) {
    if (items.empty())
      return;
    const auto last = static_cast<std::int64_t>(items.size()) - 1;
    // From a text that no item bears: down to the first, up to the last.
    const std::int64_t from = value != kNoItem ? value : steps > 0 ? -1 : last + 1;
    const std::int64_t to = std::clamp<std::int64_t>(from + steps, 0, last);
    if (to != value)
      owner.Choose(to);
  }

  bool IsTypingAhead() const {
    return !typed.empty() && zebcore::Clock::Instance().Now() - typedAt < kTypeAheadMilliseconds;
  }

  // The next item that begins with what was typed; one letter again and again goes through the items that begin with
  // it.
  void TypeAhead(char16_t character) {
    if (!IsTypingAhead())
      typed.clear();
    typedAt = zebcore::Clock::Instance().Now();
    typed += character;
    const bool oneLetter = typed.find_first_not_of(typed.front()) == UString::npos;
    const QString wanted = toolkit::ToQt(oneLetter ? typed.substr(0, 1) : typed);
    const auto count = static_cast<std::int64_t>(items.size());
    const std::int64_t first = std::max<std::int64_t>(0, value + (oneLetter ? 1 : 0));
    for (std::int64_t i = 0; i < count; ++i) {
      const std::int64_t index = (first + i) % count;
      if (!toolkit::ToQt(items[static_cast<std::size_t>(index)]).startsWith(wanted, Qt::CaseInsensitive))
        continue;
      if (index != value)
        owner.Choose(index);
      return;
    }
  }

  QWidget* MakeWidget(QWidget* parent) {
    PopupWidget::Owner toOwner;
    toOwner.text = [this] { return toolkit::ToQt(shown); };
    toOwner.isEmpty = [this] { return items.empty() && shown.empty(); };
    toOwner.open = [this] { Open(); };
    toOwner.close = [this] { Close(); };
    toOwner.stepped = [this](int steps) { Step(steps); };
    return widget = new PopupWidget(&owner, std::move(toOwner), parent);
  }

  void WidgetGoes() {
    Close();
    if (widget)
      widget->Orphan();
    widget = nullptr;
  }
};

UI_Popup::UI_Popup(int, bool)
    : mList(std::make_unique<List>(List{*this, {}, kNoItem, {}, false, {}, {}, {}, 0, {}, {}})) {
  Impl().makeWidget = [this](QWidget* parent) { return mList->MakeWidget(parent); };
  Impl().widgetGoes = [this] { mList->WidgetGoes(); };
  Impl().recommend = [this] {
    const float widest = std::max(mList->WidestItem(), TextWidth(toolkit::ToQt(mList->shown), mList->widget));
    const float least = mList->items.empty() ? kEmptyWidth : kMinimumWidth;
    return PointT<float>{std::max(least, widest + kAroundText), kHeight};
  };
}

UI_Popup::~UI_Popup() {
  mList->WidgetGoes();
  Impl().widgetGoes = nullptr;
  Impl().makeWidget = nullptr;
  Impl().recommend = nullptr;
}

void UI_Popup::SetItemCheckStyle(bool check) {
  mList->marksValue = check;
}

std::int64_t UI_Popup::AddItem(const UString& text) {
  toolkit::TraceNode("UI_Popup::AddItem", *this, "text", zebcore::ToUTF8(text));
  mList->Close();
  mList->items.push_back(text);
  return static_cast<std::int64_t>(mList->items.size()) - 1;
}

void UI_Popup::RemoveItem(std::int64_t index) {
  toolkit::TraceNode("UI_Popup::RemoveItem", *this, "index", index);
  if (!mList->IsItem(index))
    return;
  mList->Close();
  mList->items.erase(mList->items.begin() + index);
  mList->widths.clear();
  if (mList->value == index)
    mList->Show(kNoItem);
  else if (mList->value > index)
    --mList->value;
}

void UI_Popup::DeleteAllItems() {
  toolkit::TraceNode("UI_Popup::DeleteAllItems", *this, nlohmann::json::object());
  mList->Close();
  mList->items.clear();
  mList->widths.clear();
  mList->Show(kNoItem);
}

std::int64_t UI_Popup::Size() const {
  return static_cast<std::int64_t>(mList->items.size());
}

std::int64_t UI_Popup::GetItems() const {
  return Size();
}

UString UI_Popup::GetItemString(std::int64_t index) const {
  return mList->IsItem(index) ? mList->items[static_cast<std::size_t>(index)] : UString();
}

void UI_Popup::SetValue(std::int64_t index) {
  toolkit::TraceNode("UI_Popup::SetValue", *this, "index", index);
  mList->Show(index);
}

std::int64_t UI_Popup::GetValue() const {
  return mList->value;
}

void UI_Popup::SetValueString(const UString& text, bool select, bool redraw) {
  toolkit::TraceNode("UI_Popup::SetValueString", *this, "text", zebcore::ToUTF8(text));
  if (select) {
    const auto found = std::ranges::find(mList->items, text);
    mList->value = found == mList->items.end() ? kNoItem : found - mList->items.begin();
  } else if (GetItemString(mList->value) != text) {
    mList->value = kNoItem;
  }
  mList->shown = text;
  if (redraw)
    mList->Refresh();
}

UString UI_Popup::GetValueString() const {
  return mList->shown;
}

void UI_Popup::Choose(std::int64_t index) {
  const bool canChoose = mList->IsItem(index) && UI_IsEnabled() && !IsDisabled();
  if (!canChoose)
    return;
  const toolkit::EventScope scope;
  mList->Show(index);
  Changed();
}

bool UI_Popup::UI_DoKeyboardEvent(UI_Node*, const ui::KeyboardEvent& event) {
  if (event.GetType() != ui::kKeyboardEvent_Shortcut && event.GetType() != ui::kKeyboardEvent_KeyDown)
    return false;
  const bool asks = event.GetType() == ui::kKeyboardEvent_Shortcut;
  const QKeyEvent key = ToQtKeyEvent(event);
  const Qt::KeyboardModifiers command = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  const bool withAlt = command == Qt::AltModifier;
  if (command && !withAlt)
    return false;
  const toolkit::KeepAlive alive(*this);
  const toolkit::WidgetScope scope;
  const auto step = [&](std::int64_t steps) {
    if (!asks)
      mList->Step(steps);
    return true;
  };
  const auto open = [&] {
    if (!asks)
      mList->Open();
    return true;
  };
  switch (key.key()) {
  case Qt::Key_Up:
    return withAlt ? open() : step(-1);
  case Qt::Key_Down:
    return withAlt ? open() : step(1);
  case Qt::Key_F4:
    return open();
  default:
    break;
  }
  if (withAlt)
    return false;
  switch (key.key()) {
  case Qt::Key_PageUp:
    return step(-kPage);
  case Qt::Key_PageDown:
    return step(kPage);
  case Qt::Key_Home:
    return step(-Size() - 1);
  case Qt::Key_End:
    return step(Size() + 1);
  case Qt::Key_Return:
  case Qt::Key_Enter:
    return open();
  default:
    break;
  }
  if (key.key() == Qt::Key_Space && !mList->IsTypingAhead())
    return open();
  const bool types = !key.text().isEmpty() && key.text().at(0).isPrint();
  if (types && !asks)
    mList->TypeAhead(key.text().at(0).unicode());
  return types;
}

} // namespace zebui::controls
