#include "DLG/SettingsFields.h"

#include <array>
#include <cmath>

#include <QHBoxLayout>
#include <QPainter>

#include "DLG/ColorPickerDialog.h"
#include "zebcore/Localizer.h"
#include "zebui/Toolkit.h"

namespace DLG {

namespace toolkit = zebui::toolkit;
using BE::FrameRate;
using BE::TickTime;
using zebcaptioning::CaptioningColor;

namespace {

struct NamedRate {
  FrameRate rate;
  const char* name;
};
constexpr std::array<NamedRate, 9> kRates{{{zebmediatypes::kFrameRate_23976, "23.976"},
                                           {zebmediatypes::kFrameRate_24, "24"},
                                           {zebmediatypes::kFrameRate_25, "25"},
                                           {zebmediatypes::kFrameRate_2997, "29.97"},
                                           {zebmediatypes::kFrameRate_30, "30"},
                                           {zebmediatypes::kFrameRate_48, "48"},
                                           {zebmediatypes::kFrameRate_50, "50"},
                                           {zebmediatypes::kFrameRate_5994, "59.94"},
                                           {zebmediatypes::kFrameRate_60, "60"}}};
constexpr int kGridSide = 32;

bool CanDropFrames(FrameRate rate) {
  return rate == zebmediatypes::kFrameRate_2997 || rate == zebmediatypes::kFrameRate_5994;
}

QHBoxLayout* Row(QWidget* parent) {
  auto* row = new QHBoxLayout(parent);
  row->setContentsMargins(0, 0, 0, 0);
  return row;
}

UIF::Color ToBytes(const CaptioningColor& color) {
  return UIF::ZEBConversionUtilities::ZEBColorRGBAtoKSLColor({color.red, color.green, color.blue, color.alpha});
}

// Red that can be read on either theme.
QColor WrongColor(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128 ? QColor(255, 138, 128) : QColor(179, 38, 30);
}

QIcon ColorIcon(const UIF::Color& color) {
  QIcon icon;
  for (const int scale : {1, 2}) {
    QPixmap picture(QSize(16, 16) * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::gray);
    QPainter painter(&picture);
    painter.fillRect(1, 1, 14, 14, QColor(color.red, color.green, color.blue));
    icon.addPixmap(picture);
  }
  return icon;
}

} // namespace

QString Label(std::string_view keyWithDefault) {
  return toolkit::ToQt(zebcore::config::Localizer::Get().Localize(keyWithDefault));
}

void MarkWrong(QWidget& field, const QString& why) {
  QPalette palette;
  if (!why.isEmpty()) {
    // Of which the style draws frames, without and with the focus.
    const QColor wrong = WrongColor(palette);
    palette.setColor(QPalette::Mid, wrong);
    palette.setColor(QPalette::Link, wrong);
  }
  field.setPalette(palette);
  field.setToolTip(why);
  field.setAccessibleDescription(why);
}

MessageLine::MessageLine() {
  setWordWrap(true);
  setTextFormat(Qt::PlainText);
  hide();
}

void MessageLine::ShowWrong(const QString& text) {
  QPalette palette;
  palette.setColor(QPalette::WindowText, WrongColor(palette));
  Show(text, palette);
}

void MessageLine::ShowNote(const QString& text) {
  Show(text, {});
}

void MessageLine::Show(const QString& text, const QPalette& palette) {
  setPalette(palette);
  setText(text);
  setVisible(!text.isEmpty());
}

ChoiceField::ChoiceField(std::initializer_list<std::string_view> labels) {
  for (const std::string_view label : labels)
    addItem(Label(label));
}

FrameRateField::FrameRateField()
    : mRates(new QComboBox), mDropFrame(new QCheckBox(Label("$$$/Vidra/DLG/Settings/DropFrame=Drop frame"))) {
  mRates->addItem(Label("$$$/Vidra/DLG/Settings/ClipRate=As the clip"));
  for (const NamedRate& rate : kRates)
    mRates->addItem(QString::fromLatin1(rate.name));
  setFocusProxy(mRates);
  auto* row = Row(this);
  row->addWidget(mRates, 1);
  row->addWidget(mDropFrame);
  QObject::connect(mRates, &QComboBox::currentIndexChanged, this, [this] { Follow(); });
  QObject::connect(mDropFrame, &QCheckBox::toggled, this, [this] { Follow(); });
  Follow();
}

void FrameRateField::Set(FrameRate rate, bool dropFrame) {
  const auto found = std::ranges::find(kRates, rate, &NamedRate::rate);
  mRates->setCurrentIndex(found == kRates.end() ? 0 : static_cast<int>(found - kRates.begin()) + 1);
  mDropFrame->setChecked(dropFrame);
}

FrameRate FrameRateField::GetRate() const {
  const int index = mRates->currentIndex();
  return index > 0 ? kRates.at(static_cast<std::size_t>(index - 1)).rate : FrameRate();
}

bool FrameRateField::IsDropFrame() const {
  return mDropFrame->isChecked() && CanDropFrames(GetRate());
}

void FrameRateField::Follow() {
  mDropFrame->setEnabled(CanDropFrames(GetRate()));
  if (mChanged)
    mChanged();
}

TimeField::TimeField(bool mayBeNegative) : mMayBeNegative(mayBeNegative) {
  SetRate({}, false);
  QObject::connect(this, &QLineEdit::textEdited, this, [this] { Follow(); });
  QObject::connect(this, &QLineEdit::editingFinished, this, [this] {
    if (mIsTime)
      Show();
  });
}

void TimeField::Follow() {
  const std::optional<TickTime> time = Parse();
  mIsTime = time.has_value();
  if (time)
    mTime = *time;
  MarkWrong(*this, mIsTime ? QString() : Label("$$$/Vidra/DLG/Settings/NoTime=This is not a timecode."));
  if (mChanged)
    mChanged();
}

void TimeField::Set(TickTime time) {
  mTime = time;
  Show();
}

TickTime TimeField::Get() const {
  return mTime;
}

void TimeField::SetRate(FrameRate rate, bool dropFrame) {
  const FrameRate counted = rate.IsValid() ? rate : zebmediatypes::kFrameRate_25;
  const BE::TimeDisplay display = zebmediatypes::GetTimecodeDisplay(counted, dropFrame);
  if (counted == mRate && display == mDisplay)
    return;
  mRate = counted;
  mDisplay = display;
  Show();
}

std::optional<TickTime> TimeField::Parse() const {
  const std::optional<TickTime> time = zebmediatypes::ParseTime(toolkit::FromQt(text()), mDisplay, mRate);
  return time && !mMayBeNegative && *time < TickTime() ? std::nullopt : time;
}

void TimeField::Show() {
  mIsTime = true;
  MarkWrong(*this, {});
  setText(toolkit::ToQt(zebmediatypes::FormatTime(mTime, mDisplay, mRate)));
}

ColorField::ColorField(const QString& name)
    : mOwn(new QCheckBox(Label("$$$/Vidra/DLG/Settings/OwnColor=Set to"))), mButton(new QPushButton) {
  mOwn->setAccessibleName(name);
  mButton->setAccessibleName(name);
  mButton->setAutoDefault(false);
  setFocusProxy(mOwn);
  auto* row = Row(this);
  row->addWidget(mOwn);
  row->addWidget(mButton);
  row->addStretch(1);
  QObject::connect(mOwn, &QCheckBox::toggled, this, [this] { Show(); });
  QObject::connect(mButton, &QPushButton::clicked, this, [this] { Ask(); });
  Show();
}

void ColorField::Set(const std::optional<CaptioningColor>& color) {
  mOwn->setChecked(color.has_value());
  if (color)
    mColor = *color;
  Show();
}

std::optional<CaptioningColor> ColorField::Get() const {
  return mOwn->isChecked() ? std::optional(mColor) : std::nullopt;
}

void ColorField::Ask() {
  UIF::Color result;
  if (!ColorPickerDialog::PickColor(ToBytes(mColor), result))
    return;
  mColor = {static_cast<float>(result.red) / 255.0F, static_cast<float>(result.green) / 255.0F,
            static_cast<float>(result.blue) / 255.0F, mColor.alpha > 0.0F ? mColor.alpha : 1.0F};
  Show();
}

void ColorField::Show() {
  const UIF::Color color = ToBytes(mColor);
  mButton->setEnabled(mOwn->isChecked());
  mButton->setIcon(mOwn->isChecked() ? ColorIcon(color) : QIcon());
  mButton->setText(mOwn->isChecked() ? QColor(color.red, color.green, color.blue).name().toUpper()
                                     : Label("$$$/Vidra/DLG/Settings/StreamColor=As the stream"));
}

PositionField::PositionField(const QString& name)
    : mRoot(new zebui::ui::UI_Node), mGrid(new zebui::controls::UI_PositionGridControl) {
  setFixedSize(kGridSide, kGridSide);
  toolkit::BindViewNode(*mRoot, this);
  mGrid->UI_SetLocalRectF({0, 0, kGridSide, kGridSide});
  mGrid->UI_SetAccessibleName(toolkit::FromQt(name));
  mRoot->ChildPushBack(mGrid);
  setFocusProxy(toolkit::WidgetOf(mGrid.get()));
}

PositionField::~PositionField() {
  setFocusProxy(nullptr);
  toolkit::UnbindViewNode(*mRoot);
}

void PositionField::Set(int cell) {
  mGrid->SetValue({cell % 3, cell / 3});
}

int PositionField::Get() const {
  const auto cell = mGrid->GetValue();
  return cell.y * 3 + cell.x;
}

QPushButton* AcceptButton(const QDialogButtonBox& buttons) {
  for (QAbstractButton* button : buttons.buttons()) {
    if (buttons.buttonRole(button) == QDialogButtonBox::AcceptRole)
      return static_cast<QPushButton*>(button);
  }
  return nullptr;
}

QDialogButtonBox* MakeButtons(QDialog& dialog, std::function<void()> restoreDefaults) {
  auto* buttons = new QDialogButtonBox;
  QPushButton* const accept = buttons->addButton(Label("$$$/Vidra/DLG/Settings/OK=OK"), QDialogButtonBox::AcceptRole);
  buttons->addButton(Label("$$$/Vidra/DLG/Settings/Cancel=Cancel"), QDialogButtonBox::RejectRole);
  QPushButton* const restore =
      buttons->addButton(Label("$$$/Vidra/DLG/Settings/Defaults=Restore Defaults"), QDialogButtonBox::ResetRole);
  accept->setDefault(true);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(restore, &QPushButton::clicked, &dialog, std::move(restoreDefaults));
  return buttons;
}

} // namespace DLG
