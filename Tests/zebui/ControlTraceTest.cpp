#include <gmock/gmock.h>

#include "zebcore/Trace.h"
#include "zebui/Controls.h"
#include "zebui/Popup.h"

// What the record says about controls that are given what they show.
namespace zebui::controls {

namespace {

using nlohmann::json;

struct ControlTrace : testing::Test {
  ControlTrace() {
    zebcore::trace::Take();
    zebcore::trace::SetOn(true);
  }
  ~ControlTrace() override {
    zebcore::trace::SetOn(false);
    zebcore::trace::Take();
  }
  static std::vector<zebcore::trace::Call> Take() { return zebcore::trace::Take(); }
};

TEST_F(ControlTrace, TellsOfTheTextThatAButtonIsGiven) {
  const boost::intrusive_ptr<UI_TextButton> button(new UI_TextButton());
  Take();
  button->SetText(u"Add");
  const auto calls = Take();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0].call, "UI_TextButton::SetText");
  EXPECT_EQ(calls[0].args.at("text"), "Add");
}

TEST_F(ControlTrace, TellsOfEachItemThatAPopupGetsAndLoses) {
  const boost::intrusive_ptr<UI_Popup> popup(new UI_Popup(0, false));
  Take();
  popup->AddItem(u"One");
  popup->AddItem(u"Two");
  popup->RemoveItem(0);
  popup->DeleteAllItems();
  const auto calls = Take();
  ASSERT_EQ(calls.size(), 4U);
  EXPECT_EQ(calls[0].call, "UI_Popup::AddItem");
  EXPECT_EQ(calls[0].args.at("text"), "One");
  EXPECT_EQ(calls[1].args.at("text"), "Two");
  EXPECT_EQ(calls[2].call, "UI_Popup::RemoveItem");
  EXPECT_EQ(calls[2].args.at("index"), 0);
  EXPECT_EQ(calls[3].call, "UI_Popup::DeleteAllItems");
}

TEST_F(ControlTrace, KnowsWhichControlACallIsAskedOf) {
  const boost::intrusive_ptr<UI_Popup> popup(new UI_Popup(0, false));
  const boost::intrusive_ptr<UI_TextEdit> edit(new UI_TextEdit(1, 0));
  Take();
  popup->SetValueString(u"Multiple", true, true);
  edit->SetValue(u"Text", false);
  const auto calls = Take();
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[0].subject, static_cast<ui::UI_Node*>(popup.get()));
  EXPECT_EQ(calls[1].subject, static_cast<ui::UI_Node*>(edit.get()));
  EXPECT_EQ(calls[1].args.at("text"), "Text");
}

TEST_F(ControlTrace, IsSilentWhileItIsOff) {
  const boost::intrusive_ptr<UI_Popup> popup(new UI_Popup(0, false));
  zebcore::trace::SetOn(false);
  Take();
  popup->AddItem(u"One");
  EXPECT_TRUE(Take().empty());
}

} // namespace

} // namespace zebui::controls
