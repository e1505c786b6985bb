#include "UIF/KeyCodes.h"

#include <array>
#include <utility>

#include <qnamespace.h>

namespace UIF {

namespace {

constexpr std::array<std::pair<int, short>, 15> kCodes{{{Qt::Key_Backspace, 8},
                                                        {Qt::Key_Tab, 9},
                                                        {Qt::Key_Return, 13},
                                                        {Qt::Key_Enter, 13},
                                                        {Qt::Key_Escape, 27},
                                                        {Qt::Key_PageUp, -33},
                                                        {Qt::Key_PageDown, -34},
                                                        {Qt::Key_End, -35},
                                                        {Qt::Key_Home, -36},
                                                        {Qt::Key_Left, -37},
                                                        {Qt::Key_Up, -38},
                                                        {Qt::Key_Right, -39},
                                                        {Qt::Key_Down, -40},
                                                        {Qt::Key_Insert, -45},
                                                        {Qt::Key_Delete, -46}}};
constexpr short kFirstFunctionKey = -112;
constexpr int kLastCharacter = 0x7fff;

} // namespace

short ToViewKeyCode(int toolkitKey) {
  for (const auto& [key, code] : kCodes) {
    if (key == toolkitKey)
      return code;
  }
  if (toolkitKey == Qt::Key_Backtab)
    return 9;
  if (toolkitKey >= Qt::Key_F1 && toolkitKey <= Qt::Key_F24)
    return static_cast<short>(kFirstFunctionKey - (toolkitKey - Qt::Key_F1));
  return toolkitKey <= kLastCharacter ? static_cast<short>(toolkitKey) : short{0};
}

int FromViewKeyCode(short code) {
  for (const auto& [key, known] : kCodes) {
    if (known == code)
      return key;
  }
  if (code <= kFirstFunctionKey && code >= kFirstFunctionKey - 23)
    return Qt::Key_F1 + (kFirstFunctionKey - code);
  return code > 0 ? code : 0;
}

} // namespace UIF
