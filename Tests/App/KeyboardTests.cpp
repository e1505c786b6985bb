#include <QAccessible>
#include <QCheckBox>
#include <QDialog>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <map>

#include "DLG/ColorPickerDialog.h"
#include "UIF/ShortcutManager.h"
#include "UIF/Theme.h"
#include "WindowSupport.h"
#include "zebcore/Localizer.h"
#include "zebui/Toolkit.h"

// The bar, the rows and the bottom row by the keyboard alone, and what a screen reader hears of them.
namespace AppTest {

namespace {

using Names = std::vector<std::string>;

class Keyboard : public WindowWithPanel {
 protected:
  Keyboard() { Settle(); }
  ~Keyboard() override { UIF::ShortcutManager::Instance()->ResetAllKeys(); }

  static void Settle() {
    for (int i = 0; i < 8; ++i)
      QApplication::processEvents();
  }
  void Show(const char* family, int channel = 1) {
    const auto report =
        session().ImportCaptions(clip, folder.Write("other.srt", kTwoCaptions), App::GetStreamFormat(family, channel));
    ASSERT_TRUE(report) << report.problem.text;
    session().SelectStream(report.value->stream);
    window->resize(1600, 900);
    window->activateWindow();
    Settle();
  }
  void SelectFirstRow() {
    auto* row = qobject_cast<QTextEdit*>(WidgetNamed("row The harbour wakes."));
    ASSERT_TRUE(row);
    QTest::mouseClick(row->viewport(), Qt::LeftButton);
    Settle();
  }
  QWidget& PanelWidget() {
    auto* dock = window->findChild<QDockWidget*>(App::ToQString(HSL::kCaptionsHandlerID));
    auto* column = dock->findChild<QScrollArea*>(QStringLiteral("column"));
    return *column->widget()->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  }
  static std::string NameOf(QWidget* widget) {
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(widget);
    return access ? access->text(QAccessible::Name).toStdString() : std::string();
  }
  // The text of a row, the search box by its name, else the accessible name.
  static std::string Describe(QWidget* widget) {
    if (const auto* field = qobject_cast<QTextEdit*>(widget); field && field->height() > 40)
      return "row " + field->toPlainText().toStdString();
    return NameOf(widget);
  }
  QWidget* WidgetNamed(const std::string& name) {
    for (QWidget* widget : PanelWidget().findChildren<QWidget*>())
      if (widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) && Describe(widget) == name)
        return widget;
    return nullptr;
  }
  // Where Tab goes from that control on, until it leaves the panel or comes back to where it began.
  Names Walk(const std::string& from, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    Names seen;
    QWidget* const first = WidgetNamed(from);
    if (!first) {
      ADD_FAILURE() << "nothing is called " << from;
      return seen;
    }
    zebui::toolkit::MoveFocus(first, zebui::ui::kFocusChange_Program);
    Settle();
    constexpr int kMany = 80;
    for (int i = 0; i < kMany; ++i) {
      QWidget* focus = zebui::toolkit::GetFocusWidget();
      if (!focus || !PanelWidget().isAncestorOf(focus))
        return seen;
      EXPECT_TRUE(focus->isVisible() && focus->isEnabled()) << Describe(focus);
      const std::string name = Describe(focus);
      if (i > 0 && focus == WidgetNamed(from))
        return seen;
      seen.push_back(name);
      const Qt::Key key = modifiers & Qt::ShiftModifier ? Qt::Key_Backtab : Qt::Key_Tab;
      // The text of a row keeps the plain key to itself.
      if (name.starts_with("row "))
        modifiers |= Qt::ControlModifier;
      else
        modifiers &= ~Qt::ControlModifier;
      QTest::keyPress(focus, key, modifiers);
      // A key goes up where the focus is by then.
      if (QWidget* now = zebui::toolkit::GetFocusWidget())
        QTest::keyRelease(now, key, modifiers);
      Settle();
    }
    ADD_FAILURE() << "it never ended";
    return seen;
  }
};

const Names kRowsAndBottom = {"row The harbour wakes.", "row A gull calls.", "Import Settings",
                              "Export Settings",        "Add Caption",       "Delete Caption"};
const Names kClosedBar = {"Filter caption content",
                          "Select caption stream",
                          "Set display style",
                          "Align Left",
                          "Align Center",
                          "Align Right",
                          "Italicize",
                          "Underline",
                          "Insert Music Note",
                          "Background Color",
                          "Text Color",
                          "Choose Color",
                          "Position Caption Block",
                          "Set Horizontal Position",
                          "Set Vertical Position"};
const Names kOpenBar = {"Filter caption content",
                        "Select caption stream",
                        "Select Font Family",
                        "Select font weight",
                        "Set Font Size",
                        "Set Text Edge Width",
                        "Set Line Spacing in %",
                        "Align Left",
                        "Align Center",
                        "Align Right",
                        "Bold",
                        "Italicize",
                        "Underline",
                        "Insert Music Note",
                        "Background Color",
                        "Text Color",
                        "Edge Color",
                        "Choose a color",
                        "Pick a color from the screen",
                        "Open Position Caption Block",
                        "Set Horizontal Position (%)",
                        "Set Vertical Position (%)"};

std::string Lines(const Names& names) {
  std::string text;
  for (const std::string& name : names)
    text += name + "\n";
  return text;
}

std::string WithRows(Names names) {
  names.insert(names.end(), kRowsAndBottom.begin(), kRowsAndBottom.end());
  return Lines(names);
}

Names Without(Names names, const Names& left) {
  std::erase_if(names, [&left](const std::string& name) { return std::ranges::count(left, name) > 0; });
  return names;
}

} // namespace

