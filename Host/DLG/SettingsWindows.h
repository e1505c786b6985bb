// For the sources of DLG and its tests only: the settings windows themselves.
#pragma once

#include <vector>

#include <QDialog>
#include <QSpinBox>

#include "DLG/SettingsFields.h"

class QDoubleSpinBox;
class QFormLayout;

namespace DLG {

class ImportSettingsWindow : public QDialog {
 public:
  // clipRate: at which times are shown while no rate is chosen.
  explicit ImportSettingsWindow(QWidget* parent, BE::FrameRate clipRate);
  void Set(const BE::CaptionsImportSettings& settings);
  BE::CaptionsImportSettings Get() const;

 private:
  void BuildStyle(QFormLayout& form);
  void BuildPosition(QFormLayout& form);
  void BuildTimes(QFormLayout& form);
  void BuildLines(QFormLayout& form);
  void Follow();
  void Check();

  BE::FrameRate mClipRate;
  QComboBox* mFamily = nullptr;
  QDoubleSpinBox* mSize = nullptr;
  QCheckBox* mBold = nullptr;
  QCheckBox* mItalic = nullptr;
  ColorField* mTextColor = nullptr;
  ColorField* mBackgroundColor = nullptr;
  ChoiceField* mAlignment = nullptr;
  PositionField* mPosition = nullptr;
  FrameRateField* mRate = nullptr;
  TimeField* mOffset = nullptr;
  QDoubleSpinBox* mMinimumDuration = nullptr;
  ChoiceField* mOverlaps = nullptr;
  ChoiceField* mLongLines = nullptr;
  QSpinBox* mLineLength = nullptr;
  ChoiceField* mLongCaptions = nullptr;
  QSpinBox* mLineCount = nullptr;
  MessageLine* mMessage = nullptr;
  QPushButton* mAccept = nullptr;
};

class ExportSettingsWindow : public QDialog {
 public:
  // streams: those that the project holds, to choose one of.
  ExportSettingsWindow(QWidget* parent, BE::FrameRate clipRate, const std::vector<BE::StreamFormat>& streams);
  void Set(const BE::CaptionsExportSettings& settings);
  BE::CaptionsExportSettings Get() const;

 private:
  void Follow();
  void Check();
  QString FindWrong() const;

  BE::FrameRate mClipRate;
  ChoiceField* mFormat = nullptr;
  ChoiceField* mEncoding = nullptr;
  QComboBox* mLanguage = nullptr;
  ChoiceField* mStreams = nullptr;
  QComboBox* mStream = nullptr;
  FrameRateField* mRate = nullptr;
  QCheckBox* mHasStart = nullptr;
  TimeField* mStart = nullptr;
  MessageLine* mMessage = nullptr;
  QPushButton* mAccept = nullptr;
};

} // namespace DLG
