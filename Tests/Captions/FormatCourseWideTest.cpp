#include <cmath>

#include "Captions/contracts/StreamFormat.h"
#include "FormatCourse.h"
#include "UIF/ColorPickerControl.h"
#include "zebui/HotNumber.h"
#include "zebui/Popup.h"
#include "zebui/PositionGrid.h"

// Courses through places, fonts, edges and opacities, over captions that have regions and styles.
namespace Captivo::Testing {

namespace {

using zebcaptioning::CaptioningColor;
using zebcaptioning::ParagraphStyleAttributes;
using zebcaptioning::TextSpanAttributes;
using zebui::controls::UI_HotTextNumber;
using zebui::controls::UI_Popup;
using Style = TextSpanAttributes;
using Place = ParagraphStyleAttributes;

struct WideFormat {
  StreamFormat format;
  bool isOpen = false;
  bool countsRowsFromOne = true;
};

const WideFormat kFormats[] = {
    {zebcaptioning::kStreamFormat_608_CC1},
    {kService1},
    {kTeletextPage1, false, false},
    {kEbuTrack1},
    {0x41555331, false, false}, // "AUS1"
    {kOpenTrack1, true},
};

// The machine's fonts. No name is the beginning of another, and each family has an italic.
struct ModelFamily {
  const char16_t* name;
  std::vector<UString> styles;
};
const ModelFamily kFamilies[] = {{u"Alder", {u"Regular", u"Italic", u"Bold", u"Bold Italic"}},
                                 {u"Birch", {u"Regular", u"Italic"}},
                                 {u"Cedar", {u"Bold Italic", u"Bold", u"Italic", u"Regular"}}};

bool IsTransparent(const CaptioningColor& color) {
  return color.alpha == 0.0F;
}
bool HasNoColor(const CaptioningColor& color) {
  return color.red == 0.0F && color.green == 0.0F && color.blue == 0.0F;
}
// The color of an edge that comes into being, by the last one that was to be seen.
CaptioningColor NewEdge(CaptioningColor last) {
  if (HasNoColor(last))
    return {1, 0, 0, 1};
  last.alpha = IsTransparent(last) ? 1.0F : last.alpha;
  return last;
}
UIF::Color ToBytes(const CaptioningColor& color) {
  const auto part = [](float value) { return static_cast<std::uint8_t>(std::lround(value * 255.0F)); };
  return {part(color.red), part(color.green), part(color.blue)};
}

class WideCourse : public CourseTest, public testing::WithParamInterface<WideFormat> {
 protected:
  WideCourse() {
    std::vector<TD::FontFamilyDescription> families;
    for (const ModelFamily& family : kFamilies) {
      TD::FontFamilyDescription description{family.name, {}};
      for (const UString& style : family.styles) {
        TD::CaptionFontRecord face;
        face.styleName = style;
        face.fullName = description.name + u" " + style;
        face.isBold = style.starts_with(u"Bold");
        face.isItalic = style.ends_with(u"Italic");
        description.faces.push_back(face);
      }
      families.push_back(description);
    }
    TD::SetTitlerFontList(families);
  }

  // --- Captions

