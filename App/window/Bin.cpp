#include "App/window/Bin.h"

#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <utility>

#include "App/window/Icons.h"
#include "App/window/Labels.h"
#include "App/window/TimelineView.h"
#include "zebmediatypes/TickTime.h"

namespace App {

namespace {

constexpr int kColumnWidth = 110;
constexpr int kIDRole = Qt::UserRole;
constexpr int kColumn_Name = 0;
constexpr int kColumn_Details = 1;
constexpr int kPage_Empty = 0;
constexpr int kPage_Tree = 1;

QString RateText(double framesPerSecond) {
  QString text = QString::number(framesPerSecond, 'f', 3);
  while (text.contains(u'.') && (text.endsWith(u'0') || text.endsWith(u'.')))
    text.chop(1);
  return text;
}

QString DurationText(double seconds) {
  const auto whole = static_cast<long long>(std::llround(seconds));
  const QString minutesAndSeconds = QStringLiteral("%1:%2")
                                        .arg(whole / 60 % 60, whole >= 3600 ? 2 : 1, 10, QLatin1Char('0'))
                                        .arg(whole % 60, 2, 10, QLatin1Char('0'));
  return whole >= 3600 ? QStringLiteral("%1:%2").arg(whole / 3600).arg(minutesAndSeconds) : minutesAndSeconds;
}

double Seconds(const zebmediatypes::TickTime& time) {
  return static_cast<double>(time.GetTicks()) / static_cast<double>(zebmediatypes::kTicksPerSecond);
}

QString DetailsOf(const BE::MediaInfo& info) {
  QStringList parts;
  if (info.width > 0)
    parts << QStringLiteral("%1 × %2").arg(info.width).arg(info.height);
  if (info.width > 0 && !info.still && info.frameRate.GetTicksPerFrame() > 0)
    parts << Label("$$$/Vidra/Captivo/Bin/FramesPerSecond={1} fps",
                   {RateText(static_cast<double>(zebmediatypes::kTicksPerSecond) /
                             static_cast<double>(info.frameRate.GetTicksPerFrame()))
                        .toStdString()});
  if (info.width == 0 && info.sampleRate > 0)
    parts << QStringLiteral("%1 kHz").arg(RateText(info.sampleRate / 1000.0));
  if (!info.still)
    parts << DurationText(Seconds(info.duration));
  return parts.join(QStringLiteral(" · "));
}

QString SymbolOf(const BE::MediaInfo& info) {
  if (info.still)
    return QStringLiteral("still");
  return info.width > 0 ? QStringLiteral("video") : QStringLiteral("audio");
}

// Clips can be taken to the timeline; a click beside all of them means the bin itself.
class BinTree : public QTreeWidget {
 public:
  std::function<void()> whenClickedBeside;

