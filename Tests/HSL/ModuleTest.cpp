#include <cmath>
#include <filesystem>
#include <fstream>

#include <dlfcn.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "HSL/Module.h"
#include "HSL/TimecodeInfo.h"
#include "UIF/CommandHandler.h"
#include "UIF/Workspace.h"
#include "zebcore/Log.h"

namespace fs = std::filesystem;
using namespace HSL;

namespace {

struct PlainModule : Module {
  using Module::Module;
};
struct PlainHandler : Handler {
  using Handler::Handler;
  UIF::TabView* CreateTabView(UIF::WorkspaceFrame*) override {
    ++calls;
    return nullptr;
  }
  const std::string& GetShortcutContextName() const override {
    static const std::string name = "test";
    return name;
  }
  int calls = 0;
};
struct PlainFrame : UIF::WorkspaceFrame {
  void* GetContainer() override { return nullptr; }
  void SetTitle(const UString&) override {}
  void SetShown(bool) override {}
  bool IsShown() const override { return false; }
  void BringToFront() override {}
  bool IsFrontMost() const override { return false; }
};

class ModuleFolder : public testing::Test {
 protected:
  void SetUp() override {
    folder = fs::temp_directory_path() / ("captivo-modules-" + std::to_string(getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    zebcore::log::SetSink([this](zebcore::log::Level, std::string_view line) { log += std::string(line) + "\n"; });
  }
  void TearDown() override {
    zebcore::log::SetSink(nullptr);
    fs::remove_all(folder);
  }
  // A library that surely loads: one of the system's that is loaded already.
  static fs::path GoodLibrary() {
    Dl_info info{};
    double (*const function)(double) = &::cosh;
    dladdr(reinterpret_cast<const void*>(function), &info);
    return fs::canonical(info.dli_fname);
  }
  bool Logged(const std::string& text) const { return log.find(text) != std::string::npos; }
  fs::path folder;
  std::string log;
};

} // namespace

TEST(ModuleFactories, MakeAModuleOfAKnownIdAndNothingElse) {
  EXPECT_TRUE(
      Module::RegisterFactory(u"test.module", [](const UString& name) -> Module* { return new PlainModule(name); }));
  const auto module = Module::CreateModule(u"test.module", u"Name");
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(module->GetName(), u"Name");
  EXPECT_EQ(Module::CreateModule(u"test.unknown", u"Name"), nullptr);
}

TEST(ModuleFactories, AreReplacedByALaterRegistrationAndMayRefuse) {
  Module::RegisterFactory(u"test.module", [](const UString&) -> Module* { return nullptr; });
  EXPECT_EQ(Module::CreateModule(u"test.module", u"Name"), nullptr);
}

TEST(HandlerFactories, MakeAHandlerOfAKnownIdAndNothingElse) {
  EXPECT_TRUE(Handler::RegisterFactory(
      u"test.handler", [](const UString& name) -> Handler* { return new PlainHandler(name, u"test.handler"); }));
  const auto handler = Handler::CreateHandler(u"test.handler", u"Name");
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(handler->GetTabID(), u"test.handler");
  EXPECT_EQ(Handler::CreateHandler(u"test.unknown", u"Name"), nullptr);
}

TEST(Handlers, AreAskedForTheirTabViewAsLongAsTheyLive) {
  PlainFrame frame;
  UIF::Workspace::SetFrameFactory([&](const UString&) { return &frame; });
  {
    PlainHandler handler(u"Name", u"test.handler");
    EXPECT_EQ(UIF::Workspace::Instance()->CreateOrReanimateTabView(handler.GetTabID(), {}), nullptr);
    EXPECT_EQ(handler.calls, 1);
  }
  EXPECT_EQ(UIF::Workspace::Instance()->CreateOrReanimateTabView(u"test.handler", {}), nullptr);
  UIF::Workspace::SetFrameFactory(nullptr);
}

TEST(Handlers, MoveBetweenPanelsOnlyWhereTheHostCan) {
  PlainHandler handler(u"Name", u"test.handler");
  EXPECT_FALSE(handler.OnSelectFindBox());
  EXPECT_FALSE(handler.OnSelectNextPanel());
  Handler::SetPanelMovementHook([](Handler::PanelMovement way) { return way == Handler::PanelMovement::NextPanel; });
  EXPECT_TRUE(handler.OnSelectNextPanel());
  EXPECT_FALSE(handler.OnSelectPreviousPanel());
  Handler::SetPanelMovementHook(nullptr);
  EXPECT_FALSE(handler.OnSelectNextPanel());
  EXPECT_TRUE(handler.AllowClose());
  EXPECT_FALSE(handler.ObeyCommand(UIF::Command(11311)));
}

TEST_F(ModuleFolder, ThatDoesNotExistHoldsNoModules) {
  EXPECT_EQ(ModuleLoader::LoadAll(folder / "nowhere"), 0);
  EXPECT_TRUE(Logged("nowhere"));
}

TEST_F(ModuleFolder, LeavesOutALibraryThatIsBrokenAndNamesItInTheLog) {
  std::ofstream(folder / "broken.so") << "this is no library";
  fs::copy_file(GoodLibrary(), folder / "good.so");
  EXPECT_EQ(ModuleLoader::LoadAll(folder), 1);
  EXPECT_TRUE(Logged("broken.so"));
  EXPECT_FALSE(Logged("good.so"));
}

TEST_F(ModuleFolder, LeavesOutALibraryThatIsCutOff) {
  fs::copy_file(GoodLibrary(), folder / "cut.so");
  fs::resize_file(folder / "cut.so", 4096);
  EXPECT_EQ(ModuleLoader::LoadAll(folder), 0);
  EXPECT_TRUE(Logged("cut.so"));
}

TEST_F(ModuleFolder, LeavesOutWhatLiesElsewhere) {
  const fs::path elsewhere = folder / "elsewhere";
  fs::create_directories(elsewhere);
  fs::copy_file(GoodLibrary(), elsewhere / "good.so");
  fs::create_symlink(elsewhere / "good.so", folder / "link.so");
  fs::create_directories(folder / "folder.so");
  std::ofstream(folder / "notes.txt") << "no library either";
  EXPECT_EQ(ModuleLoader::LoadAll(folder), 0);
  EXPECT_TRUE(Logged("link.so"));
  EXPECT_FALSE(Logged("notes.txt"));
}

TEST_F(ModuleFolder, BelongsToTheRunningProgram) {
  const fs::path found = ModuleLoader::GetModuleFolder();
  EXPECT_TRUE(found.filename() == "modules");
  EXPECT_TRUE(found.is_absolute());
}

TEST(TimecodeInfo, StartsWithTheDefaultDisplayAndTheRatesAskedFor) {
  const auto info = GetTimecodeInfo({}, zebmediatypes::kFrameRate_25, zebmediatypes::kFrameRate_Zero);
  EXPECT_EQ(info.display, zebmediatypes::kTimeDisplay_Default);
  EXPECT_EQ(info.videoRate, zebmediatypes::kFrameRate_25);
  EXPECT_EQ(info.audioRate, zebmediatypes::kFrameRate_Zero);
}
