#pragma once

#include <utility>

#include "zebui/Node.h"

namespace zebui::controls {

using ui::UI_ControlView;
using ui::UI_InteractiveControlView;
using ui::UI_Node;
using zebcore::UString;
using zebcore::geom::PointT;

// Text of several lines. It keeps the line ends that it was given, inserts CR LF on Enter, and counts values and
// selections in UTF-16 units, CR and LF separately. It has no undo of its own.
class UI_TextEdit : public UI_InteractiveControlView {
 public:
  // flags: 1 several lines, 0 one. alignment: 0 left, 1 centre, 2 right.
  UI_TextEdit(int flags, int alignment);
  ~UI_TextEdit() override;

  // The caret stays where it was as far as the text allows. notify reports it as if a person had done it.
  void SetValue(const UString& text, bool notify);
  UString GetValue() const;
  std::pair<std::size_t, std::size_t> GetSelection() const;
  void SetSelection(const std::pair<std::size_t, std::size_t>& range);
  void GetFont(UString& family, UString& style, float& size) const;
  void SetFont(const wchar_t* family, float size, const UString* style);
  void ScrollToBegin();
  // Pixels from the top of the text.
  int GetScrollPosition() const;

  bool CanDelete() const;
  bool CanCopy() const;
  bool CanCut() const;
  bool CanPaste() const;
  void Delete();
  void Copy();
  void Cut();
  void Paste();

  bool UI_DoKeyboardEvent(UI_Node* focus, const ui::KeyboardEvent& event) override;
  void UI_FocusChanged(ui::FocusChangeReason reason) override;

 protected:
  // A person is about to change the text, which is as it was.
  virtual void BeginEdit();
  // A person changed the text. Interactively and as changed, both.
  virtual void ReportEdit();

 private:
  struct Text;
  std::unique_ptr<Text> mText;
};

class UI_TextButton : public UI_ControlView {
 public:
  UI_TextButton();
  ~UI_TextButton() override;
  void SetText(const UString& text);
  UString GetText() const;
  // As a person would press it; nothing when it is disabled.
  void Press();
};

} // namespace zebui::controls