 protected:
  QStringList mimeTypes() const override { return {QLatin1String(kClipMimeType)}; }
  QMimeData* mimeData(const QList<QTreeWidgetItem*>& items) const override {
    if (items.isEmpty())
      return nullptr;
    auto* dragged = new QMimeData;
    dragged->setData(QLatin1String(kClipMimeType), items.front()->data(0, kIDRole).toString().toUtf8());
    return dragged;
  }
  void mousePressEvent(QMouseEvent* event) override {
    const bool isBeside = !itemAt(event->position().toPoint());
    QTreeWidget::mousePressEvent(event);
    if (isBeside && event->button() == Qt::LeftButton) {
      setCurrentItem(nullptr);
      whenClickedBeside();
    }
  }
};

} // namespace

Bin::Bin(QWidget* parent)
    : QWidget(parent), mPages(new QStackedWidget), mTree(new BinTree), mRefreshSoon(new QTimer(this)) {
  static_cast<BinTree*>(mTree)->whenClickedBeside = [this] {
    if (whenBinSelected)
      whenBinSelected();
  };
  mTree->setDragEnabled(true);
  mTree->setDragDropMode(QAbstractItemView::DragOnly);
  mTree->setColumnCount(2);
  mTree->setHeaderLabels({Label("$$$/Vidra/Captivo/Bin/Name=Name"), Label("$$$/Vidra/Captivo/Bin/Details=Details")});
  // A name may be long; there is a tip with all of it.
  mTree->header()->setStretchLastSection(false);
  mTree->header()->setSectionResizeMode(kColumn_Name, QHeaderView::Stretch);
  mTree->header()->setSectionResizeMode(kColumn_Details, QHeaderView::ResizeToContents);
  mTree->header()->setMinimumSectionSize(kColumnWidth);
  mTree->setFrameShape(QFrame::NoFrame);
  mTree->setUniformRowHeights(true);
  mTree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  mTree->setContextMenuPolicy(Qt::CustomContextMenu);
  mTree->setExpandsOnDoubleClick(false);
  mTree->setAccessibleName(Label("$$$/Vidra/Captivo/Bin/Title=Project"));

  mPages->addWidget(MakeEmptyPage());
  mPages->addWidget(mTree);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(mPages);

  mRefreshSoon->setSingleShot(true);
  connect(mRefreshSoon, &QTimer::timeout, this, [this] { RefreshNow(); });
  connect(mTree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* current) {
    mIsReported = current && !mFilling;
    if (mIsReported)
      ReportSelected();
  });
  // Also when it is the current one already, since something else may have been selected elsewhere meanwhile.
  connect(mTree, &QTreeWidget::itemClicked, this, [this] {
    if (!std::exchange(mIsReported, false))
      ReportSelected();
  });
  connect(mTree, &QTreeWidget::itemActivated, this, [this] { ReportOpened(); });
  connect(mTree, &QTreeWidget::customContextMenuRequested, this, [this](const QPoint& point) { ShowMenu(point); });
}

Bin::~Bin() {
  StopFollowing();
}

void Bin::ReportSelected() {
  if (const Sequence sequence = GetCurrentSequence()) {
    if (whenSequenceSelected)
      whenSequenceSelected(sequence);
  } else if (whenSelected) {
    whenSelected(GetCurrentClip(), GetCurrentStream());
  }
}

void Bin::ReportOpened() {
  if (const Sequence sequence = GetCurrentSequence()) {
    if (whenSequenceOpened)
      whenSequenceOpened(sequence);
  } else if (whenOpened) {
    whenOpened(GetCurrentClip(), GetCurrentStream());
  }
}

QWidget* Bin::MakeEmptyPage() {
  auto* page = new QWidget;
  page->setContextMenuPolicy(Qt::NoContextMenu);
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(24, 24, 24, 24);
  layout->setSpacing(12);
  auto* text = new QLabel(Label("$$$/Vidra/Captivo/Bin/Empty=Drop media and caption files here, or choose a file."));
  text->setWordWrap(true);
  text->setAlignment(Qt::AlignCenter);
  auto* button =
      new QPushButton(Symbol(QStringLiteral("import")), Label("$$$/Vidra/Captivo/Menu/ImportMedia=Import Media…"));
  connect(button, &QPushButton::clicked, this, [this] {
    if (whenImportAsked)
      whenImportAsked();
  });
  layout->addStretch(2);
  layout->addWidget(text);
  layout->addWidget(button, 0, Qt::AlignCenter);
  layout->addStretch(3);
  return page;
}

void Bin::SetProject(const BE::InterfaceRef<BE::Project>& project) {
  mProject = project;
  mTree->clear();
  RefreshNow();
}

void Bin::Refresh() {
  mRefreshSoon->start(0);
}

