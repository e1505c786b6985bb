#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

#include "DLG/CaptionsSettingsDialogs.h"
#include "DLG/ColorPickerDialog.h"
#include "DLG/SettingsWindows.h"
#include "MZ/Actions.h"
#include "TD/TitlerFontList.h"
#include "zebui/NodeManager.h"

using namespace DLG;
using BE::CaptionsExportSettings;
using BE::CaptionsImportSettings;
using BE::TickTime;

namespace {

template <class Answer> void AnswerNextWindow(Answer answer) {
  QTimer::singleShot(0, [answer] {
    auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(window, nullptr);
    answer(*window);
  });
}

CaptionsImportSettings UnusualImport() {
  CaptionsImportSettings settings;
  settings.style = {"Liberation Sans",
                    31.5F,
                    true,
                    true,
                    zebcaptioning::CaptioningColor(1, 1, 0, 1),
                    zebcaptioning::CaptioningColor(0, 0, 0, 0.5F)};
  settings.alignment = 0;
  settings.anchor = 2;
  settings.frameRate = zebmediatypes::kFrameRate_2997;
  settings.dropFrame = true;
  settings.offset = TickTime(-10 * zebmediatypes::kTicksPerSecond);
  settings.longLines = BE::LongLines::Reflow;
  settings.lineLength = 37;
  settings.longCaptions = BE::LongCaptions::Split;
  settings.lineCount = 3;
  settings.minimumDuration = TickTime(zebmediatypes::kTicksPerSecond * 5 / 4);
  settings.overlaps = BE::Overlaps::Merge;
  return settings;
}

CaptionsExportSettings UnusualExport() {
  CaptionsExportSettings settings;
  settings.format = BE::SidecarFormat::WebVTT;
  settings.encoding = BE::TextEncoding::UTF16;
  settings.frameRate = zebmediatypes::kFrameRate_25;
  settings.startTimecode = TickTime(36000 * zebmediatypes::kTicksPerSecond);
  settings.language = "pt-BR";
  settings.streams = BE::ExportedStreams::One;
  settings.stream = 0x36434333;
  return settings;
}

struct Settings : testing::Test {
  zebcore::classref::InterfaceRef<BE::Project> project = BE::Project::CreateInMemory();
  void SetUp() override {
    MZ::SetActiveProject(project.Query<BE::IProject>());
    TD::SetTitlerFontList({{u"Liberation Sans", {}}, {u"Other", {}}});
  }
  void TearDown() override {
    SetCaptionsSettingsHook(nullptr);
    MZ::SetActiveProject(nullptr);
    TD::SetTitlerFontList({});
  }
};

// As a person does.
void Retype(QLineEdit& field, const char* text) {
  field.setText(QString::fromLatin1(text));
  Q_EMIT field.textEdited(field.text());
}

TimeField* FindTimeField(const QWidget& window) {
  for (QLineEdit* edit : window.findChildren<QLineEdit*>()) {
    if (auto* field = dynamic_cast<TimeField*>(edit))
      return field;
  }
  return nullptr;
}

bool CanAccept(const QWidget& window) {
  return AcceptButton(*window.findChild<QDialogButtonBox*>())->isEnabled();
}

// What the window says below its fields.
QString MessageOf(const QWidget& window) {
  for (QLabel* label : window.findChildren<QLabel*>()) {
    if (dynamic_cast<MessageLine*>(label))
      return label->isHidden() ? QString() : label->text();
  }
  return QStringLiteral("no line for messages");
}

struct Picker : testing::Test {
  void TearDown() override { ColorPickerDialog::SetHook(nullptr); }
  const UIF::Color current{10, 20, 30};
  UIF::Color result{1, 1, 1};
};

} // namespace

TEST_F(Settings, OfAProjectAreTheDefaultsUntilSomebodySetsThem) {
  EXPECT_EQ(BE::GetCaptionsImportSettings(*project), CaptionsImportSettings());
  EXPECT_EQ(BE::GetCaptionsExportSettings(*project), CaptionsExportSettings());
}

