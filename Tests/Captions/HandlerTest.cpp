#include <algorithm>

#include "Captions/contracts/Stations.h"
#include "Captions/shell/CaptionsModule.h"
#include "Support.h"
#include "UIF/ShortcutManager.h"
#include "zebappsupport/Feature.h"
#include "zebcore/Localizer.h"

// How the panel announces itself to the host, and how its view comes and goes.
namespace Captivo::Testing {

namespace {

using zebcore::messaging::CountListeners;
using zebcore::messaging::IsListening;
using Strings = std::vector<std::string>;

constexpr const char* kWingMenu = "Captivo_Wing_Menu";

class Handling : public PanelTest {
 protected:
  ~Handling() override {
    zebappsupport::feature::SetFeatureEnabled("NewGenCaption", false);
    zebcore::config::Localizer::Get().SetLanguage("en");
    HSL::Handler::SetPanelMovementHook(nullptr);
  }
  static bool HasWindowClass() {
    for (const auto& windowClass : UIF::GetWindowClasses())
      if (windowClass.typeID == UIF::kCaptionsWindowTypeID)
        return true;
    return false;
  }
  static std::vector<UString> WindowTitles() {
    std::vector<UString> titles;
    for (const auto& entry : UIF::GetWindowMenu())
      if (entry.typeID == UIF::kCaptionsWindowTypeID)
        titles.push_back(entry.title);
    return titles;
  }
  static UIF::WindowMenuID WingMenu() {
    for (const auto& menu : UIF::ShortcutManager::Instance()->GetWindowMenuIDs())
      if (menu.menu == kWingMenu)
        return menu;
    return {};
  }
  // What the host was asked for since the last time, as "call station" or "call id".
  static Strings TakeRequests(const Strings& calls) {
    Strings requests;
    for (const auto& call : zebcore::trace::Take()) {
      if (std::find(calls.begin(), calls.end(), call.call) == calls.end())
        continue;
      const auto& what = call.args.contains("station") ? call.args.at("station") : call.args.value("id", Json());
      requests.push_back(call.call + " " + (what.is_string() ? what.get<std::string>() : what.dump()));
    }
    return requests;
  }
  using Json = nlohmann::json;
};

// The commands of the panel's context as declared by a module that is made now, not by one that was made before.
std::vector<UIF::CommandDeclaration> DeclareCommands() {
  auto* manager = UIF::ShortcutManager::Instance();
  if (auto* former = manager->GetContext("captions"))
    *former = UIF::CommandContext("captions", u"Captions Panel");
  const std::unique_ptr<HSL::Module> module = HSL::Module::CreateModule(HSL::kCaptionsModuleID, u"Captions");
  EXPECT_NE(module, nullptr);
  const auto* context = manager->GetContext("captions");
  return context ? context->GetCommands() : std::vector<UIF::CommandDeclaration>();
}

using NamedNumber = std::pair<std::string, int>;

const std::vector<NamedNumber> kThirteenCommands = {{"cmd.captions.justify.left", 32000},
                                                    {"cmd.captions.justify.center", 32001},
                                                    {"cmd.captions.justify.right", 32002},
                                                    {"cmd.captions.italicize", 32010},
                                                    {"cmd.captions.underline", 32011},
                                                    {"cmd.captions.musicnote", 32012},
                                                    {"cmd.captions.background.color", 32013},
                                                    {"cmd.captions.text.color", 32014},
                                                    {"cmd.captions.bold", 32015},
                                                    {"cmd.captions.edge.color", 32016},
                                                    {"cmd.captions.selectall", 32020},
                                                    {"cmd.captions.importsettings", 32030},
                                                    {"cmd.captions.exportsettings", 32031}};

std::vector<NamedNumber> NamesAndNumbers(const std::vector<UIF::CommandDeclaration>& commands) {
  std::vector<NamedNumber> pairs;
  for (const auto& command : commands)
    pairs.emplace_back(command.name, command.number);
  return pairs;
}

} // namespace

TEST_F(Handling, WithTheNewerPanelOnNothingIsRegisteredYetTheThirteenCommandsAre) {
  UIF::ShortcutManager::Instance()->AddWindowMenuID("elsewhere", u"Not the panel's", kWingMenu);
  const auto openers = CountListeners(MZ::kStation_ClosedCaptionsActivation);
  const auto clips = CountListeners(MZ::kStation_MasterClipActivation);
  zebappsupport::feature::SetFeatureEnabled("NewGenCaption", true);
  EXPECT_EQ(HSL::Handler::CreateHandler(HSL::kCaptionsHandlerID, u"Captions"), nullptr);
  EXPECT_EQ(CountListeners(MZ::kStation_ClosedCaptionsActivation), openers);
  EXPECT_EQ(CountListeners(MZ::kStation_MasterClipActivation), clips);
  EXPECT_FALSE(HasWindowClass());
  EXPECT_EQ(WindowTitles(), std::vector<UString>{});
  EXPECT_EQ(WingMenu().context, "elsewhere");
  EXPECT_EQ(NamesAndNumbers(DeclareCommands()), kThirteenCommands);
}

TEST_F(Handling, TheShortcutContextHoldsThirteenCommandsInOrder) {
  const auto commands = DeclareCommands();
  EXPECT_EQ(NamesAndNumbers(commands), kThirteenCommands);
  for (const auto& command : commands) {
    EXPECT_EQ(command.kind, 0);
    EXPECT_TRUE(command.decal.empty());
    EXPECT_TRUE(command.text.IsNull());
    EXPECT_FALSE(command.flag);
  }
}

TEST_F(Handling, TheShortcutContextIsNamedInTheLanguageOfTheProgram) {
  auto* manager = UIF::ShortcutManager::Instance();
  if (manager->GetContext("captions"))
    GTEST_SKIP() << "a context that stands keeps its name";
  ASSERT_TRUE(zebcore::config::Localizer::Get().SetLanguage("de"));
  DeclareCommands();
  EXPECT_EQ(manager->GetContext("captions")->GetName(), u"Untertitelfenster");
}

TEST_F(Handling, DestroyingAHandlerWithoutAViewWithdrawsStationsAndWindowClass) {
  {
    CaptionsHandler own(u"Captions");
    const zebcore::messaging::Listener* listener = &own;
    EXPECT_TRUE(HasWindowClass());
    EXPECT_TRUE(IsListening(MZ::kStation_ClosedCaptionsActivation, listener));
    EXPECT_TRUE(IsListening(MZ::kStation_MasterClipActivation, listener));
    zebcore::trace::Take();
  }
  const Strings withdrawn = TakeRequests({"messaging::RemoveListener", "UIF::RemoveWindowClass", "TabView::Destroy"});
  EXPECT_EQ(withdrawn, (Strings{"messaging::RemoveListener " + MZ::kStation_ClosedCaptionsActivation.Text(),
                                "messaging::RemoveListener " + MZ::kStation_MasterClipActivation.Text(),
                                "UIF::RemoveWindowClass " + zebcore::ToUTF8(UIF::kCaptionsWindowTypeID)}));
  EXPECT_FALSE(HasWindowClass());
}

TEST_F(Handling, DestroyingAHandlerThatFollowsAClipLeavesTheStationOfItsStreamFirst) {
  clip = AddClip();
  stream = AddStream(clip, MakeCaptions({1}));
  {
    CaptionsHandler own(u"Captions");
    SelectClip(clip);
    zebcore::trace::Take();
  }
  const Strings withdrawn = TakeRequests({"messaging::RemoveListener"});
  ASSERT_EQ(withdrawn.size(), 3U);
  EXPECT_EQ(withdrawn.front(), "messaging::RemoveListener " + stream.Query<BE::INotification>()->GetStationID().Text());
}

TEST_F(Handling, AFurtherViewTakesThePlaceOfTheFirst) {
  OpenPanel();
  const boost::shared_ptr<CaptionsView> first = Inspector::View(Handler());
  UIF::WorkspaceFrame* frameOfFirst = first->GetFrame();
  UIF::TabView* second = Handler().CreateTabView(frameOfFirst);
  EXPECT_EQ(Inspector::View(Handler()).get(), second);
  EXPECT_NE(second, first.get());
  EXPECT_EQ(first.use_count(), 1);
  first->Destroy(UIF::TabView::kDestroy_Closing);
}

TEST_F(Handling, TheFirstViewIsLetGoOnlyOnceTheFurtherOneIsStored) {
  OpenPanel();
  CaptionsView* const first = Inspector::View(Handler()).get();
  UIF::WorkspaceFrame* frameOfFirst = first->GetFrame();
  // A view that goes takes its pane along, which leaves its stations.
  std::vector<CaptionsView*> storedMeanwhile;
  zebcore::trace::SetAnnotator([&](zebcore::trace::Call& call) {
    if (call.call == "messaging::RemoveListener")
      storedMeanwhile.push_back(Inspector::View(Handler()).get());
  });
  UIF::TabView* const second = Handler().CreateTabView(frameOfFirst);
  zebcore::trace::SetAnnotator(nullptr);
  ASSERT_FALSE(storedMeanwhile.empty());
  EXPECT_NE(second, first);
  for (const CaptionsView* stored : storedMeanwhile)
    EXPECT_EQ(stored, second);
}

TEST_F(Handling, OpeningAPanelThatIsInFrontDoesNothing) {
  OpenPanel();
  ASSERT_TRUE(View().IsFrontMost());
  zebcore::trace::Take();
  OpenPanel();
  EXPECT_EQ(TakeCalls("TabView::"), Strings{});
}

TEST_F(Handling, TheWingMenuIsTheTitleABlankAndThePanelMenu) {
  MakeHandler();
  EXPECT_EQ(WingMenu().context, "captions");
  EXPECT_EQ(WingMenu().label, u"Captions Panel Menu");
  EXPECT_EQ(WindowTitles(), std::vector<UString>{u"Captions"});
}

TEST_F(Handling, TitleAndPanelMenuAreEachInTheLanguageOfTheProgram) {
  ASSERT_TRUE(zebcore::config::Localizer::Get().SetLanguage("de"));
  OpenPanel();
  EXPECT_EQ(WingMenu().label, u"Untertitel Fenstermenü");
  EXPECT_EQ(WindowTitles(), std::vector<UString>{u"Untertitel"});
  EXPECT_EQ(View().GetName(), u"Untertitel");
}

TEST_F(Handling, ThePanelMovesOfTheHostReachTheirOperations) {
  MakeHandler();
  std::vector<HSL::Handler::PanelMovement> moves;
  HSL::Handler::SetPanelMovementHook([&](HSL::Handler::PanelMovement move) {
    moves.push_back(move);
    return true;
  });
  zebcore::trace::Take();
  for (const int number : {11311, 11916, 11917})
    EXPECT_TRUE(Handler().ObeyCommand(UIF::Command(number))) << number;
  using Movement = HSL::Handler::PanelMovement;
  EXPECT_EQ(moves, (std::vector<Movement>{Movement::FindBox, Movement::NextPanel, Movement::PreviousPanel}));
  EXPECT_EQ(TakeRequests({"CommandHandler::ObeyCommand"}), Strings{});
}

TEST_F(Handling, APanelMoveThatIsNotDoneFallsThroughToTheBase) {
  MakeHandler();
  zebcore::trace::Take();
  for (const int number : {11311, 11916, 11917})
    EXPECT_FALSE(Handler().ObeyCommand(UIF::Command(number))) << number;
  EXPECT_EQ(TakeRequests({"Handler::OnSelectFindBox", "Handler::OnSelectNextPanel", "Handler::OnSelectPreviousPanel",
                          "CommandHandler::ObeyCommand"}),
            (Strings{"Handler::OnSelectFindBox null", "CommandHandler::ObeyCommand 11311",
                     "Handler::OnSelectNextPanel null", "CommandHandler::ObeyCommand 11916",
                     "Handler::OnSelectPreviousPanel null", "CommandHandler::ObeyCommand 11917"}));
}

TEST_F(Handling, AnyOtherCommandGoesToTheBaseAsItIs) {
  MakeHandler();
  zebcore::trace::Take();
  for (const int number : {32000, 11310, 11918})
    EXPECT_FALSE(Handler().ObeyCommand(UIF::Command(number))) << number;
  EXPECT_EQ(TakeRequests({"Handler::OnSelectFindBox", "Handler::OnSelectNextPanel", "Handler::OnSelectPreviousPanel",
                          "CommandHandler::ObeyCommand"}),
            (Strings{"CommandHandler::ObeyCommand 32000", "CommandHandler::ObeyCommand 11310",
                     "CommandHandler::ObeyCommand 11918"}));
}

} // namespace Captivo::Testing
