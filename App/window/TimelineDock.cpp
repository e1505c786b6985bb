#include "App/window/TimelineDock.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "App/window/Icons.h"
#include "App/window/Labels.h"
#include "App/window/TimeDisplays.h"

namespace App {

namespace {

constexpr const char* kSetting_Sequence = "window.sequence";
constexpr int kNameWidth = 180;

} // namespace

TimelineDock::TimelineDock(QWidget* parent)
    : QDockWidget(Label("$$$/Vidra/Captivo/Timeline/Title=Timeline"), parent), mSequences(new QComboBox),
      mTime(new QLabel), mView(new TimelineView), mRefreshSoon(new QTimer(this)) {
  setObjectName(QStringLiteral("timeline"));
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(MakeBar());
  layout->addWidget(mView, 1);
  setWidget(page);
  mView->whenPlayheadMoved = [this] { UpdateTime(); };
  mRefreshSoon->setSingleShot(true);
  connect(mRefreshSoon, &QTimer::timeout, this, [this] { RefreshNow(); });
  UpdateTimeDisplay();
  RefreshNow();
}

TimelineDock::~TimelineDock() {
  Follow(nullptr);
}

QToolButton* TimelineDock::AddButton(QWidget* bar, const QString& symbol, const QString& tip,
                                     std::function<void()> act) {
  auto* button = new QToolButton;
  button->setIcon(Symbol(symbol));
  button->setAutoRaise(true);
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QToolButton::clicked, this, std::move(act));
  bar->layout()->addWidget(button);
  return button;
}

QWidget* TimelineDock::MakeBar() {
  auto* bar = new QWidget;
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(6, 3, 6, 3);
  layout->setSpacing(4);
  mSequences->setMinimumWidth(kNameWidth);
  mSequences->setAccessibleName(Label("$$$/Vidra/Captivo/Timeline/Sequence=Sequence"));
  connect(mSequences, &QComboBox::activated, this, [this](int index) {
    const std::string id = mSequences->itemData(index).toString().toStdString();
    if (const Sequence sequence = mProject ? mProject->FindSequence(id) : nullptr; sequence && whenSequenceChosen)
      whenSequenceChosen(sequence);
  });
  layout->addWidget(mSequences);
  AddButton(bar, QStringLiteral("add"), Label("$$$/Vidra/Captivo/Timeline/New=New sequence from the selected clip"),
            [this] {
              if (whenNewAsked)
                whenNewAsked();
            });
  mButtons.push_back(AddButton(bar, QStringLiteral("settings"),
                               Label("$$$/Vidra/Captivo/Timeline/Settings=Settings of the sequence"), [this] {
                                 if (whenSettingsAsked)
                                   whenSettingsAsked();
                               }));
  layout->addStretch(1);
  QFont digits = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  digits.setPixelSize(QFontInfo(font()).pixelSize());
  mTime->setFont(digits);
  mTime->setAccessibleName(Label("$$$/Vidra/Captivo/Timeline/Playhead=Playhead"));
  layout->addWidget(mTime);
  layout->addStretch(1);
  mButtons.push_back(AddButton(bar, QStringLiteral("zoom-out"),
                               Label("$$$/Vidra/Captivo/Timeline/ZoomOut=Zoom out (−)"), [this] { mView->ZoomOut(); }));
  mButtons.push_back(AddButton(bar, QStringLiteral("zoom-fit"),
                               Label("$$$/Vidra/Captivo/Timeline/ZoomToFit=All of the sequence (0)"),
                               [this] { mView->ZoomToFit(); }));
  mButtons.push_back(AddButton(bar, QStringLiteral("zoom-in"), Label("$$$/Vidra/Captivo/Timeline/ZoomIn=Zoom in (+)"),
                               [this] { mView->ZoomIn(); }));
  return bar;
}

void TimelineDock::SetProject(const BE::InterfaceRef<BE::Project>& project) {
  mProject = project;
  Sequence shown = project ? project->FindSequence(project->GetSetting(kSetting_Sequence, {})) : nullptr;
  if (!shown && project && !project->GetSequences().empty())
    shown = project->GetSequences().front();
  Follow(shown);
  mView->SetSequence(shown);
  RefreshNow();
}

void TimelineDock::ShowSequence(const Sequence& sequence) {
  if (sequence == GetSequence())
    return;
  Follow(sequence);
  mView->SetSequence(sequence);
  if (sequence && mProject && !mProject->IsReadOnly())
    mProject->SetSetting(kSetting_Sequence, sequence->GetID());
  RefreshNow();
}

// The project says what comes to the bin and goes, a sequence what changes in it, and its clips which captions they
// have.
void TimelineDock::Follow(const Sequence& sequence) {
  for (const auto& station : mStations)
    zebcore::messaging::RemoveListener(station, this);
  mStations.clear();
  if (mProject) {
    mStations.push_back(mProject->GetStationID());
    for (const auto& clip : mProject->GetClips())
      mStations.push_back(clip->GetStationID());
  }
  if (sequence)
    mStations.push_back(sequence->GetStationID());
  for (const auto& station : mStations)
    zebcore::messaging::AddListener(station, this);
}

void TimelineDock::HandleMessage(const zebcore::messaging::Message&) {
  Refresh();
}

void TimelineDock::Refresh() {
  mRefreshSoon->start(0);
}

void TimelineDock::RefreshNow() {
  mRefreshSoon->stop();
  Sequence shown = GetSequence();
  const bool isThere = shown && mProject && mProject->FindSequence(shown->GetID());
  if (!isThere) {
    const auto left = mProject ? mProject->GetSequences() : std::vector<Sequence>();
    shown = left.empty() ? nullptr : left.front();
    mView->SetSequence(shown);
  } else {
    mView->Refresh();
  }
  Follow(shown);
  FillSequences();
  for (QToolButton* button : mButtons)
    button->setEnabled(static_cast<bool>(shown));
  UpdateTime();
}

void TimelineDock::FillSequences() {
  const QSignalBlocker quiet(mSequences);
  mSequences->clear();
  if (mProject) {
    for (const Sequence& sequence : mProject->GetSequences())
      mSequences->addItem(Symbol(QStringLiteral("sequence")), ToQString(sequence->GetName()),
                          QString::fromStdString(sequence->GetID()));
  }
  mSequences->setEnabled(mSequences->count() > 0);
  if (mSequences->count() == 0)
    mSequences->addItem(Label("$$$/Vidra/Captivo/Timeline/NoSequences=No sequences yet"));
  const Sequence shown = GetSequence();
  mSequences->setCurrentIndex(shown ? mSequences->findData(QString::fromStdString(shown->GetID())) : 0);
}

void TimelineDock::UpdateTimeDisplay() {
  mView->SetTimeDisplay(timedisplays::Get(timedisplays::Which::Sequence));
  UpdateTime();
}

void TimelineDock::UpdateTime() {
  mTime->setText(GetSequence() ? mView->WriteTime(mView->GetPlayhead()) : QString());
}

} // namespace App
