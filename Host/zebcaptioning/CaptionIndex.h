#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Captions/contracts/Caption.h"
#include "zebcore/Guid.h"
#include "zebmediatypes/TickTime.h"

namespace zebcaptioning {

// The captions of a stream, in order of begin time, then age, then key. Everything costs the logarithm of their number,
// and what is listed costs what it lists. The index keeps the times that it was told: whoever changes a caption's times
// tells them with Move.
//
// Inside: a treap of nodes that are numbered, not pointed at, each knowing how many nodes and which latest end lie
// below it; and the nodes' numbers once more in an open hash table by key.
class CaptionIndex {
 public:
  using Key = zebcore::utility::Guid;
  using TickTime = zebmediatypes::TickTime;
  using CaptionPtr = boost::intrusive_ptr<Caption>;

  struct Entry {
    Key key;
    TickTime begin;
    TickTime end;
    std::uint64_t age = 0; // its place among captions of one begin time; the newest has the highest
    CaptionPtr caption;
  };

  CaptionIndex();
  ~CaptionIndex();
  CaptionIndex(CaptionIndex&&) noexcept;
  CaptionIndex& operator=(CaptionIndex&&) noexcept;

  std::size_t Size() const { return mSize; }
  bool IsEmpty() const { return mSize == 0; }
  void Clear();

  // With the caption's own times. False, and nothing changes, if the key is taken.
  bool Insert(const Key& key, std::uint64_t age, const CaptionPtr& caption);
  // False for an unknown key.
  bool Erase(const Key& key);
  // Another place in the order. False for an unknown key.
  bool Move(const Key& key, TickTime begin, TickTime end, std::uint64_t age);
  // To the times that its caption has now.
  bool MoveToCaptionTimes(const Key& key);
  // Another name for a caption. False if the first is unknown or the second taken.
  bool Rekey(const Key& key, const Key& newKey);

  // Null for none. What is pointed at is good until the next change of the index.
  const Entry* Find(const Key& key) const;
  const Entry* FindNewest(TickTime begin) const;
  const Entry* At(std::size_t row) const;
  std::optional<std::size_t> RowOf(const Key& key) const;
  // How many captions begin before a time: the row of the first that does not.
  std::size_t CountBefore(TickTime begin) const;

  // Each in order. The index must not be changed meanwhile.
  template <class Visit> void ForEach(Visit&& visit) const {
    for (Number node = First(); node != kNone; node = Next(node))
      visit(static_cast<const Entry&>(NodeAt(node)));
  }
  // Those with from <= begin <= to.
  template <class Visit> void ForEachBeginningIn(TickTime from, TickTime to, Visit&& visit) const {
    for (Number node = LowerBound(from); node != kNone && NodeAt(node).begin <= to; node = Next(node))
      visit(static_cast<const Entry&>(NodeAt(node)));
  }
  // Those on show: begin <= time < end.
  template <class Visit> void ForEachShownAt(TickTime time, Visit&& visit) const { VisitShown(mRoot, time, visit); }

 private:
  using Number = std::uint32_t;
  static constexpr Number kNone = 0xFFFFFFFFU;
  static constexpr std::size_t kChunk = 256;

  struct Node : Entry {
    TickTime latestEnd; // of the node and all below it
    Number left = kNone;
    Number right = kNone;
    Number parent = kNone;
    Number count = 1; // of the node and all below it
    std::uint32_t priority = 0;
  };

  Node& NodeAt(Number node) { return mChunks[node / kChunk][node % kChunk]; }
  const Node& NodeAt(Number node) const { return mChunks[node / kChunk][node % kChunk]; }

  template <class Visit> void VisitShown(Number node, TickTime time, Visit& visit) const {
    if (node == kNone || NodeAt(node).latestEnd <= time)
      return;
    VisitShown(NodeAt(node).left, time, visit);
    if (NodeAt(node).begin > time)
      return;
    if (NodeAt(node).end > time)
      visit(static_cast<const Entry&>(NodeAt(node)));
    VisitShown(NodeAt(node).right, time, visit);
  }

  Number First() const;
  Number Next(Number node) const;
  Number LowerBound(TickTime begin) const;
  Number FindNumber(const Key& key) const;
  std::size_t CountOf(Number node) const { return node == kNone ? 0 : NodeAt(node).count; }
  static bool IsBefore(const Entry& a, const Entry& b);

  Number TakeNode();
  void GiveBackNode(Number node);
  void LinkIntoTree(Number node);
  void UnlinkFromTree(Number node);
  void Replace(Number parent, Number child, Number with);
  void RotateUp(Number node);
  void Refresh(Number node);
  void RefreshUp(Number node);

  std::size_t SlotOf(const Key& key) const;
  void AddToTable(Number node);
  void RemoveFromTable(const Key& key);
  void GrowTable();

  std::vector<std::unique_ptr<Node[]>> mChunks;
  std::vector<Number> mTable; // a power of two of slots, at most three quarters in use
  Number mRoot = kNone;
  Number mFree = kNone;  // linked through right
  std::size_t mUsed = 0; // nodes ever taken
  std::size_t mSize = 0;
  std::uint64_t mSeed = 0x9E3779B97F4A7C15ULL;
};

} // namespace zebcaptioning
