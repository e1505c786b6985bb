#include <QLineEdit>
#include <gtest/gtest.h>

#include "Screen.h"
#include "UIF/ShortcutManager.h"
#include "zebui/Controls.h"

using namespace UIF;

namespace {

struct Creator : TabViewCreator {
  TabView* CreateTabView(WorkspaceFrame* frame) override {
    ++calls;
    view = std::make_unique<test::Panel>(&log);
    view->Create(u"test.tab", u"Test panel", frame, true);
    return view.get();
  }
  std::string log;
  int calls = 0;
  std::unique_ptr<test::Panel> view;
};

// Sends a widget an event as its parent goes, as the toolkit does when the pointer is over both.
struct Farewell : QObject {
  Farewell(QObject* parent, QWidget* to) : QObject(parent), receiver(to) {}
  ~Farewell() override {
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(receiver, &event);
  }
  QWidget* receiver;
};

struct PartingPanel : test::Panel {
  PartingPanel(std::string* sink, QWidget* to) : Panel(sink), receiver(to) {}
  void CreateSelf(const zebcore::geom::RectT<int>&) override { new Farewell(WidgetOf(this), receiver); }
  QWidget* receiver;
};

struct Workspaces : testing::Test {
  test::Frame frame;
  Creator creator;
  int repeats = 0;
  void SetUp() override {
    Workspace::SetFrameFactory([this](const UString&) { return &frame; });
    Workspace::RegisterCreator(u"test.tab", &creator);
    Workspace::SetSelectionRepeater([this] { ++repeats; });
  }
  void TearDown() override {
    Workspace::UnregisterCreator(u"test.tab", &creator);
    Workspace::SetSelectionRepeater(nullptr);
    creator.view = nullptr;
    Workspace::SetFrameFactory(nullptr);
  }
};

} // namespace

TEST(WorkspaceInstance, IsNullUntilTheProgramHasMadeOne) {
  EXPECT_EQ(Workspace::Instance(), nullptr);
}

TEST_F(Workspaces, MakeATabViewByItsCreatorAndRepeatTheSelectionOnce) {
  TabView* const view = Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {});
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(creator.log, "create(0,0,500,360) bounds(0,0,500,360) ");
  EXPECT_EQ(repeats, 1);
  EXPECT_EQ(frame.title, QStringLiteral("Test panel"));
  EXPECT_TRUE(view->IsShown());
}

TEST_F(Workspaces, GiveTheOpenViewInsteadOfASecondOne) {
  TabView* const view = Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {});
  EXPECT_EQ(Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {}), view);
  EXPECT_EQ(creator.calls, 1);
  EXPECT_EQ(repeats, 1);
}

TEST_F(Workspaces, MakeANewViewAfterTheOldOneWasDestroyed) {
  Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {})->Destroy(TabView::kDestroy_Closing);
  EXPECT_EQ(Workspace::Instance()->FindTabView(u"test.tab"), nullptr);
  EXPECT_NE(Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {}), nullptr);
  EXPECT_EQ(creator.calls, 2);
}

TEST_F(Workspaces, AnswerNullForAnUnknownId) {
  EXPECT_EQ(Workspace::Instance()->CreateOrReanimateTabView(u"test.other", {}), nullptr);
  EXPECT_EQ(repeats, 0);
}

TEST_F(Workspaces, LeaveTheBoundsOfCreationWhereTheFrameDoesNotLayOut) {
  frame.laysOut = false;
  Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {});
  EXPECT_EQ(creator.log, "create(0,0,500,360) ");
}

TEST_F(Workspaces, KeepAViewAsLargeAsItsContainer) {
  Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {});
  frame.Activate();
  creator.log.clear();
  frame.container->resize(300, 200);
  EXPECT_EQ(creator.log, "bounds(0,0,300,200) ");
}

// Only a sanitizer sees that a widget is asked for its view while it is half gone.
TEST_F(Workspaces, AreSilentOnEventsOfTheContainerWhileAViewsWidgetGoes) {
  auto view = std::make_unique<PartingPanel>(&creator.log, frame.container);
  view->Create(u"test.parting", u"Test panel", &frame, true);
  creator.log.clear();
  view = nullptr;
  EXPECT_EQ(creator.log, "");
}

TEST_F(Workspaces, ForgetAViewThatIsDeleted) {
  Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {});
  creator.view = nullptr;
  EXPECT_EQ(Workspace::Instance()->FindTabView(u"test.tab"), nullptr);
}

TEST_F(Workspaces, HideAViewWithItsFrame) {
  TabView* const view = Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {});
  view->Show(false);
  EXPECT_FALSE(frame.shown);
  EXPECT_FALSE(view->IsShown());
  view->Show(true);
  frame.shown = false;
  EXPECT_FALSE(view->IsShown());
}

TEST_F(Workspaces, BringAViewToTheFrontAndOnDuty) {
  TabView* const view = Workspace::Instance()->CreateOrReanimateTabView(u"test.tab", {});
  EXPECT_FALSE(view->IsFrontMost());
  view->BringToFront(true, false);
  EXPECT_TRUE(view->IsFrontMost());
  EXPECT_TRUE(view->IsOnDuty());
}

