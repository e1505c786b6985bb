#include "zebcaptioning/CaptionIndex.h"

#include <algorithm>

namespace zebcaptioning {

CaptionIndex::CaptionIndex() = default;
CaptionIndex::~CaptionIndex() = default;

CaptionIndex::CaptionIndex(CaptionIndex&& other) noexcept {
  *this = std::move(other);
}

CaptionIndex& CaptionIndex::operator=(CaptionIndex&& other) noexcept {
  std::swap(mChunks, other.mChunks);
  std::swap(mTable, other.mTable);
  std::swap(mRoot, other.mRoot);
  std::swap(mFree, other.mFree);
  std::swap(mUsed, other.mUsed);
  std::swap(mSize, other.mSize);
  std::swap(mSeed, other.mSeed);
  return *this;
}

void CaptionIndex::Clear() {
  *this = CaptionIndex();
}

bool CaptionIndex::IsBefore(const Entry& a, const Entry& b) {
  if (a.begin != b.begin)
    return a.begin < b.begin;
  return a.age != b.age ? a.age < b.age : a.key < b.key;
}

bool CaptionIndex::Insert(const Key& key, std::uint64_t age, const CaptionPtr& caption) {
  if (FindNumber(key) != kNone)
    return false;
  const Number number = TakeNode();
  Node& node = NodeAt(number);
  node.key = key;
  node.age = age;
  node.begin = caption->GetBeginTime();
  node.end = caption->GetEndTime();
  node.caption = caption;
  LinkIntoTree(number);
  ++mSize;
  AddToTable(number);
  return true;
}

bool CaptionIndex::Erase(const Key& key) {
  const Number number = FindNumber(key);
  if (number == kNone)
    return false;
  RemoveFromTable(key);
  UnlinkFromTree(number);
  --mSize;
  GiveBackNode(number);
  return true;
}

bool CaptionIndex::Move(const Key& key, TickTime begin, TickTime end, std::uint64_t age) {
  const Number number = FindNumber(key);
  if (number == kNone)
    return false;
  Node& node = NodeAt(number);
  if (node.begin == begin && node.age == age) {
    node.end = end;
    RefreshUp(number);
    return true;
  }
  UnlinkFromTree(number);
  node.begin = begin;
  node.end = end;
  node.age = age;
  LinkIntoTree(number);
  return true;
}

bool CaptionIndex::MoveToCaptionTimes(const Key& key) {
  const Entry* entry = Find(key);
  return entry && Move(key, entry->caption->GetBeginTime(), entry->caption->GetEndTime(), entry->age);
}

bool CaptionIndex::Rekey(const Key& key, const Key& newKey) {
  const Number number = FindNumber(key);
  if (number == kNone)
    return false;
  if (key == newKey)
    return true;
  if (FindNumber(newKey) != kNone)
    return false;
  RemoveFromTable(key);
  UnlinkFromTree(number);
  NodeAt(number).key = newKey;
  LinkIntoTree(number);
  AddToTable(number);
  return true;
}

const CaptionIndex::Entry* CaptionIndex::Find(const Key& key) const {
  const Number number = FindNumber(key);
  return number == kNone ? nullptr : &NodeAt(number);
}

const CaptionIndex::Entry* CaptionIndex::FindNewest(TickTime begin) const {
  const Entry* newest = nullptr;
  for (Number number = mRoot; number != kNone;) {
    const Node& node = NodeAt(number);
    if (node.begin <= begin) {
      newest = &node;
      number = node.right;
    } else {
      number = node.left;
    }
  }
  return newest && newest->begin == begin ? newest : nullptr;
}

const CaptionIndex::Entry* CaptionIndex::At(std::size_t row) const {
  Number number = mRoot;
  while (number != kNone) {
    const Node& node = NodeAt(number);
    const std::size_t before = CountOf(node.left);
    if (row == before)
      return &node;
    if (row < before) {
      number = node.left;
    } else {
      row -= before + 1;
      number = node.right;
    }
  }
  return nullptr;
}

std::optional<std::size_t> CaptionIndex::RowOf(const Key& key) const {
  Number number = FindNumber(key);
  if (number == kNone)
    return std::nullopt;
  std::size_t row = CountOf(NodeAt(number).left);
  for (Number parent = NodeAt(number).parent; parent != kNone; parent = NodeAt(parent).parent) {
    if (NodeAt(parent).right == number)
      row += CountOf(NodeAt(parent).left) + 1;
    number = parent;
  }
  return row;
}

std::size_t CaptionIndex::CountBefore(TickTime begin) const {
  std::size_t count = 0;
  for (Number number = mRoot; number != kNone;) {
    const Node& node = NodeAt(number);
    if (node.begin < begin) {
      count += CountOf(node.left) + 1;
      number = node.right;
    } else {
      number = node.left;
    }
  }
  return count;
}

CaptionIndex::Number CaptionIndex::First() const {
  Number node = mRoot;
  while (node != kNone && NodeAt(node).left != kNone)
    node = NodeAt(node).left;
  return node;
}

CaptionIndex::Number CaptionIndex::Next(Number node) const {
  if (NodeAt(node).right != kNone) {
    node = NodeAt(node).right;
    while (NodeAt(node).left != kNone)
      node = NodeAt(node).left;
    return node;
  }
  Number parent = NodeAt(node).parent;
  while (parent != kNone && NodeAt(parent).right == node) {
    node = parent;
    parent = NodeAt(parent).parent;
  }
  return parent;
}

CaptionIndex::Number CaptionIndex::LowerBound(TickTime begin) const {
  Number found = kNone;
  for (Number number = mRoot; number != kNone;) {
    const Node& node = NodeAt(number);
    if (node.begin < begin) {
      number = node.right;
    } else {
      found = number;
      number = node.left;
    }
  }
  return found;
}

CaptionIndex::Number CaptionIndex::TakeNode() {
  Number number = mFree;
  if (number != kNone) {
    mFree = NodeAt(number).right;
  } else {
    if (mUsed % kChunk == 0)
      mChunks.push_back(std::make_unique<Node[]>(kChunk));
    number = static_cast<Number>(mUsed++);
  }
  // Xorshift: priorities need only be spread, and the same on every run.
  mSeed ^= mSeed << 13;
  mSeed ^= mSeed >> 7;
  mSeed ^= mSeed << 17;
  NodeAt(number).priority = static_cast<std::uint32_t>(mSeed >> 32);
  return number;
}

void CaptionIndex::GiveBackNode(Number number) {
  NodeAt(number) = Node();
  NodeAt(number).right = mFree;
  mFree = number;
}

void CaptionIndex::LinkIntoTree(Number number) {
  Node& node = NodeAt(number);
  node.left = kNone;
  node.right = kNone;
  Number parent = kNone;
  bool isLeft = false;
  for (Number at = mRoot; at != kNone;) {
    parent = at;
    isLeft = IsBefore(node, NodeAt(at));
    at = isLeft ? NodeAt(at).left : NodeAt(at).right;
  }
  node.parent = parent;
  if (parent == kNone)
    mRoot = number;
  else if (isLeft)
    NodeAt(parent).left = number;
  else
    NodeAt(parent).right = number;
  RefreshUp(number);
  while (node.parent != kNone && NodeAt(node.parent).priority < node.priority)
    RotateUp(number);
}

void CaptionIndex::UnlinkFromTree(Number number) {
  Node& node = NodeAt(number);
  while (node.left != kNone && node.right != kNone)
    RotateUp(NodeAt(node.left).priority > NodeAt(node.right).priority ? node.left : node.right);
  const Number child = node.left != kNone ? node.left : node.right;
  const Number parent = node.parent;
  Replace(parent, number, child);
  RefreshUp(parent);
  node.parent = kNone;
}

// Puts another node, or none, in the place of a parent's child.
void CaptionIndex::Replace(Number parent, Number child, Number with) {
  if (with != kNone)
    NodeAt(with).parent = parent;
  if (parent == kNone)
    mRoot = with;
  else if (NodeAt(parent).left == child)
    NodeAt(parent).left = with;
  else
    NodeAt(parent).right = with;
}

void CaptionIndex::RotateUp(Number number) {
  Node& node = NodeAt(number);
  const Number parent = node.parent;
  Node& above = NodeAt(parent);
  Replace(above.parent, parent, number);
  Number& inner = above.left == number ? node.right : node.left;
  (above.left == number ? above.left : above.right) = inner;
  if (inner != kNone)
    NodeAt(inner).parent = parent;
  inner = parent;
  above.parent = number;
  Refresh(parent);
  Refresh(number);
}

void CaptionIndex::Refresh(Number number) {
  Node& node = NodeAt(number);
  node.count = 1;
  node.latestEnd = node.end;
  for (const Number child : {node.left, node.right}) {
    if (child == kNone)
      continue;
    node.count += NodeAt(child).count;
    node.latestEnd = std::max(node.latestEnd, NodeAt(child).latestEnd);
  }
}

void CaptionIndex::RefreshUp(Number number) {
  for (; number != kNone; number = NodeAt(number).parent)
    Refresh(number);
}

// Where a key stands in the table or, if it does not, the free slot where it would.
std::size_t CaptionIndex::SlotOf(const Key& key) const {
  std::uint64_t hash = key.high ^ key.low * 0x9E3779B97F4A7C15ULL;
  hash ^= hash >> 32;
  hash *= 0xD6E8FEB86659FD93ULL;
  hash ^= hash >> 32;
  const std::size_t mask = mTable.size() - 1;
  std::size_t slot = static_cast<std::size_t>(hash) & mask;
  while (mTable[slot] != kNone && NodeAt(mTable[slot]).key != key)
    slot = (slot + 1) & mask;
  return slot;
}

CaptionIndex::Number CaptionIndex::FindNumber(const Key& key) const {
  return mTable.empty() ? kNone : mTable[SlotOf(key)];
}

void CaptionIndex::AddToTable(Number number) {
  if (mSize * 4 > mTable.size() * 3)
    GrowTable();
  mTable[SlotOf(NodeAt(number).key)] = number;
}

// Closes the gap: what follows without one moves up, each as far as its own slot allows.
void CaptionIndex::RemoveFromTable(const Key& key) {
  const std::size_t mask = mTable.size() - 1;
  std::size_t gap = SlotOf(key);
  mTable[gap] = kNone;
  for (std::size_t slot = (gap + 1) & mask; mTable[slot] != kNone; slot = (slot + 1) & mask) {
    const Number moved = mTable[slot];
    mTable[slot] = kNone;
    mTable[SlotOf(NodeAt(moved).key)] = moved;
  }
}

void CaptionIndex::GrowTable() {
  std::vector<Number> old(std::max<std::size_t>(16, mTable.size() * 2), kNone);
  old.swap(mTable);
  for (const Number number : old) {
    if (number != kNone)
      mTable[SlotOf(NodeAt(number).key)] = number;
  }
}

} // namespace zebcaptioning
