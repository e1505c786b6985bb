#pragma once

#include <cstdint>

namespace zebui::ui {

// Modifier flags, one bit each.
using ModKey = std::uint32_t;
inline constexpr ModKey kModKey_None = 0x00;
inline constexpr ModKey kModKey_Meta = 0x01;
inline constexpr ModKey kModKey_Shift = 0x02;
inline constexpr ModKey kModKey_Control = 0x04;
inline constexpr ModKey kModKey_CapsLock = 0x08;
inline constexpr ModKey kModKey_Alt = 0x10;
inline constexpr ModKey kModKey_Keypad = 0x20;

// A key by number.
class KeyboardCode {
 public:
  constexpr explicit KeyboardCode(int number) : mNumber(number) {}
  constexpr int GetNumber() const { return mNumber; }
  friend constexpr bool operator==(KeyboardCode, KeyboardCode) = default;

 private:
  int mNumber;
};

inline constexpr KeyboardCode kKeyboardCode_Unknown{0};
inline constexpr KeyboardCode kKeyboardCode_Enter{1};
inline constexpr KeyboardCode kKeyboardCode_Backspace{2};
inline constexpr KeyboardCode kKeyboardCode_Tab{3};
inline constexpr KeyboardCode kKeyboardCode_Delete{4};
inline constexpr KeyboardCode kKeyboardCode_Insert{5};
inline constexpr KeyboardCode kKeyboardCode_Escape{6};
inline constexpr KeyboardCode kKeyboardCode_Left{7};
inline constexpr KeyboardCode kKeyboardCode_Right{8};
inline constexpr KeyboardCode kKeyboardCode_Up{9};
inline constexpr KeyboardCode kKeyboardCode_Down{10};
inline constexpr KeyboardCode kKeyboardCode_Home{11};
inline constexpr KeyboardCode kKeyboardCode_End{12};
inline constexpr KeyboardCode kKeyboardCode_PageUp{13};
inline constexpr KeyboardCode kKeyboardCode_PageDown{14};

// Phases of a key press, in the order in which they come.
enum KeyboardEventType : int {
  kKeyboardEvent_Shortcut = 1, // before anything else: is it a shortcut?
  kKeyboardEvent_KeyDown = 2,
  kKeyboardEvent_Character = 3,
  kKeyboardEvent_KeyUp = 4,
};

class KeyboardEvent {
 public:
  // character is 0 for a key that types nothing.
  KeyboardEvent(KeyboardEventType type, KeyboardCode code, ModKey modifiers, char16_t character = 0)
      : mType(type), mCode(code), mModifiers(modifiers), mCharacter(character) {}

  int GetType() const { return mType; }
  ModKey GetModKey() const { return mModifiers; }
  KeyboardCode GetCode() const { return mCode; }
  char16_t GetCharacter() const { return mCharacter; }
  bool CompareCode(KeyboardCode code) const { return mCode == code; }
  // The key with exactly these of Shift, Control, Alt and Meta.
  bool CompareShortcut(KeyboardCode code, ModKey modifiers) const {
    constexpr ModKey kMatters = kModKey_Shift | kModKey_Control | kModKey_Alt | kModKey_Meta;
    return mCode == code && (mModifiers & kMatters) == (modifiers & kMatters);
  }

 private:
  KeyboardEventType mType;
  KeyboardCode mCode;
  ModKey mModifiers;
  char16_t mCharacter;
};

} // namespace zebui::ui
