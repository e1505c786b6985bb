#pragma once

#include <functional>

#include "zebcore/Messaging.h"

namespace App {

// Tells when the project in hand was locked or unlocked, by whatever road.
class ReadOnlyWatch : private zebcore::messaging::Listener {
 public:
  explicit ReadOnlyWatch(std::function<void()> whenChanged);

 private:
  void HandleMessage(const zebcore::messaging::Message& message) override;

  std::function<void()> mWhenChanged;
};

} // namespace App
