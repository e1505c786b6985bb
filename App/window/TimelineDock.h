#pragma once

#include <QDockWidget>

#include <functional>
#include <vector>

#include "App/window/TimelineView.h"
#include "zebcore/Messaging.h"

class QComboBox;
class QLabel;
class QTimer;
class QToolButton;

namespace App {

// The dock with the sequence that is worked on. It follows the project by itself.
class TimelineDock : public QDockWidget, private zebcore::messaging::Listener {
 public:
  using Sequence = BE::InterfaceRef<BE::Sequence>;

  explicit TimelineDock(QWidget* parent);
  ~TimelineDock() override;

  // The sequence that was shown when the project was last open, else its first.
  void SetProject(const BE::InterfaceRef<BE::Project>& project);
  void ShowSequence(const Sequence& sequence);
  Sequence GetSequence() const { return mView->GetModel().GetSequence(); }
  TimelineView& GetView() { return *mView; }
  // Soon, once for any number of calls; and at once.
  void Refresh();
  void RefreshNow();
  // The display chosen for sequences is another.
  void UpdateTimeDisplay();

  // Called when a person chose a sequence to be shown, asked for a new one, or for the settings of the one shown.
  std::function<void(const Sequence&)> whenSequenceChosen;
  std::function<void()> whenNewAsked;
  std::function<void()> whenSettingsAsked;

 private:
  void HandleMessage(const zebcore::messaging::Message& message) override;
  QToolButton* AddButton(QWidget* bar, const QString& symbol, const QString& tip, std::function<void()> act);
  QWidget* MakeBar();
  void FillSequences();
  void Follow(const Sequence& sequence);
  void UpdateTime();

  BE::InterfaceRef<BE::Project> mProject;
  std::vector<zebcore::utility::ImmutableString> mStations;
  QComboBox* mSequences;
  QLabel* mTime;
  TimelineView* mView;
  QTimer* mRefreshSoon;
  std::vector<QToolButton*> mButtons; // those that need a sequence
};

} // namespace App
