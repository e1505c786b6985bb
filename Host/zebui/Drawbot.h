#pragma once

#include <memory>

#include "zebcore/Geometry.h"

namespace zebui::ui {
class UI_Node;
}

namespace zebui::drawbot {

// A drawing surface below a device context.
class Drawbot {
 public:
  // Measures with the fonts of the node.
  explicit Drawbot(const ui::UI_Node& node);
  Drawbot(); // for a device context
  virtual ~Drawbot();
  // How edges are smoothed, for the rest of the pass; 1 is smoothly.
  virtual void SetAntiAliasing(int mode);
  virtual void SaveState();
  virtual void RestoreState();
  virtual void Clip(const zebcore::geom::RectT<float>& rect);
};

} // namespace zebui::drawbot
