#include "App/window/TimelineModel.h"

#include <algorithm>
#include <functional>
#include <map>
#include <set>

#include "App/window/Labels.h"

namespace App {

namespace {

using What = TimelineSelection::What;

// One track more than is used, so that there is a place to put a clip on one of its own.
constexpr int kFewestTracks = 2;
constexpr int kHues = 8;

} // namespace

void TimelineModel::SetSequence(const BE::InterfaceRef<BE::Sequence>& sequence) {
  mSequence = sequence;
  Read();
}

void TimelineModel::Read() {
  mLanes.clear();
  mCuts.clear();
  mDuration = TickTime();
  if (!mSequence)
    return;
  const auto items = mSequence->GetItems();
  int tracks = kFewestTracks;
  for (const auto& item : items)
    tracks = std::max(tracks, item->GetTrack() + 2);
  for (int track = tracks - 1; track >= 0; --track)
    mLanes.push_back({true, track, {}, {}, {}});
  for (int track = 0; track < tracks; ++track)
    mLanes.push_back({false, track, {}, {}, {}});
  for (const auto& item : items)
    AddPiece(item);
  for (const auto& transition : mSequence->GetTransitions())
    AddDissolve(transition);

  for (Lane& lane : mLanes) {
    const auto byStart = [](const auto& a, const auto& b) { return a.start < b.start; };
    std::stable_sort(lane.pieces.begin(), lane.pieces.end(), byStart);
    std::stable_sort(lane.dissolves.begin(), lane.dissolves.end(), byStart);
    TickTime latest = zebmediatypes::kTime_Min;
    for (const Piece& piece : lane.pieces) {
      latest = std::max(latest, piece.end);
      lane.ends.push_back(latest);
    }
  }
  std::sort(mCuts.begin(), mCuts.end());
  mCuts.erase(std::unique(mCuts.begin(), mCuts.end()), mCuts.end());
}

TimelineModel::Lane* TimelineModel::FindLane(bool isVideo, int track) {
  const int tracks = static_cast<int>(mLanes.size()) / 2;
  return &mLanes[static_cast<std::size_t>(isVideo ? tracks - 1 - track : tracks + track)];
}

void TimelineModel::AddPiece(const BE::InterfaceRef<BE::TrackItem>& item) {
  Piece piece;
  piece.item = item;
  piece.id = item->GetID();
  piece.start = item->GetStart();
  piece.end = item->GetEnd();
  const auto medium = item->GetClip();
  const auto clip = medium ? medium->GetMasterClip().Query<BE::MasterClip>() : nullptr;
  const bool isInBin = clip && mSequence->GetProject() && mSequence->GetProject()->FindClip(clip->GetID());
  piece.isOffline = !isInBin || clip->IsOffline();
  if (clip) {
    piece.name = ToQString(clip->GetName());
    piece.hasCaptions = !clip->GetStreams().empty();
    piece.hue = static_cast<int>(std::hash<std::string>()(clip->GetID()) % kHues);
  }
  mDuration = std::max(mDuration, piece.end);
  mCuts.push_back(piece.start);
  mCuts.push_back(piece.end);
  if (item->HasVideo())
    FindLane(true, item->GetTrack())->pieces.push_back(piece);
  if (item->HasAudio())
    FindLane(false, item->GetTrack())->pieces.push_back(piece);
}

void TimelineModel::AddDissolve(const BE::InterfaceRef<BE::Transition>& transition) {
  FindLane(true, transition->GetRight()->GetTrack())
      ->dissolves.push_back({transition, transition->GetID(), transition->GetLeft()->GetID(),
                             transition->GetRight()->GetID(), transition->GetStart(), transition->GetEnd()});
}

std::size_t TimelineModel::FindFirst(int lane, TickTime after) const {
  const auto& ends = mLanes[static_cast<std::size_t>(lane)].ends;
  return static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end(), after) - ends.begin());
}

const TimelineModel::Piece* TimelineModel::FindPiece(int lane, TickTime time) const {
  if (!HasLane(lane))
    return nullptr;
  const auto& pieces = mLanes[static_cast<std::size_t>(lane)].pieces;
  const Piece* found = nullptr;
  for (std::size_t at = FindFirst(lane, time); at < pieces.size() && pieces[at].start <= time; ++at) {
    if (pieces[at].end > time)
      found = &pieces[at];
  }
  return found;
}

const TimelineModel::Dissolve* TimelineModel::FindDissolve(int lane, TickTime after) const {
  if (!HasLane(lane))
    return nullptr;
  const auto& dissolves = mLanes[static_cast<std::size_t>(lane)].dissolves;
  const auto found = std::lower_bound(dissolves.begin(), dissolves.end(), after,
                                      [](const Dissolve& each, TickTime time) { return each.end <= time; });
  return found == dissolves.end() ? nullptr : &*found;
}

const TimelineModel::Piece* TimelineModel::GetPiece(const TimelineSelection& selection) const {
  if (selection.what != What::Item || !HasLane(selection.lane))
    return nullptr;
  for (const Piece& piece : mLanes[static_cast<std::size_t>(selection.lane)].pieces) {
    if (piece.id == selection.id)
      return &piece;
  }
  return nullptr;
}

