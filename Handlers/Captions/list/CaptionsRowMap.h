#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "Captions/shell/HostTypes.h"

namespace Captivo {

class CaptionsItem;

// An item as a row map holds it, with its caption beside it: who reads the captions of many rows need not wait for the
// memory of the items.
class CaptionsRowItem : public boost::shared_ptr<CaptionsItem> {
 public:
  CaptionsRowItem() = default;
  CaptionsRowItem(boost::shared_ptr<CaptionsItem> item);

  const Caption* GetCaption() const { return mCaption; }
  // The item goes nowhere without its caption.
  void swap(CaptionsRowItem& other) noexcept {
    boost::shared_ptr<CaptionsItem>::swap(other);
    std::swap(mCaption, other.mCaption);
  }

 private:
  const Caption* mCaption = nullptr; // an item keeps its caption as long as it lives
};

// Items ascending by time, one for each time, that counts as it goes: the row at a position and the position of a row
// are found in logarithmic time, as are rows by time, and rows come and go in logarithmic time. A row after the last
// one takes constant time, copying and emptying take linear time.
//
// A tree of wide nodes, because what a look-up costs in a long list is the memory that it waits for. All rows are in
// leaves of one depth, the times of a leaf side by side; inner nodes keep for each child from what time on its rows are
// and how many rows there are in the children before it. Unused places hold the greatest value, so that every search in
// a node has the same number of steps. Nodes are joined late, at a quarter of what they can hold, so that a row that
// comes and goes does not split and join the same node each time.
//
// Every change makes all iterators invalid. An item is let go when the change is complete, so that what goes with it
// may look at the rows again. At most 2^32 - 1 rows.
template <class Item, unsigned kLeafRows, unsigned kFanOut> class CountedRows {
  struct Node {};

  struct alignas(64) Leaf : Node {
    std::array<TickTime, kLeafRows> times;
    mutable std::array<Item, kLeafRows> items;
    Leaf* previous = nullptr;
    Leaf* next = nullptr;
    unsigned count = 0;

    Leaf() { times.fill(kUnusedTime); }
  };

  struct alignas(64) Inner : Node {
    std::array<TickTime, kFanOut> times; // the first is less than any
    std::array<std::uint32_t, kFanOut> rowsBefore;
    std::array<Node*, kFanOut> children{};
    unsigned count = 0;

    Inner() {
      times.fill(kUnusedTime);
      rowsBefore.fill(kUnusedCount);
    }
  };

 public:
  // A row as an iterator shows it. The item can be exchanged in place.
  struct Row {
    TickTime time;
    Item& item;
  };

  class const_iterator {
   public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = Row;
    using difference_type = std::ptrdiff_t;
    using reference = Row;
    struct pointer {
      Row row;
      const Row* operator->() const { return &row; }
    };

    const_iterator() = default;
    Row operator*() const { return {mLeaf->times[mAt], mLeaf->items[mAt]}; }
    pointer operator->() const { return {**this}; }
    const_iterator& operator++() {
      if (++mAt == mLeaf->count && mLeaf->next) {
        mLeaf = mLeaf->next;
        mAt = 0;
      }
      return *this;
    }
    const_iterator& operator--() {
      if (mAt == 0) {
        mLeaf = mLeaf->previous;
        mAt = mLeaf->count;
      }
      --mAt;
      return *this;
    }
    const_iterator operator++(int) {
      const const_iterator former = *this;
      ++*this;
      return former;
    }
    const_iterator operator--(int) {
      const const_iterator former = *this;
      --*this;
      return former;
    }
    friend bool operator==(const const_iterator& a, const const_iterator& b) = default;

   private:
    friend class CountedRows;
    const_iterator(const Leaf* leaf, unsigned at) : mLeaf(leaf), mAt(at) {}

    const Leaf* mLeaf = nullptr;
    unsigned mAt = 0; // only the end is at its leaf's count
  };
  using iterator = const_iterator;
  using const_reverse_iterator = std::reverse_iterator<const_iterator>;
  using value_type = Row;
  using size_type = std::size_t;

  CountedRows() = default;
  CountedRows(const CountedRows& other) : CountedRows() {
    for (const Row& row : other)
      insert(row.time, row.item);
  }
  CountedRows(CountedRows&& other) noexcept { swap(other); }
  CountedRows& operator=(CountedRows other) noexcept {
    swap(other);
    return *this;
  }
  ~CountedRows() {
    if (mRoot)
      Destroy(mRoot, mHeight);
  }

  std::size_t size() const { return mSize; }
  bool empty() const { return mSize == 0; }
  const_iterator begin() const { return {mFirst, 0}; }
  const_iterator end() const { return {mLast, mLast ? mLast->count : 0}; }
  const_reverse_iterator rbegin() const { return const_reverse_iterator(end()); }
  const_reverse_iterator rend() const { return const_reverse_iterator(begin()); }

  const_iterator find(TickTime time) const {
    const Leaf* leaf = FindLeaf(time);
    const unsigned at = leaf ? CountBefore(*leaf, time) : 0;
    return leaf && at < leaf->count && leaf->times[at] == time ? const_iterator(leaf, at) : end();
  }
  const_iterator lower_bound(TickTime time) const {
    const Leaf* leaf = FindLeaf(time);
    return leaf ? AtOrNext(leaf, CountBefore(*leaf, time)) : end();
  }
  const_iterator upper_bound(TickTime time) const {
    const Leaf* leaf = FindLeaf(time);
    return leaf ? AtOrNext(leaf, CountUpTo(leaf->times, leaf->count, time)) : end();
  }
  // The row at a position, the end if there is none.
  const_iterator nth(std::size_t position) const {
    if (position >= mSize)
      return end();
    auto rest = static_cast<std::uint32_t>(position);
    const Node* node = mRoot;
    for (unsigned level = mHeight; level-- > 0;) {
      const Inner& inner = AsInner(node);
      const unsigned at = CountLeading(inner.rowsBefore, [rest](std::uint32_t rows) { return rows <= rest; }) - 1;
      rest -= inner.rowsBefore[at];
      node = inner.children[at];
    }
    return {&AsLeaf(node), rest};
  }
  // The position of a row, the size for the end.
  std::size_t rank(const_iterator row) const {
    if (row == end())
      return mSize;
    const TickTime time = row->time;
    std::size_t position = row.mAt;
    const Node* node = mRoot;
    for (unsigned level = mHeight; level-- > 0;) {
      const Inner& inner = AsInner(node);
      const unsigned at = FindChild(inner, time);
      position += inner.rowsBefore[at];
      node = inner.children[at];
    }
    return position;
  }

  // The row at the time, and whether it is a new one: a row that is there already stays as it is.
  std::pair<iterator, bool> insert(TickTime time, Item item);
  std::size_t erase(TickTime time) {
    if (!mRoot)
      return 0;
    Path path;
    Leaf& leaf = FindLeaf(time, path);
    const unsigned at = CountBefore(leaf, time);
    if (at == leaf.count || leaf.times[at] != time)
      return 0;
    EraseAt(path, leaf, at);
    return 1;
  }
  void erase(const_iterator row) {
    Path path;
    Leaf& leaf = FindLeaf(row->time, path);
    EraseAt(path, leaf, row.mAt);
  }
  void clear() {
    // The usual selection is one row, over and over, and its leaf stays.
    while (mSize != 0 && mHeight == 0)
      erase(std::prev(end()));
    if (mSize != 0) {
      CountedRows gone;
      swap(gone);
    }
  }
  void swap(CountedRows& other) noexcept {
    std::swap(mRoot, other.mRoot);
    std::swap(mHeight, other.mHeight);
    std::swap(mSize, other.mSize);
    std::swap(mFirst, other.mFirst);
    std::swap(mLast, other.mLast);
  }

 private:
  static constexpr TickTime kUnusedTime = kTime_Max;
  static constexpr TickTime kLeastTime = zebmediatypes::kTime_Invalid;
  static constexpr std::uint32_t kUnusedCount = 0xFFFFFFFF;
  // A level more takes a number of changes that is half the fan-out times greater.
  static constexpr unsigned kMaxHeight = 48;
  static constexpr std::size_t kLine = 64;

  // The inner nodes down to a leaf, and the child taken in each. Level 0 is just above the leaves.
  struct Path {
    std::array<Inner*, kMaxHeight> nodes;
    std::array<unsigned, kMaxHeight> at;
  };
  // Where a node was split: what is to be filed after it in its parent.
  struct Split {
    Node* right = nullptr;
    TickTime time;
    std::uint32_t rowsLeft = 0; // in the part that stays
  };

  static const Leaf& AsLeaf(const Node* node) { return *static_cast<const Leaf*>(node); }
  static Leaf& AsLeaf(Node* node) { return *static_cast<Leaf*>(node); }
  static const Inner& AsInner(const Node* node) { return *static_cast<const Inner*>(node); }
  static Inner& AsInner(Node* node) { return *static_cast<Inner*>(node); }

  // How many of the ascending values it holds for, given that those are the first ones. Halves by branches, on purpose:
  // the processor goes on to fetch what it takes to be next, which is worth more in a long list than what a wrong guess
  // costs in a short one.
  template <class Values, class Holds> static unsigned CountLeading(const Values& values, Holds holds) {
    constexpr auto kSize = static_cast<unsigned>(std::tuple_size_v<Values>);
    static_assert(std::has_single_bit(kSize));
    const auto* at = values.data();
#pragma GCC unroll 8
    for (unsigned half = kSize / 2; half > 0; half /= 2)
      at += holds(at[half - 1]) ? half : 0;
    return static_cast<unsigned>(at - values.data()) + holds(*at);
  }
  // Without branches: all of a leaf is on its way already, and which of its rows is meant cannot be guessed.
  static unsigned CountBefore(const Leaf& leaf, TickTime time) {
    const TickTime* at = leaf.times.data();
#pragma GCC unroll 8
    for (unsigned half = kLeafRows / 2; half > 0; half /= 2)
      at += (0U - static_cast<unsigned>(at[half - 1] < time)) & half;
    return static_cast<unsigned>(at - leaf.times.data()) + (*at < time);
  }
  // The greatest time is the unused one too, hence the count.
  template <class Times> static unsigned CountUpTo(const Times& times, unsigned count, TickTime time) {
    return std::min(count, CountLeading(times, [time](TickTime each) { return each <= time; }));
  }
  static unsigned FindChild(const Inner& inner, TickTime time) {
    return CountUpTo(inner.times, inner.count, time) - 1;
  }

  // Asks for all of a leaf at once, so that the item does not wait for the times.
  static void Prefetch(const Node* leaf) {
    const auto* bytes = reinterpret_cast<const std::byte*>(leaf);
#pragma GCC unroll 16
    for (std::size_t at = 0; at < sizeof(TickTime) * kLeafRows + sizeof(Item) * kLeafRows; at += kLine)
      __builtin_prefetch(bytes + at);
  }

  // The leaf in which the time is or would be; null if there is none at all.
  const Leaf* FindLeaf(TickTime time) const {
    const Node* node = mRoot;
    for (unsigned level = mHeight; level-- > 0;) {
      const Inner& inner = AsInner(node);
      node = inner.children[FindChild(inner, time)];
    }
    if (node && mHeight > 0)
      Prefetch(node);
    return static_cast<const Leaf*>(node);
  }
  Leaf& FindLeaf(TickTime time, Path& path) {
    Node* node = mRoot;
    for (unsigned level = mHeight; level-- > 0;) {
      path.nodes[level] = &AsInner(node);
      path.at[level] = FindChild(AsInner(node), time);
      node = path.nodes[level]->children[path.at[level]];
    }
    if (mHeight > 0)
      Prefetch(node);
    return AsLeaf(node);
  }
  static const_iterator AtOrNext(const Leaf* leaf, unsigned at) {
    return at == leaf->count && leaf->next ? const_iterator(leaf->next, 0) : const_iterator(leaf, at);
  }

  static void Destroy(Node* node, unsigned height) {
    if (height == 0) {
      delete &AsLeaf(node);
      return;
    }
    Inner& inner = AsInner(node);
    for (unsigned i = 0; i < inner.count; ++i)
      Destroy(inner.children[i], height - 1);
    delete &inner;
  }

  // To a place without an item, leaving one behind: unlike moving, it need not look for an item to let go.
  static void Relocate(Item* from, Item* to) {
    static_assert(std::is_nothrow_move_constructible_v<Item> && std::is_nothrow_default_constructible_v<Item>);
    std::construct_at(to, std::move(*from));
    std::destroy_at(from);
  }

  static void Place(Leaf& leaf, unsigned at, TickTime time, Item&& item) {
    std::copy_backward(leaf.times.begin() + at, leaf.times.begin() + leaf.count, leaf.times.begin() + leaf.count + 1);
    Item* items = leaf.items.data();
    std::destroy_at(items + leaf.count);
    for (unsigned i = leaf.count; i > at; --i)
      Relocate(items + i - 1, items + i);
    leaf.times[at] = time;
    std::construct_at(items + at, std::move(item));
    ++leaf.count;
  }
  static void Place(Inner& inner, unsigned at, TickTime time, std::uint32_t rowsBefore, Node* child) {
    const auto shift = [&](auto& values) {
      std::copy_backward(values.begin() + at, values.begin() + inner.count, values.begin() + inner.count + 1);
    };
    shift(inner.times);
    shift(inner.rowsBefore);
    shift(inner.children);
    inner.times[at] = time;
    inner.rowsBefore[at] = rowsBefore;
    inner.children[at] = child;
    ++inner.count;
  }
  static void TakeOut(Inner& inner, unsigned at) {
    const auto shift = [&](auto& values) {
      std::copy(values.begin() + at + 1, values.begin() + inner.count, values.begin() + at);
    };
    shift(inner.times);
    shift(inner.rowsBefore);
    shift(inner.children);
    --inner.count;
    inner.times[inner.count] = kUnusedTime;
    inner.rowsBefore[inner.count] = kUnusedCount;
    if (inner.count > 0)
      inner.times[0] = kLeastTime;
  }

  static void CountAfter(const Path& path, unsigned level, std::uint32_t change) {
    Inner& inner = *path.nodes[level];
    const unsigned count = inner.count;
    std::uint32_t* rowsBefore = inner.rowsBefore.data();
    for (unsigned i = path.at[level] + 1; i < count; ++i)
      rowsBefore[i] += change;
  }

  iterator InsertIntoFull(Leaf& leaf, unsigned at, TickTime time, Item&& item, const Path& path);
  // Moves the rows from a place on to an empty leaf that follows.
  void MoveTail(Leaf& leaf, unsigned from, Leaf& right);
  Split FileSplit(const Path& path, unsigned level, const Split& split, Inner* spare);
  void EraseAt(const Path& path, Leaf& leaf, unsigned at);
  void Unlink(Leaf& leaf);
  // Give true if the parent has lost a child.
  bool TidyLeaf(const Path& path, Leaf& leaf);
  bool TidyInner(const Path& path, unsigned level);
  bool JoinLeaves(Inner& parent, unsigned left);
  bool JoinInners(Inner& parent, unsigned left);
  void LowerRoot();

  Node* mRoot = nullptr;
  unsigned mHeight = 0; // levels of inner nodes
  std::size_t mSize = 0;
  Leaf* mFirst = nullptr;
  Leaf* mLast = nullptr;
};

template <class Item, unsigned kLeafRows, unsigned kFanOut>
auto CountedRows<Item, kLeafRows, kFanOut>::insert(TickTime time, Item item) -> std::pair<iterator, bool> {
  if (!mRoot)
    mRoot = mFirst = mLast = new Leaf;
  if (mSize != 0 && mLast->count < kLeafRows && mLast->times[mLast->count - 1] < time) {
    // Nothing comes after the last leaf, so nothing is to be counted.
    Place(*mLast, mLast->count, time, std::move(item));
    ++mSize;
    return {{mLast, mLast->count - 1}, true};
  }
  Path path;
  Leaf& leaf = FindLeaf(time, path);
  const unsigned at = CountBefore(leaf, time);
  if (at < leaf.count && leaf.times[at] == time)
    return {{&leaf, at}, false};
  if (leaf.count == kLeafRows)
    return {InsertIntoFull(leaf, at, time, std::move(item), path), true};
  Place(leaf, at, time, std::move(item));
  ++mSize;
  for (unsigned level = 0; level < mHeight; ++level)
    CountAfter(path, level, 1);
  return {{&leaf, at}, true};
}

template <class Item, unsigned kLeafRows, unsigned kFanOut>
auto CountedRows<Item, kLeafRows, kFanOut>::InsertIntoFull(Leaf& leaf, unsigned at, TickTime time, Item&& item,
                                                           const Path& path) -> iterator {
  // All memory first: with none left, nothing has changed.
  auto newLeaf = std::make_unique<Leaf>();
  std::vector<std::unique_ptr<Inner>> spares;
  unsigned full = 0;
  while (full < mHeight && path.nodes[full]->count == kFanOut)
    ++full;
  for (unsigned i = 0; i < full + (full == mHeight); ++i)
    spares.push_back(std::make_unique<Inner>());

  Leaf& right = *newLeaf.release();
  // Rows that come in order leave full leaves behind.
  MoveTail(leaf, &leaf == mLast && at == kLeafRows ? kLeafRows : kLeafRows / 2, right);
  const bool goesRight = at > leaf.count || leaf.count == kLeafRows;
  Leaf& target = goesRight ? right : leaf;
  const unsigned place = goesRight ? at - leaf.count : at;
  Place(target, place, time, std::move(item));
  ++mSize;

  Split split{&right, right.times[0], leaf.count};
  for (unsigned level = 0; level < mHeight; ++level) {
    CountAfter(path, level, 1);
    if (split.right)
      split = FileSplit(path, level, split, level < full ? spares[level].release() : nullptr);
  }
  if (split.right) {
    Inner& root = *spares.back().release();
    Place(root, 0, kLeastTime, 0, mRoot);
    Place(root, 1, split.time, split.rowsLeft, split.right);
    mRoot = &root;
    ++mHeight;
  }
  return {&target, place};
}

template <class Item, unsigned kLeafRows, unsigned kFanOut>
void CountedRows<Item, kLeafRows, kFanOut>::MoveTail(Leaf& leaf, unsigned from, Leaf& right) {
  std::copy(leaf.times.begin() + from, leaf.times.begin() + leaf.count, right.times.begin());
  std::move(leaf.items.begin() + from, leaf.items.begin() + leaf.count, right.items.begin());
  std::fill(leaf.times.begin() + from, leaf.times.end(), kUnusedTime);
  right.count = leaf.count - from;
  leaf.count = from;
  right.previous = &leaf;
  right.next = leaf.next;
  (leaf.next ? leaf.next->previous : mLast) = &right;
  leaf.next = &right;
}

// Files the right part of a child after it, if need be by splitting this node too.
template <class Item, unsigned kLeafRows, unsigned kFanOut>
auto CountedRows<Item, kLeafRows, kFanOut>::FileSplit(const Path& path, unsigned level, const Split& split,
                                                      Inner* spare) -> Split {
  Inner& inner = *path.nodes[level];
  const unsigned at = path.at[level] + 1;
  const std::uint32_t rowsBefore = inner.rowsBefore[at - 1] + split.rowsLeft;
  if (!spare) {
    Place(inner, at, split.time, rowsBefore, split.right);
    return {};
  }
  if (at == kFanOut) {
    Place(*spare, 0, kLeastTime, 0, split.right);
    return {spare, split.time, rowsBefore};
  }
  constexpr unsigned kHalf = kFanOut / 2;
  const Split own{spare, inner.times[kHalf], inner.rowsBefore[kHalf]};
  for (unsigned i = kHalf; i < kFanOut; ++i) {
    spare->times[i - kHalf] = std::exchange(inner.times[i], kUnusedTime);
    spare->rowsBefore[i - kHalf] = std::exchange(inner.rowsBefore[i], kUnusedCount) - own.rowsLeft;
    spare->children[i - kHalf] = inner.children[i];
  }
  spare->times[0] = kLeastTime;
  spare->count = kFanOut - kHalf;
  inner.count = kHalf;
  if (at <= kHalf)
    Place(inner, at, split.time, rowsBefore, split.right);
  else
    Place(*spare, at - kHalf, split.time, rowsBefore - own.rowsLeft, split.right);
  return own;
}

template <class Item, unsigned kLeafRows, unsigned kFanOut>
void CountedRows<Item, kLeafRows, kFanOut>::EraseAt(const Path& path, Leaf& leaf, unsigned at) {
  [[maybe_unused]] const Item gone = std::move(leaf.items[at]); // goes last of all
  std::copy(leaf.times.begin() + at + 1, leaf.times.begin() + leaf.count, leaf.times.begin() + at);
  Item* items = leaf.items.data();
  std::destroy_at(items + at);
  for (unsigned i = at + 1; i < leaf.count; ++i)
    Relocate(items + i, items + i - 1);
  std::construct_at(items + leaf.count - 1);
  leaf.times[--leaf.count] = kUnusedTime;
  --mSize;
  for (unsigned level = 0; level < mHeight; ++level)
    CountAfter(path, level, ~std::uint32_t{0});
  if (mHeight > 0 && TidyLeaf(path, leaf)) {
    unsigned level = 0;
    while (level + 1 < mHeight && TidyInner(path, level))
      ++level;
    LowerRoot();
  }
}

template <class Item, unsigned kLeafRows, unsigned kFanOut>
void CountedRows<Item, kLeafRows, kFanOut>::Unlink(Leaf& leaf) {
  (leaf.previous ? leaf.previous->next : mFirst) = leaf.next;
  (leaf.next ? leaf.next->previous : mLast) = leaf.previous;
}

template <class Item, unsigned kLeafRows, unsigned kFanOut>
bool CountedRows<Item, kLeafRows, kFanOut>::TidyLeaf(const Path& path, Leaf& leaf) {
  Inner& parent = *path.nodes[0];
  const unsigned at = path.at[0];
  if (leaf.count == 0) {
    Unlink(leaf);
    delete &leaf;
    TakeOut(parent, at);
    return true;
  }
  if (leaf.count >= kLeafRows / 4)
    return false;
  return (at + 1 < parent.count && JoinLeaves(parent, at)) || (at > 0 && JoinLeaves(parent, at - 1));
}

template <class Item, unsigned kLeafRows, unsigned kFanOut>
bool CountedRows<Item, kLeafRows, kFanOut>::TidyInner(const Path& path, unsigned level) {
  Inner& inner = *path.nodes[level];
  Inner& parent = *path.nodes[level + 1];
  const unsigned at = path.at[level + 1];
  if (inner.count == 0) {
    delete &inner;
    TakeOut(parent, at);
    return true;
  }
  if (inner.count >= kFanOut / 4)
    return false;
  return (at + 1 < parent.count && JoinInners(parent, at)) || (at > 0 && JoinInners(parent, at - 1));
}

template <class Item, unsigned kLeafRows, unsigned kFanOut>
bool CountedRows<Item, kLeafRows, kFanOut>::JoinLeaves(Inner& parent, unsigned left) {
  Leaf& into = AsLeaf(parent.children[left]);
  Leaf& from = AsLeaf(parent.children[left + 1]);
  if (into.count + from.count > kLeafRows * 3 / 4)
    return false;
  std::copy(from.times.begin(), from.times.begin() + from.count, into.times.begin() + into.count);
  std::move(from.items.begin(), from.items.begin() + from.count, into.items.begin() + into.count);
  into.count += from.count;
  Unlink(from);
  delete &from;
  TakeOut(parent, left + 1);
  return true;
}

template <class Item, unsigned kLeafRows, unsigned kFanOut>
bool CountedRows<Item, kLeafRows, kFanOut>::JoinInners(Inner& parent, unsigned left) {
  Inner& into = AsInner(parent.children[left]);
  Inner& from = AsInner(parent.children[left + 1]);
  if (into.count + from.count > kFanOut * 3 / 4)
    return false;
  from.times[0] = parent.times[left + 1];
  const std::uint32_t rows = parent.rowsBefore[left + 1] - parent.rowsBefore[left];
  for (unsigned i = 0; i < from.count; ++i)
    Place(into, into.count, from.times[i], rows + from.rowsBefore[i], from.children[i]);
  delete &from;
  TakeOut(parent, left + 1);
  return true;
}

template <class Item, unsigned kLeafRows, unsigned kFanOut> void CountedRows<Item, kLeafRows, kFanOut>::LowerRoot() {
  while (mHeight > 0 && AsInner(mRoot).count == 1) {
    Inner& root = AsInner(mRoot);
    mRoot = root.children[0];
    --mHeight;
    delete &root;
  }
}

// The rows of a list, under the times that they were filed at, which an edit from elsewhere can make differ from the
// row's own begin time until the rows are read again.
using CaptionsRowMap = CountedRows<CaptionsRowItem, 32, 64>;
using CaptionsRow = CaptionsRowMap::Row;

} // namespace Captivo