TEST_F(Settings, AreKeptWithTheProject) {
  BE::SetCaptionsImportSettings(*project, UnusualImport());
  BE::SetCaptionsExportSettings(*project, UnusualExport());
  EXPECT_EQ(BE::GetCaptionsImportSettings(*project), UnusualImport());
  EXPECT_EQ(BE::GetCaptionsExportSettings(*project), UnusualExport());
  EXPECT_FALSE(project->CanUndo());
}

TEST_F(Settings, ThatAreDamagedFallBackFieldByField) {
  project->SetSetting("captions.import", R"({"anchor": 12, "alignment": "left", "line_length": 40, "overlaps": "no",
      "text_color": [1, 2, 0, 1], "size": -4, "frame_rate": -1, "minimum_duration": -5, "family": "Kept"})");
  CaptionsImportSettings expected;
  expected.lineLength = 40;
  expected.style.family = "Kept";
  EXPECT_EQ(BE::GetCaptionsImportSettings(*project), expected);
  project->SetSetting("captions.export", "not even a document");
  EXPECT_EQ(BE::GetCaptionsExportSettings(*project), CaptionsExportSettings());
}

TEST_F(Settings, ComeOutOfTheWindowsAsTheyWentIn) {
  ImportSettingsWindow import(nullptr, zebmediatypes::kFrameRate_25);
  EXPECT_EQ(import.Get(), CaptionsImportSettings());
  import.Set(UnusualImport());
  EXPECT_EQ(import.Get(), UnusualImport());
  ExportSettingsWindow exporting(nullptr, zebmediatypes::kFrameRate_25, {0x36434331});
  EXPECT_EQ(exporting.Get(), CaptionsExportSettings());
  exporting.Set(UnusualExport());
  EXPECT_EQ(exporting.Get(), UnusualExport());
}

TEST_F(Settings, KeepAFontThatThisMachineLacks) {
  CaptionsImportSettings settings;
  settings.style.family = "Nowhere Sans";
  ImportSettingsWindow window(nullptr, {});
  window.Set(settings);
  EXPECT_EQ(window.Get().style.family, "Nowhere Sans");
}

TEST_F(Settings, DropFramesOnlyAtRatesThatCan) {
  FrameRateField field;
  field.Set(zebmediatypes::kFrameRate_25, true);
  EXPECT_FALSE(field.IsDropFrame());
  field.Set(zebmediatypes::kFrameRate_5994, true);
  EXPECT_TRUE(field.IsDropFrame());
}

TEST_F(Settings, ShowTimesAtTheRateThatIsChosen) {
  TimeField field(true);
  field.Set(TickTime(60 * zebmediatypes::kTicksPerSecond));
  EXPECT_EQ(field.text(), QStringLiteral("00:01:00:00"));
  field.SetRate(zebmediatypes::kFrameRate_2997, true);
  EXPECT_EQ(field.text(), QStringLiteral("00:00:59;28"));
}

TEST_F(Settings, MarkATextThatIsNoTimeAndLeaveItToBeCorrected) {
  TimeField field(false);
  field.Set(TickTime(zebmediatypes::kTicksPerSecond));
  for (const char* text : {"later", "-00:00:01:00"}) {
    Retype(field, text);
    Q_EMIT field.editingFinished();
    EXPECT_EQ(field.text(), QString::fromLatin1(text));
    EXPECT_FALSE(field.IsTime());
    EXPECT_FALSE(field.toolTip().isEmpty());
    EXPECT_EQ(field.Get(), TickTime(zebmediatypes::kTicksPerSecond)) << "the last time that was one";
  }
  Retype(field, "2:00");
  Q_EMIT field.editingFinished();
  EXPECT_EQ(field.text(), QStringLiteral("00:00:02:00"));
  EXPECT_TRUE(field.IsTime());
  EXPECT_TRUE(field.toolTip().isEmpty());
}