  Style RandomLook() {
    Style look;
    if (!format.isOpen)
      return look;
    look.family = kFamilies[Random(3)].name;
    look.bold = Random(2) == 0;
    look.italic = Random(2) == 0;
    look.size = static_cast<float>(10 + Random(3));
    if (Random(2) == 0) {
      look.edgeWidth = static_cast<float>(Random(3));
      look.edgeColor = {0, static_cast<float>(Random(2)), 1, static_cast<float>(Random(3)) / 2.0F};
    }
    look.backgroundColor.alpha = static_cast<float>(Random(3)) / 2.0F;
    return look;
  }
  Place RandomPlace() {
    Place place;
    place.anchor = Random(12) - 2;
    place.x = Random(3) * 7;
    place.y = Random(3) * 4;
    if (Random(2) == 0)
      place.region = zebcore::utility::ImmutableString(Random(2) == 0 ? "Side" : "Box");
    if (Random(3) == 0)
      place.style = zebcore::utility::ImmutableString("Loud");
    return place;
  }
  void ShowRandomCaptions() override {
    BE::StreamDescription description;
    description.format = format.format;
    // In the units of the format; for open captions the one in percent of the frame as well.
    if (format.isOpen)
      description.regions = {{"Side", {0, 0, 50, 100}, true}, {"Box", {10, 10, 1000, 600}, false}};
    else
      description.regions = {{"Side", {0, 0, 20, 15}, false}, {"Box", {1, 1, 30, 12}, false}};
    description.styles = {"Loud"};
    std::vector<BE::NewCaption> captions;
    for (std::size_t i = 0; i < 3; ++i) {
      const auto length = static_cast<unsigned>(Random(6));
      UString text(length, u'a');
      std::vector<std::pair<unsigned, Style>> looks{{0U, RandomLook()}};
      for (unsigned at = 1; at < length; ++at) {
        const Style look = RandomLook();
        if (Random(2) == 0 && !(look == looks.back().second))
          looks.emplace_back(at, look);
      }
      captions.push_back({MakeLook(Begin(i), text, looks, RandomPlace())->GetState()});
    }
    clip = AddClip();
    stream = *project->AddStream(clip, description, captions, u"Add stream").value;
    OpenPanel(1000, 700);
    SelectClip(clip);
    zebcore::trace::Take();
    grid = {Inspector::GridColumns(View()), Inspector::GridRows(View())};
    // As in a panel that has shown no edge yet.
    Inspector::LastEdgeColor(View()) = CaptioningColor();
    BeginModel();
  }

  // --- What the panel keeps from one reading of the format to the next

  void Published() override {
    const auto [region, isOneRegion] = MergeParagraphs([](const Place& place) { return place.region; });
    const std::string name = region.Text();
    if (isOneRegion && !name.empty()) {
      if (!format.isOpen)
        grid = name == "Side" ? PointT<int>{20, 15} : PointT<int>{30, 12};
      else
        grid = name == "Side" ? PointT<int>{960, 1080} : PointT<int>{1000, 600};
    }
    if (Inspector::ColorType(View()) == CaptioningColor::kColorType_Edge)
      RememberEdge();
  }
  void RememberEdge() {
    if (!format.isOpen)
      return;
    const auto looks = SelectedLooks();
    const auto [color, isOne] = Merge(looks, [](const Style& look) { return look.edgeColor; });
    const auto [alpha, isOneAlpha] = Merge(looks, [](const Style& look) { return look.edgeColor.alpha; });
    if (isOne && !IsTransparent(color))
      lastEdge = color;
    if (isOneAlpha && alpha != 0.0F)
      lastEdge.alpha = alpha;
  }

  // --- Formatting

  void FormatAtRandom() override {
    if (selected.empty())
      return; // what is chosen then stays on show until something is selected
    // Texts that had the focus for a moment were read with carets that no course knows of.
    lastEdge = Inspector::LastEdgeColor(View());
    using Step = void (WideCourse::*)();
    static constexpr Step kSteps[] = {
        &WideCourse::ChooseCell,   &WideCourse::EnterX,         &WideCourse::EnterY,
        &WideCourse::ChooseRegion, &WideCourse::ChooseFamily,   &WideCourse::ChooseWeight,
        &WideCourse::PickColor,    &WideCourse::EnterEdgeWidth, &WideCourse::EnterOpacity};
    constexpr int kForAll = 4;
    (this->*kSteps[Random(format.isOpen ? static_cast<int>(std::size(kSteps)) : kForAll)])();
    if (format.isOpen) {
      EXPECT_EQ(CaptioningColor(Inspector::LastEdgeColor(View())), lastEdge);
    }
  }
  template <class Apply> void ChangePlaces(Apply change) {
    for (const std::size_t index : selected)
      change(model[index].paragraph, index);
    Published();
  }
  template <class Apply> void Change(Apply change) {
    ChangeLooks(change);
    Published();
  }

