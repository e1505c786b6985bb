#include <algorithm>
#include <cmath>
#include <vector>

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "DLG/SettingsWindows.h"
#include "TD/TitlerFontList.h"
#include "zebui/Toolkit.h"

namespace DLG {

namespace {

constexpr double kLargestSize = 300.0;
constexpr double kLongestMinimum = 10.0; // seconds

QFormLayout* AddGroup(QBoxLayout& layout, const QString& title) {
  auto* group = new QGroupBox(title);
  layout.addWidget(group);
  auto* form = new QFormLayout(group);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  return form;
}

// Fields of groups that stand above each other begin at the same place.
void AlignLabels(const QBoxLayout& column) {
  std::vector<QWidget*> labels;
  int widest = 0;
  for (int group = 0; group < column.count(); ++group) {
    const QWidget* box = column.itemAt(group)->widget();
    const auto* form = box ? dynamic_cast<const QFormLayout*>(box->layout()) : nullptr;
    for (int row = 0; form && row < form->rowCount(); ++row) {
      QLayoutItem* const label = form->itemAt(row, QFormLayout::LabelRole);
      if (!label || !label->widget())
        continue;
      labels.push_back(label->widget());
      widest = std::max(widest, label->widget()->sizeHint().width());
    }
  }
  for (QWidget* label : labels)
    label->setMinimumWidth(widest);
}

} // namespace

ImportSettingsWindow::ImportSettingsWindow(QWidget* parent, BE::FrameRate clipRate)
    : QDialog(parent), mClipRate(clipRate) {
  setWindowTitle(Label("$$$/Vidra/DLG/ImportSettings/Title=Import Settings"));
  auto* left = new QVBoxLayout;
  auto* right = new QVBoxLayout;
  BuildStyle(*AddGroup(*left, Label("$$$/Vidra/DLG/ImportSettings/Style=Captions without a style")));
  BuildPosition(*AddGroup(*left, Label("$$$/Vidra/DLG/ImportSettings/Place=Captions without a position")));
  BuildTimes(*AddGroup(*right, Label("$$$/Vidra/DLG/ImportSettings/Times=Times")));
  BuildLines(*AddGroup(*right, Label("$$$/Vidra/DLG/ImportSettings/Lines=Lines")));
  AlignLabels(*left);
  AlignLabels(*right);
  left->addStretch(1);
  right->addStretch(1);
  auto* columns = new QHBoxLayout;
  columns->addLayout(left);
  columns->addLayout(right);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(columns);
  mMessage = new MessageLine;
  layout->addWidget(mMessage);
  auto* buttons = MakeButtons(*this, [this] { Set({}); });
  mAccept = AcceptButton(*buttons);
  layout->addWidget(buttons);
  Set({});
}

void ImportSettingsWindow::BuildStyle(QFormLayout& form) {
  const QString asStream = Label("$$$/Vidra/DLG/Settings/StreamFont=As the stream");
  mFamily = new QComboBox;
  mFamily->addItem(asStream);
  for (const auto& [key, family] : TD::GetTitlerFontList())
    mFamily->addItem(zebui::toolkit::ToQt(family.name));
  mFamily->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  mFamily->setMinimumContentsLength(22);
  mSize = new QDoubleSpinBox;
  mSize->setRange(0, kLargestSize);
  mSize->setDecimals(1);
  mSize->setSpecialValueText(asStream);
  mBold = new QCheckBox(Label("$$$/Vidra/DLG/ImportSettings/Bold=Bold"));
  mItalic = new QCheckBox(Label("$$$/Vidra/DLG/ImportSettings/Italic=Italic"));
  auto* slants = new QHBoxLayout;
  slants->addWidget(mBold);
  slants->addWidget(mItalic);
  slants->addStretch(1);
  const QString text = Label("$$$/Vidra/DLG/ImportSettings/TextColor=Text color");
  const QString background = Label("$$$/Vidra/DLG/ImportSettings/BackgroundColor=Background color");
  mTextColor = new ColorField(text);
  mBackgroundColor = new ColorField(background);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/Font=Font"), mFamily);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/Size=Size"), mSize);
  form.addRow(QString(), slants);
  form.addRow(text, mTextColor);
  form.addRow(background, mBackgroundColor);
}

void ImportSettingsWindow::BuildPosition(QFormLayout& form) {
  mAlignment = new ChoiceField({"$$$/Vidra/DLG/ImportSettings/Left=Left", "$$$/Vidra/DLG/ImportSettings/Center=Center",
                                "$$$/Vidra/DLG/ImportSettings/Right=Right"});
  const QString position = Label("$$$/Vidra/DLG/ImportSettings/Position=Position");
  mPosition = new PositionField(position);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/Alignment=Alignment"), mAlignment);
  form.addRow(position, mPosition);
}

void ImportSettingsWindow::BuildTimes(QFormLayout& form) {
  mRate = new FrameRateField;
  mRate->WhenChanged([this] { Follow(); });
  mOffset = new TimeField(true);
  mOffset->WhenChanged([this] { Check(); });
  mMinimumDuration = new QDoubleSpinBox;
  mMinimumDuration->setRange(0, kLongestMinimum);
  mMinimumDuration->setSingleStep(0.1);
  mMinimumDuration->setDecimals(2);
  mMinimumDuration->setSuffix(Label("$$$/Vidra/DLG/ImportSettings/Seconds= s"));
  mMinimumDuration->setSpecialValueText(Label("$$$/Vidra/DLG/ImportSettings/AnyDuration=As in the file"));
  mOverlaps = new ChoiceField({"$$$/Vidra/DLG/ImportSettings/OverlapKeep=Keep",
                               "$$$/Vidra/DLG/ImportSettings/OverlapEnd=End the earlier one sooner",
                               "$$$/Vidra/DLG/ImportSettings/OverlapBegin=Begin the later one later",
                               "$$$/Vidra/DLG/ImportSettings/OverlapMerge=Merge both"});
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/Rate=Frame rate of the file"), mRate);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/Offset=Offset"), mOffset);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/MinimumDuration=Shortest duration"), mMinimumDuration);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/Overlaps=Overlapping captions"), mOverlaps);
}

