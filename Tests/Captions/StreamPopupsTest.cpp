#include "Captions/contracts/SelectionMessages.h"
#include "FormatBar.h"

namespace Captivo::Testing {

namespace {

using Times = std::vector<double>;
using zebcaptioning::ParagraphStyleAttributes;

constexpr StreamFormat kCC1 = zebcaptioning::kStreamFormat_608_CC1;

class StreamPopups : public FormatBarTest {
 protected:
  // CC1 with 1 and 3, CC3 with 5 and 7, an open track with 9; the first is on show.
  void ShowThreeStreams() {
    ShowClosed(MakeCaptions({1, 3}));
    AddStream(clip, MakeCaptions({9}), kOpenTrack1);
    AddStream(clip, MakeCaptions({5, 7}), kCC1 + 2);
    ASSERT_EQ(OfferedFormats(), (std::vector<StreamFormat>{kCC1, kCC1 + 2, kOpenTrack1}));
  }
  static std::vector<UString> Items(const zebui::controls::UI_Popup& popup) {
    std::vector<UString> items;
    for (std::int64_t i = 0; i < popup.Size(); ++i)
      items.push_back(popup.GetItemString(i));
    return items;
  }
  zebui::controls::UI_Popup& Streams() { return *Inspector::StreamPopup(View()); }
  zebui::controls::UI_Popup& Types() { return *Inspector::CaptionTypePopup(View()); }
  StreamFormat FormatOnShow() { return Inspector::StreamFormatOnShow(View()); }
};

} // namespace

TEST_F(StreamPopups, ListTheSourcesFormatsInTheirOrderAndShowTheOneOnShow) {
  ShowThreeStreams();
  std::vector<UString> labels;
  for (const StreamFormat format : OfferedFormats())
    labels.push_back(zebcaptioning::GetFullStreamFormatLabel(format));
  EXPECT_EQ(Items(Streams()), labels);
  EXPECT_EQ(Streams().GetValue(), 0);
  Pane().SelectStreamFormat(2);
  EXPECT_EQ(Items(Streams()), labels);
  EXPECT_EQ(Streams().GetValue(), 2);
}

TEST_F(StreamPopups, OfASourceWithoutStreamsAreEmpty) {
  ShowThreeStreams();
  View().UpdateForSource(CaptionsSource(), 0, 0);
  EXPECT_EQ(Streams().Size(), 0);
  EXPECT_EQ(Streams().GetValueString(), UString());
  EXPECT_TRUE(Streams().IsDisabled());
  EXPECT_EQ(Types().Size(), 0);
}

TEST_F(StreamPopups, OfOneStreamHaveOneItemAndCannotBeUsed) {
  ShowClosed(MakeCaptions({1}));
  EXPECT_EQ(Streams().Size(), 1);
  EXPECT_TRUE(Streams().IsDisabled());
  AddStream(clip, MakeCaptions({5}), kOpenTrack1);
  EXPECT_EQ(Streams().Size(), 2);
  EXPECT_FALSE(Streams().IsDisabled());
}

TEST_F(StreamPopups, ChoosingAStreamShowsItsCaptions) {
  ShowThreeStreams();
  Streams().Choose(1);
  EXPECT_EQ(FormatOnShow(), kCC1 + 2);
  EXPECT_EQ(Begins(), (Times{5, 7}));
  Streams().Choose(2);
  EXPECT_EQ(FormatOnShow(), kOpenTrack1);
  EXPECT_TRUE(Inspector::IsOpenCaptions(View()));
  EXPECT_EQ(Begins(), (Times{9}));
}

TEST_F(StreamPopups, OfDisplayTypesAreFilledForThe608FamilyAtTheStart) {
  OpenPanelWithoutLayout();
  std::set<zebcaptioning::CaptionType> types;
  ASSERT_TRUE(zebcaptioning::GetSupportedCaptionTypes(608, types));
  EXPECT_EQ(Types().Size(), static_cast<std::int64_t>(types.size()));
}

TEST_F(StreamPopups, OfDisplayTypesListThoseOfTheFormatAscendingWithTheirMap) {
  for (const StreamFormat format : {kCC1, kService1}) {
    ShowStream(format, MakeCaptions({1}));
    std::set<zebcaptioning::CaptionType> types;
    ASSERT_TRUE(zebcaptioning::GetSupportedCaptionTypes(format, types));
    std::vector<UString> descriptions;
    std::int64_t index = 0;
    for (const auto type : types) {
      descriptions.push_back(zebcaptioning::GetCaptionTypeDescription(type));
      EXPECT_EQ(Inspector::CaptionTypeMap(View()).left.at(index++), type);
    }
    EXPECT_EQ(Items(Types()), descriptions);
    EXPECT_EQ(Inspector::CaptionTypeMap(View()).size(), types.size());
  }
}

TEST_F(StreamPopups, OfDisplayTypesAreEmptyAndCannotBeUsedForAFormatWithoutTypes) {
  ShowClosed(MakeCaptions({1}));
  ASSERT_GT(Types().Size(), 0);
  ShowStream(kTeletextPage1, MakeCaptions({1}));
  EXPECT_EQ(Types().Size(), 0);
  EXPECT_TRUE(Inspector::CaptionTypeMap(View()).empty());
  EXPECT_TRUE(Types().IsDisabled());
}

TEST_F(StreamPopups, OfDisplayTypesShowTheSelectionsAfterTheyWereFilled) {
  ParagraphStyleAttributes rollUp2;
  rollUp2.captionType = 2;
  ShowClosed({MakeLook(1, Span(), rollUp2)});
  EXPECT_EQ(Types().GetValueString(), u"Roll-up 2 rows");
  View().UpdateForSource(Inspector::Source(Pane()), 32, 15);
  EXPECT_EQ(Types().GetValueString(), u"Roll-up 2 rows");
}

TEST_F(StreamPopups, ATypeThatIsNotListedShowsTheFirstAndChoosingThatWritesItsOwnType) {
  ParagraphStyleAttributes unknown;
  unknown.captionType = 99;
  ShowClosed({MakeLook(1, Span(), unknown)});
  ASSERT_EQ(Inspector::CaptionTypeMap(View()).right.count(Stored(1).paragraph.captionType), 0U);
  EXPECT_EQ(Types().GetValue(), 0);
  zebcore::trace::Take();
  Types().Choose(0);
  EXPECT_EQ(TakeApplications(), (Applications{{0, {1}, kWholeText}}));
  EXPECT_EQ(Stored(1).paragraph.captionType, Inspector::CaptionTypeMap(View()).left.at(0));
}

TEST_F(StreamPopups, ThatAreMissingEndTheirOwnFillingAloneAndTheMapOfTheTypesIsEmptiedAllTheSame) {
  ShowThreeStreams();
  const auto streams = std::exchange(Inspector::StreamPopup(View()), nullptr);
  Inspector::FillStreamPopup(View(), Inspector::Source(Pane()));
  const auto types = std::exchange(Inspector::CaptionTypePopup(View()), nullptr);
  ASSERT_FALSE(Inspector::CaptionTypeMap(View()).empty());
  Inspector::FillCaptionTypePopup(View());
  EXPECT_TRUE(Inspector::CaptionTypeMap(View()).empty());
  Inspector::StreamPopup(View()) = streams;
  Inspector::CaptionTypePopup(View()) = types;
  EXPECT_EQ(Streams().Size(), 3);
  EXPECT_GT(Types().Size(), 0);
}

// --- Regions and styles

TEST_F(StreamPopups, RegionsAndStylesComeAsTheyAreNamedBehindAFirstEntryThatIsChosen) {
  ShowOpen(MakeCaptions({1}));
  auto& regions = *Inspector::RegionPopup(View());
  auto& styles = *Inspector::StylePopup(View());
  const std::vector<UString> names{u"b", u"a", u"b"};
  View().SetRegionNames(names);
  View().SetStyleNames(names);
  EXPECT_EQ(Items(regions), (std::vector<UString>{u"None", u"b", u"a", u"b"}));
  EXPECT_EQ(Items(styles), (std::vector<UString>{u"Custom", u"b", u"a", u"b"}));
  EXPECT_EQ(regions.GetValue(), 0);
  EXPECT_EQ(styles.GetValue(), 0);
  regions.SetValue(2);
  View().SetRegionNames({u"c"});
  EXPECT_EQ(Items(regions), (std::vector<UString>{u"None", u"c"}));
  EXPECT_EQ(regions.GetValue(), 0);
}

TEST_F(StreamPopups, AStreamWithNoRegionsHasTheFirstEntryAloneAndShowsIt) {
  ShowOpen(MakeCaptions({1}));
  EXPECT_EQ(Items(*Inspector::RegionPopup(View())), std::vector<UString>{u"None"});
  EXPECT_EQ(Inspector::RegionPopup(View())->GetValue(), 0);
  EXPECT_EQ(Items(*Inspector::StylePopup(View())), std::vector<UString>{u"Custom"});
  EXPECT_EQ(Inspector::StylePopup(View())->GetValue(), 0);
}

TEST_F(StreamPopups, ChoosingARegionOrAStyleChangesNoCaptionAndTheNextPublicationShowsTheCaptionsOwn) {
  ShowOpen(MakeCaptions({1}));
  View().SetRegionNames({u"Top"});
  View().SetStyleNames({u"Song"});
  const Info held = Shown();
  const auto before = Stored(1).paragraph;
  zebcore::trace::Take();
  for (const auto* popup : {&Inspector::RegionPopup(View()), &Inspector::StylePopup(View())}) {
    (*popup)->SetDisabled(false);
    // Only the grid is refreshed.
    Inspector::OpenPositionGrid(View())->SetValue({2, 2});
    Inspector::ItalicButton(View()).SetValue(true);
    (*popup)->Choose(1);
    EXPECT_EQ((*popup)->GetValue(), 1);
    EXPECT_EQ(Inspector::OpenPositionGrid(View())->GetValue(), (PointT<int>{-1, -1}));
    EXPECT_TRUE(Inspector::ItalicButton(View()).GetValue());
  }
  EXPECT_EQ(TakeApplications(), Applications{});
  EXPECT_EQ(Shown(), held);
  EXPECT_EQ(Stored(1).paragraph, before);
  Pane().PublishSelectionFormat();
  EXPECT_EQ(Inspector::RegionPopup(View())->GetValue(), 0);
  EXPECT_EQ(Inspector::StylePopup(View())->GetValue(), 0);
}

// --- A stream chosen from outside

TEST_F(StreamPopups, TheFormatOnShowOnlySelectsTheTimes) {
  ShowThreeStreams();
  zebcore::trace::Take();
  View().SelectStreamByFormat({Seconds(3)}, kCC1);
  EXPECT_EQ(FormatOnShow(), kCC1);
  EXPECT_EQ(SelectedBegins(), (Times{3}));
  EXPECT_EQ(TakeCalls("CaptioningStreamUpdater::UpdateCaptioningStream"), std::vector<std::string>{});
}

TEST_F(StreamPopups, FormatZeroSelectsTheTimesInTheStreamOnShow) {
  ShowThreeStreams();
  View().SelectStreamByFormat({Seconds(1), Seconds(3)}, 0);
  EXPECT_EQ(FormatOnShow(), kCC1);
  EXPECT_EQ(SelectedBegins(), (Times{1, 3}));
}

TEST_F(StreamPopups, AnotherFormatIsShownFirstAndThenItsTimesSelected) {
  ShowThreeStreams();
  View().SelectStreamByFormat({Seconds(7)}, kCC1 + 2);
  EXPECT_EQ(FormatOnShow(), kCC1 + 2);
  EXPECT_EQ(SelectedBegins(), (Times{7}));
  View().SelectStreamByFormat({Seconds(9)}, kOpenTrack1);
  EXPECT_EQ(FormatOnShow(), kOpenTrack1);
  EXPECT_EQ(SelectedBegins(), (Times{9}));
}

TEST_F(StreamPopups, ASourceThatDoesNotOfferTheFormatOnShowShowsItsFirstStream) {
  ShowThreeStreams();
  Streams().SetValue(2);
  Inspector::StreamFormatOnShow(View()) = kTeletextPage1;
  Inspector::FillStreamPopup(View(), Inspector::Source(Pane()));
  EXPECT_EQ(Streams().Size(), 3);
  EXPECT_EQ(Streams().GetValue(), 0);
  Inspector::StreamFormatOnShow(View()) = kCC1;
}

TEST_F(StreamPopups, AFormatThatTheSourceLacksChangesNeitherStreamNorSelection) {
  ShowThreeStreams();
  ASSERT_EQ(SelectedBegins(), (Times{1}));
  View().SelectStreamByFormat({Seconds(3)}, kTeletextPage1);
  EXPECT_EQ(FormatOnShow(), kCC1);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  View().SelectStreamByFormat({Seconds(3)}, 12345);
  EXPECT_EQ(SelectedBegins(), (Times{1}));
  EXPECT_TRUE(boxes.empty());
}

} // namespace Captivo::Testing