  void ChooseCell() {
    auto& cells = format.isOpen ? Inspector::OpenPositionGrid(View()) : Inspector::ClosedPositionGrid(View());
    const int anchor = Random(10);
    cells->Choose(anchor < 9 ? PointT<int>{anchor % 3, anchor / 3} : PointT<int>{-1, -1});
    ChangePlaces([anchor](Place& place, std::size_t) { place.anchor = anchor; });
  }

  // Any number that the control takes, and how often it stands for what is there.
  static std::optional<double> RandomNumber(const UI_HotTextNumber& control, int random, bool isWhole) {
    const double min = control.GetMinValue();
    const double max = control.GetMaxValue();
    if (!(min <= max))
      return std::nullopt;
    const double value = min + (max - min) * random / 10;
    return isWhole ? std::floor(value) : value;
  }
  void EnterX() {
    auto& control =
        *(format.isOpen ? Inspector::OpenPositionXControl(View()) : Inspector::ClosedPositionXControl(View()));
    const auto value = RandomNumber(control, Random(11), !format.isOpen);
    if (!value)
      return;
    const int x = format.isOpen ? static_cast<int>(grid.x * (*value / 100) + 0.5) : static_cast<int>(*value) - 1;
    const auto [now, isOne] = MergeParagraphs([](const Place& place) { return place.x; });
    control.Enter(*value);
    if (isOne && now == x)
      return Pane().PublishSelectionFormat(); // nothing was applied, and the number stays as it was entered
    const int last = zebcaptioning::GetCaptionColumns(format.format, false) - 1;
    ChangePlaces([&](Place& place, std::size_t index) {
      const Place before = place;
      place.x = format.isOpen ? x : std::clamp(x, 0, last);
      Release(place, before, x, index, &Place::y);
    });
  }
  void EnterY() {
    auto& control =
        *(format.isOpen ? Inspector::OpenPositionYControl(View()) : Inspector::ClosedPositionYControl(View()));
    const auto value = RandomNumber(control, Random(11), !format.isOpen);
    if (!value)
      return;
    const int y = format.isOpen ? static_cast<int>(grid.y * (*value / 100) + 0.5)
                                : static_cast<int>(*value) - (format.countsRowsFromOne ? 1 : 0);
    const auto [now, isOne] = MergeParagraphs([](const Place& place) { return place.y; });
    control.Enter(*value);
    if (isOne && now == y)
      return Pane().PublishSelectionFormat(); // nothing was applied, and the number stays as it was entered
    const int top = zebcaptioning::GetTopPosition(format.format);
    const int last = zebcaptioning::GetCaptionRows(format.format) - 1;
    ChangePlaces([&](Place& place, std::size_t index) {
      const Place before = place;
      // Without a height a block may begin right below the grid.
      place.y = format.isOpen ? y : std::clamp(y, top, place.blockHeight > 0 ? last : last + 1);
      Release(place, before, y, index, &Place::x);
    });
  }
  // A caption that is placed by a number leaves its cell, and stays where it stood in the other direction, which is
  // taken from the caption and has to lie in the frame or the grid; a closed one in a region is left alone there. One
  // without a cell keeps all else, unless an open one goes to 0, which is where captions are that were never placed.
  void Release(Place& place, const Place& before, int coordinate, std::size_t index, int Place::*other) {
    const bool hadCell = before.anchor >= 0 && before.anchor <= 8;
    if (!hadCell && !(format.isOpen && before.anchor == 9 && coordinate == 0))
      return;
    place.anchor = -1;
    if ((!hadCell && before.*other != 0) || (!format.isOpen && !before.region.IsNull()))
      return;
    place.*other = Stored(Begin(index)).paragraph.*other;
    EXPECT_GE(place.*other, 0);
    EXPECT_LT(place.*other, 1920);
  }

  // The popup shows what was chosen for as long as nobody reads the captions, which it changes nothing of.
  void ChooseRegion() {
    UI_Popup& popup = *Inspector::RegionPopup(View());
    popup.SetDisabled(false);
    zebcore::trace::Take();
    popup.Choose(Random(3));
    EXPECT_TRUE(TakeApplications().empty());
    Pane().PublishSelectionFormat();
    Published();
  }

