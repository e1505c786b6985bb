#include <QAction>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

#include "App/window/Bin.h"
#include "App/window/Icons.h"
#include "App/window/Labels.h"
#include "App/window/MainWindow.h"
#include "App/window/SequenceSettingsWindow.h"
#include "App/window/StreamOnShow.h"
#include "App/window/TimeDisplays.h"
#include "App/window/TimelineDock.h"

// Sequences in the window: the timeline, its menu, and what is said when something is selected there.
namespace App {

using What = TimelineSelection::What;

void MainWindow::MakeTimeline() {
  mTimeline = new TimelineDock(this);
  addDockWidget(Qt::BottomDockWidgetArea, mTimeline);
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  TimelineView& view = mTimeline->GetView();
  view.whenSelected = [this](const TimelineSelection& selection) { SelectInTimeline(selection); };
  view.whenItemOpened = [this](const TimelineModel::Piece& piece, zebmediatypes::TickTime time) {
    OpenItem(piece.item, time);
  };
  view.whenItemMoved = [this](const auto& item, zebmediatypes::TickTime start, int track) {
    if (!mBusy)
      Session::Instance().MoveItems(mTimeline->GetSequence(), {{item, start, track}});
    mTimeline->RefreshNow();
  };
  view.whenClipDropped = [this](const std::string& clip, zebmediatypes::TickTime start, int track) {
    PutClip(clip, start, track);
  };
  view.whenDeleteAsked = [this] { DeleteInTimeline(); };
  view.fillMenu = [this](QMenu& menu) { FillTimelineMenu(menu); };
  view.fillRulerMenu = [this](QMenu& menu) { FillTimeDisplays(menu, timedisplays::Which::Sequence); };
  mTimeline->whenSequenceChosen = [this](const auto& sequence) { OpenSequence(sequence); };
  mTimeline->whenNewAsked = [this] { NewSequence(); };
  mTimeline->whenSettingsAsked = [this] { ChangeSequence(); };

  mBin->whenSequenceSelected = [this](const auto& sequence) {
    if (!mBusy)
      Session::Instance().SelectSequence(sequence);
    UpdateMenus();
  };
  mBin->whenSequenceOpened = [this](const auto& sequence) { OpenSequence(sequence); };
  mBin->whenBinSelected = [this] {
    if (!mBusy)
      Session::Instance().SelectBin();
    UpdateMenus();
  };
}

// --- Menu

void MainWindow::MakeSequenceMenu() {
  QMenu* menu = menuBar()->addMenu(Label("$$$/Vidra/Captivo/Menu/Sequence=&Sequence"));
  QAction* fromClip =
      AddAction(menu, "$$$/Vidra/Captivo/Menu/NewSequence=&New Sequence from Clip", QStringLiteral("sequence"),
                Qt::CTRL | Qt::SHIFT | Qt::Key_N, [this] { NewSequence(); });
  QAction* empty = AddAction(menu, "$$$/Vidra/Captivo/Menu/NewEmptySequence=New &Empty Sequence", {}, {},
                             [this] { Show(Session::Instance().NewSequence(nullptr)); });
  menu->addSeparator();
  QAction* put = AddAction(menu, "$$$/Vidra/Captivo/Menu/PutClip=&Add Clip at Playhead", {}, {}, [this] {
    if (const Clip clip = Session::Instance().GetSelectedClip())
      PutClip(clip->GetID(), mTimeline->GetView().GetPlayhead(), 0);
  });
  QAction* dissolve =
      AddAction(menu, "$$$/Vidra/Captivo/Menu/AddDissolve=Add &Cross Dissolve", {}, {}, [this] { AddDissolve(); });
  QAction* remove = AddAction(menu, "$$$/Vidra/Captivo/Menu/DeleteInSequence=&Delete from Sequence",
                              QStringLiteral("delete"), {}, [this] { DeleteInTimeline(); });
  QAction* removeSequence = AddAction(menu, "$$$/Vidra/Captivo/Menu/RemoveSequence=&Remove Sequence", {}, {},
                                      [this] { RemoveSequence(mTimeline->GetSequence()); });
  menu->addSeparator();
  QAction* fit = AddAction(menu, "$$$/Vidra/Captivo/Menu/ZoomToFit=&Zoom to Fit", QStringLiteral("zoom-fit"), {},
                           [this] { mTimeline->GetView().ZoomToFit(); });
  menu->addSeparator();
  QMenu* source = menu->addMenu(Label("$$$/Vidra/Captivo/Menu/SourceTimeDisplay=S&ource Timecode"));
  connect(source, &QMenu::aboutToShow, this,
          [this, source] { FillTimeDisplays(*source, timedisplays::Which::Source); });
  QMenu* sequence = menu->addMenu(Label("$$$/Vidra/Captivo/Menu/SequenceTimeDisplay=Sequence &Timecode"));
  connect(sequence, &QMenu::aboutToShow, this,
          [this, sequence] { FillTimeDisplays(*sequence, timedisplays::Which::Sequence); });
  QAction* settings = AddAction(menu, "$$$/Vidra/Captivo/Menu/SequenceSettings=Sequence &Settings…",
                                QStringLiteral("settings"), {}, [this] { ChangeSequence(); });

  const auto hasSequence = [this] { return static_cast<bool>(mTimeline->GetSequence()); };
  const auto writable = [] {
    const auto project = Session::Instance().GetProject();
    return project && !project->IsReadOnly();
  };
  EnableWhileOpen(menu, {{fromClip, [writable] { return writable() && Session::Instance().GetSelectedClip(); }},
                         {empty, writable},
                         {put, [=] { return writable() && hasSequence() && Session::Instance().GetSelectedClip(); }},
                         {dissolve, [this, writable] { return writable() && FindMeetingItems().first; }},
                         {remove,
                          [this, writable] {
                            const What what = mTimeline->GetView().GetSelection().what;
                            return writable() && (what == What::Item || what == What::Transition);
                          }},
                         {removeSequence, [=] { return writable() && hasSequence(); }},
                         {fit, hasSequence},
                         {settings, [=] { return writable() && hasSequence(); }}});
}

void MainWindow::FillTimelineMenu(QMenu& menu) {
  const auto project = Session::Instance().GetProject();
  if (!mTimeline->GetSequence() || !project)
    return;
  const TimelineView& view = mTimeline->GetView();
  const bool writable = !project->IsReadOnly();
  if (const auto* piece = view.GetModel().GetPiece(view.GetSelection())) {
    const auto item = piece->item;
    const auto time =
        view.GetPlayhead() >= piece->start && view.GetPlayhead() < piece->end ? view.GetPlayhead() : piece->start;
    AddAction(&menu, "$$$/Vidra/Captivo/Menu/OpenCaptions=Open Captions", {}, {},
              [this, item, time] { OpenItem(item, time); });
    AddAction(&menu, "$$$/Vidra/Captivo/Menu/ShowAsSource=Show as &Source", {}, {},
              [item] { Session::Instance().SelectSourceClip(item); });
    AddAction(&menu, "$$$/Vidra/Captivo/Menu/AddDissolve=Add &Cross Dissolve", {}, {}, [this] {
      AddDissolve();
    })->setEnabled(writable && FindMeetingItems().first);
    menu.addSeparator();
  }
  const What what = view.GetSelection().what;
  AddAction(&menu, "$$$/Vidra/Captivo/Menu/DeleteInSequence=&Delete from Sequence", QStringLiteral("delete"), {},
            [this] { DeleteInTimeline(); })
      ->setEnabled(writable && (what == What::Item || what == What::Transition));
  menu.addSeparator();
  AddAction(&menu, "$$$/Vidra/Captivo/Menu/SequenceSettings=Sequence &Settings…", QStringLiteral("settings"), {},
            [this] { ChangeSequence(); })
      ->setEnabled(writable);
}

bool MainWindow::FillSequenceMenu(QMenu& menu) {
  const auto sequence = mBin->GetCurrentSequence();
  if (!sequence)
    return false;
  const auto project = Session::Instance().GetProject();
  const bool writable = project && !project->IsReadOnly();
  AddAction(&menu, "$$$/Vidra/Captivo/Menu/OpenSequence=&Open in Timeline", {}, {},
            [this, sequence] { OpenSequence(sequence); });
  AddAction(&menu, "$$$/Vidra/Captivo/Menu/SequenceSettings=Sequence &Settings…", QStringLiteral("settings"), {},
            [this, sequence] { AskSequenceSettings(this, sequence); })
      ->setEnabled(writable);
  menu.addSeparator();
  AddAction(&menu, "$$$/Vidra/Captivo/Menu/RemoveSequence=&Remove Sequence", {}, {}, [this, sequence] {
    RemoveSequence(sequence);
  })->setEnabled(writable);
  return true;
}

void MainWindow::AddClipEntries(QMenu& menu, const Clip& clip) {
  const auto project = Session::Instance().GetProject();
  AddAction(&menu, "$$$/Vidra/Captivo/Menu/ShowAsSource=Show as &Source", {}, {},
            [clip] { Session::Instance().SelectSourceClip(clip); });
  AddAction(&menu, "$$$/Vidra/Captivo/Menu/NewSequence=&New Sequence from Clip", QStringLiteral("sequence"), {},
            [this, clip] { Show(Session::Instance().NewSequence(clip)); })
      ->setEnabled(project && !project->IsReadOnly());
}

void MainWindow::FillTimeDisplays(QMenu& menu, timedisplays::Which which) {
  timedisplays::FillMenu(menu, which, [this] { mTimeline->UpdateTimeDisplay(); });
}

// --- What is selected and opened

void MainWindow::SelectInTimeline(const TimelineSelection& selection) {
  if (mBusy)
    return;
  Session& session = Session::Instance();
  const TimelineModel& model = mTimeline->GetView().GetModel();
  if (const auto* piece = model.GetPiece(selection))
    session.SelectTrackItem(BE::InterfaceRef<BE::TrackItem>(piece->item));
  else if (selection.what == What::Transition)
    session.SelectTransition();
  else if (selection.what == What::EmptySpot)
    session.SelectEmptySpot();
  else
    session.SelectNoTrackItem();
  mBin->SetCurrentClip(nullptr);
  UpdateMenus();
}

// The caption that is on show at the time, else the next one. The selection comes first: the panel that is opened looks
// at what is selected.
void MainWindow::OpenItem(const BE::InterfaceRef<BE::TrackItem>& item, zebmediatypes::TickTime time) {
  if (mBusy || !item)
    return;
  Session& session = Session::Instance();
  session.SelectTrackItem(item);
  UpdateMenus();
  const zebmediatypes::TickTime inClip = item->GetIn() + (time - item->GetStart());
  zebmediatypes::TickTime begin = inClip;
  if (const Stream stream = mStreamOnShow->Get()) {
    const auto onShow = stream->FindAt(inClip);
    std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
    if (onShow.empty())
      stream->GetCaptions(captions);
    const auto next = std::find_if(captions.begin(), captions.end(),
                                   [inClip](const auto& each) { return each->GetState()->begin >= inClip; });
    if (!onShow.empty())
      begin = onShow.front()->GetState()->begin;
    else if (next != captions.end())
      begin = (*next)->GetState()->begin;
    else if (!captions.empty())
      begin = captions.back()->GetState()->begin;
  }
  if (!mCaptionsHandler)
    OpenPanel();
  session.OpenTrackItem(mTimeline->GetSequence(), item, begin);
  timedisplays::SayAgain();
}

void MainWindow::OpenSequence(const BE::InterfaceRef<BE::Sequence>& sequence) {
  if (mBusy || !sequence)
    return;
  mTimeline->ShowSequence(sequence);
  mTimeline->show();
  mTimeline->raise();
  mBin->SetCurrentSequence(sequence);
  Session::Instance().SelectSequence(sequence);
  UpdateMenus();
}

// --- Changes

void MainWindow::Show(const BE::InterfaceRef<BE::Sequence>& sequence) {
  if (!sequence)
    return;
  mBin->RefreshNow();
  OpenSequence(sequence);
}

void MainWindow::NewSequence() {
  if (!MayChange())
    return;
  Show(Session::Instance().NewSequence(Session::Instance().GetSelectedClip()));
}

void MainWindow::RemoveSequence(const BE::InterfaceRef<BE::Sequence>& sequence) {
  if (!MayChange())
    return;
  Session::Instance().RemoveSequence(sequence);
  mBin->RefreshNow();
  mTimeline->RefreshNow();
  UpdateMenus();
}

void MainWindow::PutClip(const std::string& id, zebmediatypes::TickTime start, int track) {
  if (!MayChange())
    return;
  const auto project = Session::Instance().GetProject();
  const Clip clip = project ? project->FindClip(id) : nullptr;
  if (!clip || mBusy)
    return;
  if (!mTimeline->GetSequence()) {
    Show(Session::Instance().NewSequence(clip));
    return;
  }
  const auto item = Session::Instance().PutClip(mTimeline->GetSequence(), clip, start, track);
  mTimeline->RefreshNow();
  TimelineSelection selection;
  if (!item)
    return;
  selection.what = What::Item;
  selection.id = item->GetID();
  mTimeline->GetView().SetSelection(selection);
  mTimeline->GetView().setFocus();
  SelectInTimeline(mTimeline->GetView().GetSelection());
}

void MainWindow::DeleteInTimeline() {
  if (!MayChange())
    return;
  const TimelineView& view = mTimeline->GetView();
  if (mBusy)
    return;
  if (const auto* piece = view.GetModel().GetPiece(view.GetSelection()))
    Session::Instance().RemoveItem(mTimeline->GetSequence(), BE::InterfaceRef<BE::TrackItem>(piece->item));
  else if (const auto* dissolve = view.GetModel().GetDissolve(view.GetSelection()))
    Session::Instance().RemoveTransition(mTimeline->GetSequence(),
                                         BE::InterfaceRef<BE::Transition>(dissolve->transition));
  else
    return;
  mTimeline->RefreshNow();
  SelectInTimeline(view.GetSelection());
}

// The selected item and the one that follows it, else the one before it.
std::pair<BE::InterfaceRef<BE::TrackItem>, BE::InterfaceRef<BE::TrackItem>> MainWindow::FindMeetingItems() const {
  const TimelineView& view = mTimeline->GetView();
  const TimelineModel& model = view.GetModel();
  const auto* piece = model.GetPiece(view.GetSelection());
  if (!piece || !piece->item->HasVideo())
    return {};
  const auto pieceAt = [&](zebmediatypes::TickTime time) -> const TimelineModel::Piece* {
    for (int lane = 0; lane < static_cast<int>(model.GetLanes().size()); ++lane) {
      const auto& each = model.GetLanes()[static_cast<std::size_t>(lane)];
      if (each.isVideo && each.track == piece->item->GetTrack())
        return model.FindPiece(lane, time);
    }
    return nullptr;
  };
  if (const auto* next = pieceAt(piece->end); next && next->start == piece->end)
    return {piece->item, next->item};
  if (const auto* previous = pieceAt(piece->start - zebmediatypes::TickTime(1));
      previous && previous->end == piece->start)
    return {previous->item, piece->item};
  return {};
}

void MainWindow::AddDissolve() {
  if (!MayChange())
    return;
  const auto [left, right] = FindMeetingItems();
  const auto dissolve = left ? Session::Instance().AddDissolve(mTimeline->GetSequence(), left, right) : nullptr;
  mTimeline->RefreshNow();
  if (!dissolve)
    return;
  TimelineSelection selection;
  selection.what = What::Transition;
  selection.id = dissolve->GetID();
  mTimeline->GetView().SetSelection(selection);
  SelectInTimeline(mTimeline->GetView().GetSelection());
}

void MainWindow::ChangeSequence() {
  if (!MayChange())
    return;
  const auto project = Session::Instance().GetProject();
  if (mTimeline->GetSequence() && project && !project->IsReadOnly())
    AskSequenceSettings(this, mTimeline->GetSequence());
}

} // namespace App
