#pragma once

#include <memory>

#include "zebui/Node.h"

namespace zebui::controls {

struct HotNumberState;

// A value shown as text that can be scrubbed by dragging, stepped by arrows and wheel, or clicked and typed over. While
// the value is unknown it shows the text given for that.
template <class Value> class UI_HotEditControlBaseT : public ui::UI_InteractiveControlView {
 public:
  UI_HotEditControlBaseT();
  ~UI_HotEditControlBaseT() override;
  void SetUnknownStateText(const zebcore::UString& text);
  zebcore::UString GetUnknownStateText() const;
  void SetValueUnknown() override;
  bool IsValueUnknown() const;
  // What is on show.
  zebcore::UString GetText() const;
  // As a person would, for whoever drives the program. Opens the field to be typed over; nothing while disabled.
  void OpenEditor();
  // Into the open editor; false if it is no value, and the editor stays.
  bool EnterText(const zebcore::UString& text);

  bool UI_DoKeyboardEvent(ui::UI_Node* focus, const ui::KeyboardEvent& event) override;
  void UI_FocusChanged(ui::FocusChangeReason reason) override;

 protected:
  std::unique_ptr<HotNumberState> mState;
};

// A number in a hot field. It steps by one in the last of its decimal places. What is typed may be arithmetic (see
// NumberEntry.h); what is scrubbed, stepped or typed is rounded to the decimal places and brought between the bounds.
template <class Value> class UI_HotTextNumberT : public UI_HotEditControlBaseT<Value> {
 public:
  UI_HotTextNumberT();
  ~UI_HotTextNumberT() override;
  void SetDecimalPlaces(int places);
  int GetDecimalPlaces() const;
  // Both bound only what a person enters. With a bound that is no number, or a minimum above the maximum, a person can
  // enter nothing.
  void SetMinValue(Value value);
  Value GetMinValue() const;
  void SetMaxValue(Value value);
  Value GetMaxValue() const;
  // Kept as it is, unrounded, infinities and not-a-number too; shown rounded to the decimal places. Ends the unknown
  // state and reports nothing.
  void SetValue(Value value);
  // The last number set or entered, also while the value is unknown.
  Value GetValue() const;
  // As a person would: starts a change, changes to the value, unrounded but between the bounds, and finishes; nothing
  // when disabled. phases: the last phase that is reported; cancelled puts the old value back.
  void Enter(Value value, ui::UI_InteractiveControlChangedMessage::ChangeMessage phases =
                              ui::UI_InteractiveControlChangedMessage::kChange_Finished);
};

extern template class UI_HotEditControlBaseT<double>;
extern template class UI_HotTextNumberT<double>;
using UI_HotTextNumber = UI_HotTextNumberT<double>;

} // namespace zebui::controls
