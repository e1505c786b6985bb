#include "Support.h"
#include "zebui/Drawbot.h"

namespace Captivo::Testing {

namespace {

using zebui::ui::UI_Node;

constexpr StreamFormat kEbuN19 = 0x45424E31; // "EBN1"

// Where each control has to stand, from the recommended widths of the very controls.
class BarLayout : public PanelTest {
 protected:
  void ShowStream(StreamFormat format, int width = 1000) {
    clip = AddClip();
    stream = AddStream(clip, MakeCaptions({1}), format);
    OpenPanel(width, 700);
    SelectClip(clip);
  }

  float Recommended(const UI_Node& node) {
    zebui::drawbot::Drawbot drawbot(*View().GetZEBNode());
    return node.UI_GetRecommendedSize(drawbot).x;
  }
  static void ExpectAt(const UI_Node& node, float x, float y, float width, const char* what) {
    const RectT<float> rect = node.UI_GetLocalRectF();
    EXPECT_FLOAT_EQ(rect.x, x) << what;
    EXPECT_FLOAT_EQ(rect.y, y) << what;
    EXPECT_FLOAT_EQ(rect.width, width) << what;
    EXPECT_FLOAT_EQ(rect.height, 20.0F) << what;
  }
  static void ExpectButtonAt(const UIF::PictureButton& button, int x, int y, const char* what) {
    EXPECT_EQ(button.GetBounds(), (RectT<int>{x, y, 20, 20})) << what;
  }
  // The buttons up to the last divider; the x behind it.
  int ExpectButtonsFrom(int x, int y, bool isOpen);
};

#define AT(Name, x, y, width) ExpectAt(*Inspector::Name(View()), x, y, width, #Name)
#define BUTTON_AT(Name, x, y) ExpectButtonAt(Inspector::Name(View()), x, y, #Name)
#define WIDTH(Name) Recommended(*Inspector::Name(View()))

int BarLayout::ExpectButtonsFrom(int x, int y, bool isOpen) {
  const auto top = static_cast<float>(y);
  const auto at = [&] { return static_cast<float>(x); };
  BUTTON_AT(AlignLeftButton, x, y);
  BUTTON_AT(AlignCenterButton, x + 25, y);
  BUTTON_AT(AlignRightButton, x + 50, y);
  x += 80;
  AT(AlignDivider, at(), top, 2);
  x += 8;
  if (isOpen) {
    BUTTON_AT(BoldButton, x, y);
    x += 25;
  }
  BUTTON_AT(ItalicButton, x, y);
  BUTTON_AT(UnderlineButton, x + 25, y);
  BUTTON_AT(MusicNoteButton, x + 50, y);
  x += 80;
  AT(StyleDivider, at(), top, 2);
  x += 8;
  BUTTON_AT(BackgroundColorButton, x, y);
  x += 20;
  BUTTON_AT(TextColorButton, x, y);
  if (isOpen) {
    x += 20;
    BUTTON_AT(EdgeColorButton, x, y);
  }
  x += 25;
  if (isOpen) {
    EXPECT_EQ(Inspector::ColorPicker(View()).GetBounds(), (RectT<int>{x, y, 40, 20}));
    x += 45;
    AT(OpacityControl, at(), top, 24);
    x += 30;
    AT(OpacityUnitText, at(), top, WIDTH(OpacityUnitText));
    x += static_cast<int>(WIDTH(OpacityUnitText) + 10);
  } else {
    AT(ColorSwatch, at(), top, 20);
    x += 35;
  }
  AT(ColorDivider, at(), top, 2);
  return x;
}

} // namespace

TEST_F(BarLayout, TheFirstRowRunsFromTheFilterToTheGridSize) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  AT(FilterBox, 3, 3, 167);
  float x = 174;
  AT(StreamLabel, x, 3, WIDTH(StreamLabel));
  x += WIDTH(StreamLabel) + 4;
  const float popup = std::max(WIDTH(StreamPopup), 149.0F);
  AT(StreamPopup, x, 3, popup);
  x += popup + 10;
  AT(GridLabel, x, 3, WIDTH(GridLabel));
  x += WIDTH(GridLabel) + 4;
  AT(GridSizeText, x, 3, WIDTH(GridSizeText));
}

TEST_F(BarLayout, ClosedCaptionsHaveTheirTypeAndTheButtonsInTheSecondRow) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  float start = 4;
  AT(CaptionTypeLabel, start, 33, WIDTH(CaptionTypeLabel));
  start += WIDTH(CaptionTypeLabel) + 4;
  AT(CaptionTypePopup, start, 33, WIDTH(CaptionTypePopup));
  int x = ExpectButtonsFrom(static_cast<int>(start + WIDTH(CaptionTypePopup) + 14), 33, false);
  const auto at = [&] { return static_cast<float>(x); };
  x += 8;
  AT(ClosedPositionGrid, at(), 33, 20);
  x += 27;
  AT(ClosedPositionXLabel, at(), 33, WIDTH(ClosedPositionXLabel));
  x += static_cast<int>(WIDTH(ClosedPositionXLabel) + 4);
  AT(ClosedPositionXControl, at(), 33, 30);
  x += 35;
  AT(ClosedPositionYLabel, at(), 33, WIDTH(ClosedPositionYLabel));
  x += static_cast<int>(WIDTH(ClosedPositionYLabel) + 4);
  AT(ClosedPositionYControl, at(), 33, 30);
  x += 35;
  AT(DoubleHeightPopup, at(), 33, std::max(WIDTH(DoubleHeightPopup), 80.0F));
}