TEST_F(Keyboard, TabReadsTheBarOfALineTwentyOneStreamThenTheRowsThenTheBottom) {
  Show("cea608", 2);
  SelectFirstRow();
  EXPECT_EQ(Lines(Walk("Filter caption content")), WithRows(kClosedBar));
}

TEST_F(Keyboard, TabReadsTheBarOfADigitalTelevisionStream) {
  Show("cea708");
  SelectFirstRow();
  EXPECT_EQ(Lines(Walk("Filter caption content")), WithRows(kClosedBar));
}

// It has no display style, italics or lines below letters, and what cannot be used is passed.
TEST_F(Keyboard, TabReadsTheBarOfTeletext) {
  Show("teletext");
  SelectFirstRow();
  EXPECT_EQ(Lines(Walk("Filter caption content")),
            WithRows(Without(kClosedBar, {"Set display style", "Italicize", "Underline"})));
}

TEST_F(Keyboard, TabReadsTheBarOfASubtitleFileWithTheHeightLast) {
  Show("ebu_n19");
  SelectFirstRow();
  Names bar = Without(kClosedBar, {"Set display style"});
  bar.push_back("Switch between normal and double height");
  EXPECT_EQ(Lines(Walk("Filter caption content")), WithRows(bar));
}

TEST_F(Keyboard, TabReadsTheBarOfOpenCaptions) {
  Show("open");
  SelectFirstRow();
  EXPECT_EQ(Lines(Walk("Filter caption content")), WithRows(kOpenBar));
}

TEST_F(Keyboard, BackTabReadsTheSameTheOtherWayRound) {
  Show("open");
  SelectFirstRow();
  Names back = Walk("Delete Caption", Qt::ShiftModifier);
  std::ranges::reverse(back);
  EXPECT_EQ(Lines(back), WithRows(kOpenBar));
}

TEST_F(Keyboard, TabPassesWhatCannotBeUsed) {
  Show("cea608", 2);
  SelectFirstRow();
  project()->SetReadOnly(true);
  Settle();
  EXPECT_EQ(Lines(Walk("Filter caption content")),
            Lines({"Filter caption content", "Select caption stream", "Import Settings", "Export Settings"}));
}

