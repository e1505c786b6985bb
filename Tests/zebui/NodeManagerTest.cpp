#include "zebui/NodeManager.h"
#include "Screen.h"
#include "zebcore/Clock.h"
#include "zebui/Controls.h"
#include "zebui/Drawbot.h"
#include "zebui/Driver.h"
#include <gtest/gtest.h>

using namespace zebui;
using ui::UI_NodeManager;
using zebcore::Clock;

namespace {

class Timers : public testing::Test {
 protected:
  void SetUp() override { Clock::Instance().UseManual(); }
  void TearDown() override {
    for (const auto id : mIDs)
      manager->RemoveTimer(id);
    Clock::Instance().UseReal();
  }
  ui::TimerID NewID() {
    mIDs.push_back(manager->GetUniqueTimerID());
    return mIDs.back();
  }
  void Turn(std::int64_t milliseconds) { Clock::Instance().SetNow(Clock::Instance().Now() + milliseconds); }
  std::vector<ui::TimerID> Fire() {
    std::vector<ui::TimerID> ids;
    for (const auto& fired : manager->FireDueTimers())
      ids.push_back(fired.id);
    return ids;
  }
  UI_NodeManager* manager = UI_NodeManager::Get();

 private:
  std::vector<ui::TimerID> mIDs;
};
using IDs = std::vector<ui::TimerID>;

bool Handled(ui::TimerID) {
  return true;
}

struct Filter : ui::UI_Node {
  Filter(std::string* sink, char sign, bool swallows) : log(sink), name(sign), swallow(swallows) {
    UI_NodeManager::Get()->AddKeyboardEventFilterNode(this, false);
  }
  ~Filter() override { UI_NodeManager::Get()->RemoveKeyboardEventFilterNode(this, false); }
  bool UI_DoPreKeyboardEvent(ui::UI_Node* focus, const ui::KeyboardEvent& event) override {
    log->push_back(name);
    seenFocus = focus;
    types.push_back(event.GetType());
    return swallow;
  }
  std::string* log;
  char name;
  bool swallow;
  ui::UI_Node* seenFocus = nullptr;
  std::vector<int> types;
};

} // namespace

TEST_F(Timers, FireInOrderOfTheirDueTimes) {
  const auto late = NewID();
  const auto early = NewID();
  manager->SetTimer(late, 250, &Handled);
  manager->SetTimer(early, 100, &Handled);
  Turn(300);
  EXPECT_EQ(Fire(), IDs({early, early, late, early}));
}

TEST_F(Timers, OfOneDueTimeFireInTheOrderInWhichTheyWereArmed) {
  const auto first = NewID();
  const auto second = NewID();
  manager->SetTimer(second, 100, &Handled);
  manager->SetTimer(first, 100, &Handled);
  Turn(100);
  EXPECT_EQ(Fire(), IDs({second, first}));
}

TEST_F(Timers, TellTheirDueTimeAndWhatTheyAnswered) {
  const auto id = NewID();
  const std::int64_t start = Clock::Instance().Now();
  manager->SetTimer(id, 100, [](ui::TimerID) { return false; });
  Turn(150);
  const auto fired = manager->FireDueTimers();
  ASSERT_EQ(fired.size(), 1U);
  EXPECT_EQ(fired[0].at, start + 100);
  EXPECT_FALSE(fired[0].handled);
  EXPECT_EQ(manager->GetTimeUntilDue(id), 50);
}

TEST_F(Timers, ThatAreNotSetAreNeverDue) {
  EXPECT_EQ(manager->GetTimeUntilDue(NewID()), std::nullopt);
  EXPECT_EQ(manager->GetTimeUntilNextDue(), std::nullopt);
}

TEST_F(Timers, ArmedAgainInsideATickCountFromThen) {
  const auto id = NewID();
  int calls = 0;
  manager->SetTimer(id, 100, [&](ui::TimerID timer) {
    ++calls;
    manager->SetTimer(timer, 250, &Handled);
    return true;
  });
  Turn(120);
  EXPECT_EQ(Fire(), IDs({id}));
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(manager->GetTimeUntilDue(id), 250);
}

TEST_F(Timers, RemovedInsideTheirOwnTickStayRemoved) {
  const auto id = NewID();
  manager->SetTimer(id, 100, [&](ui::TimerID timer) {
    manager->RemoveTimer(timer);
    return true;
  });
  Turn(1000);
  EXPECT_EQ(Fire(), IDs({id}));
  EXPECT_EQ(manager->GetTimeUntilDue(id), std::nullopt);
}

TEST_F(Timers, RemovedByAnEarlierOneOfTheSameTickDoNotFire) {
  const auto first = NewID();
  const auto second = NewID();
  manager->SetTimer(first, 100, [&](ui::TimerID) {
    manager->RemoveTimer(second);
    return true;
  });
  manager->SetTimer(second, 100, &Handled);
  Turn(100);
  EXPECT_EQ(Fire(), IDs({first}));
}

TEST_F(Timers, SetAgainStartTheirPeriodAnew) {
  const auto id = NewID();
  manager->SetTimer(id, 100, &Handled);
  Turn(90);
  manager->SetTimer(id, 100, &Handled);
  Turn(90);
  EXPECT_TRUE(Fire().empty());
  EXPECT_EQ(manager->GetTimeUntilDue(id), 10);
}

TEST_F(Timers, GoOnAfterOneThrew) {
  const auto first = NewID();
  const auto second = NewID();
  manager->SetTimer(first, 100, [](ui::TimerID) -> bool { throw std::runtime_error("broken"); });
  manager->SetTimer(second, 100, &Handled);
  Turn(100);
  EXPECT_EQ(Fire(), IDs({first, second}));
}

