#include "zebui/EventLoop.h"

#include <limits>

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include "zebcore/Clock.h"
#include "zebcore/Messaging.h"
#include "zebui/NodeManager.h"

namespace zebui {

namespace {

QPointer<QTimer> sTimer;

void ArmForNextDue() {
  if (!sTimer)
    return;
  const auto until = ui::UI_NodeManager::Get()->GetTimeUntilNextDue();
  if (!until || zebcore::Clock::Instance().IsManual()) {
    sTimer->stop();
    return;
  }
  sTimer->start(static_cast<int>(std::min<std::int64_t>(*until, std::numeric_limits<int>::max())));
}

} // namespace

void InstallEventLoop() {
  QCoreApplication* const application = QCoreApplication::instance();
  if (!application || sTimer)
    return;
  sTimer = new QTimer(application);
  sTimer->setSingleShot(true);
  sTimer->setTimerType(Qt::PreciseTimer);
  QObject::connect(sTimer, &QTimer::timeout, application, [] {
    ui::UI_NodeManager::Get()->FireDueTimers();
    ArmForNextDue();
  });
  ui::UI_NodeManager::Get()->SetTimerNotifier(&ArmForNextDue);

  zebcore::messaging::SetPostNotifier([application] {
    QMetaObject::invokeMethod(
        application, [] { zebcore::messaging::DeliverPostedMessages(); }, Qt::QueuedConnection);
  });
  // What was posted before there was anyone to be told.
  QMetaObject::invokeMethod(
      application, [] { zebcore::messaging::DeliverPostedMessages(); }, Qt::QueuedConnection);
}

void UninstallEventLoop() {
  zebcore::messaging::SetPostNotifier(nullptr);
  ui::UI_NodeManager::Get()->SetTimerNotifier({});
  delete sTimer;
}

} // namespace zebui
