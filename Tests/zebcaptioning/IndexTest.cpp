#include <algorithm>
#include <bit>
#include <cmath>

#include "Builders.h"
#include "zebcaptioning/CaptionIndex.h"

using namespace builders;

namespace {

using Key = CaptionIndex::Key;

boost::intrusive_ptr<Caption> At(std::int64_t begin, std::int64_t end) {
  return new Caption(MakeCaptionState(TickTime(begin), TickTime(end), {}));
}
Key KeyOf(std::uint64_t number) {
  return {7, number};
}

struct Row {
  Key key;
  std::int64_t begin;
  std::int64_t end;
  std::uint64_t age;
};
bool operator==(const Row& a, const Row& b) {
  return a.key == b.key && a.begin == b.begin && a.end == b.end && a.age == b.age;
}

Row ToRow(const CaptionIndex::Entry& entry) {
  return {entry.key, entry.begin.GetTicks(), entry.end.GetTicks(), entry.age};
}

void SortRows(std::vector<Row>& rows) {
  std::sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
    return std::tie(a.begin, a.age, a.key) < std::tie(b.begin, b.age, b.key);
  });
}

std::vector<Row> AllOf(const CaptionIndex& index) {
  std::vector<Row> rows;
  index.ForEach([&rows](const auto& entry) { rows.push_back(ToRow(entry)); });
  return rows;
}

} // namespace

TEST(CaptionIndex, GivesTheNewestOfSeveralWithOneBeginTime) {
  CaptionIndex index;
  index.Insert(KeyOf(1), 3, At(10, 20));
  index.Insert(KeyOf(2), 5, At(10, 20));
  index.Insert(KeyOf(3), 4, At(10, 20));
  EXPECT_EQ(index.FindNewest(TickTime(10))->key, KeyOf(2));
  EXPECT_EQ(index.FindNewest(TickTime(11)), nullptr);
  EXPECT_EQ(index.FindNewest(TickTime(9)), nullptr);
}

TEST(CaptionIndex, ShowsACaptionFromItsBeginAndNoMoreAtItsEnd) {
  CaptionIndex index;
  index.Insert(KeyOf(1), 1, At(10, 20));
  index.Insert(KeyOf(2), 2, At(20, 30));
  const auto shown = [&index](std::int64_t time) {
    std::vector<std::uint64_t> keys;
    index.ForEachShownAt(TickTime(time), [&keys](const auto& entry) { keys.push_back(entry.key.low); });
    return keys;
  };
  EXPECT_EQ(shown(9), (std::vector<std::uint64_t>{}));
  EXPECT_EQ(shown(10), (std::vector<std::uint64_t>{1}));
  EXPECT_EQ(shown(20), (std::vector<std::uint64_t>{2}));
  EXPECT_EQ(shown(30), (std::vector<std::uint64_t>{}));
}

TEST(CaptionIndex, TakesAKeyOnceOnly) {
  CaptionIndex index;
  EXPECT_TRUE(index.Insert(KeyOf(1), 1, At(10, 20)));
  EXPECT_FALSE(index.Insert(KeyOf(1), 2, At(30, 40)));
  EXPECT_EQ(index.Size(), 1U);
  EXPECT_FALSE(index.Erase(KeyOf(2)));
  EXPECT_FALSE(index.Move(KeyOf(2), TickTime(0), TickTime(1), 1));
  EXPECT_FALSE(index.Rekey(KeyOf(2), KeyOf(3)));
}

TEST(CaptionIndex, FollowsACaptionsTimesWhenTold) {
  CaptionIndex index;
  const auto caption = At(10, 20);
  index.Insert(KeyOf(1), 1, caption);
  index.Insert(KeyOf(2), 2, At(15, 20));
  caption->SetState(MakeCaptionState(TickTime(40), TickTime(50), {}));
  EXPECT_TRUE(index.MoveToCaptionTimes(KeyOf(1)));
  EXPECT_EQ(index.At(1)->key, KeyOf(1));
  EXPECT_EQ(index.FindNewest(TickTime(40))->caption, caption);
}

TEST(CaptionIndex, LetsGoOfItsCaptions) {
  const auto caption = At(10, 20);
  CaptionIndex index;
  index.Insert(KeyOf(1), 1, caption);
  index.Insert(KeyOf(2), 2, caption);
  EXPECT_EQ(caption->use_count(), 3U);
  index.Erase(KeyOf(1));
  EXPECT_EQ(caption->use_count(), 2U);
  index.Clear();
  EXPECT_EQ(caption->use_count(), 1U);
  EXPECT_TRUE(index.IsEmpty());
}