TEST_F(BarLayout, OpenCaptionsHaveTheirFontInTheSecondRowAndTheButtonsInTheThird) {
  ShowStream(kOpenTrack1);
  float x = 8;
  AT(FontLabel, x, 33, WIDTH(FontLabel));
  x += WIDTH(FontLabel) + 4;
  const float family = std::max(WIDTH(FontFamilyPopup), 149.0F);
  AT(FontFamilyPopup, x, 33, family);
  x += family + 4;
  const float weight = std::max(WIDTH(FontWeightPopup), 100.0F);
  AT(FontWeightPopup, x, 33, weight);
  x += weight + 4;
  AT(FontSizeLabel, x, 33, WIDTH(FontSizeLabel));
  x += WIDTH(FontSizeLabel) + 4;
  AT(FontSizeControl, x, 33, 24);
  x += 28;
  AT(EdgeWidthLabel, x, 33, WIDTH(EdgeWidthLabel));
  x += WIDTH(EdgeWidthLabel) + 4;
  AT(EdgeWidthControl, x, 33, 24);
  x += 28;
  AT(LineSpacingLabel, x, 33, WIDTH(LineSpacingLabel));
  x += WIDTH(LineSpacingLabel) + 4;
  AT(LineSpacingControl, x, 33, 24);
  x += 28;
  AT(RegionPopup, x, 33, 100);
  x += 104;
  AT(StylePopup, x, 33, 100);

  int left = ExpectButtonsFrom(4, 66, true) + 34;
  const auto at = [&] { return static_cast<float>(left); };
  AT(OpenPositionGrid, at(), 66, 20);
  left += 30;
  AT(OpenPositionXLabel, at(), 66, WIDTH(OpenPositionXLabel));
  left += static_cast<int>(WIDTH(OpenPositionXLabel) + 4);
  AT(OpenPositionXControl, at(), 66, 38);
  left += 38;
  AT(OpenPositionXUnitText, at(), 66, WIDTH(OpenPositionXUnitText));
  left += static_cast<int>(WIDTH(OpenPositionXUnitText) + 10);
  AT(OpenPositionYLabel, at(), 66, WIDTH(OpenPositionYLabel));
  left += static_cast<int>(WIDTH(OpenPositionYLabel) + 4);
  AT(OpenPositionYControl, at(), 66, 38);
  left += 38;
  AT(OpenPositionYUnitText, at(), 66, WIDTH(OpenPositionYUnitText));
}

TEST_F(BarLayout, TheOtherClassOfControlsStaysWhereItWas) {
  ShowStream(kOpenTrack1);
  const auto closedX = Inspector::ClosedPositionXControl(View())->UI_GetLocalRectF();
  const auto swatch = Inspector::ColorSwatch(View())->UI_GetLocalRectF();
  View().SetBounds({0, 0, 1400, 700});
  EXPECT_EQ(Inspector::ClosedPositionXControl(View())->UI_GetLocalRectF(), closedX);
  EXPECT_EQ(Inspector::ColorSwatch(View())->UI_GetLocalRectF(), swatch);
}

TEST_F(BarLayout, HiddenControlsOfThePresentClassAreLaidOutToo) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  EXPECT_FALSE(Inspector::DoubleHeightPopup(View())->UI_IsShown());
  EXPECT_FLOAT_EQ(Inspector::DoubleHeightPopup(View())->UI_GetLocalRectF().y, 33.0F);
}

TEST_F(BarLayout, NothingInTheBarLooksAtTheWidthOfThePanel) {
  ShowStream(kEbuN19, 2000);
  const auto wide = Inspector::DoubleHeightPopup(View())->UI_GetLocalRectF();
  View().SetBounds({0, 0, 300, 700});
  EXPECT_EQ(Inspector::DoubleHeightPopup(View())->UI_GetLocalRectF(), wide);
}

TEST_F(BarLayout, AWiderStreamNamePushesTheGridToTheRight) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1);
  const float before = Inspector::GridLabel(View())->UI_GetLocalRectF().x;
  Inspector::StreamPopup(View())->AddItem(UString(80, u'W'));
  Inspector::StreamPopup(View())->SetValueString(UString(80, u'W'), true, true);
  View().SetBounds({0, 0, 1001, 700});
  EXPECT_GT(Inspector::GridLabel(View())->UI_GetLocalRectF().x, before + 100);
}

TEST_F(BarLayout, TheSettingsButtonsStandAtTheLeftOfTheBottomRow) {
  ShowStream(zebcaptioning::kStreamFormat_608_CC1, 600);
  const auto place = Inspector::ImportSettingsButton(View())->UI_GetLocalRectF();
  EXPECT_EQ(place, (RectT<float>{20, 670, 88, 18}));
  EXPECT_EQ(Inspector::ExportSettingsButton(View())->UI_GetLocalRectF(), (RectT<float>{120, 670, 88, 18}));
}

