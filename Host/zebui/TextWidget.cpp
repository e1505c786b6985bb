#include "zebui/TextWidget.h"

#include <utility>

#include <QInputMethodEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>

#include "zebui/ControlWidget.h"

namespace zebui::controls {

namespace {

// Wide enough for the ring around what has the focus.
constexpr int kFrameWidth = 2;
constexpr Qt::KeyboardModifiers kCommandModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

bool Types(const QKeyEvent& event) {
  const QString text = event.text();
  if (text.isEmpty())
    return false;
  // Control and Alt together are how some keyboards reach further characters.
  const Qt::KeyboardModifiers command = event.modifiers() & kCommandModifiers;
  if (command != Qt::NoModifier && command != (Qt::ControlModifier | Qt::AltModifier))
    return false;
  const QChar first = text.at(0);
  return first.isPrint() || first.category() == QChar::Other_Format || first.category() == QChar::Other_PrivateUse ||
         first.isSurrogate();
}

bool IsEnter(const QKeyEvent& event) {
  return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) && !(event.modifiers() & kCommandModifiers);
}

bool Removes(const QKeyEvent& event) {
  static constexpr QKeySequence::StandardKey kRemoving[] = {QKeySequence::Cut,
                                                            QKeySequence::Delete,
                                                            QKeySequence::DeleteStartOfWord,
                                                            QKeySequence::DeleteEndOfWord,
                                                            QKeySequence::DeleteEndOfLine,
                                                            QKeySequence::DeleteCompleteLine};
  return event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete ||
         std::ranges::any_of(kRemoving, [&](QKeySequence::StandardKey key) { return event.matches(key); });
}

bool IsTab(const QKeyEvent& event) {
  return event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab;
}

} // namespace

