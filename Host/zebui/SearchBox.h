#pragma once

#include "zebui/Controls.h"

namespace zebui::controls {

// One line of text to look for, with a button that empties it. It reports interactively with every key, and as changed
// when it is emptied by the button or Enter is pressed.
class UI_SearchBox : public UI_TextEdit {
 public:
  // hasMenu: a list of recent searches under the glass. searchOnEnter: reports only on Enter.
  UI_SearchBox(bool hasMenu, bool searchOnEnter);
  ~UI_SearchBox() override;

 private:
  struct Search;
  std::unique_ptr<Search> mSearch;
};

} // namespace zebui::controls
