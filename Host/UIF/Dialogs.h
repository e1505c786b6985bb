#pragma once

#include <functional>

#include "UIF/MenuUtils.h"
#include "zebcore/UString.h"

namespace UIF {

// A modal message. flag 1: one plain acknowledging button. icon 4: a warning. defaultResult: what closing the window
// answers.
int MessageBoxW(const UString& text, const UString& title, int flags, int icon, int defaultResult);

struct MessageBoxRecord {
  UString text;
  UString title;
  int flags;
  int icon;
  int defaultResult;
};
// In place of the window, for whoever drives the program; null restores the window.
using MessageBoxHook = std::function<int(const MessageBoxRecord&)>;
void SetMessageBoxHook(MessageBoxHook hook);

} // namespace UIF