void Bin::RefreshNow() {
  mRefreshSoon->stop();
  mFilling = true;
  const QTreeWidgetItem* current = mTree->currentItem();
  const std::string currentID = current ? current->data(0, kIDRole).toString().toStdString() : std::string();
  const std::vector<Clip> clips = mProject ? mProject->GetClips() : std::vector<Clip>();
  Follow();
  std::map<std::string, bool> folded;
  for (int i = 0; i < mTree->topLevelItemCount(); ++i)
    folded[mTree->topLevelItem(i)->data(0, kIDRole).toString().toStdString()] = !mTree->topLevelItem(i)->isExpanded();

  mTree->clear();
  for (const Clip& clip : clips) {
    auto* item = new QTreeWidgetItem(mTree);
    FillClip(*item, clip);
    for (const Stream& stream : clip->GetStreams())
      FillStream(*new QTreeWidgetItem(item), stream);
    item->setExpanded(!folded[clip->GetID()]);
  }
  const std::vector<Sequence> sequences = mProject ? mProject->GetSequences() : std::vector<Sequence>();
  for (const Sequence& sequence : sequences)
    FillSequence(*new QTreeWidgetItem(mTree), sequence);
  MakeCurrent(currentID);
  MarkStreams();
  mPages->setCurrentIndex(clips.empty() && sequences.empty() ? kPage_Empty : kPage_Tree);
  mFilling = false;
}

void Bin::FillClip(QTreeWidgetItem& item, const Clip& clip) {
  const BE::MediaInfo& info = clip->GetMediaInfo();
  const bool offline = clip->IsOffline();
  item.setText(kColumn_Name, ToQString(clip->GetName()));
  item.setText(kColumn_Details,
               offline ? Label("$$$/Vidra/Captivo/Bin/Offline=Offline · {1}", {DetailsOf(info).toStdString()})
                       : DetailsOf(info));
  item.setIcon(kColumn_Name, offline ? Symbol(QStringLiteral("offline"), WarningColor()) : Symbol(SymbolOf(info)));
  const QString path = QString::fromStdString(clip->GetMediaPath().string());
  const QString tip =
      offline ? Label("$$$/Vidra/Captivo/Bin/OfflineTip=The file is not where it was: {1}", {path.toStdString()})
              : path;
  item.setToolTip(kColumn_Name, tip);
  item.setToolTip(kColumn_Details, tip);
  item.setData(kColumn_Name, kIDRole, QString::fromStdString(clip->GetID()));
}

void Bin::FillStream(QTreeWidgetItem& item, const Stream& stream) {
  const std::size_t count = stream->GetCaptionCount();
  item.setText(kColumn_Name, ToQString(zebcaptioning::GetFullStreamFormatLabel(stream->GetStreamFormat())));
  item.setText(kColumn_Details, count == 1
                                    ? Label("$$$/Vidra/Captivo/Bin/OneCaption=1 caption")
                                    : Label("$$$/Vidra/Captivo/Bin/Captions={1} captions", {std::to_string(count)}));
  item.setIcon(kColumn_Name, Symbol(QStringLiteral("stream")));
  item.setData(kColumn_Name, kIDRole, QString::fromStdString(stream->GetID()));
  item.setFlags(item.flags() & ~Qt::ItemIsDragEnabled);
}

void Bin::FillSequence(QTreeWidgetItem& item, const Sequence& sequence) {
  const std::int64_t frame = sequence->GetVideoFrameRate().GetTicksPerFrame();
  QStringList parts;
  if (sequence->GetVideoFrameRate().IsValid())
    parts << Label(
        "$$$/Vidra/Captivo/Bin/FramesPerSecond={1} fps",
        {RateText(static_cast<double>(zebmediatypes::kTicksPerSecond) / static_cast<double>(frame)).toStdString()});
  const auto own = sequence.Query<BE::IMasterClip>();
  const auto video = own ? own->GetClip(BE::kMediaType_Video, 0) : nullptr;
  parts << DurationText(video ? Seconds(video->GetDuration()) : 0);
  item.setText(kColumn_Name, ToQString(sequence->GetName()));
  item.setText(kColumn_Details, parts.join(QStringLiteral(" · ")));
  item.setIcon(kColumn_Name, Symbol(QStringLiteral("sequence")));
  item.setToolTip(kColumn_Name, ToQString(sequence->GetName()));
  item.setData(kColumn_Name, kIDRole, QString::fromStdString(sequence->GetID()));
  item.setFlags(item.flags() & ~Qt::ItemIsDragEnabled);
}

