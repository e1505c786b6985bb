// For the sources of UIF only: picking a colour from anywhere on the screen.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "UIF/Drawing.h"

namespace UIF {

// Covers every screen with a picture of it, with a magnifier at the pointer. A click, Enter or Space picks the colour
// under the pointer; Escape, another button or leaving the program picks none. Arrow keys move the pointer by a pixel.
// Going away picks nothing and reports nothing.
class Eyedropper {
 public:
  using Done = std::function<void(std::optional<Color>)>;
  explicit Eyedropper(Done done);
  ~Eyedropper();
  Eyedropper(const Eyedropper&) = delete;
  Eyedropper& operator=(const Eyedropper&) = delete;

 private:
  class Screen;
  void Finish(std::optional<Color> picked);
  std::vector<std::unique_ptr<Screen>> mScreens;
  Done mDone;
};

} // namespace UIF
