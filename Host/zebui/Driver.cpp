#include "zebui/Driver.h"

#include <QApplication>
#include <QInputMethodEvent>

#include "zebui/NodeManager.h"
#include "zebui/Toolkit.h"

namespace zebui::driver {

namespace {

bool SendKey(QWidget* widget, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text) {
  QKeyEvent event(type, key, modifiers, text);
  QCoreApplication::sendEvent(widget, &event);
  return event.isAccepted();
}

// A node that is on no screen: the phases one by one.
bool PressWithoutWidget(ui::KeyboardCode code, ui::ModKey modifiers, const zebcore::UString& text) {
  auto* manager = ui::UI_NodeManager::Get();
  manager->DispatchKeyboardEvent({ui::kKeyboardEvent_Shortcut, code, modifiers});
  const char16_t character = text.empty() ? u'\0' : text.front();
  auto result = manager->DispatchKeyboardEvent({ui::kKeyboardEvent_KeyDown, code, modifiers, character});
  if (!result.filtered && !result.handled && character != 0)
    result = manager->DispatchKeyboardEvent({ui::kKeyboardEvent_Character, code, modifiers, character});
  manager->DispatchKeyboardEvent({ui::kKeyboardEvent_KeyUp, code, modifiers});
  return result.filtered || result.handled;
}

bool IsHighSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLowSurrogate(char16_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

} // namespace

bool PressKey(ui::KeyboardCode code, ui::ModKey modifiers, const zebcore::UString& text) {
  const toolkit::WidgetScope scope;
  const QPointer<QWidget> widget = toolkit::GetFocusWidget();
  if (!widget)
    return PressWithoutWidget(code, modifiers, text);
  const bool isBacktab = code == ui::kKeyboardCode_Tab && (modifiers & ui::kModKey_Shift) != 0;
  const int key = isBacktab ? static_cast<int>(Qt::Key_Backtab) : toolkit::ToQtKey(code);
  const Qt::KeyboardModifiers qtModifiers = toolkit::ToQtModifiers(modifiers);
  // The toolkit asks first whether it is a shortcut.
  const bool used = SendKey(widget, QEvent::KeyPress, key, qtModifiers, toolkit::ToQt(text));
  if (QWidget* now = toolkit::GetFocusWidget())
    SendKey(now, QEvent::KeyRelease, key, qtModifiers, toolkit::ToQt(text));
  return used;
}

bool TypeText(const zebcore::UString& text) {
  bool allUsed = true;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\r' || text[i] == u'\n') {
      if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
        ++i;
      allUsed = PressKey(ui::kKeyboardCode_Enter, ui::kModKey_None, u"\r") && allUsed;
      continue;
    }
    const bool isPair = IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]);
    const zebcore::UString key = text.substr(i, isPair ? 2 : 1);
    if (isPair)
      ++i;
    const QChar upper = QChar(key.front()).toUpper();
    const ui::KeyboardCode code = isPair ? ui::kKeyboardCode_Unknown : ui::KeyboardCode(upper.unicode());
    allUsed = PressKey(code, ui::kModKey_None, key) && allUsed;
  }
  return allUsed;
}

void ComposeText(const zebcore::UString& preedit, const zebcore::UString& commit) {
  const toolkit::WidgetScope scope;
  const QPointer<QWidget> widget = toolkit::GetFocusWidget();
  if (!widget)
    return;
  QInputMethodEvent composing(toolkit::ToQt(preedit), {});
  QCoreApplication::sendEvent(widget, &composing);
  if (!widget)
    return;
  QInputMethodEvent meant;
  meant.setCommitString(toolkit::ToQt(commit));
  QCoreApplication::sendEvent(widget, &meant);
}

} // namespace zebui::driver
