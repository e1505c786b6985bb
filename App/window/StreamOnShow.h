#pragma once

#include <functional>
#include <vector>

#include "BE/Project.h"
#include "zebcore/Messaging.h"

class QTimer;

namespace HSL {
struct SourceClipSelectedMessage;
}

namespace App {

// Which stream of the selected clip the panel shows. The panel says nothing about it, so this hears what the panel
// hears and goes by the same rules. Where these leave the panel behind the streams of its clip (the first stream of a
// clip that had none, the stream on show gone or in another format), the selection is said again.
class StreamOnShow : private zebcore::messaging::Listener {
 public:
  using Clip = BE::InterfaceRef<BE::MasterClip>;
  using Stream = BE::InterfaceRef<BE::CaptioningStream>;

  // isPanelShown: a panel that is not on show lets a chosen stream pass by.
  explicit StreamOnShow(std::function<bool()> isPanelShown);
  ~StreamOnShow() override;

  // Null without a selected clip or a stream in it.
  Stream Get() const { return mStream; }
  // The history went on or back, which may have changed what the selected clip holds. Looks once the change is done.
  void LookSoon();

  std::function<void()> whenChanged;
  // Before the selection is said again, which a panel puts off while someone types into the stream that has gone.
  std::function<void()> whenSayingAgain;

 private:
  void HandleMessage(const zebcore::messaging::Message& message) override;
  void OnClipSelected(const Clip& clip);
  void OnSourceSelected(const HSL::SourceClipSelectedMessage& source);
  void OnFormatChosen(zebcaptioning::StreamFormat format);
  void Look();
  void SayAgain(const Stream& wanted);
  void Show(const Stream& stream);
  void FollowStreams();
  bool Holds(const Stream& stream) const;

  std::function<bool()> mIsPanelShown;
  Clip mClip;
  Stream mStream;
  Stream mGone; // was on show when it went; it is shown again when it comes back
  std::vector<Stream> mFollowed;
  bool mFormatChanged = false;
  bool mSelectedAgain = false;
  bool mSaying = false;
  QTimer* mLookSoon;
};

} // namespace App