TEST_F(BarLayout, ALongerTextPushesWhatFollowsInItsRow) {
  ShowStream(kOpenTrack1);
  const float english = Inspector::FontSizeControl(View())->UI_GetLocalRectF().x;
  Inspector::FontSizeLabel(View())->SetValue(u"Schriftgröße:");
  View().SetBounds({0, 0, 1001, 700});
  const float start = Inspector::FontSizeLabel(View())->UI_GetLocalRectF().x;
  EXPECT_FLOAT_EQ(Inspector::FontSizeControl(View())->UI_GetLocalRectF().x, start + WIDTH(FontSizeLabel) + 4);
  EXPECT_GT(Inspector::FontSizeControl(View())->UI_GetLocalRectF().x, english);
}

// --- As the view is created, before the host lays it out

TEST_F(BarLayout, TheFirstControlsShareTheirPlacesUntilTheFirstLayoutPartsThem) {
  OpenPanelWithoutLayout(1000, 700);
  const auto left = [](const UI_Node& node) { return node.UI_GetLocalRectF().x; };
  const auto places = [&] {
    return std::vector<float>{left(*Inspector::StreamLabel(View())), left(*Inspector::GridLabel(View())),
                              left(*Inspector::FontLabel(View())), left(*Inspector::FontWeightPopup(View()))};
  };
  EXPECT_EQ(places(), std::vector<float>(4, 171.0F));
  EXPECT_EQ(left(*Inspector::StreamPopup(View())), left(*Inspector::FontFamilyPopup(View())));
  View().SetBounds({0, 0, 1000, 700});
  EXPECT_FLOAT_EQ(left(*Inspector::StreamLabel(View())), 174.0F);
  EXPECT_GT(left(*Inspector::GridLabel(View())), left(*Inspector::StreamPopup(View())) + 149);
  EXPECT_FLOAT_EQ(left(*Inspector::FontLabel(View())), 171.0F) << "open captions are not on show";
}

TEST_F(BarLayout, AtCreationTheScrollBarBeginsAboveThePaneAndScrollsTwiceItsHeight) {
  OpenPanelWithoutLayout(600, 500);
  const int bar = UIF::ScrollBar::GetDefaultSize();
  EXPECT_EQ(Pane().GetBounds(), (RectT<int>{0, 59, 600 - bar, 401}));
  EXPECT_EQ(Inspector::Bar(View()).GetBounds(), (RectT<int>{600 - bar, 55, bar, 405}));
  int min = -1;
  int max = 0;
  int page = 0;
  int step = 0;
  Inspector::Bar(View()).GetScrollParameters(min, max, page, step);
  EXPECT_EQ((std::vector<int>{min, max, page, step}), (std::vector<int>{0, 810, 405, 73}));
  EXPECT_EQ(Inspector::Bar(View()).GetScrollBarPosition(), 0);
  EXPECT_TRUE(Inspector::Bar(View()).IsShown());
}

TEST_F(BarLayout, AtCreationTheAddButtonIsNotKeptApartFromTheSettings) {
  OpenPanelWithoutLayout(409, 500);
  EXPECT_FLOAT_EQ(Inspector::AddCaptionButton(View())->UI_GetLocalRectF().x, 217.0F);
  EXPECT_FLOAT_EQ(Inspector::DeleteCaptionButton(View())->UI_GetLocalRectF().x, 313.0F);
  View().SetBounds({0, 0, 409, 500});
  EXPECT_FLOAT_EQ(Inspector::AddCaptionButton(View())->UI_GetLocalRectF().x, 220.0F);
}

TEST_F(BarLayout, APanelThatIsCreatedTooLowHidesThePaneAndTheButtonsOfItsCaptions) {
  constexpr int kNoRoom = 52 + 7 + 40;
  OpenPanelWithoutLayout(600, kNoRoom);
  EXPECT_FALSE(Pane().IsShown());
  EXPECT_FALSE(Inspector::AddCaptionButton(View())->UI_IsShown());
  EXPECT_FALSE(Inspector::DeleteCaptionButton(View())->UI_IsShown());
  EXPECT_TRUE(Inspector::ImportSettingsButton(View())->UI_IsShown());
  EXPECT_TRUE(Inspector::ExportSettingsButton(View())->UI_IsShown());
  EXPECT_EQ(Inspector::Bar(View()).GetBounds().height, 4);
  EXPECT_TRUE(Inspector::Bar(View()).IsShown());
}

TEST_F(BarLayout, ALineOfRoomIsEnoughForThePaneToBeCreatedOnShow) {
  OpenPanelWithoutLayout(600, 52 + 7 + 40 + 1);
  EXPECT_TRUE(Pane().IsShown());
  EXPECT_EQ(Pane().GetBounds().height, 1);
  EXPECT_TRUE(Inspector::AddCaptionButton(View())->UI_IsShown());
}

} // namespace Captivo::Testing
