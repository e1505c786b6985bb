#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QClipboard>
#include <QFontInfo>
#include <QScrollBar>

#include "zebcore/Trace.h"
#include "zebui/Controls.h"
#include "zebui/TextWidget.h"

namespace zebui::controls {

namespace {

constexpr float kDefaultSize = 13.0F;

// As the host names them: the style says weight and slant.
bool StyleSays(const UString& style, const char* word) {
  return toolkit::ToQt(style).contains(QLatin1String(word), Qt::CaseInsensitive);
}

// Whether the index lies between the two halves of a surrogate pair.
bool PartsCharacter(const UString& text, std::size_t index) {
  const auto isHalf = [&text](std::size_t at, char16_t first) { return (text[at] & 0xFC00) == first; };
  return index > 0 && index < text.size() && isHalf(index - 1, 0xD800) && isHalf(index, 0xDC00);
}

} // namespace

struct UI_TextEdit::Text {
  UI_TextEdit& owner;
  int flags;
  int alignment;
  LineEndText kept;
  // While there is no widget, which has them else; control units.
  std::pair<std::size_t, std::size_t> selection{0, 0};
  UString family;
  UString style;
  float size = 0.0F;
  QPointer<TextWidget> widget;
  bool reporting = true;

  bool SeveralLines() const { return (flags & 1) != 0; }

  QWidget* MakeWidget(QWidget* parent) {
    const Qt::Alignment align = alignment == 1 ? Qt::AlignHCenter : alignment == 2 ? Qt::AlignRight : Qt::AlignLeft;
    const TextWidget::Owner toOwner{&owner, &kept, SeveralLines(), [this] { Edited(); }, [this] { Editing(); }};
    widget = new TextWidget(toOwner, align, parent);
    ApplyFont();
    widget->ShowKeptText();
    widget->Select(kept.ToShown(selection.first), kept.ToShown(selection.second));
    return widget;
  }

  void WidgetGoes() {
    selection = Selection();
    if (widget)
      widget->Orphan();
    widget = nullptr;
  }

  std::pair<std::size_t, std::size_t> Selection() const {
    if (!widget)
      return selection;
    const QTextCursor cursor = widget->textCursor();
    return {kept.FromShown(static_cast<std::size_t>(cursor.selectionStart())),
            kept.FromShown(static_cast<std::size_t>(cursor.selectionEnd()))};
  }

  // Brought inside the text and off the middle of a line end or of a character, which is selected whole then.
  void Select(std::size_t start, std::size_t end) {
    const bool isEmpty = start == end;
    if (start > end)
      std::swap(start, end);
    if (PartsCharacter(kept.Get(), start))
      --start;
    if (isEmpty)
      end = start;
    else if (PartsCharacter(kept.Get(), end))
      ++end;
    const std::size_t shownStart = kept.ToShown(start);
    const std::size_t shownEnd = kept.ToShown(end);
    if (widget)
      widget->Select(shownStart, shownEnd);
    else
      selection = {kept.FromShown(shownStart), kept.FromShown(shownEnd)};
  }

  void ApplyFont() {
    if (!widget)
      return;
    QFont font = QApplication::font();
    if (!family.empty())
      font.setFamily(toolkit::ToQt(family));
    if (size > 0.0F)
      font.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
    if (!style.empty()) {
      font.setBold(StyleSays(style, "bold"));
      font.setItalic(StyleSays(style, "italic") || StyleSays(style, "oblique"));
    }
    widget->setFont(font);
  }

  void Editing() {
    if (!reporting)
      return;
    const toolkit::KeepAlive alive(owner);
    owner.BeginEdit();
  }

