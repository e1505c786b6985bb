#pragma once

#include "zebui/Node.h"

namespace zebui::controls {

// Three by three cells, one or none of which is marked, chosen by the mouse or moved by the arrow keys.
class UI_PositionGridControl : public ui::UI_ControlView {
 public:
  UI_PositionGridControl();
  ~UI_PositionGridControl() override;
  // Column and row from 0 to 2; (-1, -1) marks none. Reports nothing.
  void SetValue(const zebcore::geom::PointT<int>& cell);
  zebcore::geom::PointT<int> GetValue() const;
  // As a person would: the value, then a report, also when it is the same cell; nothing when it is disabled.
  void Choose(const zebcore::geom::PointT<int>& cell);

 private:
  struct Grid;
  std::unique_ptr<Grid> mGrid;
};

} // namespace zebui::controls
