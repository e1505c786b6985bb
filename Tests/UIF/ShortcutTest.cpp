#include <gtest/gtest.h>

#include "UIF/ShortcutManager.h"

namespace UIF {

namespace {

// The manager with two contexts of its own; the user's choices end with the test.
class Keyboard : public ::testing::Test {
 protected:
  Keyboard() {
    Declare("list", "keys.list.bold", 901, {"Ctrl+Alt+Shift+B"});
    Declare("list", "keys.list.italic", 902, {"Ctrl+Alt+Shift+I", "Ctrl+Alt+F9"});
    Declare("map", "keys.map.bold", 903, {"Ctrl+Alt+Shift+B"});
    Declare("global", "keys.global.save", 904, {"Ctrl+Alt+F8"});
  }
  ~Keyboard() override {
    manager.SetKeysListener({});
    manager.ResetAllKeys();
  }
  void Declare(const std::string& context, const std::string& name, int number, KeysList keys) {
    manager.SetCommandDefaults(name, "$$$/Vidra/Test/" + name + "=Do It", std::move(keys));
    manager.AddContext("test." + context, u"Test");
    const std::string id = context == "global" ? context : "test." + context;
    manager.GetContext(id)->DeclareCommand(name, number, 0, "", {}, false);
  }
  ShortcutManager& manager = *ShortcutManager::Instance();
};

} // namespace

TEST_F(Keyboard, KnowsACommandByItsKeysInTheContextThatIsInUse) {
  EXPECT_EQ(manager.FindCommand("test.list", "Ctrl+Alt+Shift+B"), 901);
  EXPECT_EQ(manager.FindCommand("test.map", "Ctrl+Alt+Shift+B"), 903);
  EXPECT_EQ(manager.FindCommand("test.list", "Ctrl+Alt+F9"), 902);
  EXPECT_EQ(manager.FindCommand("test.list", "Ctrl+Alt+F8"), 904) << "keys of the whole program hold everywhere";
  EXPECT_EQ(manager.FindCommand("test.none", "Ctrl+Alt+Shift+B"), 0);
  EXPECT_EQ(manager.FindCommand("test.list", ""), 0);
}

TEST_F(Keyboard, WritesKeysInOneWayOnly) {
  EXPECT_EQ(NormalizeKeys("shift+ctrl+l"), "Ctrl+Shift+L");
  EXPECT_EQ(NormalizeKeys("Ctrl+K, Ctrl+L"), "") << "one press only";
  EXPECT_EQ(NormalizeKeys("Nonsense"), "");
  EXPECT_EQ(manager.FindCommand("test.list", "shift+alt+ctrl+b"), 901);
}

TEST_F(Keyboard, TellsKeysThatArePartOfTypingFromShortcuts) {
  for (const char* keys : {"A", "Shift+A", "Return", "Left", "Shift+Home", "Del"})
    EXPECT_TRUE(IsTypingKey(keys)) << keys;
  for (const char* keys : {"Ctrl+A", "Alt+Down", "F6", "Shift+F6", "Meta+B"})
    EXPECT_FALSE(IsTypingKey(keys)) << keys;
}

TEST_F(Keyboard, TakesTheUsersKeysAndGivesBackItsOwn) {
  int changes = 0;
  manager.SetKeysListener([&] { ++changes; });
  manager.SetKeys("keys.list.bold", {"F7", "f7", "Nonsense"});
  EXPECT_EQ(manager.GetKeys("keys.list.bold"), KeysList{"F7"});
  EXPECT_FALSE(manager.AreKeysDefault("keys.list.bold"));
  EXPECT_EQ(manager.FindCommand("test.list", "Ctrl+Alt+Shift+B"), 0);
  EXPECT_EQ(manager.GetFirstKeysOf(901), "F7");
  manager.SetKeys("keys.list.italic", {});
  EXPECT_EQ(manager.GetFirstKeysOf(902), "") << "a command may have no keys";
  manager.ResetKeys("keys.list.bold");
  EXPECT_EQ(manager.GetKeys("keys.list.bold"), KeysList{"Ctrl+Alt+Shift+B"});
  EXPECT_EQ(manager.GetUserKeys().size(), 1U);
  manager.ResetAllKeys();
  EXPECT_TRUE(manager.GetUserKeys().empty());
  EXPECT_EQ(changes, 4);
}

TEST_F(Keyboard, RemembersOnlyWhatDiffersFromItsOwnKeys) {
  manager.SetKeys("keys.list.bold", {"Ctrl+Alt+Shift+B"});
  EXPECT_TRUE(manager.GetUserKeys().empty());
  manager.SetUserKeys({{"keys.list.bold", {"F7"}}, {"keys.list.italic", {"Ctrl+Alt+Shift+I", "Ctrl+Alt+F9"}}});
  EXPECT_EQ(manager.GetUserKeys().size(), 1U);
  EXPECT_EQ(manager.GetKeys("keys.list.bold"), KeysList{"F7"});
}

TEST_F(Keyboard, FindsClashesWithinAContextAndWithTheWholeProgram) {
  EXPECT_TRUE(manager.FindClashes("test.list", "keys.list.bold", "Ctrl+Alt+Shift+B").empty())
      << "neither with itself nor with another panel";
  const auto within = manager.FindClashes("test.list", "keys.list.bold", "Ctrl+Alt+F9");
  ASSERT_EQ(within.size(), 1U);
  EXPECT_EQ(within[0].command, "keys.list.italic");
  EXPECT_EQ(within[0].context, "test.list");
  const auto program = manager.FindClashes("test.map", "keys.map.bold", "Ctrl+Alt+F8");
  ASSERT_EQ(program.size(), 1U);
  EXPECT_EQ(program[0].command, "keys.global.save");
  EXPECT_EQ(manager.FindClashes("global", "keys.global.save", "Ctrl+Alt+Shift+B").size(), 2U);
}

TEST_F(Keyboard, CallsACommandByItsTextElseByItsName) {
  EXPECT_EQ(manager.GetCommandText("keys.list.bold"), u"Do It");
  EXPECT_EQ(manager.GetCommandText("keys.unknown"), u"keys.unknown");
  ASSERT_NE(manager.FindDeclaration("keys.map.bold"), nullptr);
  EXPECT_EQ(manager.FindDeclaration("keys.map.bold")->number, 903);
  EXPECT_EQ(manager.FindDeclaration("keys.unknown"), nullptr);
}

} // namespace UIF
