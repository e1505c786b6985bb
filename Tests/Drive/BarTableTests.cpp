// The whole format bar as the driver tells it: what is shown, where, and what can be used, in every format and width.

#include <algorithm>
#include <cmath>
#include <map>

#include "DriveProcess.h"

namespace Tests {

namespace {

using Bounds = std::vector<double>;
using Places = std::map<std::string, Bounds>;
using Controls = std::map<std::string, Json>;

constexpr double kBarWidth = 14;

// Where the controls of the present class stand, worked out from left to right by the widths that they ask for.
class ExpectedPlaces {
 public:
  ExpectedPlaces(const Controls& controls, bool isOpen) : mControls(controls) {
    PlaceStreamRow();
    int x = 4;
    if (isOpen)
      PlaceFontRow();
    else
      x = PlaceCaptionType();
    PlaceButtons(x, isOpen ? 66 : 33, isOpen);
  }
  const Places& Get() const { return mPlaces; }

 private:
  double Width(const std::string& name) const { return mControls.at(name).at("recommended").at(0); }
  double Put(const std::string& name, double x, double y, double width) {
    mPlaces[name] = {x, y, width, 20};
    return width;
  }
  double PutAtLeast(const std::string& name, double x, double y, double least) {
    return Put(name, x, y, std::max(Width(name), least));
  }
  void PlaceStreamRow() {
    double x = 3 + Put("filterBox", 3, 3, 167) + 4;
    x += Put("streamLabel", x, 3, Width("streamLabel")) + 4;
    x += PutAtLeast("streamPopup", x, 3, 149) + 10;
    x += Put("gridLabel", x, 3, Width("gridLabel")) + 4;
    Put("gridSizeText", x, 3, Width("gridSizeText"));
  }
  void PlaceFontRow() {
    double x = 8;
    x += Put("fontLabel", x, 33, Width("fontLabel")) + 4;
    x += PutAtLeast("fontFamilyPopup", x, 33, 149) + 4;
    x += PutAtLeast("fontWeightPopup", x, 33, 100) + 4;
    for (const std::string name : {"fontSize", "edgeWidth", "lineSpacing"}) {
      x += Put(name + "Label", x, 33, Width(name + "Label")) + 4;
      x += Put(name + "Control", x, 33, 24) + 4;
    }
    x += Put("regionPopup", x, 33, 100) + 4;
    Put("stylePopup", x, 33, 100);
  }
  int PlaceCaptionType() {
    const double x = 4 + Put("captionTypeLabel", 4, 33, Width("captionTypeLabel")) + 4;
    return static_cast<int>(x + Put("captionTypePopup", x, 33, Width("captionTypePopup")) + 14);
  }
  void PlaceButtons(int x, int y, bool isOpen) {
    const auto put = [&](const std::string& name, int width, int advance) {
      Put(name, x, y, width);
      x += advance;
    };
    const auto label = [&](const std::string& name, int gap) {
      x += static_cast<int>(Put(name, x, y, Width(name)) + gap);
    };
    put("alignLeftButton", 20, 25);
    put("alignCenterButton", 20, 25);
    put("alignRightButton", 20, 30);
    put("alignDivider", 2, 8);
    if (isOpen)
      put("boldButton", 20, 25);
    put("italicButton", 20, 25);
    put("underlineButton", 20, 25);
    put("musicNoteButton", 20, 30);
    put("styleDivider", 2, 8);
    put("backgroundColorButton", 20, 20);
    put("textColorButton", 20, isOpen ? 20 : 25);
    if (isOpen) {
      put("edgeColorButton", 20, 25);
      put("colorPicker", 40, 45);
      put("opacityControl", 24, 30);
      label("opacityUnitText", 10);
      put("colorDivider", 2, 34);
      put("openPositionGrid", 20, 30);
      label("openPositionXLabel", 4);
      put("openPositionXControl", 38, 38);
      label("openPositionXUnitText", 10);
      label("openPositionYLabel", 4);
      put("openPositionYControl", 38, 38);
      label("openPositionYUnitText", 0);
    } else {
      put("colorSwatch", 20, 35);
      put("colorDivider", 2, 8);
      put("closedPositionGrid", 20, 27);
      label("closedPositionXLabel", 4);
      put("closedPositionXControl", 30, 35);
      label("closedPositionYLabel", 4);
      put("closedPositionYControl", 30, 35);
      PutAtLeast("doubleHeightPopup", x, y, 80);
    }
  }

