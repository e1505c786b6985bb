#include "App/window/SequenceSettingsWindow.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>

#include "App/window/Labels.h"
#include "App/window/TimeDisplays.h"

namespace App {

namespace {

struct Rate {
  zebmediatypes::FrameRate rate;
  const char* name;
};
constexpr Rate kRates[] = {
    {zebmediatypes::kFrameRate_23976, "23.976"}, {zebmediatypes::kFrameRate_24, "24"},
    {zebmediatypes::kFrameRate_25, "25"},        {zebmediatypes::kFrameRate_2997, "29.97"},
    {zebmediatypes::kFrameRate_30, "30"},        {zebmediatypes::kFrameRate_48, "48"},
    {zebmediatypes::kFrameRate_50, "50"},        {zebmediatypes::kFrameRate_5994, "59.94"},
    {zebmediatypes::kFrameRate_60, "60"},
};

// A rate that is none of the usual ones stays a choice.
QComboBox* MakeRates(zebmediatypes::FrameRate current) {
  auto* box = new QComboBox;
  box->setObjectName(QStringLiteral("rate"));
  for (const Rate& each : kRates)
    box->addItem(Label("$$$/Vidra/Captivo/Bin/FramesPerSecond={1} fps", {each.name}),
                 QVariant::fromValue<qlonglong>(each.rate.GetTicksPerFrame()));
  int at = box->findData(QVariant::fromValue<qlonglong>(current.GetTicksPerFrame()));
  if (at < 0 && current.IsValid()) {
    const double rate =
        static_cast<double>(zebmediatypes::kTicksPerSecond) / static_cast<double>(current.GetTicksPerFrame());
    box->addItem(Label("$$$/Vidra/Captivo/Bin/FramesPerSecond={1} fps", {QString::number(rate).toStdString()}),
                 QVariant::fromValue<qlonglong>(current.GetTicksPerFrame()));
    at = box->count() - 1;
  }
  box->setCurrentIndex(at);
  return box;
}

QComboBox* MakeDisplays(const QString& name, zebmediatypes::TimeDisplay current) {
  auto* box = new QComboBox;
  box->setObjectName(name);
  for (const zebmediatypes::TimeDisplay display : timedisplays::GetAll())
    box->addItem(timedisplays::GetName(display), display.GetNumber());
  box->setCurrentIndex(box->findData(current.GetNumber()));
  return box;
}

} // namespace

bool AskSequenceSettings(QWidget* parent, const BE::InterfaceRef<BE::Sequence>& sequence) {
  QDialog dialog(parent);
  dialog.setObjectName(QStringLiteral("sequenceSettings"));
  dialog.setWindowTitle(Label("$$$/Vidra/Captivo/SequenceSettings/Title=Sequence Settings"));
  auto* form = new QFormLayout(&dialog);
  QComboBox* rates = MakeRates(sequence->GetVideoFrameRate());
  QComboBox* video = MakeDisplays(QStringLiteral("video"), sequence->GetVideoTimeDisplay());
  QComboBox* audio = MakeDisplays(QStringLiteral("audio"), sequence->GetAudioTimeDisplay());
  form->addRow(Label("$$$/Vidra/Captivo/SequenceSettings/Rate=Frame &rate:"), rates);
  form->addRow(Label("$$$/Vidra/Captivo/SequenceSettings/Video=&Video display format:"), video);
  form->addRow(Label("$$$/Vidra/Captivo/SequenceSettings/Audio=&Audio display format:"), audio);
  // A timecode goes with a rate: a new rate proposes its own.
  QObject::connect(rates, &QComboBox::currentIndexChanged, &dialog, [rates, video] {
    const zebmediatypes::FrameRate rate(rates->currentData().toLongLong());
    video->setCurrentIndex(video->findData(zebmediatypes::GetTimecodeDisplay(rate, true).GetNumber()));
  });
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(Label("$$$/Vidra/DLG/Settings/OK=OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
  buttons->addButton(Label("$$$/Vidra/Captivo/Button/Cancel=Cancel"), QDialogButtonBox::RejectRole);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  form->addRow(buttons);
  if (dialog.exec() != QDialog::Accepted)
    return false;
  const auto chosen = [](const QComboBox* box, zebmediatypes::TimeDisplay before) {
    return box->currentIndex() < 0 ? before : zebmediatypes::TimeDisplay(box->currentData().toInt());
  };
  sequence->SetSettings(rates->currentIndex() < 0 ? sequence->GetVideoFrameRate()
                                                  : zebmediatypes::FrameRate(rates->currentData().toLongLong()),
                        chosen(video, sequence->GetVideoTimeDisplay()), chosen(audio, sequence->GetAudioTimeDisplay()));
  return true;
}

} // namespace App