  static UString NameFlags(bool bold, bool italic) {
    return bold && italic ? u"Bold Italic" : bold ? u"Bold" : italic ? u"Italic" : u"Regular";
  }
  // The name that a family's weights show for flags.
  static UString NameIn(const UString& family, bool bold, bool italic) {
    const auto* known = std::ranges::find(kFamilies, family, [](const ModelFamily& one) { return UString(one.name); });
    const UString name = NameFlags(bold, italic);
    return std::ranges::find(known->styles, name) != known->styles.end() ? name : known->styles.front();
  }
  // A choice that says other flags than all of the selection has brings them along.
  void TakeFlagsOf(Style& look, const UString& style, const std::pair<bool, bool>& bold,
                   const std::pair<bool, bool>& italic) {
    const bool isBold = style.starts_with(u"Bold");
    const bool isItalic = style.ends_with(u"Italic");
    if (!bold.second || bold.first != isBold)
      look.bold = isBold;
    if (!italic.second || italic.first != isItalic)
      look.italic = isItalic;
  }
  void ChooseFamily() {
    const UString family = kFamilies[Random(3)].name;
    const auto looks = SelectedLooks();
    const auto bold = Merge(looks, [](const Style& look) { return look.bold; });
    const auto italic = Merge(looks, [](const Style& look) { return look.italic; });
    const UString style = bold.second && italic.second ? NameIn(family, bold.first, italic.first) : u"Multiple";
    UI_Popup& popup = *Inspector::FontFamilyPopup(View());
    for (std::int64_t i = 0; i < popup.Size(); ++i) {
      if (popup.GetItemString(i) == family) {
        popup.Choose(i);
        break;
      }
    }
    Change([&](Style& look) {
      look.family = family;
      TakeFlagsOf(look, style, bold, italic);
    });
  }
  void ChooseWeight() {
    const auto looks = SelectedLooks();
    const auto bold = Merge(looks, [](const Style& look) { return look.bold; });
    const auto italic = Merge(looks, [](const Style& look) { return look.italic; });
    UI_Popup& popup = *Inspector::FontWeightPopup(View());
    if (popup.Size() == 0)
      return; // no text of one family has been selected yet
    popup.SetDisabled(false);
    const std::int64_t index = Random(static_cast<int>(popup.Size()));
    const UString style = popup.GetItemString(index);
    popup.Choose(index);
    const bool changes = !bold.second || !italic.second || bold.first != style.starts_with(u"Bold") ||
                         italic.first != style.ends_with(u"Italic");
    if (!changes) {
      chosenWeight = style; // on show until the captions are read again
      return;
    }
    Change([&](Style& look) { TakeFlagsOf(look, style, bold, italic); });
  }

  static CaptioningColor& ColorOf(Style& look, int type) {
    return type == 0 ? look.textColor : type == 1 ? look.backgroundColor : look.edgeColor;
  }
  int SelectColorType() {
    static constexpr int kCommands[] = {32014, 32013, 32016};
    const int type = Random(3);
    View().ObeyCommand(UIF::Command(kCommands[type]));
    if (type == 2)
      RememberEdge();
    return type;
  }
  void PickColor() {
    const int type = SelectColorType();
    auto looks = SelectedLooks();
    CaptioningColor color{static_cast<float>(Random(2)), static_cast<float>(51 * Random(5)) / 255.0F, 1,
                          ColorOf(looks.front(), type).alpha};
    const float size = looks.front().size;
    UIF::ColorPickerControlChangedMessage message;
    message.red = ToBytes(color).red;
    message.green = ToBytes(color).green;
    message.blue = ToBytes(color).blue;
    View().HandleMessage(message);
    if (type == 2 && IsTransparent(color))
      color.alpha = 1;
    Change([&](Style& look) {
      ColorOf(look, type) = color;
      if (type == 2)
        look.edgeWidth = size / 10.0F;
    });
  }
  void EnterEdgeWidth() {
    const int width = Random(9);
    const CaptioningColor color = NewEdge(lastEdge);
    Inspector::EdgeWidthControl(View())->Enter(width);
    Change([&](Style& look) {
      look.edgeWidth = static_cast<float>(width);
      look.edgeColor = color;
    });
  }
  void EnterOpacity() {
    const int type = SelectColorType();
    auto looks = SelectedLooks();
    const int percent = Random(5) * 25;
    const float opacity = static_cast<float>(percent) / 100.0F;
    const CaptioningColor born = NewEdge(lastEdge);
    Inspector::OpacityControl(View())->SetDisabled(false);
    Inspector::OpacityControl(View())->Enter(percent);
    if (type == 2 && looks.front().edgeWidth == 0.0F) {
      // Three applications, and the bar reads the captions after each.
      CaptioningColor before = looks.front().edgeColor;
      before.alpha = opacity;
      const float width = looks.front().size / 10.0F;
      for (const CaptioningColor& color : {before, born})
        Change([&](Style& look) {
          look.edgeWidth = width;
          look.edgeColor = color;
        });
    }
    Change([&](Style& look) { ColorOf(look, type).alpha = opacity; });
  }

