#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "Captions/list/CaptionsRowMap.h"

// The rows held against a sorted map of the standard library, in which positions are counted by walking.
namespace Captivo::Testing {

namespace {

// Read by the library when the first property is checked.
[[maybe_unused]] const int kTenThousandCases = setenv("RC_PARAMS", "max_success=10000", 0);

using ItemPtr = boost::shared_ptr<int>;
// With nodes as small as can be, a few rows make a tree of many levels.
using NarrowRows = CountedRows<ItemPtr, 4, 4>;
using WideRows = CountedRows<ItemPtr, 32, 64>;
using Model = std::map<std::int64_t, ItemPtr>;

template <class Rows>
bool IsAt(const Rows& rows, typename Rows::iterator row, const Model& model, Model::iterator own) {
  if (own == model.end())
    return row == rows.end();
  return row != rows.end() && row->time.GetTicks() == own->first && row->item == own->second;
}

template <class Rows> bool HasEqualRows(const Rows& rows, const Model& model) {
  const auto isEqual = [](const auto& row, const auto& own) {
    return row.time.GetTicks() == own.first && row.item == own.second;
  };
  return rows.size() == model.size() && rows.empty() == model.empty() &&
         std::equal(rows.begin(), rows.end(), model.begin(), model.end(), isEqual) &&
         std::equal(rows.rbegin(), rows.rend(), model.rbegin(), model.rend(), isEqual);
}

template <class Rows> bool CountsRight(const Rows& rows) {
  std::size_t position = 0;
  for (auto row = rows.begin(); row != rows.end(); ++row, ++position)
    if (rows.rank(row) != position || rows.nth(position) != row)
      return false;
  return position == rows.size() && rows.nth(position) == rows.end() && rows.rank(rows.end()) == position;
}

template <class Rows> bool FindsAllAround(const Rows& rows, Model& model, std::int64_t ticks) {
  const TickTime time(ticks);
  return IsAt(rows, rows.find(time), model, model.find(ticks)) &&
         IsAt(rows, rows.lower_bound(time), model, model.lower_bound(ticks)) &&
         IsAt(rows, rows.upper_bound(time), model, model.upper_bound(ticks));
}

template <class Rows> struct Pair {
  Rows rows;
  Model model;

  bool Insert(std::int64_t ticks) {
    const auto item = boost::make_shared<int>(0);
    const auto [row, inserted] = rows.insert(TickTime(ticks), item);
    const auto [own, ownInserted] = model.emplace(ticks, item);
    return inserted == ownInserted && IsAt(rows, row, model, own);
  }
  bool Erase(std::int64_t ticks) { return rows.erase(TickTime(ticks)) == model.erase(ticks); }
  bool EraseNth(std::size_t position) {
    if (model.empty())
      return rows.nth(position) == rows.end();
    const auto own = std::next(model.begin(), static_cast<std::ptrdiff_t>(position % model.size()));
    rows.erase(rows.nth(position % model.size()));
    model.erase(own);
    return true;
  }
  bool ExchangeAt(std::int64_t ticks) {
    const auto row = rows.lower_bound(TickTime(ticks));
    const auto own = model.lower_bound(ticks);
    if (!IsAt(rows, row, model, own))
      return false;
    if (own != model.end())
      row->item = own->second = boost::make_shared<int>(1);
    return true;
  }
  // Half of the rows in one stretch, which empties whole nodes.
  bool EraseStretch(std::int64_t ticks) {
    const auto count = model.size() / 2;
    for (std::size_t i = 0; i < count; ++i) {
      auto own = model.lower_bound(ticks);
      if (own == model.end())
        own = model.begin();
      if (!Erase(std::int64_t{own->first}))
        return false;
    }
    return true;
  }
};

std::int64_t AnyTicks() {
  // The ends of time among the others.
  const int ticks = *rc::gen::inRange(-3, 300);
  return ticks == -1   ? kTime_Max.GetTicks()
         : ticks == -2 ? kTime_Min.GetTicks()
         : ticks == -3 ? kTime_Min.GetTicks() - 1
                       : ticks;
}

template <class Rows> void KeepsUpWithAMap(int steps) {
  Pair<Rows> pair;
  // Rows to start with, so that there is something to take from.
  const int first = *rc::gen::inRange(0, 300);
  const int stride = *rc::gen::element(1, -1, 7, 101);
  for (int i = 0; i < first; ++i)
    RC_ASSERT(pair.Insert(((i * stride) % 300 + 300) % 300));
  for (int i = 0; i < steps; ++i) {
    const std::int64_t ticks = AnyTicks();
    switch (*rc::gen::weightedElement<int>({{6, 0}, {6, 1}, {2, 2}, {2, 3}, {1, 4}, {1, 5}})) {
    case 0:
      RC_ASSERT(pair.Insert(ticks));
      break;
    case 1:
      RC_ASSERT(pair.Erase(ticks));
      break;
    case 2:
      RC_ASSERT(pair.EraseNth(static_cast<std::size_t>(*rc::gen::inRange(0, 300))));
      break;
    case 3:
      RC_ASSERT(pair.ExchangeAt(ticks));
      break;
    case 4:
      RC_ASSERT(pair.EraseStretch(ticks));
      break;
    default: {
      const Rows copy = pair.rows;
      RC_ASSERT(HasEqualRows(copy, pair.model));
      pair.rows = copy;
    }
    }
    RC_ASSERT(FindsAllAround(pair.rows, pair.model, AnyTicks()));
  }
  RC_ASSERT(HasEqualRows(pair.rows, pair.model));
  RC_ASSERT(CountsRight(pair.rows));
  pair.rows.clear();
  pair.model.clear();
  RC_ASSERT(HasEqualRows(pair.rows, pair.model));
}

TEST(RowMap, NarrowNodesKeepUpWithASortedMap) {
  EXPECT_TRUE(rc::check([] { KeepsUpWithAMap<NarrowRows>(*rc::gen::inRange(0, 40)); }));
}

TEST(RowMap, WideNodesKeepUpWithASortedMap) {
  EXPECT_TRUE(rc::check([] { KeepsUpWithAMap<WideRows>(*rc::gen::inRange(0, 40)); }));
}

template <class Rows> void ComeAndGo(std::vector<std::int64_t> order, std::vector<std::int64_t> orderOfLeaving) {
  Pair<Rows> pair;
  for (const std::int64_t ticks : order)
    ASSERT_TRUE(pair.Insert(ticks));
  ASSERT_TRUE(HasEqualRows(pair.rows, pair.model));
  ASSERT_TRUE(CountsRight(pair.rows));
  while (!orderOfLeaving.empty()) {
    ASSERT_TRUE(pair.Erase(orderOfLeaving.back()));
    orderOfLeaving.pop_back();
    if (orderOfLeaving.size() % 4999 == 0) {
      ASSERT_TRUE(HasEqualRows(pair.rows, pair.model));
      ASSERT_TRUE(CountsRight(pair.rows));
    }
  }
  EXPECT_TRUE(pair.rows.empty());
}

TEST(RowMap, ManyRowsComeAndGoInAnyOrder) {
  std::vector<std::int64_t> ascending;
  for (std::int64_t ticks = 0; ticks < 30000; ++ticks)
    ascending.push_back(ticks * 10);
  std::vector<std::int64_t> descending(ascending.rbegin(), ascending.rend());
  std::vector<std::int64_t> shuffled = ascending;
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937_64(7));
  for (const auto& order : {ascending, descending, shuffled})
    for (const auto& orderOfLeaving : {ascending, descending, shuffled}) {
      ComeAndGo<NarrowRows>(order, orderOfLeaving);
      ComeAndGo<WideRows>(order, orderOfLeaving);
    }
}

TEST(RowMap, AnItemThatGoesFindsTheRowsWithoutIt) {
  for (int last = 0; last < 200; ++last) {
    NarrowRows rows;
    std::vector<std::size_t> seen;
    for (int ticks = 0; ticks <= last; ++ticks) {
      const auto look = [&rows, &seen, ticks](int* number) {
        EXPECT_EQ(rows.find(TickTime(ticks)), rows.end());
        EXPECT_TRUE(CountsRight(rows));
        seen.push_back(rows.size());
        delete number;
      };
      rows.insert(TickTime(ticks), ItemPtr(new int(ticks), look));
    }
    rows.erase(TickTime(last / 2));
    ASSERT_EQ(seen, std::vector<std::size_t>{static_cast<std::size_t>(last)});
    rows.clear();
    ASSERT_EQ(seen.size(), static_cast<std::size_t>(last) + 1);
  }
}

TEST(RowMap, ARowThatIsThereStaysAsItIs) {
  NarrowRows rows;
  const auto former = boost::make_shared<int>(1);
  rows.insert(TickTime(5), former);
  const auto [row, inserted] = rows.insert(TickTime(5), boost::make_shared<int>(2));
  EXPECT_FALSE(inserted);
  EXPECT_EQ(row->item, former);
  EXPECT_EQ(rows.size(), 1u);
}

TEST(RowMap, ACopySharesTheItemsAndNotTheRows) {
  Pair<NarrowRows> pair;
  for (int ticks = 0; ticks < 100; ++ticks)
    pair.Insert(ticks);
  NarrowRows copy = pair.rows;
  copy.erase(TickTime(50));
  EXPECT_TRUE(HasEqualRows(pair.rows, pair.model));
  copy.swap(pair.rows);
  pair.model.erase(50);
  EXPECT_TRUE(HasEqualRows(pair.rows, pair.model));
  EXPECT_EQ(copy.size(), 100u);
}

TEST(RowMap, WithoutRowsEverythingIsTheEnd) {
  NarrowRows rows;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(rows.begin(), rows.end());
    EXPECT_EQ(rows.find(kTime_Max), rows.end());
    EXPECT_EQ(rows.lower_bound(kTime_Min), rows.end());
    EXPECT_EQ(rows.upper_bound(kTime_Min), rows.end());
    EXPECT_EQ(rows.nth(0), rows.end());
    EXPECT_EQ(rows.rank(rows.end()), 0u);
    EXPECT_EQ(rows.erase(TickTime(0)), 0u);
    // Once with no memory at all, and once with what remains of a row.
    rows.insert(TickTime(0), nullptr);
    rows.clear();
  }
}

} // namespace

} // namespace Captivo::Testing
