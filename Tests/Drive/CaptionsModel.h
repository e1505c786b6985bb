#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Tests {

using Time = std::int64_t;

// A caption of the modelled stream. Of captions that begin together the one with the highest age is the newest.
struct ModelCaption {
  std::uint64_t age = 0;
  Time begin = 0;
  Time end = 0;
  std::string text;
  friend bool operator==(const ModelCaption&, const ModelCaption&) = default;
};

// What the panel and the stream are to hold after each operation, worked out from the rules alone: plain maps, no
// controls, no messages but as the lists of times that they amount to. Nothing of the program is used here.
class CaptionsModel {
 public:
  using Stream = std::map<std::uint64_t, ModelCaption>; // by age

  explicit CaptionsModel(Time frame) : mFrame(frame) {}

  // Captions from elsewhere: a clip that is selected with them, steps of the host.
  void Open(const std::vector<ModelCaption>& captions);
  void HostAdd(const std::vector<ModelCaption>& captions);
  void HostRemove(Time begin);
  void HostChange(Time begin, Time end, const std::string& text);
  void HostMove(Time from, Time to, Time offset);

  // Gestures. toggle goes before extend.
  void Click(Time row, bool toggle, bool extend);
  void ClickBelow();
  void MoveKey(int offset, bool toggle, bool extend);
  void EndKey(bool last, bool toggle, bool extend);
  void Commit();

  // Edits. False: refused with a box.
  bool Add();
  void Delete(bool byKey);
  bool Retime(Time row, bool outEnd, Time value, bool selectsFirst);
  void Enter(Time row) { SelectSingle(row); }
  void Retype(Time row, const std::string& text);

  bool Undo();
  bool Redo();

  struct Row {
    std::uint64_t caption = 0;
    Time end = 0;
    std::string text;
  };
  const std::map<Time, Row>& GetRows() const { return mRows; }
  const std::set<Time>& GetSelected() const { return mSelected; }
  std::optional<Time> GetAnchor() const { return mAnchor; }
  // By begin, then age.
  std::vector<ModelCaption> GetStream() const;
  // Captions that overlap backwards can bring a row onto the begin of a newer caption. From then on the row and the
  // stream mean different captions by that begin, and what the row shows depends on when it comes into view.
  bool MeansOtherCaptions() const;

 private:
  // The stream becomes this, and the panel hears of it.
  void Become(const Stream& next);
  void Hear(const Stream& before, const std::set<Time>& touched);
  void HearCaption(const ModelCaption& caption);
  void RemoveRow(Time begin);
  void Reload();
  void Gesture(Time time, bool toggle, bool extend);
  bool SelectSingle(Time time);
  void Restore(const std::vector<Time>& times);
  std::optional<Time> FindSuccessor() const;
  const ModelCaption* FindNewest(const Stream& stream, Time begin) const;
  void PushStep();

  Time mFrame;
  std::uint64_t mLastAge = 0;
  Stream mStream;
  Stream mCommitted;
  std::vector<std::pair<Stream, Stream>> mUndo;
  std::vector<std::pair<Stream, Stream>> mRedo;
  std::map<Time, Row> mRows;
  std::set<Time> mSelected;
  std::optional<Time> mAnchor;
};

} // namespace Tests
