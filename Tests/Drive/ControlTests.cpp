// The controls of the format bar, as a person uses them.

#include "DriveProcess.h"

namespace Tests {

class BarControls : public DriveTest {
 protected:
  void Open(const char* format) {
    Do("new");
    clip = Do("add_clip", {{"name", "Harbour"}, {"width", 640}, {"height", 360}, {"frame_rate", {25, 1}}}).at("clip");
    stream = Do("add_stream", {{"clip", clip},
                               {"format", format},
                               {"captions", Json::array({Caption(1, 2, "One"), Caption(3, 4, "Two")})}})
                 .at("stream");
    Do("select", {{"what", "clip"}, {"clip", clip}});
    Do("open_panel");
    Do("trace");
  }
  Json Control(const std::string& name) { return Do("control", {{"name", name}}); }
  // The parameters of the formats that were applied since last asked.
  std::vector<int> Applied() {
    std::vector<int> parameters;
    const Json trace = Do("trace", {{"only", {"CaptioningStreamUpdater::ApplyFormatParameter"}}});
    for (const Json& call : trace.at("calls"))
      parameters.push_back(call.at("args").at("parameter"));
    return parameters;
  }
};

TEST_F(BarControls, AreAllToldWithWhatTheyHave) {
  Open("open");
  const Json controls = Do("controls").at("controls");
  EXPECT_EQ(controls.size(), 54U);
  EXPECT_EQ(controls[0].at("name"), "filterBox");
  EXPECT_EQ(controls[53].at("name"), "scrollBar");
  std::map<std::string, int> classes;
  for (const Json& control : controls) {
    for (const char* field : {"class", "visible", "enabled", "bounds"})
      EXPECT_TRUE(control.contains(field)) << control;
    ++classes[control.at("class")];
  }
  EXPECT_EQ(classes["UI_Popup"], 7);
  EXPECT_EQ(classes["UI_HotTextNumber"], 8);
  EXPECT_EQ(classes["PictureButton"], 10);
  EXPECT_EQ(classes["UI_PositionGridControl"], 2);
  const Json size = Control("fontSizeControl");
  for (const char* field : {"value", "text", "unknown", "min", "max", "decimals", "tool_tip", "accessible_name"})
    EXPECT_TRUE(size.contains(field)) << field;
  EXPECT_EQ(Control("boldButton").at("command"), 32015);
  EXPECT_EQ(Control("boldButton").at("on"), false);
  EXPECT_FALSE(Control("fontWeightPopup").at("items").empty());
}

TEST_F(BarControls, ANumberIsAppliedWhenItsChangeIsFinishedAndKeepsItsFraction) {
  Open("open");
  EXPECT_EQ(Do("set", {{"control", "fontSizeControl"}, {"value", 24.5}}).at("value"), 24.5);
  EXPECT_EQ(Applied(), std::vector<int>{5});
  Do("set", {{"control", "fontSizeControl"}, {"value", 30}, {"phases", {0, 1}}});
  EXPECT_TRUE(Applied().empty());
}

TEST_F(BarControls, AControlThatIsDisabledIsOnlyReachedByForceAndIsDisabledAgain) {
  Open("open");
  EXPECT_NE(Refused("set", {{"control", "opacityControl"}, {"value", 50}}).find("disabled"), std::string::npos);
  EXPECT_EQ(Do("set", {{"control", "opacityControl"}, {"value", 50}, {"force", true}}).at("ok"), true);
  EXPECT_EQ(Control("opacityControl").at("enabled"), false);
  EXPECT_EQ(Applied(), std::vector<int>{11});
  EXPECT_NE(Refused("press", {{"control", "colorSwatch"}}).find("hidden"), std::string::npos);
}

TEST_F(BarControls, PopupsGridsButtonsAndTheSearchBoxAreUsedByTheirNames) {
  Do("fonts", {{"families",
                {{{"name", "Foo"}, {"faces", {{{"style", "Regular"}}, {{"style", "Bold"}, {"bold", true}}}}},
                 {{"name", "Bar"}}}}});
  Open("open");
  EXPECT_EQ(Control("fontFamilyPopup").at("items"), (Json{"Foo", "Bar"})) << "in the order given";
  Do("set", {{"control", "fontFamilyPopup"}, {"value", "Foo"}});
  EXPECT_EQ(Applied(), std::vector<int>{4});
  Do("set", {{"control", "openPositionGrid"}, {"value", {1, 1}}});
  EXPECT_EQ(Control("openPositionGrid").at("value"), (Json{1, 1}));
  Do("press", {{"control", "alignRightButton"}});
  EXPECT_EQ(Control("alignRightButton").at("on"), true);
  Do("set", {{"control", "filterBox"}, {"value", "Tw"}});
  EXPECT_EQ(RowTimes(), Times({3}));
  Refused("set", {{"control", "fontFamilyPopup"}, {"value", 7}});
  Refused("set", {{"control", "noSuchControl"}, {"value", 7}});
  Refused("press", {{"control", "fontLabel"}});
}

TEST_F(BarControls, TheColourPickerIsUsedWithItsDialogAndItsEyedropper) {
  Open("open");
  EXPECT_EQ(Do("picker", {{"color", {1, 0, 0, 1}}}).at("value"), (Json{1.0, 0.0, 0.0, 1.0}));
  EXPECT_EQ(Applied(), std::vector<int>{8});
  Do("next_color", {{"color", {0, 1, 0, 1}}});
  EXPECT_EQ(Do("picker", {{"swatch", true}}).at("value"), (Json{0.0, 1.0, 0.0, 1.0}));
  EXPECT_EQ(Do("picker", {{"swatch", true}}).at("value"), (Json{0.0, 1.0, 0.0, 1.0})) << "cancelled";
  EXPECT_EQ(Do("picker", {{"eyedropper", "start"}}).at("on"), true);
  EXPECT_EQ(Do("view").at("eyedropper_active"), true);
  EXPECT_EQ(Do("picker", {{"eyedropper", "end"}, {"color", {0, 0, 1, 1}}}).at("value"), (Json{0.0, 0.0, 1.0, 1.0}));
  EXPECT_EQ(Do("view").at("eyedropper_active"), false);
  EXPECT_GE(Do("send", {{"message", "ColorPickerSwatchStartEyedropperModeMessage"}}).at("listeners"), 1);
  EXPECT_EQ(Do("view").at("eyedropper_active"), true);
  Refused("next_color");
  Refused("picker", {{"color", {2, 0, 0}}});
}

TEST_F(BarControls, TheColourMenuOfClosedCaptionsIsToldAndAnswered) {
  Open("cea608");
  Do("next_menu", {{"choose", 2}});
  Do("press", {{"control", "colorSwatch"}});
  const Json menus = Do("menus").at("menus");
  ASSERT_EQ(menus.size(), 1U);
  EXPECT_EQ(menus[0].at("name"), nullptr) << "the panel builds it itself";
  int checked = 0;
  for (const Json& item : menus[0].at("items")) {
    ASSERT_TRUE(item.at("checked").is_boolean()) << item;
    checked += item.at("checked").get<bool>();
  }
  EXPECT_EQ(checked, 1);
  EXPECT_EQ(Applied(), std::vector<int>{8});
}

TEST_F(BarControls, DialogsAreOnTheRecord) {
  Open("open");
  Do("press", {{"control", "importSettingsButton"}});
  Do("press", {{"control", "exportSettingsButton"}});
  Do("picker", {{"swatch", true}});
  EXPECT_EQ(Calls({"Captions", "ColorPickerDialog"}),
            (std::vector<std::string>{"CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog",
                                      "CaptionsExportSettingsDialog::DisplayCaptionsExportSettingsDialog",
                                      "ColorPickerDialog::PickColor"}));
}

} // namespace Tests
