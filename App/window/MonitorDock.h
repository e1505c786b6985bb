#pragma once

#include <QDockWidget>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "App/window/MonitorView.h"
#include "zebcore/Messaging.h"

class QLabel;
class QTimer;
class QToolButton;

namespace App {

// The dock with the picture of the selected caption. It hears of selections and of what changes in the stream by
// itself.
class MonitorDock : public QDockWidget, private zebcore::messaging::Listener {
 public:
  using Stream = monitor::Stream;
  using CaptionPtr = boost::intrusive_ptr<zebcaptioning::Caption>;

  explicit MonitorDock(QWidget* parent);
  ~MonitorDock() override;

  // The stream that the panel shows. Until a caption of it is selected, the one that was when it was last on show; at
  // first its first one, which is where a panel begins.
  void SetStreamOnShow(const Stream& stream);
  // Null without a selected caption.
  CaptionPtr GetCaption() const { return mCaption; }
  MonitorView& GetView() { return *mView; }
  // At once what is done soon after each change.
  void RefreshNow();

 private:
  void HandleMessage(const zebcore::messaging::Message& message) override;
  QToolButton* AddToggle(QWidget* bar, const QString& symbol, const QString& tip, bool isOn,
                         std::function<void(bool)> toggle);
  QWidget* MakeBar();
  void Follow(const Stream& stream);
  // One that was removed and comes back is the selected one again.
  CaptionPtr FindSelected() const;
  bool IsStreamThere() const;
  void Describe();

  Stream mStream;
  CaptionPtr mCaption;
  std::optional<zebmediatypes::TickTime> mBegin;          // of the selected caption
  std::map<std::string, zebmediatypes::TickTime> mBegins; // by stream
  std::vector<zebcore::utility::ImmutableString> mStations;
  QLabel* mFormat;
  QLabel* mWarning;
  MonitorView* mView;
  QTimer* mRefreshSoon;
};

} // namespace App