  // --- Comparing

  void ExpectStored() override {
    for (std::size_t i = 0; i < model.size(); ++i) {
      const ModelCaption stored(Stored(Begin(i)));
      EXPECT_EQ(stored.units, model[i].units) << "caption " << i;
      EXPECT_EQ(stored.typing, model[i].typing) << "caption " << i;
      EXPECT_EQ(stored.paragraph.anchor, model[i].paragraph.anchor) << "caption " << i;
      EXPECT_EQ(stored.paragraph.x, model[i].paragraph.x) << "caption " << i;
      EXPECT_EQ(stored.paragraph.y, model[i].paragraph.y) << "caption " << i;
      EXPECT_EQ(stored.paragraph.region, model[i].paragraph.region) << "caption " << i;
      EXPECT_EQ(stored.paragraph.style, model[i].paragraph.style) << "caption " << i;
    }
  }
  static void ExpectNumber(const UI_HotTextNumber& control, bool isOne, double value) {
    EXPECT_EQ(control.IsValueUnknown(), !isOne);
    if (isOne) {
      EXPECT_DOUBLE_EQ(control.GetValue(), value);
    }
  }
  void ExpectPlace() {
    const auto [anchor, isOneAnchor] = MergeParagraphs([](const Place& place) { return place.anchor; });
    const bool isCell = isOneAnchor && anchor >= 0 && anchor <= 8 && !selected.empty();
    const auto& cells = format.isOpen ? Inspector::OpenPositionGrid(View()) : Inspector::ClosedPositionGrid(View());
    EXPECT_EQ(cells->GetValue(), (isCell ? PointT<int>{anchor % 3, anchor / 3} : PointT<int>{-1, -1}));
    EXPECT_EQ(Inspector::GridColumns(View()), grid.x);
    EXPECT_EQ(Inspector::GridRows(View()), grid.y);
    const auto [x, isOneX] = MergeParagraphs([](const Place& place) { return place.x; });
    const auto [y, isOneY] = MergeParagraphs([](const Place& place) { return place.y; });
    if (format.isOpen) {
      ExpectNumber(*Inspector::OpenPositionXControl(View()), isOneX, static_cast<double>(x) / grid.x * 100);
      ExpectNumber(*Inspector::OpenPositionYControl(View()), isOneY, static_cast<double>(y) / grid.y * 100);
    } else {
      ExpectNumber(*Inspector::ClosedPositionXControl(View()), isOneX, x + 1);
      ExpectNumber(*Inspector::ClosedPositionYControl(View()), isOneY, y + (format.countsRowsFromOne ? 1 : 0));
    }
  }
  void ExpectNames() {
    const auto [region, isOneRegion] = MergeParagraphs([](const Place& place) { return place.region; });
    const auto [style, isOneStyle] = MergeParagraphs([](const Place& place) { return place.style; });
    const auto text = [](bool isOne, const std::string& name, const UString& none) {
      return !isOne ? UString(u"Multiple") : name.empty() ? none : zebcore::FromUTF8(name);
    };
    EXPECT_EQ(Inspector::RegionPopup(View())->GetValueString(), text(isOneRegion, region.Text(), u"None"));
    EXPECT_EQ(Inspector::StylePopup(View())->GetValueString(), text(isOneStyle, style.Text(), u"Custom"));
  }
  void ExpectFonts() {
    const auto looks = SelectedLooks();
    const auto [family, isOneFamily] = Merge(looks, [](const Style& look) { return look.family; });
    const auto [bold, isOneBold] = Merge(looks, [](const Style& look) { return look.bold; });
    const auto [italic, isOneItalic] = Merge(looks, [](const Style& look) { return look.italic; });
    EXPECT_EQ(Inspector::BoldButton(View()).GetValue(), bold);
    EXPECT_EQ(Inspector::ItalicButton(View()).GetValue(), italic);
    EXPECT_EQ(Inspector::FontFamilyPopup(View())->GetValueString(), isOneFamily ? family : UString(u"Multiple"));
    const UI_Popup& weights = *Inspector::FontWeightPopup(View());
    const bool isOneStyle = isOneFamily && isOneBold && isOneItalic;
    if (chosenWeight) {
      EXPECT_EQ(weights.GetValueString(), *chosenWeight);
      chosenWeight.reset();
      Pane().PublishSelectionFormat();
    }
    EXPECT_EQ(weights.GetValueString(), isOneStyle ? NameIn(family, bold, italic) : UString(u"Multiple"));
    if (!isOneFamily)
      return;
    std::vector<UString> items;
    for (std::int64_t i = 0; i < weights.Size(); ++i)
      items.push_back(weights.GetItemString(i));
    const UString wanted = family;
    EXPECT_EQ(items,
              std::ranges::find(kFamilies, wanted, [](const ModelFamily& one) { return UString(one.name); })->styles);
  }
  void ExpectColors() {
    auto looks = SelectedLooks();
    const int type = Inspector::ColorType(View());
    const auto [color, isOne] = Merge(looks, [&](Style look) { return ColorOf(look, type); });
    const auto [alpha, isOneAlpha] = Merge(looks, [&](Style look) { return ColorOf(look, type).alpha; });
    const bool isShown = isOne && (type == 0 || !IsTransparent(color));
    const UIF::Color background = UIF::ColorManager::GetColor(UIF::kColor_WindowBackground);
    EXPECT_EQ(Inspector::ColorPicker(View()).GetColor(), isShown ? ToBytes(color) : background);
    ExpectNumber(*Inspector::OpacityControl(View()), isOneAlpha, static_cast<double>(alpha * 100.0F));
    if (type == 2 && isOne && !IsTransparent(color)) {
      EXPECT_EQ(CaptioningColor(Inspector::LastEdgeColor(View())), color);
    }
    const auto [width, isOneWidth] = Merge(looks, [](const Style& look) { return look.edgeWidth; });
    ExpectNumber(*Inspector::EdgeWidthControl(View()), isOneWidth, width);
  }
  void ExpectBar() override {
    ExpectPlace();
    if (!format.isOpen)
      return; // the names of regions and styles are read for open captions only
    ExpectNames();
    if (!selected.empty()) {
      ExpectFonts();
      ExpectColors();
    }
  }

  const WideFormat& format = GetParam();
  PointT<int> grid;
  CaptioningColor lastEdge;
  std::optional<UString> chosenWeight;
};

std::string NameOfFormat(const testing::TestParamInfo<WideFormat>& info) {
  const char* names[] = {"CEA608", "CEA708", "Teletext", "EbuN19", "Australian", "Open"};
  return names[info.index];
}

} // namespace

TEST_P(WideCourse, PutsCaptionsInFontsEdgesAndPlacesAsAModelOfSingleCharactersHasThemAndUndoesExactly) {
  RunCourses(GetParam().isOpen ? 60 : 20, 30);
}

INSTANTIATE_TEST_SUITE_P(Formats, WideCourse, testing::ValuesIn(kFormats), &NameOfFormat);

} // namespace Captivo::Testing
