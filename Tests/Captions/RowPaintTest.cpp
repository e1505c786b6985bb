#include <algorithm>

#include "MF/VideoFrame.h"
#include "Support.h"
#include "UIF/Drawing.h"

// One pass of the painter, call by call.
namespace Captivo::Testing {

namespace {

class RowPaint : public PanelTest {
 protected:
  using Call = zebcore::trace::Call;

  // What the pane draws and places, from its own background on.
  std::vector<Call> Pass() {
    zebcore::trace::Take();
    Paint();
    std::vector<Call> calls;
    std::size_t backgrounds = 0;
    for (auto& call : zebcore::trace::Take()) {
      const bool isPainting = call.call.rfind("DC::", 0) == 0 || call.call == "Drawbot::SetAntiAliasing" ||
                              call.call == "VideoFrameBlit::BlitFrame" ||
                              call.call.rfind("HotTimecodeControl::S", 0) == 0;
      if (call.call == "DC::FillRect" && backgrounds < 2)
        ++backgrounds;
      if (isPainting && backgrounds == 2) // the first is that of the view below
        calls.push_back(call);
    }
    return calls;
  }
  static std::vector<std::string> Names(const std::vector<Call>& calls) {
    std::vector<std::string> names;
    for (const Call& call : calls)
      names.push_back(call.call);
    return names;
  }
  static std::vector<nlohmann::json> Arguments(const std::vector<Call>& calls, const std::string& name,
                                               const std::string& argument) {
    std::vector<nlohmann::json> values;
    for (const Call& call : calls) {
      if (call.call == name)
        values.push_back(call.args.at(argument));
    }
    return values;
  }

  InterfaceRef<BE::MasterClip> AddClipOf(int width, int height, zebmediatypes::PixelAspectRatio aspect = {1, 1}) {
    BE::MediaInfo info;
    info.width = width;
    info.height = height;
    info.pixelAspect = aspect;
    info.frameRate = zebmediatypes::kFrameRate_25;
    info.duration = Seconds(3600);
    return AddClip(info);
  }
  void OpenPanelOn(const InterfaceRef<BE::MasterClip>& ofClip, const std::vector<boost::intrusive_ptr<Caption>>& rows) {
    clip = ofClip;
    stream = AddStream(clip, rows);
    OpenPanel();
    SelectClip(clip);
  }
  static float LabelWidth() {
    const UIF::Font font = UIF::Font::GetFont(UIF::kFont_Normal);
    return std::max(font.StringWidth(u"In:"), font.StringWidth(u"Out:"));
  }
};

using Json = nlohmann::json;

} // namespace

TEST_F(RowPaint, ARowPaintsItsBandItsPictureEachLabelWithItsTimecodeAndTheDivider) {
  renderer.picture = MF::CreateVideoFrame(114, 64, zebmediatypes::kPixelAspectRatio_Square);
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3}));
  ASSERT_EQ(SelectedBegins(), (std::vector<double>{1}));
  const auto names = Names(Pass());
  const std::vector<std::string> expected{"DC::FillRect",
                                          "Drawbot::SetAntiAliasing",
                                          "DC::FillRect",
                                          "VideoFrameBlit::BlitFrame",
                                          "DC::DrawString",
                                          "HotTimecodeControl::SetBounds",
                                          "HotTimecodeControl::Show",
                                          "DC::DrawString",
                                          "HotTimecodeControl::SetBounds",
                                          "HotTimecodeControl::Show",
                                          "DC::DrawLine"};
  ASSERT_GE(names.size(), expected.size());
  EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(expected.size())),
            expected);
}

TEST_F(RowPaint, TheSurfaceIsSetUpOnceWithOneForTheWholePass) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3, 5}));
  EXPECT_EQ(Arguments(Pass(), "Drawbot::SetAntiAliasing", "mode"), (std::vector<Json>{1}));
}

TEST_F(RowPaint, TheBandOfASelectedRowIsSeventyFourPixelsOfItsHeight) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3}));
  Click(3);
  const auto fills = Arguments(Pass(), "DC::FillRect", "rect");
  const int width = Pane().ClientRect().width;
  ASSERT_EQ(fills.size(), 2U);
  EXPECT_EQ(fills[1], (Json{0, 1 + 75 + 1, width, 74}));
}

TEST_F(RowPaint, PictureLabelsAndTimecodesStandSideBySide) {
  renderer.picture = MF::CreateVideoFrame(114, 64, zebmediatypes::kPixelAspectRatio_Square);
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1}));
  const auto calls = Pass();
  EXPECT_EQ(Arguments(calls, "VideoFrameBlit::BlitFrame", "source"), (std::vector<Json>{{0, 0, 114, 64}}));
  EXPECT_EQ(Arguments(calls, "VideoFrameBlit::BlitFrame", "target"), (std::vector<Json>{{5, 6, 114, 65}}));
  const int labelX = 5 + 114 + 5;
  const int labelWidth = static_cast<int>(LabelWidth()) + 5;
  EXPECT_EQ(Arguments(calls, "DC::DrawString", "rect"),
            (std::vector<Json>{{labelX, 6, labelWidth, 17}, {labelX, 54, labelWidth, 17}}));
  const int timecodeX = static_cast<int>(static_cast<float>(labelX) + LabelWidth() + 5);
  EXPECT_EQ(Arguments(calls, "HotTimecodeControl::SetBounds", "bounds"),
            (std::vector<Json>{{timecodeX, 6, 80, 17}, {timecodeX, 54, 80, 17}}));
}

