// The panel's menus, as a person opens them and chooses from them.

#include "DriveProcess.h"

namespace Tests {

class Menus : public DriveTest {
 protected:
  // The items of the only menu that was shown since last asked, by id.
  std::map<int, Json> Shown(const std::string& name) {
    const Json menus = Do("menus").at("menus");
    std::map<int, Json> items;
    EXPECT_EQ(menus.size(), 1U);
    if (menus.size() != 1)
      return items;
    EXPECT_EQ(menus[0].at("name"), name);
    for (const Json& item : menus[0].at("items")) {
      EXPECT_EQ(item.at("separator"), item.at("id").is_null());
      if (!item.at("separator"))
        items[item.at("id")] = item;
    }
    return items;
  }
  void OpenContextMenu() { Do("mouse", {{"x", 300}, {"y", 30}, {"button", "right"}}); }
};

TEST_F(Menus, TheContextMenuHoldsTheCommandsOfThePanelAndOfTheHostWithTheirKeys) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  OpenContextMenu();
  auto items = Shown("Captivo_Context_Menu");
  for (const int id : {57635, 57634, 57637, 57632, 32012, 33000, 33001, 32015, 32010, 32011, 32000, 32001, 32002, 32014,
                       32013, 32016, 33002, 33003, 32020}) {
    ASSERT_TRUE(items.contains(id)) << id;
    EXPECT_FALSE(items.at(id).at("text").get<std::string>().empty()) << id;
    EXPECT_EQ(items.at(id).at("checked"), nullptr) << "nobody sets a mark on " << id;
  }
  EXPECT_EQ(items.at(32015).at("keys"), "Ctrl+B");
  EXPECT_EQ(items.at(32015).at("text"), "Bold");
  EXPECT_EQ(items.at(32015).at("enabled"), true);
  EXPECT_TRUE(Do("menus").at("menus").empty()) << "each menu is told once";
}

TEST_F(Menus, TheClipboardsEntriesAreUsableAsTheOnlySelectedRowsTextSays) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  Do("focus", {{"row", Seconds(1)}});
  Do("caret", {{"start", 0}, {"end", 2}});
  OpenContextMenu();
  auto items = Shown("Captivo_Context_Menu");
  EXPECT_EQ(items.at(57634).at("enabled"), true);
  EXPECT_EQ(items.at(57635).at("enabled"), true);
  Do("caret", {{"start", 1}, {"end", 1}});
  OpenContextMenu();
  EXPECT_EQ(Shown("Captivo_Context_Menu").at(57634).at("enabled"), false);
  Do("focus", {{"none", true}});
  Do("command", {{"number", 32020}});
  OpenContextMenu();
  items = Shown("Captivo_Context_Menu");
  for (const int id : {57632, 57634, 57635, 57637})
    EXPECT_EQ(items.at(id).at("enabled"), false) << "two rows are selected: " << id;
}

TEST_F(Menus, WhatIsChosenIsObeyedByThePanel) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  Do("next_menu", {{"choose", 32020}});
  OpenContextMenu();
  EXPECT_EQ(Selected(), Times({1, 3}));
  Click(0);
  Do("next_menu", {{"choose", 32012}});
  OpenContextMenu();
  EXPECT_NE(Row(Seconds(1)).at("text").get<std::string>().find("♪"), std::string::npos);
}

TEST_F(Menus, AMenuThatIsLeftAndAnItemThatCannotBeChosenChangeNothing) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  OpenContextMenu();
  EXPECT_EQ(Selected(), Times({1}));
  Do("next_menu", {{"choose", nullptr}});
  OpenContextMenu();
  Do("next_menu", {{"choose", 57634}});
  OpenContextMenu();
  Do("next_menu", {{"choose", 4711}});
  OpenContextMenu();
  EXPECT_EQ(Selected(), Times({1}));
  Do("trace");
  OpenContextMenu();
  EXPECT_TRUE(Calls({"CommandHandler::ObeyCommand", "CaptioningStreamUpdater::"}).empty())
      << "an answer holds for one menu";
}

TEST_F(Menus, CaptionsAreAddedDeletedAndWalkedThrough) {
  OpenCaptions({Caption(1, 2, "One"), Caption(5, 6, "Two"), Caption(9, 10, "Three")});
  const auto choose = [&](int id) {
    Do("next_menu", {{"choose", id}});
    OpenContextMenu();
  };
  choose(33002);
  EXPECT_EQ(Selected(), Times({5}));
  choose(33005);
  EXPECT_EQ(Selected(), Times({9}));
  choose(33003);
  EXPECT_EQ(Selected(), Times({5}));
  choose(33004);
  EXPECT_EQ(Selected(), Times({1}));
  choose(33000);
  EXPECT_EQ(RowTimes().size(), 4U);
  choose(33001);
  EXPECT_EQ(RowTimes(), Times({1, 5, 9}));
}