  const Controls& mControls;
  Places mPlaces;
};

} // namespace

class BarTable : public DriveTest {
 protected:
  Controls AllControls() {
    Controls controls;
    const Json answer = Do("controls");
    for (const Json& control : answer.at("controls"))
      controls[control.at("name")] = control;
    return controls;
  }
  void MakeClip(const std::string& format) {
    clip = Do("add_clip", {{"name", format}, {"width", 640}, {"height", 360}, {"frame_rate", {25, 1}}}).at("clip");
    stream = Do("add_stream", {{"clip", clip},
                               {"format", format},
                               {"captions", Json::array({Caption(1, 2, "One"), Caption(3, 4, "Two")})}})
                 .at("stream");
  }
  static Bounds At(const Controls& controls, const std::string& name) {
    return controls.at(name).at("bounds").get<Bounds>();
  }
};

TEST_F(BarTable, EveryFormatStandsAtEveryWidthWhereItsOwnControlsPutIt) {
  Do("new");
  Do("open_panel");
  for (const std::string format : {"cea608", "cea708", "teletext", "ebu_n19", "australian", "open"}) {
    SCOPED_TRACE(format);
    const bool isOpen = format == "open";
    MakeClip(format);
    Do("select", {{"what", "clip"}, {"clip", clip}});
    for (const int width : {300, 409, 410, 800, 2000}) {
      SCOPED_TRACE(width);
      Do("resize", {{"width", width}, {"height", 500}});
      const Controls controls = AllControls();
      const ExpectedPlaces expected(controls, isOpen);
      for (const auto& [name, bounds] : expected.Get())
        EXPECT_EQ(At(controls, name), bounds) << name;
      const double top = isOpen ? 92 : 59;
      const double addX = width < 410 ? 220 : width - 192;
      EXPECT_EQ(At(controls, "pane"), (Bounds{0, top, width - kBarWidth, 500 - top - 40}));
      EXPECT_EQ(At(controls, "scrollBar"), (Bounds{width - kBarWidth, top, kBarWidth, 500 - top - 40}));
      EXPECT_EQ(At(controls, "importSettingsButton"), (Bounds{20, 470, 88, 18}));
      EXPECT_EQ(At(controls, "exportSettingsButton"), (Bounds{120, 470, 88, 18}));
      EXPECT_EQ(At(controls, "addCaptionButton"), (Bounds{addX, 470, 88, 18}));
      EXPECT_EQ(At(controls, "deleteCaptionButton"), (Bounds{addX + 96, 470, 88, 18}));
      EXPECT_EQ(controls.at("gridSizeText").at("text") == "640x360", isOpen);
      EXPECT_EQ(controls.at("doubleHeightPopup").at("visible"), format == "ebu_n19");
      EXPECT_EQ(controls.at("boldButton").at("visible"), isOpen);
      EXPECT_EQ(controls.at("colorSwatch").at("visible"), !isOpen);
      EXPECT_EQ(controls.at("regionPopup").at("visible"), false);
    }
  }
}

TEST_F(BarTable, APanelIsMadeInTheSizeOfItsWindowAndKeepsThePlacesOfCreationUntilItIsResized) {
  Do("new");
  for (const int width : {300, 409, 2000}) {
    SCOPED_TRACE(width);
    Do("resize", {{"width", width}, {"height", 400}});
    Do("open_panel", {{"layout", false}});
    Controls controls = AllControls();
    EXPECT_EQ(At(controls, "streamLabel"), (Bounds{171, 3, 55, 19}));
    EXPECT_EQ(At(controls, "pane"), (Bounds{0, 59, width - kBarWidth, 301}));
    EXPECT_EQ(At(controls, "scrollBar"), (Bounds{width - kBarWidth, 55, kBarWidth, 305}));
    EXPECT_EQ(controls.at("scrollBar").at("max"), 610);
    EXPECT_EQ(controls.at("scrollBar").at("page"), 305);
    EXPECT_EQ(At(controls, "addCaptionButton"), (Bounds{width - 192.0, 370, 88, 18}));
    Do("resize", {{"width", width}, {"height", 400}});
    controls = AllControls();
    EXPECT_EQ(At(controls, "streamLabel").at(0), 174);
    EXPECT_EQ(At(controls, "scrollBar"), (Bounds{width - kBarWidth, 59, kBarWidth, 301}));
    EXPECT_EQ(At(controls, "addCaptionButton").at(0), width < 410 ? 220 : width - 192);
    Do("close_panel");
  }
  Refused("resize", {{"stacked", true}});
}

TEST_F(BarTable, AReadOnlyProjectLeavesTheFilterTheStreamAndTheSettingsToUse) {
  Do("new");
  Do("open_panel");
  MakeClip("cea608");
  Do("add_stream", {{"clip", clip}, {"format", "open"}, {"captions", Json::array({Caption(1, 2, "One")})}});
  Do("select", {{"what", "clip"}, {"clip", clip}});
  Do("read_only", {{"on", true}});
  std::vector<std::string> usable;
  for (const auto& [name, control] : AllControls()) {
    const bool canBeFocused = control.at("class") != "UI_StaticText" && control.at("class") != "UI_Divider";
    if (canBeFocused && control.at("visible") == true && control.at("enabled") == true)
      usable.push_back(name);
  }
  EXPECT_EQ(usable, (std::vector<std::string>{"exportSettingsButton", "filterBox", "importSettingsButton", "scrollBar",
                                              "streamPopup"}));
}

} // namespace Tests
