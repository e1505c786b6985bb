#pragma once

#include <QString>

#include <string>
#include <vector>

#include "BE/Project.h"

namespace App {

using zebmediatypes::TickTime;

// What is selected in a timeline. Nothing, an item or transition by its id, or an empty spot of a track.
struct TimelineSelection {
  enum class What { Nothing, Item, Transition, EmptySpot };
  What what = What::Nothing;
  std::string id;
  int lane = 0;
  TickTime from; // of an empty spot
  TickTime to;

  friend bool operator==(const TimelineSelection&, const TimelineSelection&) = default;
};

// A sequence as it is drawn: lanes from the top (the highest video track) to the bottom (the last audio track), each
// with its pieces by start. All searches are logarithmic in the number of pieces.
class TimelineModel {
 public:
  struct Piece {
    BE::InterfaceRef<BE::TrackItem> item;
    std::string id;
    QString name;
    TickTime start;
    TickTime end;
    int hue = 0; // one for each clip
    bool hasCaptions = false;
    bool isOffline = false; // its file or its clip is gone
  };
  struct Dissolve {
    BE::InterfaceRef<BE::Transition> transition;
    std::string id;
    std::string left;
    std::string right;
    TickTime start;
    TickTime end;
  };
  struct Lane {
    bool isVideo = true;
    int track = 0;
    std::vector<Piece> pieces;
    std::vector<TickTime> ends; // the latest end up to each piece
    std::vector<Dissolve> dissolves;
  };

  // Null for none.
  void SetSequence(const BE::InterfaceRef<BE::Sequence>& sequence);
  // After the sequence changed.
  void Read();

  const BE::InterfaceRef<BE::Sequence>& GetSequence() const { return mSequence; }
  const std::vector<Lane>& GetLanes() const { return mLanes; }
  TickTime GetDuration() const { return mDuration; }
  bool IsEmpty() const { return mCuts.empty(); }

  // The first piece that ends after a time; the number of pieces if there is none.
  std::size_t FindFirst(int lane, TickTime after) const;
  // The topmost at a time; null for none.
  const Piece* FindPiece(int lane, TickTime time) const;
  // The first dissolve that ends after a time; null for none.
  const Dissolve* FindDissolve(int lane, TickTime after) const;
  const Piece* GetPiece(const TimelineSelection& selection) const;
  const Dissolve* GetDissolve(const TimelineSelection& selection) const;
  // The start or end of an item that is nearest to a time, if it is no farther away than within; else the time.
  TickTime SnapToCut(TickTime time, TickTime within) const;

  // What lies at a time of a lane. There is an empty spot before an item, and nothing behind the last one.
  TimelineSelection SelectAt(int lane, TickTime time) const;
  TimelineSelection SelectPiece(int lane, const Piece& piece) const;
  TimelineSelection SelectDissolve(int lane, const Dissolve& dissolve) const;
  // Along the lane: items, the dissolves between them and empty spots. The same at its end.
  TimelineSelection SelectNext(const TimelineSelection& selection) const;
  TimelineSelection SelectPrevious(const TimelineSelection& selection) const;
  TimelineSelection SelectFirst(int lane) const;
  TimelineSelection SelectLast(int lane) const;
  // The same if it is still there, else nothing.
  TimelineSelection Renew(const TimelineSelection& selection) const;
  TickTime GetStart(const TimelineSelection& selection) const;
  TickTime GetEnd(const TimelineSelection& selection) const;

 private:
  void AddPiece(const BE::InterfaceRef<BE::TrackItem>& item);
  void AddDissolve(const BE::InterfaceRef<BE::Transition>& transition);
  Lane* FindLane(bool isVideo, int track);
  bool HasLane(int lane) const { return lane >= 0 && static_cast<std::size_t>(lane) < mLanes.size(); }

  BE::InterfaceRef<BE::Sequence> mSequence;
  std::vector<Lane> mLanes;
  std::vector<TickTime> mCuts; // ascending
  TickTime mDuration;
};

} // namespace App