TEST_F(Menus, ATextThatIsBeingTypedIsLeftWhenTheNextCaptionIsChosen) {
  OpenCaptions({Caption(1, 2, "One"), Caption(5, 6, "Two")});
  Do("focus", {{"row", Seconds(1)}});
  Do("next_menu", {{"choose", 33002}});
  OpenContextMenu();
  EXPECT_EQ(Selected(), Times({5}));
  EXPECT_EQ(Panel().at("focus"), (Json{{"in", "pane"}}));
}

TEST_F(Menus, TheWingMenuIsTheOneBehindThePanelsTitle) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("row_text", {{"row", Seconds(1)}, {"phase", 1}, {"value", "Uno"}});
  Do("commit_edits");
  EXPECT_EQ(Do("wing_menu").at("shown"), true);
  auto items = Shown("Captivo_Wing_Menu");
  EXPECT_EQ(items.at(57643).at("enabled"), true) << "undo";
  EXPECT_EQ(items.at(57644).at("enabled"), false) << "redo";
  EXPECT_TRUE(items.contains(32030));
  EXPECT_TRUE(items.contains(32031));
  Do("next_menu", {{"choose", 57643}});
  Do("wing_menu");
  EXPECT_EQ(Stream()[0].at("text"), "One");
}

TEST_F(Menus, TheMenusSpeakTheLanguageOfTheMoment) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("language", {{"name", "de"}});
  OpenContextMenu();
  EXPECT_EQ(Shown("Captivo_Context_Menu").at(32015).at("text"), "Fett");
}

TEST_F(Menus, OpeningAMenuIsOnTheRecordAndStaysWithinThePanel) {
  OpenCaptions({Caption(1, 2, "One")});
  Do("trace");
  OpenContextMenu();
  const auto calls = Calls({"MenuUtils::"});
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0], "MenuUtils::TrackContextMenu");
}

TEST_F(DriveTest, EveryCommandOfThePanelHasANameAndKeysThatClashWithNone) {
  const Json contexts = Do("registry").at("contexts");
  std::map<std::string, std::string> taken;
  int commands = 0;
  for (const Json& context : contexts) {
    for (const Json& command : context.at("commands")) {
      commands += context.at("id") == "captions";
      if (context.at("id") == "captions") {
        EXPECT_FALSE(command.at("keys").empty()) << command;
      }
      for (const Json& keys : command.at("keys")) {
        EXPECT_FALSE(taken.contains(keys)) << command << " and " << taken[keys];
        taken[keys] = command.at("name");
      }
    }
  }
  EXPECT_EQ(commands, 13);
}

TEST_F(DriveTest, AShortcutReachesThePanelUnlessTheTextWantsTheKeyForItself) {
  OpenCaptions({Caption(1, 2, "One"), Caption(3, 4, "Two")});
  Do("type", {{"key_name", "a"}, {"modifiers", 4}});
  EXPECT_EQ(Selected(), Times({1, 3}));
  Click(0);
  Do("focus", {{"row", Seconds(1)}});
  Do("type", {{"key_name", "a"}, {"modifiers", 4}});
  EXPECT_EQ(Selected(), Times({1}));
  EXPECT_EQ(Row(Seconds(1)).at("text_selection"), Json::array({0, 3}));
  Do("trace");
  Do("type", {{"key_name", "b"}, {"modifiers", 4}});
  EXPECT_EQ(Calls({"CaptioningStreamUpdater::ApplyFormatParameter"}).size(), 1U) << "bold";
  Do("type", {{"key_name", "down"}, {"modifiers", 16}});
  EXPECT_EQ(Selected(), Times({3})) << "the next caption";
}

TEST_F(DriveTest, TheHandlerTellsWhatTheHostAnswersToAPanelMovement) {
  OpenCaptions({Caption(1, 2, "One")});
  for (const int number : {11311, 11916, 11917}) {
    Do("next_panel_result", {{"value", true}});
    Do("trace");
    EXPECT_EQ(Do("command", {{"number", number}, {"to", "handler"}}).at("handled"), true);
    EXPECT_EQ(Calls({"Handler::", "CommandHandler::ObeyCommand"}).size(), 1U) << "the base is not asked";
    Do("next_panel_result", {{"value", false}});
    Do("trace");
    EXPECT_EQ(Do("command", {{"number", number}, {"to", "handler"}}).at("handled"), false);
    EXPECT_EQ(Calls({"Handler::", "CommandHandler::ObeyCommand"}).size(), 2U) << "the operation, then the base";
  }
  Do("trace");
  EXPECT_EQ(Do("command", {{"number", 32010}, {"to", "handler"}}).at("handled"), false);
  EXPECT_EQ(Calls({"Handler::", "CommandHandler::ObeyCommand"}).size(), 1U) << "any other number goes to the base";
}

} // namespace Tests