TextWidget::TextWidget(const Owner& owner, Qt::Alignment alignment, QWidget* parent)
    : QTextEdit(parent), mOwner(owner) {
  setAcceptRichText(false);
  setUndoRedoEnabled(false);
  setTabChangesFocus(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameStyle(QFrame::Box | QFrame::Plain);
  setLineWidth(kFrameWidth);
  QTextOption option = document()->defaultTextOption();
  option.setAlignment(alignment);
  option.setWrapMode(owner.severalLines ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
  document()->setDefaultTextOption(option);
  if (!owner.severalLines) {
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(1);
  } else {
    document()->setDocumentMargin(2);
  }
  connect(document(), &QTextDocument::contentsChange, this, &TextWidget::FollowEdit);
}

void TextWidget::ShowKeptText() {
  if (!mOwner.text)
    return;
  const UString shown = mOwner.text->GetShown();
  if (toolkit::FromQt(document()->toRawText()) == shown)
    return;
  const bool outer = std::exchange(mShowing, true);
  const int scrolled = verticalScrollBar()->value();
  setPlainText(toolkit::ToQt(shown));
  verticalScrollBar()->setValue(scrolled);
  mShowing = outer;
}

void TextWidget::Select(std::size_t start, std::size_t end) {
  QTextCursor cursor = textCursor();
  cursor.setPosition(static_cast<int>(start));
  cursor.setPosition(static_cast<int>(end), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

void TextWidget::FollowEdit(int position, int removed, int added) {
  if (mShowing || !mOwner.text)
    return;
  const UString shown = toolkit::FromQt(document()->toRawText());
  const bool changed = mOwner.text->Follow(shown, static_cast<std::size_t>(position), static_cast<std::size_t>(removed),
                                           static_cast<std::size_t>(added));
  if (changed && mOwner.edited)
    mOwner.edited();
}

bool TextWidget::IsEditingKey(const QKeyEvent& event, bool severalLines) {
  static constexpr QKeySequence::StandardKey kEditing[] = {QKeySequence::Cut,
                                                           QKeySequence::Copy,
                                                           QKeySequence::Paste,
                                                           QKeySequence::SelectAll,
                                                           QKeySequence::Delete,
                                                           QKeySequence::DeleteStartOfWord,
                                                           QKeySequence::DeleteEndOfWord,
                                                           QKeySequence::DeleteEndOfLine,
                                                           QKeySequence::DeleteCompleteLine};
  if (Types(event) || (severalLines && IsEnter(event)))
    return true;
  if (std::ranges::any_of(kEditing, [&](QKeySequence::StandardKey key) { return event.matches(key); }))
    return true;
  switch (event.key()) {
  case Qt::Key_Left:
  case Qt::Key_Right:
  case Qt::Key_Up:
  case Qt::Key_Down:
  case Qt::Key_Home:
  case Qt::Key_End:
  case Qt::Key_PageUp:
  case Qt::Key_PageDown:
  case Qt::Key_Backspace:
  case Qt::Key_Delete:
    return !(event.modifiers() & (Qt::AltModifier | Qt::MetaModifier));
  default:
    return false;
  }
}

bool TextWidget::RunDefaultKey(const QKeyEvent& event) {
  const toolkit::WidgetScope scope;
  if (IsTab(event)) {
    // Of several lines the text keeps Tab to itself; with Control it is left all the same.
    if (event.modifiers() & (mOwner.severalLines ? kCommandModifiers & ~Qt::ControlModifier : kCommandModifiers))
      return false;
    const bool backwards = event.key() == Qt::Key_Backtab || (event.modifiers() & Qt::ShiftModifier);
    QWidget* const next = toolkit::NextTabStop(this, backwards);
    if (next)
      toolkit::MoveFocus(next, backwards ? ui::kFocusChange_GoBack : ui::kFocusChange_Advance);
    return next != nullptr;
  }
  if (isReadOnly())
    return false;
  if (IsEnter(event)) {
    if (mOwner.severalLines)
      InsertShown(QString(QChar::ParagraphSeparator));
    return mOwner.severalLines;
  }
  if (Types(event)) {
    InsertShown(event.text());
    return true;
  }
  // The host's undo, not the toolkit's.
  if (event.matches(QKeySequence::Undo) || event.matches(QKeySequence::Redo))
    return false;
  if (Removes(event) && !BeginEdit())
    return true;
  QKeyEvent copy(event.type(), event.key(), event.modifiers(), event.text(), event.isAutoRepeat(),
                 static_cast<quint16>(event.count()));
  QTextEdit::keyPressEvent(&copy);
  return copy.isAccepted();
}

bool TextWidget::BeginEdit() {
  const auto editing = mOwner.editing;
  if (editing)
    editing();
  return mOwner.node != nullptr;
}

void TextWidget::InsertShown(const QString& text) {
  if (!BeginEdit())
    return;
  QTextCursor cursor = textCursor();
  cursor.insertText(text);
  // The change may have taken the node away, or the caret elsewhere.
  if (mOwner.node)
    ensureCursorVisible();
}

bool TextWidget::event(QEvent* event) {
  const toolkit::EventScope scope;
  if (event->type() == QEvent::Paint && frameShape() != NoFrame) {
    PaintRim();
    return true;
  }
  // Before QWidget takes Tab for itself and before the toolkit's own idea of editing shortcuts.
  if (mOwner.node && toolkit::DispatchKeyEvent(*mOwner.node, *event))
    return true;
  return QTextEdit::event(event);
}

// The area around the text; the text is painted by the toolkit.
void TextWidget::PaintRim() {
  QPainter painter(this);
  const auto group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  painter.fillRect(rect(), palette().color(group, QPalette::Base));
  if (toolkit::GetFocusWidget() == this) {
    PaintFocusRing(painter, rect(), palette());
    return;
  }
  painter.setPen(palette().color(group, QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

// What was shown before it had its size has been scrolled so far that the caret would be seen in no room at all.
void TextWidget::resizeEvent(QResizeEvent* event) {
  const bool hadNoRoom = event->oldSize().height() < fontMetrics().height();
  QTextEdit::resizeEvent(event);
  if (!hadNoRoom)
    return;
  verticalScrollBar()->setValue(0);
  ensureCursorVisible();
}

void TextWidget::focusInEvent(QFocusEvent* event) {
  QTextEdit::focusInEvent(event);
  update();
}

void TextWidget::focusOutEvent(QFocusEvent* event) {
  QTextEdit::focusOutEvent(event);
  update();
}

bool TextWidget::viewportEvent(QEvent* event) {
  const toolkit::EventScope scope;
  return QTextEdit::viewportEvent(event);
}

void TextWidget::inputMethodEvent(QInputMethodEvent* event) {
  const toolkit::WidgetScope scope;
  const bool changes = !event->commitString().isEmpty() || event->replacementLength() > 0;
  if (changes && !BeginEdit())
    return;
  QTextEdit::inputMethodEvent(event);
}

QMimeData* TextWidget::createMimeDataFromSelection() const {
  auto* copied = new QMimeData;
  if (!mOwner.text)
    return copied;
  const QTextCursor cursor = textCursor();
  const std::size_t start = mOwner.text->FromShown(static_cast<std::size_t>(cursor.selectionStart()));
  const std::size_t end = mOwner.text->FromShown(static_cast<std::size_t>(cursor.selectionEnd()));
  copied->setText(toolkit::ToQt(std::u16string_view(mOwner.text->Get()).substr(start, end - start)));
  return copied;
}

bool TextWidget::canInsertFromMimeData(const QMimeData* source) const {
  return source && source->hasText();
}

void TextWidget::insertFromMimeData(const QMimeData* source) {
  if (!source || !source->hasText() || isReadOnly())
    return;
  const UString text = toolkit::FromQt(source->text());
  InsertShown(toolkit::ToQt(mOwner.severalLines ? LineEndText::WithCRLF(text) : LineEndText::OnOneLine(text)));
}

} // namespace zebui::controls
