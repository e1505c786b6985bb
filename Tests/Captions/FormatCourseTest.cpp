#include "FormatCourse.h"

// Courses through what all formats have in common, and through sizes, heights and types.
namespace Captivo::Testing {

namespace {

using zebcaptioning::CaptioningColor;
using zebcaptioning::CaptionState;
using zebcaptioning::ParagraphStyleAttributes;
using zebcaptioning::TextSpanAttributes;
using Style = TextSpanAttributes;

constexpr StreamFormat kAustralianPage1 = 0x41555331; // "AUS1"

// What the captions of a format can take, told once more.
struct Abilities {
  StreamFormat format;
  bool isOpen = false;
  bool bold = false;
  bool italicAndUnderline = true;
  bool doubleHeight = false;
  int types = 0;
};

const Abilities kFormats[] = {
    {zebcaptioning::kStreamFormat_608_CC1, false, false, true, false, 5},
    {kService1, false, false, true, false, 3},
    {kTeletextPage1, false, false, false, true, 0},
    {kEbuTrack1, false, false, true, true, 0},
    {kAustralianPage1, false, false, false, true, 0},
    {kOpenTrack1, true, true, true, false, 0},
};

class FormatCourse : public CourseTest, public testing::WithParamInterface<Abilities> {
 protected:
  Style RandomLook() {
    Style look;
    look.italic = format.italicAndUnderline && Random(2) == 0;
    look.underline = format.italicAndUnderline && Random(3) == 0;
    look.bold = format.bold && Random(2) == 0;
    if (format.isOpen)
      look.size = static_cast<float>(10 + Random(3));
    else if (format.doubleHeight && Random(2) == 0)
      look.size = 36;
    if (Random(2) == 0)
      look.textColor = {0, 1, 0, 1};
    return look;
  }
  void ShowRandomCaptions() override {
    std::vector<boost::intrusive_ptr<Caption>> captions;
    for (std::size_t i = 0; i < 3; ++i) {
      const auto length = static_cast<std::size_t>(Random(7));
      UString text;
      std::vector<std::pair<unsigned, Style>> looks{{0U, RandomLook()}};
      for (std::size_t at = 0; at < length; ++at) {
        text += static_cast<char16_t>(u'a' + Random(3));
        if (at > 0 && Random(3) == 0)
          looks.emplace_back(static_cast<unsigned>(at), RandomLook());
      }
      std::vector<std::pair<unsigned, Style>> proper;
      for (const auto& look : looks) {
        if (proper.empty() || !(proper.back().second == look.second))
          proper.push_back(look);
      }
      ParagraphStyleAttributes paragraph;
      paragraph.alignment = static_cast<ParagraphStyleAttributes::TextAlignmentType>(Random(2));
      captions.push_back(MakeLook(Begin(i), text, proper, paragraph));
    }
    ShowStream(format.format, captions);
    BeginModel();
  }

  // --- Formatting

  void PickColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue, bool isBackground, bool isLegal) {
    View().ObeyCommand(UIF::Command(isBackground ? 32013 : 32014));
    UIF::ColorPickerControlChangedMessage message;
    message.red = red;
    message.green = green;
    message.blue = blue;
    const auto alpha = Merge(SelectedLooks(), [isBackground](const Style& look) {
                         return isBackground ? look.backgroundColor.alpha : look.textColor.alpha;
                       }).first;
    const CaptioningColor color{static_cast<float>(red) / 255.0F, static_cast<float>(green) / 255.0F,
                                static_cast<float>(blue) / 255.0F, alpha};
    View().HandleMessage(message);
    if (isLegal)
      ChangeLooks([&](Style& look) { (isBackground ? look.backgroundColor : look.textColor) = color; });
  }

  void FormatAtRandom() override {
    const auto looks = SelectedLooks();
    switch (Random(format.isOpen ? 10 : 7)) {
    case 0: {
      const bool value = !looks.front().italic;
      View().ObeyCommand(UIF::Command(32010));
      if (format.italicAndUnderline)
        ChangeLooks([value](Style& look) { look.italic = value; });
      return;
    }
    case 1: {
      const bool value = !looks.front().underline;
      View().ObeyCommand(UIF::Command(32011));
      if (format.italicAndUnderline)
        ChangeLooks([value](Style& look) { look.underline = value; });
      return;
    }
    case 2: {
      const bool value = !looks.front().bold;
      View().ObeyCommand(UIF::Command(32015));
      if (format.bold)
        ChangeLooks([value](Style& look) { look.bold = value; });
      return;
    }
    case 3: {
      const int alignment = Random(3);
      View().ObeyCommand(UIF::Command(32000 + alignment));
      for (const std::size_t index : selected)
        model[index].paragraph.alignment = static_cast<ParagraphStyleAttributes::TextAlignmentType>(alignment);
      return;
    }
    case 4:
      return PickColor(255, 0, 0, Random(2) == 0, true);
    case 5:
      return PickColor(120, 30, 60, Random(2) == 0, format.isOpen);
    case 6:
      return format.isOpen ? SetSizeAtRandom() : SetHeightOrTypeAtRandom();
    case 7: {
      const int width = Random(9);
      Inspector::EdgeWidthControl(View())->Enter(width);
      ChangeLooks([width](Style& look) {
        look.edgeWidth = static_cast<float>(width);
        look.edgeColor = {1, 0, 0, 1};
      });
      return;
    }
    case 8: {
      View().ObeyCommand(UIF::Command(32013));
      const int percent = Random(101);
      Inspector::OpacityControl(View())->Enter(percent);
      ChangeLooks([percent](Style& look) { look.backgroundColor.alpha = static_cast<float>(percent) / 100.0F; });
      return;
    }
    default: {
      const int spacing = Random(50);
      Inspector::LineSpacingControl(View())->Enter(spacing);
      for (const std::size_t index : selected)
        model[index].paragraph.lineSpacing = spacing;
    }
    }
  }
  void SetSizeAtRandom() {
    const int size = 6 + Random(139);
    Inspector::FontSizeControl(View())->Enter(size);
    ChangeLooks([size](Style& look) { look.size = static_cast<float>(size); });
  }
  void SetHeightOrTypeAtRandom() {
    if (selected.empty())
      return; // what is chosen then stays on show until something is selected
    if (format.types > 0 && Random(2) == 0) {
      const int type = Random(format.types);
      Inspector::CaptionTypePopup(View())->SetDisabled(false);
      Inspector::CaptionTypePopup(View())->Choose(type);
      for (const std::size_t index : selected)
        model[index].paragraph.captionType = Inspector::CaptionTypeMap(View()).left.at(type);
      return;
    }
    const bool isDouble = Random(2) == 0;
    Inspector::DoubleHeightPopup(View())->SetDisabled(false);
    Inspector::DoubleHeightPopup(View())->Choose(isDouble ? 1 : 0);
    if (format.doubleHeight || !isDouble)
      ChangeLooks([isDouble](Style& look) { look.size = isDouble ? 36.0F : 18.0F; });
  }