TEST_F(Settings, AreNotAcceptedWithAnOffsetThatIsNoTime) {
  ImportSettingsWindow window(nullptr, zebmediatypes::kFrameRate_25);
  TimeField* const offset = FindTimeField(window);
  ASSERT_NE(offset, nullptr);
  EXPECT_TRUE(CanAccept(window));
  EXPECT_EQ(MessageOf(window), QString());
  Retype(*offset, "soon");
  EXPECT_FALSE(CanAccept(window));
  EXPECT_TRUE(MessageOf(window).startsWith(QStringLiteral("The offset is not a timecode.")));
  Retype(*offset, "-00:00:02:12");
  EXPECT_TRUE(CanAccept(window));
  EXPECT_EQ(MessageOf(window), QString());
}

TEST_F(Settings, SayWhatKeepsAnExportFromBeingSet) {
  ExportSettingsWindow window(nullptr, zebmediatypes::kFrameRate_25, {});
  CaptionsExportSettings settings;
  settings.startTimecode = TickTime();
  window.Set(settings);
  Retype(*FindTimeField(window), "one o'clock");
  EXPECT_FALSE(CanAccept(window));
  EXPECT_TRUE(MessageOf(window).startsWith(QStringLiteral("The start timecode is not a timecode.")));
  window.Set({});
  EXPECT_TRUE(CanAccept(window)) << "what is not used need not be a time";
  settings = {};
  settings.streams = BE::ExportedStreams::One;
  window.Set(settings);
  EXPECT_FALSE(CanAccept(window));
  EXPECT_TRUE(MessageOf(window).startsWith(QStringLiteral("No clip of the project has captions")));
}

TEST_F(Settings, WarnOfWebVTTInAnotherEncodingAndTakeItAllTheSame) {
  ExportSettingsWindow window(nullptr, zebmediatypes::kFrameRate_25, {});
  CaptionsExportSettings settings;
  settings.format = BE::SidecarFormat::WebVTT;
  settings.encoding = BE::TextEncoding::UTF16;
  window.Set(settings);
  EXPECT_TRUE(MessageOf(window).startsWith(QStringLiteral("Players may refuse")));
  EXPECT_TRUE(CanAccept(window));
  settings.encoding = BE::TextEncoding::UTF8;
  window.Set(settings);
  EXPECT_EQ(MessageOf(window), QString());
}

TEST_F(Settings, AcceptALanguageByItsCodeOnly) {
  ExportSettingsWindow window(nullptr, {}, {});
  QComboBox* language = nullptr;
  for (QComboBox* box : window.findChildren<QComboBox*>()) {
    if (box->isEditable())
      language = box;
  }
  ASSERT_NE(language, nullptr);
  language->setEditText(QStringLiteral("sl-rozaj"));
  EXPECT_EQ(window.Get().language, "sl-rozaj");
  language->setEditText(QStringLiteral("Klingon, please"));
  EXPECT_EQ(window.Get().language, "");
  EXPECT_FALSE(language->toolTip().isEmpty());
  EXPECT_FALSE(CanAccept(window));
  EXPECT_EQ(MessageOf(window), language->toolTip());
  language->setCurrentIndex(language->findData(QStringLiteral("ja")));
  EXPECT_EQ(window.Get().language, "ja");
}

TEST_F(Settings, AreStoredWhenTheWindowIsAccepted) {
  AnswerNextWindow([](QDialog& window) {
    EXPECT_TRUE(zebui::ui::UI_NodeManager::Get()->HasModalWindow());
    static_cast<ImportSettingsWindow&>(window).Set(UnusualImport());
    window.accept();
  });
  EXPECT_TRUE(CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog());
  EXPECT_EQ(BE::GetCaptionsImportSettings(*project), UnusualImport());
  EXPECT_FALSE(zebui::ui::UI_NodeManager::Get()->HasModalWindow());

  AnswerNextWindow([](QDialog& window) {
    static_cast<ExportSettingsWindow&>(window).Set(UnusualExport());
    window.accept();
  });
  EXPECT_TRUE(CaptionsExportSettingsDialog::DisplayCaptionsExportSettingsDialog());
  EXPECT_EQ(BE::GetCaptionsExportSettings(*project), UnusualExport());
}

TEST_F(Settings, StayWhenTheWindowIsCancelled) {
  AnswerNextWindow([](QDialog& window) {
    static_cast<ImportSettingsWindow&>(window).Set(UnusualImport());
    window.reject();
  });
  EXPECT_FALSE(CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog());
  EXPECT_EQ(BE::GetCaptionsImportSettings(*project), CaptionsImportSettings());
}