const TimelineModel::Dissolve* TimelineModel::GetDissolve(const TimelineSelection& selection) const {
  if (selection.what != What::Transition || !HasLane(selection.lane))
    return nullptr;
  for (const Dissolve& dissolve : mLanes[static_cast<std::size_t>(selection.lane)].dissolves) {
    if (dissolve.id == selection.id)
      return &dissolve;
  }
  return nullptr;
}

TickTime TimelineModel::SnapToCut(TickTime time, TickTime within) const {
  TickTime best = time;
  TickTime distance = within;
  const auto consider = [&](TickTime cut) {
    const TickTime away = std::max(cut, time) - std::min(cut, time);
    if (away <= distance) {
      distance = away;
      best = cut;
    }
  };
  const auto next = std::lower_bound(mCuts.begin(), mCuts.end(), time);
  if (next != mCuts.end())
    consider(*next);
  if (next != mCuts.begin())
    consider(*std::prev(next));
  return best;
}

TimelineSelection TimelineModel::SelectPiece(int lane, const Piece& piece) const {
  return {What::Item, piece.id, lane, {}, {}};
}

TimelineSelection TimelineModel::SelectDissolve(int lane, const Dissolve& dissolve) const {
  return {What::Transition, dissolve.id, lane, {}, {}};
}

TimelineSelection TimelineModel::SelectAt(int lane, TickTime time) const {
  if (!HasLane(lane) || time < TickTime())
    return {What::Nothing, {}, lane, {}, {}};
  if (const Piece* piece = FindPiece(lane, time))
    return SelectPiece(lane, *piece);
  const Lane& at = mLanes[static_cast<std::size_t>(lane)];
  const std::size_t next = FindFirst(lane, time);
  if (next == at.pieces.size())
    return {What::Nothing, {}, lane, {}, {}};
  return {What::EmptySpot, {}, lane, next == 0 ? TickTime() : at.ends[next - 1], at.pieces[next].start};
}

TickTime TimelineModel::GetStart(const TimelineSelection& selection) const {
  if (const Piece* piece = GetPiece(selection))
    return piece->start;
  if (const Dissolve* dissolve = GetDissolve(selection))
    return dissolve->start;
  return selection.from;
}

TickTime TimelineModel::GetEnd(const TimelineSelection& selection) const {
  if (const Piece* piece = GetPiece(selection))
    return piece->end;
  if (const Dissolve* dissolve = GetDissolve(selection))
    return dissolve->end;
  return selection.to;
}

TimelineSelection TimelineModel::SelectNext(const TimelineSelection& selection) const {
  if (selection.what == What::Nothing || !HasLane(selection.lane))
    return SelectFirst(selection.lane);
  const Lane& lane = mLanes[static_cast<std::size_t>(selection.lane)];
  if (selection.what == What::Item) {
    for (const Dissolve& dissolve : lane.dissolves) {
      if (dissolve.left == selection.id)
        return SelectDissolve(selection.lane, dissolve);
    }
  }
  if (const Dissolve* dissolve = GetDissolve(selection))
    return {What::Item, dissolve->right, selection.lane, {}, {}};
  const TimelineSelection next = SelectAt(selection.lane, GetEnd(selection));
  return next.what == What::Nothing ? selection : next;
}

TimelineSelection TimelineModel::SelectPrevious(const TimelineSelection& selection) const {
  if (selection.what == What::Nothing || !HasLane(selection.lane))
    return SelectLast(selection.lane);
  const Lane& lane = mLanes[static_cast<std::size_t>(selection.lane)];
  if (selection.what == What::Item) {
    for (const Dissolve& dissolve : lane.dissolves) {
      if (dissolve.right == selection.id)
        return SelectDissolve(selection.lane, dissolve);
    }
  }
  if (const Dissolve* dissolve = GetDissolve(selection))
    return {What::Item, dissolve->left, selection.lane, {}, {}};
  const TickTime start = GetStart(selection);
  return start > TickTime() ? SelectAt(selection.lane, start - TickTime(1)) : selection;
}

TimelineSelection TimelineModel::SelectFirst(int lane) const {
  return SelectAt(lane, TickTime());
}

TimelineSelection TimelineModel::SelectLast(int lane) const {
  if (!HasLane(lane) || mLanes[static_cast<std::size_t>(lane)].pieces.empty())
    return {What::Nothing, {}, lane, {}, {}};
  return SelectPiece(lane, mLanes[static_cast<std::size_t>(lane)].pieces.back());
}

// Lanes are counted anew when a track is added, so what is selected is looked for in all of them.
TimelineSelection TimelineModel::Renew(const TimelineSelection& selection) const {
  if (GetPiece(selection) || GetDissolve(selection))
    return selection;
  for (int lane = 0; HasLane(lane); ++lane) {
    TimelineSelection moved = selection;
    moved.lane = lane;
    if (GetPiece(moved) || GetDissolve(moved))
      return moved;
  }
  if (selection.what == What::EmptySpot && SelectAt(selection.lane, selection.from) == selection)
    return selection;
  return {};
}

} // namespace App
