#include <array>

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

#include "DLG/SettingsWindows.h"
#include "zebui/Toolkit.h"

namespace DLG {

namespace {

// Languages that are captioned most, by their own names; any other tag can be typed.
constexpr std::array<const char*, 12> kLanguages{"de", "en", "es", "fr", "it", "ja",
                                                 "ko", "nl", "pl", "pt", "sv", "zh"};

QString LanguageLabel(const QString& tag) {
  const QString name = QLocale(tag).nativeLanguageName();
  return name.isEmpty() ? tag : QStringLiteral("%1 (%2)").arg(tag, name);
}

} // namespace

ExportSettingsWindow::ExportSettingsWindow(QWidget* parent, BE::FrameRate clipRate,
                                           const std::vector<BE::StreamFormat>& streams)
    : QDialog(parent), mClipRate(clipRate) {
  setWindowTitle(Label("$$$/Vidra/DLG/ExportSettings/Title=Export Settings"));
  mFormat = new ChoiceField(
      {"$$$/Vidra/DLG/ExportSettings/SubRip=SubRip (.srt)", "$$$/Vidra/DLG/ExportSettings/WebVTT=WebVTT (.vtt)"});
  mEncoding = new ChoiceField(
      {"$$$/Vidra/DLG/ExportSettings/UTF8=UTF-8", "$$$/Vidra/DLG/ExportSettings/UTF8Mark=UTF-8 with byte order mark",
       "$$$/Vidra/DLG/ExportSettings/UTF16=UTF-16", "$$$/Vidra/DLG/ExportSettings/Windows1252=Western (Windows-1252)"});
  mLanguage = new QComboBox;
  mLanguage->setEditable(true);
  mLanguage->setInsertPolicy(QComboBox::NoInsert);
  for (const char* language : kLanguages)
    mLanguage->addItem(LanguageLabel(QString::fromLatin1(language)), QString::fromLatin1(language));
  mLanguage->lineEdit()->setPlaceholderText(Label("$$$/Vidra/DLG/ExportSettings/NoLanguage=None"));
  mStreams = new ChoiceField({"$$$/Vidra/DLG/ExportSettings/OnShow=The one on show",
                              "$$$/Vidra/DLG/ExportSettings/One=Always the same one",
                              "$$$/Vidra/DLG/ExportSettings/All=All, a file for each"});
  mStream = new QComboBox;
  for (const BE::StreamFormat stream : streams)
    mStream->addItem(zebui::toolkit::ToQt(zebcaptioning::GetFullStreamFormatLabel(stream)),
                     static_cast<qulonglong>(stream));
  mRate = new FrameRateField;
  mHasStart = new QCheckBox;
  mHasStart->setAccessibleName(Label("$$$/Vidra/DLG/ExportSettings/Start=Start timecode"));
  mStart = new TimeField(false);
  auto* start = new QHBoxLayout;
  start->addWidget(mHasStart);
  start->addWidget(mStart, 1);

  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->addRow(Label("$$$/Vidra/DLG/ExportSettings/Format=Sidecar file"), mFormat);
  form->addRow(Label("$$$/Vidra/DLG/ExportSettings/Encoding=Encoding"), mEncoding);
  form->addRow(Label("$$$/Vidra/DLG/ExportSettings/Language=Language"), mLanguage);
  form->addRow(Label("$$$/Vidra/DLG/ExportSettings/Streams=Caption streams"), mStreams);
  form->addRow(Label("$$$/Vidra/DLG/ExportSettings/Stream=Stream"), mStream);
  form->addRow(Label("$$$/Vidra/DLG/ExportSettings/Rate=Frame rate"), mRate);
  form->addRow(Label("$$$/Vidra/DLG/ExportSettings/Start=Start timecode"), start);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  mMessage = new MessageLine;
  layout->addWidget(mMessage);
  auto* buttons = MakeButtons(*this, [this] { Set({}); });
  mAccept = AcceptButton(*buttons);
  layout->addWidget(buttons);

  mRate->WhenChanged([this] { Follow(); });
  QObject::connect(mStreams, &QComboBox::currentIndexChanged, this, [this] { Follow(); });
  QObject::connect(mHasStart, &QCheckBox::toggled, this, [this] { Follow(); });
  QObject::connect(mLanguage, &QComboBox::editTextChanged, this, [this] { Check(); });
  QObject::connect(mFormat, &QComboBox::currentIndexChanged, this, [this] { Check(); });
  QObject::connect(mEncoding, &QComboBox::currentIndexChanged, this, [this] { Check(); });
  mStart->WhenChanged([this] { Check(); });
  Set({});
}

void ExportSettingsWindow::Follow() {
  const BE::FrameRate rate = mRate->GetRate();
  mStart->SetRate(rate.IsValid() ? rate : mClipRate, mRate->IsDropFrame());
  mStart->setEnabled(mHasStart->isChecked());
  mStream->setEnabled(mStreams->Get<BE::ExportedStreams>() == BE::ExportedStreams::One && mStream->count() > 0);
  Check();
}

// The first thing that keeps the settings from being taken; empty if they can be.
QString ExportSettingsWindow::FindWrong() const {
  if (!mLanguage->currentText().isEmpty() && Get().language.empty())
    return Label("$$$/Vidra/DLG/ExportSettings/BadLanguage=Give a language as its code, for instance en or pt-BR.");
  if (mStreams->Get<BE::ExportedStreams>() == BE::ExportedStreams::One && mStream->count() == 0)
    return Label("$$$/Vidra/DLG/ExportSettings/NoStreams=No clip of the project has captions yet that could always be "
                 "exported. Choose another setting for the caption streams.");
  if (mHasStart->isChecked() && !mStart->IsTime())
    return Label("$$$/Vidra/DLG/ExportSettings/BadStart=The start timecode is not a timecode. Give it as hours, "
                 "minutes, seconds and frames, for instance 01:00:00:00.");
  return {};
}

void ExportSettingsWindow::Check() {
  const QString language = mLanguage->currentText();
  const bool isLanguage = language.isEmpty() || !Get().language.empty();
  const QString wrong = FindWrong();
  MarkWrong(*mLanguage, isLanguage ? QString() : wrong);
  mAccept->setEnabled(wrong.isEmpty());
  if (!wrong.isEmpty())
    mMessage->ShowWrong(wrong);
  else if (mFormat->Get<BE::SidecarFormat>() == BE::SidecarFormat::WebVTT &&
           mEncoding->currentIndex() > static_cast<int>(BE::TextEncoding::UTF8))
    mMessage->ShowNote(Label("$$$/Vidra/DLG/ExportSettings/WebVTTEncoding=Players may refuse WebVTT files that are "
                             "not plain UTF-8."));
  else
    mMessage->ShowNote({});
}

void ExportSettingsWindow::Set(const BE::CaptionsExportSettings& settings) {
  mFormat->Set(settings.format);
  mEncoding->Set(settings.encoding);
  const QString language = QString::fromStdString(settings.language);
  mLanguage->setCurrentIndex(mLanguage->findData(language));
  if (mLanguage->currentIndex() < 0)
    mLanguage->setEditText(language);
  mStreams->Set(settings.streams);
  const auto stream = static_cast<qulonglong>(settings.stream);
  int index = mStream->findData(stream);
  // A stream that the project does not hold at the moment stays chosen.
  if (index < 0 && settings.stream != zebcaptioning::kStreamFormat_None) {
    mStream->addItem(zebui::toolkit::ToQt(zebcaptioning::GetFullStreamFormatLabel(settings.stream)), stream);
    index = mStream->count() - 1;
  }
  if (mStream->count() > 0)
    mStream->setCurrentIndex(std::max(0, index));
  mRate->Set(settings.frameRate, settings.dropFrame);
  mHasStart->setChecked(settings.startTimecode.has_value());
  mStart->Set(settings.startTimecode.value_or(BE::TickTime()));
  Follow();
}

BE::CaptionsExportSettings ExportSettingsWindow::Get() const {
  BE::CaptionsExportSettings settings;
  settings.format = mFormat->Get<BE::SidecarFormat>();
  settings.encoding = mEncoding->Get<BE::TextEncoding>();
  settings.frameRate = mRate->GetRate();
  settings.dropFrame = mRate->IsDropFrame();
  if (mHasStart->isChecked())
    settings.startTimecode = mStart->Get();
  // "de (Deutsch)" is the tag in front; what was typed is a tag as it stands.
  const std::string language = mLanguage->currentText().section(QLatin1Char(' '), 0, 0).toStdString();
  if (BE::IsLanguageTag(language))
    settings.language = language;
  settings.streams = mStreams->Get<BE::ExportedStreams>();
  if (settings.streams == BE::ExportedStreams::One)
    settings.stream = static_cast<BE::StreamFormat>(mStream->currentData().toULongLong());
  return settings;
}

} // namespace DLG
