#include <cstdlib>
#include <map>
#include <tuple>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "Builders.h"

namespace {

using namespace test;

// Read once, when the first property runs.
const bool kManyCases = setenv("RC_PARAMS", "max_success=10000 max_size=40", 0) == 0;

// The stream as a list of captions in order of age, and its history as whole copies of it.
struct Model {
  struct Entry {
    int begin;
    int end;
    std::string text;
    friend bool operator==(const Entry&, const Entry&) = default;
  };
  using Captions = std::map<int, Entry>; // by age

  // The newest that begins there.
  Captions::iterator Find(int begin) {
    for (auto at = captions.rbegin(); at != captions.rend(); ++at) {
      if (at->second.begin == begin)
        return std::prev(at.base());
    }
    return captions.end();
  }

  void Commit() {
    if (captions == committed)
      return;
    done.push_back(committed);
    undone.clear();
    committed = captions;
  }
  void Move(std::vector<Captions>& from, std::vector<Captions>& to) {
    Commit();
    if (from.empty())
      return;
    to.push_back(captions);
    captions = committed = from.back();
    from.pop_back();
  }

  Lines Print() const {
    std::vector<std::pair<std::pair<int, int>, std::string>> sorted;
    for (const auto& [age, entry] : captions)
      sorted.push_back(
          {{entry.begin, age}, std::to_string(entry.begin) + "-" + std::to_string(entry.end) + " " + entry.text});
    std::sort(sorted.begin(), sorted.end());
    Lines lines;
    for (const auto& [place, line] : sorted)
      lines.push_back(line);
    return lines;
  }

  Captions captions;
  Captions committed;
  std::vector<Captions> done;
  std::vector<Captions> undone;
  int nextAge = 1;
};

// Rows by begin time, kept by what the stream reports and by nothing else.
class Rows : public zebcore::messaging::Listener {
 public:
  explicit Rows(const InterfaceRef<BE::CaptioningStream>& stream) : mStream(stream) {
    zebcore::messaging::AddListener(stream->GetStationID(), this);
  }
  void HandleMessage(const zebcore::messaging::Message& message) override {
    if (const auto* added = MessageCast<BE::CaptionsAddedMessage>(message))
      AddOrUpdate(added->captions);
    else if (const auto* changed = MessageCast<BE::CaptionsChangedMessage>(message))
      AddOrUpdate(changed->captions);
    else if (const auto* removed = MessageCast<BE::CaptionsRemovedMessage>(message)) {
      for (const auto& [stream, begin] : removed->captions)
        mRows.erase(begin);
    } else {
      mRows = Expect();
    }
  }
  bool AreRight() const { return mRows == Expect(); }

 private:
  struct Row {
    boost::intrusive_ptr<zebcaptioning::Caption> caption;
    std::string text;
    friend bool operator==(const Row&, const Row&) = default;
  };
  template <class Pairs> void AddOrUpdate(const Pairs& pairs) {
    for (const auto& [stream, caption] : pairs) {
      Row& row = mRows[caption->GetBeginTime()];
      if (!row.caption)
        row.caption = caption;
      if (row.caption->GetBeginTime() == caption->GetBeginTime())
        row.text = Describe(*row.caption);
    }
  }
  static std::string Describe(const zebcaptioning::Caption& caption) {
    return std::to_string(caption.GetEndTime().GetTicks()) + zebcore::ToUTF8(caption.GetState()->text);
  }
  std::map<TickTime, Row> Expect() const {
    std::map<TickTime, Row> rows;
    std::vector<boost::intrusive_ptr<zebcaptioning::Caption>> captions;
    mStream->GetCaptions(captions);
    for (const auto& caption : captions)
      rows[caption->GetBeginTime()] = {caption, Describe(*caption)};
    return rows;
  }

  InterfaceRef<BE::CaptioningStream> mStream;
  std::map<TickTime, Row> mRows;
};

using Operation = std::tuple<int, int, int>;

rc::Gen<std::vector<Operation>> Operations() {
  return rc::gen::container<std::vector<Operation>>(
      rc::gen::tuple(rc::gen::inRange(0, 10), rc::gen::inRange(0, 7), rc::gen::inRange(0, 7)));
}

RC_GTEST_PROP(HistoryProperty, UndoReturnsToExactlyTheEarlierStateAndRowsKeptByMessagesEqualTheStream, ()) {
  const auto project = BE::Project::CreateInMemory();
  const auto stream = AddStream(project, AddVideoClip(project));
  const std::size_t base = project->GetUndoNames().size();
  Rows rows(stream);
  Model model;
  auto change = stream->BeginChange();
  const auto turn = [&](int begin, const Model::Captions::iterator& at) {
    return Turning(stream, begin,
                   at == model.captions.end() ? nullptr : State(at->second.begin, at->second.end, at->second.text));
  };
  for (const auto& [kind, a, b] : *Operations()) {
    const auto found = model.Find(a);
    const bool exists = found != model.captions.end();
    switch (kind) {
    case 0:
    case 1: { // add, by the host or in the open change
      if (kind == 0)
        model.Commit();
      const auto at = model.captions.insert({model.nextAge++, {a, a + 1 + b, "n" + std::to_string(b)}}).first;
      const CaptionDelta delta = Adding(State(at->second.begin, at->second.end, at->second.text));
      if (kind == 0)
        project->EditCaptions(stream, {delta}, u"Edit");
      else
        change->Apply({delta}, u"Add caption");
      if (kind == 0)
        model.Commit();
      break;
    }
    case 2: // remove in the open change
      if (exists) {
        const CaptionDelta delta = turn(a, model.captions.end());
        model.captions.erase(found);
        change->Apply({delta}, u"Delete caption");
      }
      break;
    case 3: // retype
      if (exists) {
        found->second.text += std::to_string(b);
        change->Apply({turn(a, found)}, u"Type");
      }
      break;
    case 4: // move, also onto another caption's begin
      if (exists) {
        found->second.end += b - a;
        found->second.begin = b;
        change->Apply({turn(a, found)}, u"Move caption");
      }
      break;
    case 5: { // the host moves one and changes or removes another at once
      model.Commit();
      const auto other = model.Find(b);
      std::vector<CaptionDelta> deltas;
      if (exists && a != b) {
        const bool hasOther = other != model.captions.end();
        found->second.begin = b;
        found->second.end = b + 3;
        deltas.push_back(turn(a, found));
        if (hasOther && b % 2 == 0) {
          other->second.text += "!";
          deltas.push_back(turn(b, other));
        } else if (hasOther) {
          deltas.push_back(turn(b, model.captions.end()));
          model.captions.erase(other);
        }
      }
      project->EditCaptions(stream, deltas, u"Edit");
      model.Commit();
      break;
    }
    case 6:
      change->Commit();
      model.Commit();
      break;
    case 7:
      change->Revert();
      model.captions = model.committed;
      break;
    case 8:
      RC_ASSERT(project->CanUndo() == (!model.done.empty() || !(model.captions == model.committed) || base > 0));
      model.Commit();
      if (!model.done.empty()) {
        project->Undo();
        model.Move(model.done, model.undone);
      } else {
        project->CommitOpenChanges();
      }
      break;
    default:
      project->Redo();
      model.Move(model.undone, model.done);
      break;
    }
    RC_ASSERT(Contents(stream) == model.Print());
    RC_ASSERT(project->GetUndoNames().size() == base + model.done.size());
    RC_ASSERT(project->GetRedoNames().size() == model.undone.size());
    RC_ASSERT(rows.AreRight());
  }
}

} // namespace