void Bin::StopFollowing() {
  for (const auto& station : mStations)
    zebcore::messaging::RemoveListener(station, this);
  mStations.clear();
}

void Bin::Follow() {
  StopFollowing();
  if (!mProject)
    return;
  mStations.push_back(mProject->GetStationID());
  for (const Clip& clip : mProject->GetClips())
    mStations.push_back(clip->GetStationID());
  for (const Sequence& sequence : mProject->GetSequences())
    mStations.push_back(sequence->GetStationID());
  for (const auto& station : mStations)
    zebcore::messaging::AddListener(station, this);
}

void Bin::HandleMessage(const zebcore::messaging::Message&) {
  Refresh();
}

Bin::Clip Bin::GetCurrentClip() const {
  const QTreeWidgetItem* item = mTree->currentItem();
  if (!item || !mProject)
    return nullptr;
  const QTreeWidgetItem* top = item->parent() ? item->parent() : item;
  return mProject->FindClip(top->data(0, kIDRole).toString().toStdString());
}

Bin::Stream Bin::GetCurrentStream() const {
  const QTreeWidgetItem* item = mTree->currentItem();
  if (!item || !item->parent() || !mProject)
    return nullptr;
  return mProject->FindStream(item->data(0, kIDRole).toString().toStdString());
}

Bin::Sequence Bin::GetCurrentSequence() const {
  const QTreeWidgetItem* item = mTree->currentItem();
  if (!item || item->parent() || !mProject)
    return nullptr;
  return mProject->FindSequence(item->data(0, kIDRole).toString().toStdString());
}

void Bin::SetCurrentSequence(const Sequence& sequence) {
  MakeCurrent(sequence ? sequence->GetID() : std::string());
}

void Bin::SetCurrentClip(const Clip& clip) {
  MakeCurrent(clip ? clip->GetID() : std::string());
}

void Bin::SetCurrentStream(const Stream& stream) {
  MakeCurrent(stream ? stream->GetID() : std::string());
}

void Bin::SetStreamOnShow(const Stream& stream) {
  mOnShowID = stream ? stream->GetID() : std::string();
  MarkStreams();
}

void Bin::MarkStreams() {
  const QString onShow = QString::fromStdString(mOnShowID);
  for (int i = 0; i < mTree->topLevelItemCount(); ++i) {
    for (int j = 0; j < mTree->topLevelItem(i)->childCount(); ++j) {
      QTreeWidgetItem* item = mTree->topLevelItem(i)->child(j);
      const bool marked = !onShow.isEmpty() && item->data(0, kIDRole) == onShow;
      QFont font = mTree->font();
      font.setBold(marked);
      const QString tip = marked ? Label("$$$/Vidra/Captivo/Bin/OnShow=Shown in the Captions panel") : QString();
      item->setToolTip(kColumn_Name, marked ? tip : item->text(kColumn_Name));
      item->setToolTip(kColumn_Details, tip);
      item->setFont(kColumn_Name, font);
      item->setData(kColumn_Name, Qt::AccessibleDescriptionRole, tip);
    }
  }
}

QTreeWidgetItem* Bin::FindItem(const std::string& id) const {
  const QString wanted = QString::fromStdString(id);
  for (int i = 0; i < mTree->topLevelItemCount(); ++i) {
    QTreeWidgetItem* clip = mTree->topLevelItem(i);
    if (clip->data(0, kIDRole) == wanted)
      return clip;
    for (int j = 0; j < clip->childCount(); ++j)
      if (clip->child(j)->data(0, kIDRole) == wanted)
        return clip->child(j);
  }
  return nullptr;
}

void Bin::MakeCurrent(const std::string& id) {
  const QSignalBlocker quiet(mTree);
  mTree->setCurrentItem(id.empty() ? nullptr : FindItem(id));
}

void Bin::ShowMenu(const QPoint& point) {
  QMenu menu(this);
  if (fillMenu)
    fillMenu(menu);
  if (!menu.isEmpty())
    menu.exec(mTree->viewport()->mapToGlobal(point));
}

} // namespace App