namespace {

struct Duty : testing::Test {
  std::string log;
  test::Frame frame;
  QLineEdit* elsewhere = new QLineEdit(&frame.window);
  test::Panel panel{&log};
  test::Pane pane{&log};
  boost::intrusive_ptr<zebui::controls::UI_TextEdit> edit = new zebui::controls::UI_TextEdit(1, 0);

  void SetUp() override {
    elsewhere->setGeometry(0, 370, 100, 20);
    panel.Create(u"test.panel", u"Panel", &frame, true);
    pane.Create(&panel, {0, 0, 100, 100});
    pane.Show(true);
    panel.GetZEBNode()->ChildPushBack(edit);
    frame.Activate();
    elsewhere->setFocus();
    log.clear();
  }
  void TearDown() override {
    panel.GetZEBNode() ? panel.GetZEBNode()->ChildRemove(edit) : void();
    pane.Destroy();
    panel.Destroy();
  }
};

} // namespace

TEST_F(Duty, BeginsOnceWhenTheFocusEntersThePanelAnywhere) {
  edit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  EXPECT_TRUE(panel.IsOnDuty());
  EXPECT_EQ(log, "on ");
  pane.SetFocus();
  EXPECT_EQ(log, "on pane-focus ");
}

TEST_F(Duty, EndsWhenTheFocusGoesElsewhereInTheProgram) {
  edit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  elsewhere->setFocus(Qt::MouseFocusReason);
  EXPECT_FALSE(panel.IsOnDuty());
  EXPECT_EQ(log, "on off ");
}

TEST_F(Duty, LastsWhileTheWindowIsLeftOrADialogStandsAboveIt) {
  edit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  QApplication::setActiveWindow(nullptr);
  EXPECT_TRUE(panel.IsOnDuty());
  QWidget dialog(&frame.window, Qt::Dialog);
  QLineEdit field(&dialog);
  dialog.show();
  QApplication::setActiveWindow(&dialog);
  field.setFocus();
  EXPECT_TRUE(panel.IsOnDuty());
  EXPECT_EQ(log, "on ");
}

TEST_F(Duty, LastsWhenTheControlWithTheFocusVanishes) {
  edit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  edit->UI_Show(false);
  EXPECT_TRUE(panel.IsOnDuty());
}

TEST_F(Duty, EndsBeforeThePanelIsDestroyed) {
  edit->UI_GainKeyboardFocus(zebui::ui::kFocusChange_Pointer);
  log.clear();
  pane.Destroy();
  panel.Destroy();
  EXPECT_EQ(log, "pane-destroy off destroy ");
}

TEST_F(Duty, SendsCommandsToThePanelThenToItsSuperCommanders) {
  struct Super : Commander {
    explicit Super(std::string* sink) : Commander(nullptr), log(sink) {}
    bool ObeyCommand(const Command& command) override {
      *log += "super" + std::to_string(command.GetID()) + " ";
      return true;
    }
    std::string* log;
  } super(&log);
  test::Frame other;
  test::Panel second(&log, &super);
  second.Create(u"test.second", u"Second", &other, true);
  second.obeys = 57634;
  SetTabViewOnDuty(&second);
  log.clear();
  EXPECT_TRUE(RouteCommand(57634));
  EXPECT_TRUE(RouteCommand(57635));
  EXPECT_EQ(log, "command57634 command57635 super57635 ");
  second.Destroy();
  EXPECT_FALSE(RouteCommand(57634));
}

TEST(CommandStatus, IsDisabledWhenNobodyAnswers) {
  bool enabled = true;
  EXPECT_FALSE(FindStatus(32000, enabled));
  EXPECT_FALSE(enabled);
}

TEST(Shortcuts, DeclareANumberOnceInAContextAndKeepTheOrder) {
  auto* manager = ShortcutManager::Instance();
  EXPECT_NE(manager->GetContext("global"), nullptr);
  EXPECT_EQ(manager->GetContext("test"), nullptr);
  CommandContext& context = manager->AddContext("test", u"Test");
  context.DeclareCommand("cmd.b", 2, 0, "", {}, false);
  context.DeclareCommand("cmd.a", 1, 0, "", {}, false);
  manager->AddContext("test", u"Other").DeclareCommand("cmd.c", 2, 0, "", {}, false);
  ASSERT_EQ(context.GetCommands().size(), 2U);
  EXPECT_EQ(context.GetCommands()[0].name, "cmd.b");
  EXPECT_EQ(context.GetName(), u"Test");
}

TEST(Shortcuts, ReplaceAWingMenuThatIsAddedAgain) {
  auto* manager = ShortcutManager::Instance();
  manager->AddWindowMenuID("test", u"One", "Test_Wing");
  manager->AddWindowMenuID("test", u"Two", "Test_Wing");
  const auto& menus = manager->GetWindowMenuIDs();
  ASSERT_EQ(menus.size(), 1U);
  EXPECT_EQ(menus[0].label, u"Two");
}

TEST(WindowClasses, GoWithTheirMenuEntries) {
  AddWindowClass(u"test.type", u"test.handler", 1);
  AddWindow(u"test.type", kDefaultWindowID, u"Test", kDefaultWindowContextID);
  ASSERT_EQ(GetWindowClasses().size(), 1U);
  EXPECT_EQ(GetWindowMenu().size(), 1U);
  RemoveWindowClass(u"test.type");
  EXPECT_TRUE(GetWindowClasses().empty());
  EXPECT_TRUE(GetWindowMenu().empty());
}
