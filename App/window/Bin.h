#pragma once

#include <QWidget>

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "BE/Project.h"
#include "zebcore/Messaging.h"

class QLabel;
class QMenu;
class QStackedWidget;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

namespace App {

// The clips of the project with their caption streams, and its sequences. It follows the project by itself. A clip can
// be dragged from it.
class Bin : public QWidget, private zebcore::messaging::Listener {
 public:
  using Clip = BE::InterfaceRef<BE::MasterClip>;
  using Stream = BE::InterfaceRef<BE::CaptioningStream>;
  using Sequence = BE::InterfaceRef<BE::Sequence>;

  explicit Bin(QWidget* parent = nullptr);
  ~Bin() override;

  void SetProject(const BE::InterfaceRef<BE::Project>& project);
  // Soon, once for any number of calls.
  void Refresh();
  void RefreshNow();

  // The clip of the current item, or of its stream's clip; null for none.
  Clip GetCurrentClip() const;
  // Null when no stream is the current item.
  Stream GetCurrentStream() const;
  // Null when no sequence is the current item.
  Sequence GetCurrentSequence() const;
  // Reports nothing.
  void SetCurrentSequence(const Sequence& sequence);
  void SetCurrentClip(const Clip& clip);
  void SetCurrentStream(const Stream& stream);
  // The stream that the panel shows stands out; null for none.
  void SetStreamOnShow(const Stream& stream);

  // Called when a person made an item the current one, and when one opened it by double click or Enter.
  std::function<void(const Clip&, const Stream&)> whenSelected;
  std::function<void(const Clip&, const Stream&)> whenOpened;
  std::function<void(const Sequence&)> whenSequenceSelected;
  std::function<void(const Sequence&)> whenSequenceOpened;
  // A person selected nothing in particular: the bin itself.
  std::function<void()> whenBinSelected;
  // Fills the context menu for the current item.
  std::function<void(QMenu&)> fillMenu;
  std::function<void()> whenImportAsked;

 private:
  void HandleMessage(const zebcore::messaging::Message& message) override;
  QWidget* MakeEmptyPage();
  void Follow();
  void StopFollowing();
  void FillClip(QTreeWidgetItem& item, const Clip& clip);
  void FillStream(QTreeWidgetItem& item, const Stream& stream);
  void FillSequence(QTreeWidgetItem& item, const Sequence& sequence);
  void ReportSelected();
  void ReportOpened();
  QTreeWidgetItem* FindItem(const std::string& id) const;
  void MarkStreams();
  void MakeCurrent(const std::string& id);
  void ShowMenu(const QPoint& point);

  BE::InterfaceRef<BE::Project> mProject;
  std::vector<zebcore::utility::ImmutableString> mStations;
  std::string mOnShowID;
  QStackedWidget* mPages;
  QTreeWidget* mTree;
  QTimer* mRefreshSoon;
  bool mFilling = false;
  bool mIsReported = false; // the click that made an item the current one is still to end
};

} // namespace App
