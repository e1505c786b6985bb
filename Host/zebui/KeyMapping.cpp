#include <array>
#include <utility>

#include "zebui/NodeManager.h"
#include "zebui/Toolkit.h"

namespace zebui::toolkit {

namespace {

constexpr std::array<std::pair<int, KeyboardCode>, 16> kKeys{{{Qt::Key_Return, ui::kKeyboardCode_Enter},
                                                              {Qt::Key_Enter, ui::kKeyboardCode_Enter},
                                                              {Qt::Key_Backspace, ui::kKeyboardCode_Backspace},
                                                              {Qt::Key_Tab, ui::kKeyboardCode_Tab},
                                                              {Qt::Key_Backtab, ui::kKeyboardCode_Tab},
                                                              {Qt::Key_Delete, ui::kKeyboardCode_Delete},
                                                              {Qt::Key_Insert, ui::kKeyboardCode_Insert},
                                                              {Qt::Key_Escape, ui::kKeyboardCode_Escape},
                                                              {Qt::Key_Left, ui::kKeyboardCode_Left},
                                                              {Qt::Key_Right, ui::kKeyboardCode_Right},
                                                              {Qt::Key_Up, ui::kKeyboardCode_Up},
                                                              {Qt::Key_Down, ui::kKeyboardCode_Down},
                                                              {Qt::Key_Home, ui::kKeyboardCode_Home},
                                                              {Qt::Key_End, ui::kKeyboardCode_End},
                                                              {Qt::Key_PageUp, ui::kKeyboardCode_PageUp},
                                                              {Qt::Key_PageDown, ui::kKeyboardCode_PageDown}}};
// Keys without a code of their own keep the toolkit's number, the ones above the characters moved down.
constexpr int kOtherKeys = 0x200000;
constexpr int kFirstToolkitKey = 0x01000000;

const QKeyEvent* sInDispatch = nullptr;
// Address and time of the event that the filters saw last; the toolkit passes one object on from widget to widget.
const QKeyEvent* sFilteredEvent = nullptr;
std::uint64_t sFilteredAt = 0;
int sFilteredType = 0;

} // namespace

KeyboardCode ToKeyboardCode(int key) {
  for (const auto& [qtKey, code] : kKeys) {
    if (qtKey == key)
      return code;
  }
  if (key >= kFirstToolkitKey)
    return KeyboardCode(key - kFirstToolkitKey + kOtherKeys);
  return KeyboardCode(key);
}

int ToQtKey(KeyboardCode code) {
  for (const auto& [qtKey, known] : kKeys) {
    if (known == code)
      return qtKey;
  }
  return code.GetNumber() >= kOtherKeys ? code.GetNumber() - kOtherKeys + kFirstToolkitKey : code.GetNumber();
}

ModKey ToModKey(Qt::KeyboardModifiers modifiers) {
  ModKey flags = ui::kModKey_None;
  if (modifiers & Qt::ShiftModifier)
    flags |= ui::kModKey_Shift;
  if (modifiers & Qt::ControlModifier)
    flags |= ui::kModKey_Control;
  if (modifiers & Qt::AltModifier)
    flags |= ui::kModKey_Alt;
  if (modifiers & Qt::MetaModifier)
    flags |= ui::kModKey_Meta;
  if (modifiers & Qt::KeypadModifier)
    flags |= ui::kModKey_Keypad;
  return flags;
}

Qt::KeyboardModifiers ToQtModifiers(ModKey modifiers) {
  Qt::KeyboardModifiers flags = Qt::NoModifier;
  flags.setFlag(Qt::ShiftModifier, (modifiers & ui::kModKey_Shift) != 0);
  flags.setFlag(Qt::ControlModifier, (modifiers & ui::kModKey_Control) != 0);
  flags.setFlag(Qt::AltModifier, (modifiers & ui::kModKey_Alt) != 0);
  flags.setFlag(Qt::MetaModifier, (modifiers & ui::kModKey_Meta) != 0);
  flags.setFlag(Qt::KeypadModifier, (modifiers & ui::kModKey_Keypad) != 0);
  return flags;
}

KeyboardEvent ToKeyboardEvent(const QKeyEvent& event, KeyboardEventType type) {
  const QString text = event.text();
  const bool types = type == ui::kKeyboardEvent_KeyDown || type == ui::kKeyboardEvent_Character;
  const char16_t character = types && !text.isEmpty() ? text.at(0).unicode() : u'\0';
  ModKey modifiers = ToModKey(event.modifiers());
  if (event.key() == Qt::Key_Backtab)
    modifiers |= ui::kModKey_Shift;
  return {type, ToKeyboardCode(event.key()), modifiers, character};
}

const QKeyEvent* GetKeyEventInDispatch() {
  return sInDispatch;
}

bool FilterKeyEvent(const QKeyEvent& event) {
  const bool wasSeen =
      sFilteredEvent == &event && sFilteredAt == event.timestamp() && sFilteredType == static_cast<int>(event.type());
  if (wasSeen)
    return false;
  sFilteredEvent = &event;
  sFilteredAt = event.timestamp();
  sFilteredType = static_cast<int>(event.type());
  KeyboardEventType type = ui::kKeyboardEvent_KeyDown;
  if (event.type() == QEvent::ShortcutOverride)
    type = ui::kKeyboardEvent_Shortcut;
  else if (event.type() == QEvent::KeyRelease)
    type = ui::kKeyboardEvent_KeyUp;
  return ui::UI_NodeManager::Get()->DispatchKeyboardEvent(ToKeyboardEvent(event, type)).filtered;
}

bool DispatchKeyEvent(UI_Node& node, QEvent& event) {
  KeyboardEventType type = ui::kKeyboardEvent_KeyDown;
  switch (event.type()) {
  case QEvent::ShortcutOverride:
    type = ui::kKeyboardEvent_Shortcut;
    break;
  case QEvent::KeyPress:
    break;
  case QEvent::KeyRelease:
    type = ui::kKeyboardEvent_KeyUp;
    break;
  default:
    return false;
  }
  const KeepAlive alive(node);
  auto& key = static_cast<QKeyEvent&>(event);
  sFilteredEvent = &key;
  sFilteredAt = key.timestamp();
  sFilteredType = static_cast<int>(key.type());

  // A key only comes to a widget that has the toolkit's focus.
  if (ui::UI_NodeManager::Get()->GetFocusNode() != &node)
    MoveFocus(WidgetOf(&node), ui::kFocusChange_Program);
  const QKeyEvent* const outer = std::exchange(sInDispatch, &key);
  auto result = ui::UI_NodeManager::Get()->DispatchKeyboardEvent(ToKeyboardEvent(key, type));
  // The character comes on its own only if the key's going down did not type it already.
  const KeyboardEvent character = ToKeyboardEvent(key, ui::kKeyboardEvent_Character);
  if (type == ui::kKeyboardEvent_KeyDown && !result.filtered && !result.handled && character.GetCharacter() != 0)
    result = ui::UI_NodeManager::Get()->DispatchKeyboardEvent(character);
  sInDispatch = outer;
  event.setAccepted(result.filtered || result.handled);
  return true;
}

} // namespace zebui::toolkit