void ImportSettingsWindow::BuildLines(QFormLayout& form) {
  mLongLines = new ChoiceField({"$$$/Vidra/DLG/ImportSettings/LinesKeep=Keep",
                                "$$$/Vidra/DLG/ImportSettings/LinesWrap=Wrap at blanks",
                                "$$$/Vidra/DLG/ImportSettings/LinesReflow=Join and break evenly"});
  mLineLength = new QSpinBox;
  mLineLength->setRange(0, 200);
  mLineLength->setSpecialValueText(Label("$$$/Vidra/DLG/ImportSettings/GridLength=As the stream's grid"));
  mLineLength->setSuffix(Label("$$$/Vidra/DLG/ImportSettings/Characters= characters"));
  mLongCaptions = new ChoiceField({"$$$/Vidra/DLG/ImportSettings/CaptionsKeep=Keep",
                                   "$$$/Vidra/DLG/ImportSettings/CaptionsSplit=Split into several"});
  mLineCount = new QSpinBox;
  mLineCount->setRange(1, 15);
  QObject::connect(mLongLines, &QComboBox::currentIndexChanged, this, [this] { Follow(); });
  QObject::connect(mLongCaptions, &QComboBox::currentIndexChanged, this, [this] { Follow(); });
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/LongLines=Long lines"), mLongLines);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/LineLength=Longest line"), mLineLength);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/LongCaptions=Captions with many lines"), mLongCaptions);
  form.addRow(Label("$$$/Vidra/DLG/ImportSettings/LineCount=Most lines"), mLineCount);
}

void ImportSettingsWindow::Follow() {
  if (!mAccept)
    return;
  const BE::FrameRate rate = mRate->GetRate();
  mOffset->SetRate(rate.IsValid() ? rate : mClipRate, mRate->IsDropFrame());
  mLineLength->setEnabled(mLongLines->Get<BE::LongLines>() != BE::LongLines::Keep);
  mLineCount->setEnabled(mLongCaptions->Get<BE::LongCaptions>() != BE::LongCaptions::Keep);
  Check();
}

void ImportSettingsWindow::Check() {
  const bool isTime = mOffset->IsTime();
  mAccept->setEnabled(isTime);
  mMessage->ShowWrong(isTime ? QString()
                             : Label("$$$/Vidra/DLG/ImportSettings/BadOffset=The offset is not a timecode. Give it as "
                                     "hours, minutes, seconds and frames, for instance 00:00:10:00 or -00:00:02:12."));
}

void ImportSettingsWindow::Set(const BE::CaptionsImportSettings& settings) {
  const QString family = QString::fromStdString(settings.style.family);
  int index = family.isEmpty() ? 0 : mFamily->findText(family, Qt::MatchFixedString | Qt::MatchCaseSensitive);
  // A family that another machine has stays as it is.
  if (index < 0) {
    mFamily->addItem(family);
    index = mFamily->count() - 1;
  }
  mFamily->setCurrentIndex(index);
  mSize->setValue(settings.style.size);
  mBold->setChecked(settings.style.bold);
  mItalic->setChecked(settings.style.italic);
  mTextColor->Set(settings.style.textColor);
  mBackgroundColor->Set(settings.style.backgroundColor);
  mAlignment->Set(settings.alignment);
  mPosition->Set(settings.anchor);
  mRate->Set(settings.frameRate, settings.dropFrame);
  mOffset->Set(settings.offset);
  mMinimumDuration->setValue(zebmediatypes::ToSeconds(settings.minimumDuration));
  mOverlaps->Set(settings.overlaps);
  mLongLines->Set(settings.longLines);
  mLineLength->setValue(settings.lineLength);
  mLongCaptions->Set(settings.longCaptions);
  mLineCount->setValue(settings.lineCount);
  Follow();
}

BE::CaptionsImportSettings ImportSettingsWindow::Get() const {
  BE::CaptionsImportSettings settings;
  if (mFamily->currentIndex() > 0)
    settings.style.family = mFamily->currentText().toStdString();
  settings.style.size = static_cast<float>(mSize->value());
  settings.style.bold = mBold->isChecked();
  settings.style.italic = mItalic->isChecked();
  settings.style.textColor = mTextColor->Get();
  settings.style.backgroundColor = mBackgroundColor->Get();
  settings.alignment = mAlignment->Get<int>();
  settings.anchor = mPosition->Get();
  settings.frameRate = mRate->GetRate();
  settings.dropFrame = mRate->IsDropFrame();
  settings.offset = mOffset->Get();
  settings.minimumDuration = zebmediatypes::TickTimeFromSeconds(mMinimumDuration->value());
  settings.overlaps = mOverlaps->Get<BE::Overlaps>();
  settings.longLines = mLongLines->Get<BE::LongLines>();
  settings.lineLength = mLineLength->value();
  settings.longCaptions = mLongCaptions->Get<BE::LongCaptions>();
  settings.lineCount = mLineCount->value();
  return settings;
}

} // namespace DLG