  // --- Comparing

  void ExpectStored() override {
    for (std::size_t i = 0; i < model.size(); ++i) {
      const ModelCaption stored(Stored(Begin(i)));
      EXPECT_EQ(stored.units, model[i].units) << "caption " << i;
      EXPECT_EQ(stored.typing, model[i].typing) << "caption " << i;
      EXPECT_EQ(stored.paragraph.alignment, model[i].paragraph.alignment) << "caption " << i;
      EXPECT_EQ(stored.paragraph.captionType, model[i].paragraph.captionType) << "caption " << i;
      EXPECT_EQ(stored.paragraph.lineSpacing, model[i].paragraph.lineSpacing) << "caption " << i;
    }
  }
  static void ExpectNumber(const zebui::controls::UI_HotTextNumber& control, const std::pair<float, bool>& merged) {
    EXPECT_EQ(control.IsValueUnknown(), !merged.second);
    if (merged.second) {
      EXPECT_EQ(control.GetValue(), static_cast<double>(merged.first));
    }
  }
  void ExpectBar() override {
    const std::vector<Style> looks = SelectedLooks();
    EXPECT_EQ(Inspector::ItalicButton(View()).GetValue(), looks.front().italic);
    EXPECT_EQ(Inspector::UnderlineButton(View()).GetValue(), looks.front().underline);
    const auto [alignment, isAligned] = MergeParagraphs([](const auto& paragraph) { return paragraph.alignment; });
    EXPECT_EQ(Inspector::AlignLeftButton(View()).GetValue(), isAligned && alignment == 0);
    EXPECT_EQ(Inspector::AlignCenterButton(View()).GetValue(), isAligned && alignment == 1);
    EXPECT_EQ(Inspector::AlignRightButton(View()).GetValue(), isAligned && alignment == 2);
    const auto size = Merge(looks, [](const Style& look) { return look.size; });
    if (format.isOpen) {
      EXPECT_EQ(Inspector::BoldButton(View()).GetValue(), looks.front().bold);
      ExpectNumber(*Inspector::FontSizeControl(View()), size);
      ExpectNumber(*Inspector::EdgeWidthControl(View()),
                   Merge(looks, [](const Style& look) { return look.edgeWidth; }));
      const auto [spacing, isSpaced] = MergeParagraphs([](const auto& paragraph) { return paragraph.lineSpacing; });
      ExpectNumber(*Inspector::LineSpacingControl(View()), {static_cast<float>(spacing), isSpaced});
      return;
    }
    EXPECT_EQ(Inspector::DoubleHeightPopup(View())->GetValue(), !size.second ? 2 : size.first > 24 ? 1 : 0);
    EXPECT_EQ(Inspector::DoubleHeightPopup(View())->Size(), size.second ? 2 : 3);
    if (Inspector::ColorType(View()) == CaptioningColor::kColorType_Text) {
      const auto color = Merge(looks, [](const Style& look) { return look.textColor; });
      const auto shown = Inspector::ColorSwatch(View())->GetValue();
      if (color.second) {
        EXPECT_EQ(CaptioningColor(shown.red, shown.green, shown.blue, shown.alpha), color.first);
      }
    }
    if (format.types == 0)
      return;
    const auto [type, isOfOneType] = MergeParagraphs([](const auto& paragraph) { return paragraph.captionType; });
    const auto entry = Inspector::CaptionTypeMap(View()).right.find(type);
    auto& popup = *Inspector::CaptionTypePopup(View());
    if (isOfOneType) {
      EXPECT_EQ(popup.GetValue(), entry == Inspector::CaptionTypeMap(View()).right.end() ? 0 : entry->second);
    } else {
      EXPECT_EQ(popup.GetValueString(), u"Multiple");
    }
  }
  const Abilities& format = GetParam();
};

std::string NameOfFormat(const testing::TestParamInfo<Abilities>& info) {
  const char* names[] = {"CEA608", "CEA708", "Teletext", "EbuN19", "Australian", "Open"};
  return names[info.index];
}

} // namespace

TEST_P(FormatCourse, LeavesCaptionsAndBarAsAModelOfSingleCharactersHasThemAndUndoesExactly) {
  RunCourses(30, 30);
}

INSTANTIATE_TEST_SUITE_P(Formats, FormatCourse, testing::ValuesIn(kFormats), &NameOfFormat);

} // namespace Captivo::Testing
