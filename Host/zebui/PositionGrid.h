#pragma once

#include "zebui/Node.h"

namespace zebui::controls {

using ui::UI_ControlView;
using ui::UI_Node;

// Three by three cells, one or none of which is marked, chosen by the mouse or moved by the arrow keys.
class UI_PositionGridControl : public UI_ControlView {
 public:
  UI_PositionGridControl();
  ~UI_PositionGridControl() override;
  // Column and row from 0 to 2; (-1, -1) marks none. Reports nothing.
  void SetValue(const zebcore::geom::PointT<int>& cell);
  zebcore::geom::PointT<int> GetValue() const;
  // As a person would: the value, then a report, also when it is the same cell or none; nothing when it is disabled,
  // or for what is neither a cell nor none.
  void Choose(const zebcore::geom::PointT<int>& cell);

  // An arrow moves the mark by a cell and stops at the edge; without a mark it goes to the middle, as Space and Enter
  // do, which else choose the marked cell again. Home and End go to the first and the last cell.
  bool UI_DoKeyboardEvent(UI_Node* focus, const ui::KeyboardEvent& event) override;

 private:
  void Mark(const zebcore::geom::PointT<int>& cell);

  struct Grid;
  std::unique_ptr<Grid> mGrid;
};

} // namespace zebui::controls
