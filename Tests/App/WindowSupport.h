#pragma once

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTreeWidget>
#include <QUrl>

#include <memory>
#include <string>
#include <vector>

#include "App/window/Labels.h"
#include "App/window/MainWindow.h"
#include "App/window/ProblemsWindow.h"
#include "HSL/Module.h"
#include "Support.h"
#include "UIF/Dialogs.h"
#include "UIF/TabView.h"
#include "UIF/Workspace.h"

namespace AppTest {

// One for all tests of the program; the toolkit allows no second.
inline void NeedApplication() {
  static int count = 1;
  static char name[] = "test";
  static char* arguments[] = {name, nullptr};
  static auto* const application = new QApplication(count, arguments);
  (void)application;
}

// The main window over the session of the test, without the panel's module.
class Window : public SessionTest {
 protected:
  Window() {
    NeedApplication();
    UIF::SetMessageBoxHook([this](const UIF::MessageBoxRecord& box) {
      said.push_back(zebcore::ToUTF8(box.text));
      return box.defaultResult;
    });
    App::SetProblemsPrinted(true);
    window = std::make_unique<App::MainWindow>([] {});
    window->ShowProject();
    window->show();
    QApplication::processEvents();
  }
  ~Window() override {
    window.reset();
    UIF::SetMessageBoxHook(nullptr);
  }

  QTreeWidget* Tree() { return window->findChild<QTreeWidget*>(); }
  std::string Title() { return window->windowTitle().toStdString(); }
  // As a person would drop them, on that widget.
  bool Drop(QWidget* target, const std::vector<fs::path>& files) {
    QMimeData dropped;
    QList<QUrl> urls;
    for (const fs::path& file : files)
      urls.push_back(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    dropped.setUrls(urls);
    QDragEnterEvent entered(QPoint(2, 2), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &entered);
    QDropEvent event(QPointF(2, 2), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
    QApplication::processEvents();
    return entered.isAccepted() && event.isAccepted();
  }

  std::unique_ptr<App::MainWindow> window;
  std::vector<std::string> said;
};

// The same with the panel, loaded as the program loads it.
class WindowWithPanel : public Window {
 protected:
  WindowWithPanel() {
    EXPECT_GE(HSL::ModuleLoader::LoadAll(fs::path(CAPTIVO_BINARY_DIR) / "modules"), 1);
    module = HSL::Module::CreateModule(HSL::kCaptionsModuleID, u"captions");
    EXPECT_TRUE(session().ImportCaptions(clip, folder.Write("good.srt", kTwoCaptions), cc1));
    MakeWindow();
  }
  ~WindowWithPanel() override { window.reset(); }
  void MakeWindow() {
    window.reset();
    window = std::make_unique<App::MainWindow>([] {});
    window->resize(1200, 900);
    window->RestoreLayout(false);
    window->ShowProject();
    window->show();
    QApplication::processEvents();
  }
  UIF::TabView* Panel() {
    return UIF::Workspace::Instance() ? UIF::Workspace::Instance()->FindTabView(HSL::kCaptionsHandlerID) : nullptr;
  }

  std::unique_ptr<HSL::Module> module;
};

} // namespace AppTest