TEST_F(Keyboard, EveryControlOfThePanelHasANameAndARole) {
  Show("open");
  Names all;
  for (QWidget* widget : PanelWidget().findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(widget);
    ASSERT_TRUE(access);
    const std::map<QAccessible::Role, std::string> roles{{QAccessible::StaticText, "text"},
                                                         {QAccessible::EditableText, "field"},
                                                         {QAccessible::ComboBox, "list"},
                                                         {QAccessible::SpinBox, "number"},
                                                         {QAccessible::Button, "button"},
                                                         {QAccessible::CheckBox, "switch"},
                                                         {QAccessible::Separator, "divider"},
                                                         {QAccessible::Client, "group"},
                                                         {static_cast<QAccessible::Role>(20), "grid"},
                                                         {QAccessible::ScrollBar, "scroll bar"}};
    const auto role = roles.find(access->role());
    all.push_back((role == roles.end() ? "role " + std::to_string(access->role()) : role->second) + ": " +
                  access->text(QAccessible::Name).toStdString());
  }
  const Names expected{"field: Filter caption content",
                       "text: Caption Stream:",
                       "list: Select caption stream",
                       "text: Frame:",
                       "text: 640x360",
                       "text: Font:",
                       "list: Select Font Family",
                       "list: Select font weight",
                       "text: Size:",
                       "number: Set Font Size",
                       "list: Switch between normal and double height",
                       "text: Edge:",
                       "number: Set Text Edge Width",
                       "text: Line Spacing:",
                       "number: Set Line Spacing in %",
                       "list: Select Region",
                       "list: Select Style",
                       "text: Type:",
                       "list: Set display style",
                       "switch: Align Left",
                       "switch: Align Center",
                       "switch: Align Right",
                       "divider: ",
                       "switch: Bold",
                       "switch: Italicize",
                       "switch: Underline",
                       "button: Insert Music Note",
                       "divider: ",
                       "switch: Background Color",
                       "switch: Text Color",
                       "switch: Edge Color",
                       "button: Choose Color",
                       "group: Choose a color",
                       "number: Opacity",
                       "text: %",
                       "divider: ",
                       "grid: Position Caption Block",
                       "text: x:",
                       "number: Set Horizontal Position",
                       "text: y:",
                       "number: Set Vertical Position",
                       "grid: Open Position Caption Block",
                       "text: x:",
                       "number: Set Horizontal Position (%)",
                       "text: %",
                       "text: y:",
                       "number: Set Vertical Position (%)",
                       "text: %",
                       "button: Import Settings",
                       "button: Export Settings",
                       "button: Add Caption",
                       "button: Delete Caption",
                       "group: Captions",
                       "scroll bar: Scroll"};
  EXPECT_EQ(expected.size(), 54u);
  EXPECT_EQ(Lines(all), Lines(expected));
}

// --- What the toolkit draws and says by itself

TEST(Theme, DrawsTheFrameOfAnUncheckedBoxSoThatItIsSeenOnBothGrounds) {
  NeedApplication();
  for (const UIF::Theme theme : {UIF::Theme::Dark, UIF::Theme::Light}) {
    UIF::ApplyTheme(theme);
    QCheckBox box;
    box.resize(40, 24);
    const QImage picture = box.grab().toImage();
    const QColor ground = box.palette().color(QPalette::Window);
    const auto luminance = [](const QColor& color) {
      const auto part = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
      };
      return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
    };
    int seen = 0;
    for (int x = 0; x < picture.width(); ++x) {
      const double a = luminance(picture.pixelColor(x, picture.height() / 2));
      const double b = luminance(ground);
      seen += (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05) >= 3.0 ? 1 : 0;
    }
    EXPECT_GE(seen, 2) << "the left and the right side of the frame";
  }
  UIF::ApplyTheme(UIF::Theme::Light);
}

TEST(ColorDialog, SpeaksTheLanguageOfTheProgram) {
  NeedApplication();
  auto& localizer = zebcore::config::Localizer::Get();
  for (const char* language : {"de", "ja"}) {
    ASSERT_TRUE(localizer.SetLanguage(language));
    QStringList texts;
    QTimer::singleShot(0, [&texts] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_TRUE(dialog);
      for (const QLabel* label : dialog->findChildren<QLabel*>())
        texts.append(label->text());
      for (const QPushButton* button : dialog->findChildren<QPushButton*>())
        texts.append(button->text());
      dialog->reject();
    });
    UIF::Color picked;
    EXPECT_FALSE(DLG::ColorPickerDialog::PickColor({1, 2, 3}, picked));
    EXPECT_GE(texts.size(), 10);
    for (const char* english : {"Hu&e:", "&Sat:", "&Val:", "&Red:", "&Green:", "Bl&ue:", "&HTML:", "&Basic colors",
                                "&Custom colors", "&Add to Custom Colors", "&Pick Screen Color", "Cancel", "&Cancel"})
      EXPECT_FALSE(texts.contains(QLatin1String(english))) << language << ": " << english;
  }
  localizer.SetLanguage("en");
}

} // namespace AppTest
