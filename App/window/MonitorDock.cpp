#include "App/window/MonitorDock.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

#include "App/window/Icons.h"
#include "App/window/Labels.h"
#include "App/window/Settings.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"

namespace App {

MonitorDock::MonitorDock(QWidget* parent)
    : QDockWidget(Label("$$$/Vidra/Captivo/Monitor/Title=Monitor"), parent), mFormat(new QLabel), mWarning(new QLabel),
      mView(new MonitorView), mRefreshSoon(new QTimer(this)) {
  setObjectName(QStringLiteral("monitor"));
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(mView, 1);
  layout->addWidget(MakeBar());
  setWidget(page);
  mView->setAccessibleName(Label("$$$/Vidra/Captivo/Monitor/Picture=Picture with the selected caption"));
  mView->SetHint(Label("$$$/Vidra/Captivo/Monitor/Hint=Select a caption to see it on its picture."));
  mRefreshSoon->setSingleShot(true);
  connect(mRefreshSoon, &QTimer::timeout, this, [this] { RefreshNow(); });
  zebcore::messaging::AddListener(HSL::kStation_CaptionSelection, this);
  RefreshNow();
}

MonitorDock::~MonitorDock() = default;

QToolButton* MonitorDock::AddToggle(QWidget* bar, const QString& symbol, const QString& tip, bool isOn,
                                    std::function<void(bool)> toggle) {
  auto* button = new QToolButton;
  button->setIcon(Symbol(symbol));
  button->setAutoRaise(true);
  button->setCheckable(true);
  button->setChecked(isOn);
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QToolButton::toggled, this, std::move(toggle));
  bar->layout()->addWidget(button);
  return button;
}

QWidget* MonitorDock::MakeBar() {
  auto* bar = new QWidget;
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(6, 3, 6, 3);
  layout->setSpacing(4);
  // A narrow dock cuts the names, and does not grow for them.
  mFormat->setMinimumWidth(1);
  mWarning->setMinimumWidth(1);
  mWarning->setStyleSheet(QStringLiteral("color: %1").arg(WarningColor().name()));
  layout->addWidget(mFormat);
  layout->addWidget(mWarning, 1);
  AddToggle(bar, QStringLiteral("grid"), Label("$$$/Vidra/Captivo/Monitor/Grid=Rows and columns"),
            settings::IsMonitorGridShown(), [this](bool on) {
              settings::SetMonitorGridShown(on);
              mView->SetGridShown(on);
            });
  AddToggle(bar, QStringLiteral("safe-area"), Label("$$$/Vidra/Captivo/Monitor/SafeArea=Safe areas"),
            settings::IsMonitorSafeAreaShown(), [this](bool on) {
              settings::SetMonitorSafeAreaShown(on);
              mView->SetSafeAreaShown(on);
            });
  mView->SetGridShown(settings::IsMonitorGridShown());
  mView->SetSafeAreaShown(settings::IsMonitorSafeAreaShown());
  return bar;
}

void MonitorDock::SetStreamOnShow(const Stream& stream) {
  if (stream != mStream)
    Follow(stream);
}

void MonitorDock::HandleMessage(const zebcore::messaging::Message& message) {
  if (const auto* selected = zebcore::messaging::MessageCast<HSL::CaptionSelectedMessage>(message)) {
    Follow(selected->stream.Query<BE::CaptioningStream>());
    mCaption = selected->caption;
  } else if (!zebcore::messaging::MessageCast<HSL::CaptionCommitEditsMessage>(message)) {
    mRefreshSoon->start(0);
  }
}

void MonitorDock::Follow(const Stream& stream) {
  for (const auto& station : mStations)
    zebcore::messaging::RemoveListener(station, this);
  mStations.clear();
  if (stream != mStream) {
    mStream = stream;
    mCaption = nullptr;
    const auto last = mStream ? mBegins.find(mStream->GetID()) : mBegins.end();
    mBegin = last != mBegins.end() ? std::optional(last->second) : std::nullopt;
  }
  if (mStream) {
    mStations.push_back(mStream->GetStationID());
    if (const auto clip = mStream->GetMasterClip())
      mStations.push_back(clip->GetStationID());
  }
  for (const auto& station : mStations)
    zebcore::messaging::AddListener(station, this);
  mRefreshSoon->start(0);
}

bool MonitorDock::IsStreamThere() const {
  const auto clip = mStream ? mStream->GetMasterClip() : nullptr;
  if (!clip)
    return false;
  const auto streams = clip->GetStreams();
  return std::find(streams.begin(), streams.end(), mStream) != streams.end();
}

MonitorDock::CaptionPtr MonitorDock::FindSelected() const {
  if (!IsStreamThere())
    return nullptr;
  if (mCaption) {
    const auto shown = mStream->FindAt(mCaption->GetBeginTime());
    if (std::find(shown.begin(), shown.end(), mCaption) != shown.end())
      return mCaption;
  }
  if (mBegin)
    return mStream->FindByBegin(*mBegin);
  std::vector<BE::ICaptioningStream::CaptionKey> keys;
  mStream->GetCaptionKeys(keys);
  return keys.empty() ? nullptr : mStream->GetCaption(keys.front());
}

void MonitorDock::RefreshNow() {
  mRefreshSoon->stop();
  mCaption = FindSelected();
  if (mCaption) {
    mBegin = mCaption->GetBeginTime();
    mBegins.insert_or_assign(mStream->GetID(), *mBegin);
  }
  mView->Show(mCaption ? mStream : nullptr,
              mCaption ? monitor::GetPictureTime(*mCaption->GetState()) : zebmediatypes::TickTime());
  Describe();
}

void MonitorDock::Describe() {
  QString format;
  QString text;
  if (mCaption) {
    format = ToQString(zebcaptioning::GetFullStreamFormatLabel(mStream->GetStreamFormat()));
    const QString type =
        ToQString(zebcaptioning::GetCaptionTypeDescription(mCaption->GetState()->paragraph.captionType));
    if (!type.isEmpty() && !zebcaptioning::IsOpenCaptions(mStream->GetStreamFormat()))
      format += QStringLiteral(" · ") + type;
    text = ToQString(mCaption->GetState()->text);
  }
  mFormat->setText(format);
  mFormat->setToolTip(format);
  mView->setAccessibleDescription(text);
  const std::size_t lost = mView->GetScreen().CountLost();
  mWarning->setText(lost > 0 ? Label("$$$/Vidra/Captivo/Monitor/Lost=Cut off: {1}", {std::to_string(lost)})
                             : QString());
  mWarning->setToolTip(lost > 0 ? Label("$$$/Vidra/Captivo/Monitor/LostTip=Characters for which the screen has no room")
                                : QString());
}

} // namespace App
