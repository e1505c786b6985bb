#pragma once

#include <QWidget>

#include <set>
#include <string>

#include "zebcore/Messaging.h"

class QLabel;
class QStatusBar;

namespace App {

// One line in the status bar, however many pictures of however many clips cannot be decoded. It stays as long as the
// project is open. Files that are not there at all are left to the bin, which marks their clips.
class DecodeNotice : public QWidget, private zebcore::messaging::Listener {
 public:
  // Belongs to the bar.
  explicit DecodeNotice(QStatusBar* bar);
  ~DecodeNotice() override;

 private:
  void HandleMessage(const zebcore::messaging::Message& message) override;
  void Update();

  std::set<std::string> mDamagedFiles;
  QLabel* mText;
};

} // namespace App
