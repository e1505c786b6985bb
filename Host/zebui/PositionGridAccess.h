// For the sources of zebui only: the position grid as assistive technology sees it.
#pragma once

#include <functional>

#include <QMouseEvent>

#include "zebui/PaintedButton.h"

namespace zebui::toolkit {

// A button that stands for nine: a group with nine radio buttons by name ("Top left"), whose value is the name of the
// marked one.
class GridWidget : public PaintedButton {
 public:
  GridWidget(ui::UI_Node& owner, Paint paint, QWidget* parent);
  // From 0, row by row; -1 for none. Says so to assistive technology.
  void SetMarked(int cell);
  int GetMarked() const { return mMarked; }
  void SetChooser(std::function<void(int)> chooser) { mChooser = std::move(chooser); }
  void Choose(int cell);
  // In the widget's own pixels.
  virtual QRect GetCellRect(int cell) const = 0;

 private:
  int mMarked = -1;
  std::function<void(int)> mChooser;
};

// "Top left" to "Bottom right"; "None" for -1.
QString GetCellName(int cell);

} // namespace zebui::toolkit