TEST_F(RowPaint, LabelsAreAlignedRightInTheMiddleAndCutOffAtTheEnd) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1}));
  const auto calls = Pass();
  EXPECT_EQ(Arguments(calls, "DC::DrawString", "text"), (std::vector<Json>{"In:", "Out:"}));
  EXPECT_EQ(Arguments(calls, "DC::DrawString", "align"), (std::vector<Json>{2, 2}));
  EXPECT_EQ(Arguments(calls, "DC::DrawString", "vertical"), (std::vector<Json>{1, 1}));
  EXPECT_EQ(Arguments(calls, "DC::DrawString", "truncate"), (std::vector<Json>{1, 1}));
}

TEST_F(RowPaint, AVeryWideVideoIsSqueezedIntoAPictureOfAHundredAndNinetySix) {
  renderer.picture = MF::CreateVideoFrame(196, 64, zebmediatypes::kPixelAspectRatio_Square);
  OpenPanelOn(AddClipOf(4000, 400), MakeCaptions({1}));
  const auto calls = Pass();
  EXPECT_EQ(Arguments(calls, "VideoFrameBlit::BlitFrame", "source"), (std::vector<Json>{{0, 0, 196, 64}}));
  EXPECT_EQ(Arguments(calls, "VideoFrameBlit::BlitFrame", "target"), (std::vector<Json>{{5, 6, 196, 65}}));
  EXPECT_EQ(Arguments(calls, "DC::DrawString", "rect")[0][0], 5 + 196 + 5);
}

TEST_F(RowPaint, PixelsThatAreNotSquareWidenThePicture) {
  OpenPanelOn(AddClipOf(720, 576, {64, 45}), MakeCaptions({1}));
  EXPECT_EQ(Arguments(Pass(), "DC::DrawString", "rect")[0][0], 5 + 114 + 5);
}

TEST_F(RowPaint, DividersEndEachRowButTheLastInView) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3, 5, 7}));
  Pane().SetBounds({0, 0, 500, 3 * 75});
  const auto calls = Pass();
  EXPECT_EQ(Arguments(calls, "DC::DrawLine", "from"), (std::vector<Json>{{0, 76}, {0, 151}}));
  EXPECT_EQ(Arguments(calls, "DC::DrawLine", "to"), (std::vector<Json>{{500, 76}, {500, 151}}));
}

TEST_F(RowPaint, TheFirstRowInViewStandsAtTheTopHoweverFarDownItIs) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3, 5, 7}));
  Pane().SetBounds({0, 0, 500, 75});
  Pane().SetScrollOffset(150);
  const auto calls = Pass();
  EXPECT_EQ(Arguments(calls, "DC::DrawString", "rect").size(), 2U);
  EXPECT_EQ(Row(5)->GetInControl().GetBounds().y, 1 + 5);
}

TEST_F(RowPaint, APaneThatLostAllItsRowsPaintsNothingOfThem) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3}));
  List().Clear();
  Inspector::FirstVisibleRow(Pane()) = 0;
  Inspector::LastVisibleRow(Pane()) = 1;
  EXPECT_EQ(Names(Pass()), (std::vector<std::string>{"DC::FillRect", "Drawbot::SetAntiAliasing"}));
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), -2);
}

TEST_F(RowPaint, AnEmptyListKeepsTheRowsInViewAsTheyWere) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3}));
  List().Clear();
  Inspector::FirstVisibleRow(Pane()) = 4;
  Inspector::LastVisibleRow(Pane()) = 6;
  Pane().UpdateVisibleRows();
  EXPECT_EQ(Inspector::FirstVisibleRow(Pane()), 4);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 6);
}

TEST_F(RowPaint, AnOffsetBehindTheLastRowShowsTheLastRow) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3, 5}));
  Pane().SetScrollOffset(100 * 75);
  EXPECT_EQ(Inspector::FirstVisibleRow(Pane()), 2);
  EXPECT_EQ(Inspector::LastVisibleRow(Pane()), 2);
  EXPECT_TRUE(Row(5)->HasControls());
  EXPECT_FALSE(Row(1)->HasControls());
}

TEST_F(RowPaint, RowsThatStayInViewKeepTheirControlsAndAreReadAnew) {
  OpenPanelOn(AddClipOf(1920, 1080), MakeCaptions({1, 3, 5}));
  Pane().SetBounds({0, 0, 500, 150});
  const CaptionsTextEdit* former = &Text(3);
  Row(3)->SetStoredText(u"Something else");
  Pane().SetScrollOffset(75);
  EXPECT_EQ(&Text(3), former);
  EXPECT_EQ(Row(3)->GetText(), u"Text");
  EXPECT_FALSE(Row(1)->HasControls());
}

} // namespace Captivo::Testing
