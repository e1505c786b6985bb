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
  // As a person would, by the button or with Escape. Nothing to report when it is empty already.
  void Clear();

  bool UI_DoKeyboardEvent(UI_Node* focus, const ui::KeyboardEvent& event) override;
  void UI_FocusChanged(ui::FocusChangeReason reason) override;

 protected:
  void BeginEdit() override;
  void ReportEdit() override;

 private:
  void Commit();
  void OpenRecent();
  struct Search;
  std::unique_ptr<Search> mSearch;
};

} // namespace zebui::controls