  void Edited() {
    if (!reporting)
      return;
    const toolkit::KeepAlive alive(owner);
    owner.ReportEdit();
  }
};

UI_TextEdit::UI_TextEdit(int flags, int alignment)
    : mText(std::make_unique<Text>(Text{*this, flags, alignment, {}, {}, {}, {}, 0.0F, {}, true})) {
  Impl().makeWidget = [this](QWidget* parent) { return mText->MakeWidget(parent); };
  Impl().widgetGoes = [this] { mText->WidgetGoes(); };
}

UI_TextEdit::~UI_TextEdit() {
  mText->WidgetGoes();
  Impl().widgetGoes = nullptr;
  Impl().makeWidget = nullptr;
}

void UI_TextEdit::SetValue(const UString& text, bool notify) {
  const toolkit::KeepAlive alive(*this);
  const toolkit::WidgetScope scope;
  if (zebcore::trace::IsOn())
    toolkit::TraceNode("UI_TextEdit::SetValue", *this, {{"text", zebcore::ToUTF8(text)}, {"notify", notify}});
  // As a person: enters, changes, and leaves unless they were here before. What follows on entering may write the text.
  const bool wasUnderWay = IsInteractiveChangeUnderWay();
  if (notify)
    BeginEdit();
  if (text != mText->kept.Get()) {
    const auto selection = mText->Selection();
    mText->kept = LineEndText(text);
    if (mText->widget)
      mText->widget->ShowKeptText();
    mText->Select(selection.first, selection.second);
  }
  if (!notify)
    return;
  ReportEdit();
  if (!wasUnderWay && !UI_HasKeyboardFocus(false))
    FinishInteractiveChange();
}

void UI_TextEdit::BeginEdit() {
  StartInteractiveChange();
}

void UI_TextEdit::ReportEdit() {
  InteractivelyChanged();
  Changed();
}

UString UI_TextEdit::GetValue() const {
  return mText->kept.Get();
}

std::pair<std::size_t, std::size_t> UI_TextEdit::GetSelection() const {
  return mText->Selection();
}

void UI_TextEdit::SetSelection(const std::pair<std::size_t, std::size_t>& range) {
  mText->Select(range.first, range.second);
}

void UI_TextEdit::GetFont(UString& family, UString& style, float& size) const {
  const bool known = toolkit::HasApplication();
  family = mText->family;
  if (family.empty())
    family = known ? toolkit::FromQt(QFontInfo(QApplication::font()).family()) : UString(u"Sans");
  style = mText->style.empty() ? UString(u"Regular") : mText->style;
  size = mText->size;
  if (size <= 0.0F)
    size = known ? static_cast<float>(QFontInfo(QApplication::font()).pixelSize()) : kDefaultSize;
}

void UI_TextEdit::SetFont(const wchar_t* family, float size, const UString* style) {
  mText->family = family ? toolkit::FromQt(QString::fromWCharArray(family)) : UString();
  mText->size = size;
  mText->style = style ? *style : UString();
  if (zebcore::trace::IsOn())
    toolkit::TraceNode(
        "UI_TextEdit::SetFont", *this,
        {{"family", zebcore::ToUTF8(mText->family)}, {"size", size}, {"style", zebcore::ToUTF8(mText->style)}});
  mText->ApplyFont();
}

void UI_TextEdit::ScrollToBegin() {
  if (zebcore::trace::IsOn())
    toolkit::TraceNode("UI_TextEdit::ScrollToBegin", *this, nlohmann::json::object());
  if (!mText->widget)
    return;
  mText->widget->verticalScrollBar()->setValue(0);
  mText->widget->horizontalScrollBar()->setValue(0);
}

int UI_TextEdit::GetScrollPosition() const {
  return mText->widget ? mText->widget->verticalScrollBar()->value() : 0;
}

bool UI_TextEdit::CanDelete() const {
  const auto [start, end] = GetSelection();
  return start != end && UI_IsEnabled() && !IsDisabled();
}

bool UI_TextEdit::CanCopy() const {
  const auto [start, end] = GetSelection();
  return start != end;
}

bool UI_TextEdit::CanCut() const {
  return CanDelete();
}

bool UI_TextEdit::CanPaste() const {
  return toolkit::HasApplication() && UI_IsEnabled() && !IsDisabled() &&
         !QGuiApplication::clipboard()->text().isEmpty();
}

void UI_TextEdit::Delete() {
  if (!CanDelete() || !mText->widget)
    return;
  const toolkit::KeepAlive alive(*this);
  const toolkit::WidgetScope scope;
  if (mText->widget->BeginEdit())
    mText->widget->textCursor().removeSelectedText();
}

void UI_TextEdit::Copy() {
  if (CanCopy() && mText->widget)
    mText->widget->copy();
}

void UI_TextEdit::Cut() {
  if (!CanCut())
    return;
  Copy();
  Delete();
}

void UI_TextEdit::Paste() {
  if (!CanPaste() || !mText->widget)
    return;
  const toolkit::KeepAlive alive(*this);
  const toolkit::WidgetScope scope;
  mText->widget->paste();
}

bool UI_TextEdit::UI_DoKeyboardEvent(UI_Node*, const ui::KeyboardEvent& event) {
  TextWidget* const widget = mText->widget;
  if (!widget || event.GetType() == ui::kKeyboardEvent_KeyUp)
    return false;
  const QKeyEvent* key = toolkit::GetKeyEventInDispatch();
  const QKeyEvent synthetic(QEvent::KeyPress, toolkit::ToQtKey(event.GetCode()),
                            toolkit::ToQtModifiers(event.GetModKey()),
                            event.GetCharacter() != 0 ? QString(QChar(event.GetCharacter())) : QString());
  if (!key)
    key = &synthetic;
  if (event.GetType() == ui::kKeyboardEvent_Shortcut)
    return TextWidget::IsEditingKey(*key, mText->SeveralLines());
  const bool isEnter = event.CompareCode(ui::kKeyboardCode_Enter);
  const bool used = widget->RunDefaultKey(*key);
  // Enter is the end of the change where it ends no line.
  if (!used && isEnter && !mText->SeveralLines() && event.GetType() == ui::kKeyboardEvent_KeyDown) {
    FinishInteractiveChange();
    return true;
  }
  return used;
}

void UI_TextEdit::UI_FocusChanged(ui::FocusChangeReason reason) {
  if (!UI_HasKeyboardFocus(false))
    FinishInteractiveChange();
  // A program that brings the focus back begins nothing: the next edit does.
  else if (reason != ui::kFocusChange_Window && reason != ui::kFocusChange_Program)
    StartInteractiveChange();
}

} // namespace zebui::controls
