#pragma once

#include <cstdint>
#include <vector>

#include "zebui/Node.h"

namespace zebui::controls {

// A button that opens a list of texts, one of which is its value. It can also show a text that no item bears.
class UI_Popup : public ui::UI_ControlView {
 public:
  // What GetValue answers when the text on show is no item's.
  static constexpr std::int64_t kNoItem = -1;

  // type: 0, a list. editable: the text can also be typed; lists are not.
  UI_Popup(int type, bool editable);
  ~UI_Popup() override;

  // Marks the item that is the value with a check in the open list.
  void SetItemCheckStyle(bool check);
  // At the end; the index of the new item. The first item of an empty popup does not become its value by itself.
  std::int64_t AddItem(const zebcore::UString& text);
  // The value stays the same item; if it was the one removed, the popup shows nothing.
  void RemoveItem(std::int64_t index);
  void DeleteAllItems();
  std::int64_t Size() const;
  // As Size.
  std::int64_t GetItems() const;
  // Empty for an index out of range.
  zebcore::UString GetItemString(std::int64_t index) const;
  // Reports nothing; an index out of range shows nothing.
  void SetValue(std::int64_t index);
  std::int64_t GetValue() const;
  // Shows the text, and is the value that GetValueString returns from then on, whether or not an item bears it. select:
  // the first item with exactly this text becomes the value; redraw: at once.
  void SetValueString(const zebcore::UString& text, bool select, bool redraw);
  zebcore::UString GetValueString() const;
  // As a person would: the value, then a report, also when it is the same item; nothing when disabled.
  void Choose(std::int64_t index);

  bool UI_DoKeyboardEvent(UI_Node* focus, const ui::KeyboardEvent& event) override;

 private:
  struct List;
  std::unique_ptr<List> mList;
};

} // namespace zebui::controls