TEST_F(Settings, GoBackToTheDefaultsByTheirButton) {
  ImportSettingsWindow window(nullptr, {});
  window.Set(UnusualImport());
  for (QPushButton* button : window.findChildren<QPushButton*>()) {
    if (button->text() == QStringLiteral("Restore Defaults"))
      button->click();
  }
  EXPECT_EQ(window.Get(), CaptionsImportSettings());
}

TEST_F(Settings, HaveNoWindowWithoutAProject) {
  MZ::SetActiveProject(nullptr);
  EXPECT_FALSE(CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog());
  EXPECT_FALSE(CaptionsExportSettingsDialog::DisplayCaptionsExportSettingsDialog());
}

TEST_F(Settings, AskWhoeverDrivesTheProgramInPlaceOfAPerson) {
  std::vector<CaptionsSettings> asked;
  SetCaptionsSettingsHook([&](CaptionsSettings which) {
    asked.push_back(which);
    return which == CaptionsSettings::Export;
  });
  EXPECT_FALSE(CaptionsImportSettingsDialog::DisplayCaptionsImportSettingsDialog());
  EXPECT_TRUE(CaptionsExportSettingsDialog::DisplayCaptionsExportSettingsDialog());
  EXPECT_EQ(asked, std::vector<CaptionsSettings>({CaptionsSettings::Import, CaptionsSettings::Export}));
}

TEST(LanguageTags, AreGroupsOfLettersAndDigits) {
  for (const char* tag : {"en", "pt-BR", "zh-Hant-TW", "de-1996"})
    EXPECT_TRUE(BE::IsLanguageTag(tag)) << tag;
  for (const char* tag : {"", "-", "en-", "-en", "en--US", "Klingonese", "en US", "d\xC3\xA4"})
    EXPECT_FALSE(BE::IsLanguageTag(tag)) << tag;
}

TEST_F(Picker, AnswersTheColourOfTheHook) {
  ColorPickerDialog::SetHook([&](const UIF::Color& shown) {
    EXPECT_EQ(shown, current);
    return UIF::Color{255, 136, 0};
  });
  EXPECT_TRUE(ColorPickerDialog::PickColor(current, result));
  EXPECT_EQ(result, (UIF::Color{255, 136, 0}));
}

TEST_F(Picker, AnswersTheCurrentColourWhenItIsCancelled) {
  ColorPickerDialog::SetHook([](const UIF::Color&) { return std::nullopt; });
  EXPECT_FALSE(ColorPickerDialog::PickColor(current, result));
  EXPECT_EQ(result, current);
}

TEST_F(Picker, AnswersWhatAPersonChoseInTheWindow) {
  AnswerNextWindow([this](QDialog& window) {
    auto& dialog = dynamic_cast<QColorDialog&>(window);
    EXPECT_EQ(dialog.currentColor(), QColor(10, 20, 30));
    dialog.setCurrentColor(QColor(255, 136, 0));
    dialog.accept();
  });
  EXPECT_TRUE(ColorPickerDialog::PickColor(current, result));
  EXPECT_EQ(result, (UIF::Color{255, 136, 0}));
  AnswerNextWindow([](QDialog& window) { window.reject(); });
  EXPECT_FALSE(ColorPickerDialog::PickColor(current, result));
  EXPECT_EQ(result, current);
}

TEST_F(Picker, TakesAColourAsANumber) {
  AnswerNextWindow([](QDialog& window) {
    QLineEdit* number = nullptr;
    for (QLineEdit* field : window.findChildren<QLineEdit*>()) {
      if (field->text() == QStringLiteral("#0a141e"))
        number = field;
    }
    ASSERT_NE(number, nullptr);
    number->setText(QStringLiteral("#ff8800"));
    Q_EMIT number->textEdited(number->text());
    window.accept();
  });
  EXPECT_TRUE(ColorPickerDialog::PickColor(current, result));
  EXPECT_EQ(result, (UIF::Color{255, 136, 0}));
}