TEST(CaptionIndexProperty, AnswersAsASortedListWould) {
  EXPECT_TRUE(CheckTenThousand("operations against a sorted vector", [] {
    CaptionIndex index;
    std::vector<Row> model;
    const auto find = [&model](const Key& key) {
      return std::find_if(model.begin(), model.end(), [&key](const Row& row) { return row.key == key; });
    };
    const int steps = *rc::gen::inRange(1, 40);
    // One generated number feeds the operations: generating each by itself takes most of the time.
    std::uint64_t random = *rc::gen::arbitrary<std::uint64_t>() | 1;
    const auto below = [&random](std::uint64_t limit) {
      random ^= random << 13;
      random ^= random >> 7;
      random ^= random << 17;
      return (random >> 20) % limit;
    };
    for (int step = 0; step < steps; ++step) {
      const Key key = KeyOf(below(24));
      const auto begin = static_cast<std::int64_t>(below(12)) - 3;
      const auto end = begin + static_cast<std::int64_t>(below(9));
      const std::uint64_t age = below(6);
      const auto found = find(key);
      switch (below(6)) {
      case 0:
      case 1:
      case 2:
        RC_ASSERT(index.Insert(key, age, At(begin, end)) == (found == model.end()));
        if (found == model.end())
          model.push_back({key, begin, end, age});
        break;
      case 3:
        RC_ASSERT(index.Erase(key) == (found != model.end()));
        if (found != model.end())
          model.erase(found);
        break;
      case 4:
        RC_ASSERT(index.Move(key, TickTime(begin), TickTime(end), age) == (found != model.end()));
        if (found != model.end())
          *found = {key, begin, end, age};
        break;
      default: {
        const Key other = KeyOf(below(24));
        const bool isPossible = found != model.end() && (other == key || find(other) == model.end());
        RC_ASSERT(index.Rekey(key, other) == isPossible);
        if (isPossible)
          found->key = other;
      }
      }
    }

    SortRows(model);
    RC_ASSERT(AllOf(index) == model);
    RC_ASSERT(index.Size() == model.size());
    for (std::size_t row = 0; row < model.size(); ++row) {
      RC_ASSERT(ToRow(*index.At(row)) == model[row]);
      RC_ASSERT(index.RowOf(model[row].key) == row);
      RC_ASSERT(ToRow(*index.Find(model[row].key)) == model[row]);
    }
    RC_ASSERT(index.At(model.size()) == nullptr);
    for (std::int64_t time = -4; time <= 18; ++time) {
      std::vector<Row> shown;
      std::vector<Row> ranged;
      std::size_t before = 0;
      const Row* newest = nullptr;
      for (const Row& row : model) {
        if (row.begin <= time && time < row.end)
          shown.push_back(row);
        if (row.begin >= time && row.begin <= time + 3)
          ranged.push_back(row);
        before += row.begin < time ? 1 : 0;
        newest = row.begin == time ? &row : newest;
      }
      std::vector<Row> answered;
      index.ForEachShownAt(TickTime(time), [&answered](const auto& entry) { answered.push_back(ToRow(entry)); });
      RC_ASSERT(answered == shown);
      answered.clear();
      index.ForEachBeginningIn(TickTime(time), TickTime(time + 3),
                               [&answered](const auto& entry) { answered.push_back(ToRow(entry)); });
      RC_ASSERT(answered == ranged);
      RC_ASSERT(index.CountBefore(TickTime(time)) == before);
      const auto* found = index.FindNewest(TickTime(time));
      RC_ASSERT((found != nullptr) == (newest != nullptr));
      RC_ASSERT((!found || ToRow(*found) == *newest)); // capturing would look at both sides
    }
  }));
}

TEST(CaptionIndex, HoldsAHundredThousandPutInOrder) {
  CaptionIndex index;
  constexpr std::uint64_t kCount = 100000;
  for (std::uint64_t i = 0; i < kCount; ++i)
    index.Insert(KeyOf(i), i + 1, At(static_cast<std::int64_t>(i) * 10, static_cast<std::int64_t>(i) * 10 + 8));
  EXPECT_EQ(index.At(kCount / 2)->key, KeyOf(kCount / 2));
  EXPECT_EQ(index.RowOf(KeyOf(kCount - 1)), kCount - 1);
  int shown = 0;
  index.ForEachShownAt(TickTime(555557), [&shown](const auto& entry) {
    EXPECT_EQ(entry.begin, TickTime(555550));
    ++shown;
  });
  EXPECT_EQ(shown, 1);
  for (std::uint64_t i = 0; i < kCount; i += 2)
    EXPECT_TRUE(index.Erase(KeyOf(i)));
  EXPECT_EQ(index.At(0)->key, KeyOf(1));
  EXPECT_EQ(index.Size(), kCount / 2);
}
