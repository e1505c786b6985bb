#pragma once

#include <memory>

#include "UIF/View.h"
#include "zebcore/ImmutableString.h"
#include "zebcore/Messaging.h"

namespace UIF {

struct ScrollVerticalMessage : zebcore::messaging::MessageOf<ScrollVerticalMessage> {
  static constexpr const char* kTypeName = "UIF::ScrollVerticalMessage";
  int position = 0;
};

class ScrollBar {
 public:
  explicit ScrollBar(Commander* super);
  ~ScrollBar();
  ScrollBar(const ScrollBar&) = delete;
  ScrollBar& operator=(const ScrollBar&) = delete;

  // orientation: 1 vertical. Hidden until shown.
  void Create(ViewBase* parent, const RectT<int>& bounds, int orientation, unsigned id);
  void Destroy();
  // The width of a vertical bar.
  static int GetDefaultSize();

  // max is the length of the content; a person moves the position from min to max - page, and never under min.
  void SetScrollParameters(int min, int max, int page, int step);
  void GetScrollParameters(int& min, int& max, int& page, int& step) const;
  // Kept and reported as it is given, also outside of what a person can reach; the bar then stands at its end. With
  // notify a position that is another one is reported by ScrollVerticalMessage.
  void SetScrollBarPosition(int position, bool notify);
  int GetScrollBarPosition() const;
  int GetStep() const;
  zebcore::utility::ImmutableString GetStationID() const;
  void SetBounds(const RectT<int>& bounds);
  RectT<int> GetBounds() const;
  void Show(bool show);
  bool IsShown() const;
  // What assistive technology calls it.
  UString GetAccessibleName() const;

 private:
  struct Impl;
  Commander* mSuper;
  std::unique_ptr<Impl> mImpl;
};

} // namespace UIF
