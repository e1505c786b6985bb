// What listeners of a text see of an edit, and when.

#include <gtest/gtest.h>

#include "Screen.h"
#include "zebui/Controls.h"
#include "zebui/Driver.h"
#include "zebui/SearchBox.h"

using namespace zebui;
using controls::UI_TextEdit;
using zebcore::UString;

namespace {

constexpr int kStarted = 0;

// Whoever hears that an edit starts writes the text anew, as a list does that scrolls to its row.
struct Rewritten {
  test::Window window;
  boost::intrusive_ptr<UI_TextEdit> edit = window.Add(new UI_TextEdit(1, 0));
  UString atStart;

  Rewritten() {
    edit->SetValue(u"kept", false);
    edit->NotifyWhenChangedInteractively([this](const ui::UI_InteractiveControlChangedMessage& message) {
      if (message.GetChangeMessage() != kStarted)
        return;
      atStart = edit->GetValue();
      edit->SetValue(u"kept", false);
    });
  }
  // The focus stays here while the change that it began is over.
  void EnterWithNothingUnderWay() {
    edit->UI_GainKeyboardFocus(ui::kFocusChange_Pointer);
    edit->SetSelection({4, 4});
    edit->FinishInteractiveChange();
    atStart.clear();
  }
};

} // namespace

TEST(TextEditOrder, AValueSetAsByAPersonIsNotThereYetWhenTheEditStarts) {
  Rewritten t;
  t.edit->SetValue(u"new", true);
  EXPECT_EQ(t.atStart, u"kept");
  EXPECT_EQ(t.edit->GetValue(), u"new");
}

TEST(TextEditOrder, ALetterIsNotThereYetWhenItsEditStarts) {
  Rewritten t;
  t.EnterWithNothingUnderWay();
  driver::TypeText(u"x");
  EXPECT_EQ(t.atStart, u"kept");
  EXPECT_EQ(t.edit->GetValue(), u"keptx");
}

TEST(TextEditOrder, WhatBackspaceAndDeleteTakeIsStillThereWhenTheEditStarts) {
  Rewritten t;
  t.EnterWithNothingUnderWay();
  driver::PressKey(ui::kKeyboardCode_Backspace);
  EXPECT_EQ(t.atStart, u"kept");
  EXPECT_EQ(t.edit->GetValue(), u"kep");
  t.edit->SetValue(u"kept", false);
  t.EnterWithNothingUnderWay();
  t.edit->SetSelection({0, 2});
  t.edit->Delete();
  EXPECT_EQ(t.atStart, u"kept");
  EXPECT_EQ(t.edit->GetValue(), u"pt");
}

TEST(TextEditOrder, ASearchIsNotReportedWithTheTextThatIsAboutToGo) {
  test::Window window;
  const auto box = window.Add(new controls::UI_SearchBox(false, false));
  box->SetValue(u"former", false);
  std::vector<UString> looked;
  box->NotifyWhenChangedInteractively(
      [&](const ui::UI_InteractiveControlChangedMessage&) { looked.push_back(box->GetValue()); });
  box->SetValue(u"new", true);
  ASSERT_FALSE(looked.empty());
  for (const UString& text : looked)
    EXPECT_EQ(text, u"new");
}