TEST_F(Timers, RunOnBelowAModalWindowWhichTheyCanAskFor) {
  const auto id = NewID();
  bool sawModal = false;
  manager->SetTimer(id, 100, [&](ui::TimerID) { return sawModal = manager->HasModalWindow(); });
  manager->PushModalWindow();
  manager->PushModalWindow();
  manager->PopModalWindow();
  Turn(100);
  Fire();
  manager->PopModalWindow();
  EXPECT_TRUE(sawModal);
  EXPECT_FALSE(manager->HasModalWindow());
}

TEST_F(Timers, TellWhoeverWaitsForTheNextDueTime) {
  const auto id = NewID();
  int told = 0;
  manager->SetTimerNotifier([&] { ++told; });
  told = 0;
  manager->SetTimer(id, 100, &Handled);
  manager->RemoveTimer(id);
  manager->SetTimerNotifier({});
  EXPECT_EQ(told, 2);
}

TEST(KeyFilters, SeeEveryEventFirstTheNewestOneFirst) {
  std::string log;
  boost::intrusive_ptr<Filter> older(new Filter(&log, 'o', false));
  boost::intrusive_ptr<Filter> newer(new Filter(&log, 'n', false));
  test::Window window;
  const auto edit = window.Add(new controls::UI_TextEdit(1, 0));
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  const auto result = UI_NodeManager::Get()->DispatchKeyboardEvent(
      {ui::kKeyboardEvent_KeyDown, ui::KeyboardCode('A'), ui::kModKey_None, u'a'});
  EXPECT_EQ(log, "no");
  EXPECT_EQ(older->seenFocus, edit.get());
  EXPECT_TRUE(result.handled);
}

TEST(KeyFilters, ThatSwallowAnEventKeepItFromOlderOnesAndFromTheFocus) {
  std::string log;
  boost::intrusive_ptr<Filter> older(new Filter(&log, 'o', false));
  boost::intrusive_ptr<Filter> newer(new Filter(&log, 'n', true));
  test::Window window;
  const auto edit = window.Add(new controls::UI_TextEdit(1, 0));
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  driver::TypeText(u"a");
  EXPECT_EQ(log.find('o'), std::string::npos);
  EXPECT_EQ(edit->GetValue(), u"");
}

TEST(KeyFilters, SeeTheShortcutTheKeyAndItsReleaseOfOnePressOnceEach) {
  std::string log;
  boost::intrusive_ptr<Filter> filter(new Filter(&log, 'f', false));
  test::Window window;
  const auto edit = window.Add(new controls::UI_TextEdit(1, 0));
  edit->UI_GainKeyboardFocus(ui::kFocusChange_Program);
  driver::TypeText(u"a");
  EXPECT_EQ(filter->types, std::vector<int>({1, 2, 4}));
}

TEST(KeyFilters, MayLeaveWhileTheyAreAsked) {
  struct Leaving : ui::UI_Node {
    bool UI_DoPreKeyboardEvent(ui::UI_Node*, const ui::KeyboardEvent&) override {
      UI_NodeManager::Get()->RemoveKeyboardEventFilterNode(other, false);
      return false;
    }
    ui::UI_Node* other = nullptr;
  };
  std::string log;
  boost::intrusive_ptr<Filter> filter(new Filter(&log, 'f', false));
  boost::intrusive_ptr<Leaving> leaving(new Leaving);
  leaving->other = filter.get();
  UI_NodeManager::Get()->AddKeyboardEventFilterNode(leaving.get(), false);
  UI_NodeManager::Get()->DispatchKeyboardEvent(
      {ui::kKeyboardEvent_KeyDown, ui::kKeyboardCode_Escape, ui::kModKey_None});
  UI_NodeManager::Get()->RemoveKeyboardEventFilterNode(leaving.get(), false);
  EXPECT_EQ(log, "");
}

TEST(Button, ReportsAPressUnlessItIsDisabled) {
  test::Window window;
  const auto button = window.Add(new controls::UI_TextButton);
  int pressed = 0;
  button->NotifyWhenChanged([&](const ui::UI_ControlChangedMessage&) { ++pressed; });
  button->SetText(u"Add");
  button->Press();
  button->SetDisabled(true);
  button->Press();
  button->SetDisabled(false);
  button->UI_SetEnabled(false);
  button->Press();
  EXPECT_EQ(pressed, 1);
}

TEST(Button, IsCalledByItsLabelByAssistiveTechnology) {
  test::Window window;
  const auto button = window.Add(new controls::UI_TextButton);
  button->UI_SetToolTip(u"Adds a caption", 500);
  EXPECT_EQ(toolkit::WidgetOf(button.get())->accessibleName(), QStringLiteral("Adds a caption"));
  button->SetText(u"Add");
  EXPECT_EQ(toolkit::WidgetOf(button.get())->accessibleName(), QStringLiteral("Add"));
  button->UI_SetAccessibleName(u"Add caption");
  EXPECT_EQ(toolkit::WidgetOf(button.get())->accessibleName(), QStringLiteral("Add caption"));
}

TEST(Button, RecommendsAWidthThatGrowsWithItsText) {
  boost::intrusive_ptr<controls::UI_TextButton> button(new controls::UI_TextButton);
  drawbot::Drawbot drawbot(*button);
  button->SetText(u"Add");
  const float narrow = button->UI_GetRecommendedSize(drawbot).x;
  button->SetText(u"Add a caption here");
  EXPECT_GT(button->UI_GetRecommendedSize(drawbot).x, narrow);
}
