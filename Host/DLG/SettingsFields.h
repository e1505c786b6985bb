// For the sources of DLG only: fields that the settings windows are made of.
#pragma once

#include <functional>
#include <initializer_list>
#include <optional>
#include <string_view>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "BE/CaptionsSettings.h"
#include "zebui/PositionGrid.h"

namespace DLG {

QString Label(std::string_view keyWithDefault);

// Frames a field whose content cannot be taken, and says why in its tip and to assistive technology; an empty reason
// takes that back.
void MarkWrong(QWidget& field, const QString& why);

// What is wrong with what was entered, or what is worth knowing about it; takes no room while there is nothing to say.
class MessageLine : public QLabel {
 public:
  MessageLine();
  void ShowWrong(const QString& text);
  void ShowNote(const QString& text);

 private:
  void Show(const QString& text, const QPalette& palette);
};

// A choice of one of a few values, which are numbered in the order of the labels.
class ChoiceField : public QComboBox {
 public:
  explicit ChoiceField(std::initializer_list<std::string_view> labels);
  template <class Enum> Enum Get() const { return static_cast<Enum>(currentIndex()); }
  template <class Enum> void Set(Enum value) { setCurrentIndex(static_cast<int>(value)); }
};

// A frame rate that timecode counts, or that of the clip (invalid), and whether it drops frame numbers, which only two
// of them can.
class FrameRateField : public QWidget {
 public:
  FrameRateField();
  void Set(BE::FrameRate rate, bool dropFrame);
  BE::FrameRate GetRate() const;
  bool IsDropFrame() const;
  // Called when either was changed.
  void WhenChanged(std::function<void()> changed) { mChanged = std::move(changed); }

 private:
  void Follow();
  QComboBox* mRates;
  QCheckBox* mDropFrame;
  std::function<void()> mChanged;
};

// A time as timecode. What is no time is marked and stays to be corrected; the time is then still the last one.
class TimeField : public QLineEdit {
 public:
  explicit TimeField(bool mayBeNegative);
  void Set(BE::TickTime time);
  BE::TickTime Get() const;
  // Shows the same time at another rate. Invalid: 25 frames a second.
  void SetRate(BE::FrameRate rate, bool dropFrame);
  bool IsTime() const { return mIsTime; }
  // Called when a person changed the text.
  void WhenChanged(std::function<void()> changed) { mChanged = std::move(changed); }

 private:
  std::optional<BE::TickTime> Parse() const;
  void Follow();
  void Show();
  bool mMayBeNegative;
  bool mIsTime = true;
  std::function<void()> mChanged;
  BE::TickTime mTime;
  BE::FrameRate mRate;
  BE::TimeDisplay mDisplay;
};

// A colour, or none for the stream's own.
class ColorField : public QWidget {
 public:
  // name: for assistive technology.
  explicit ColorField(const QString& name);
  void Set(const std::optional<zebcaptioning::CaptioningColor>& color);
  std::optional<zebcaptioning::CaptioningColor> Get() const;

 private:
  void Ask();
  void Show();
  QCheckBox* mOwn;
  QPushButton* mButton;
  zebcaptioning::CaptioningColor mColor{1.0F, 1.0F, 1.0F, 1.0F};
};

// The three by three grid of the panel.
class PositionField : public QWidget {
 public:
  explicit PositionField(const QString& name);
  ~PositionField() override;
  // 0 to 8 by rows.
  void Set(int cell);
  int Get() const;

 private:
  boost::intrusive_ptr<zebui::ui::UI_Node> mRoot;
  boost::intrusive_ptr<zebui::controls::UI_PositionGridControl> mGrid;
};

// The one that accepts the window.
QPushButton* AcceptButton(const QDialogButtonBox& buttons);

// OK, Cancel and Restore Defaults, connected to the dialog.
QDialogButtonBox* MakeButtons(QDialog& dialog, std::function<void()> restoreDefaults);

} // namespace DLG
