#include <QAction>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QWheelEvent>

#include <algorithm>

#include "App/window/DockFrame.h"
#include "App/window/Settings.h"
#include "WindowSupport.h"

// Docks, tabs, windows of their own, columns: where the panel may stand, and that it stands there again.
namespace AppTest {

namespace {

constexpr int kRow = 75;
// What a closed format's panel has above and below its rows.
constexpr int kAroundRows = 52 + 51;

class WorkspaceOfProgram : public WindowWithPanel {
 protected:
  WorkspaceOfProgram() {
    App::settings::SetWindow({}, {});
    App::settings::SetPanelsStacked(false);
    Settle();
  }
  ~WorkspaceOfProgram() override {
    App::settings::SetWindow({}, {});
    App::settings::SetPanelsStacked(false);
  }

  static void Settle() {
    for (int i = 0; i < 8; ++i)
      QApplication::processEvents();
  }
  App::DockFrame* Dock() { return dynamic_cast<App::DockFrame*>(FindDock(App::ToQString(HSL::kCaptionsHandlerID))); }
  QDockWidget* FindDock(const QString& name) { return window->findChild<QDockWidget*>(name); }
  QScrollArea& Column() { return *Dock()->findChild<QScrollArea*>(QStringLiteral("column")); }
  QWidget& PanelWidget() { return *Column().widget()->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly); }
  QScrollBar* PanelBar() {
    for (QScrollBar* bar : PanelWidget().findChildren<QScrollBar*>(QString(), Qt::FindDirectChildrenOnly))
      if (bar->orientation() == Qt::Vertical)
        return bar;
    return nullptr;
  }
  // In a menu that is filled when it opens.
  QAction* WindowEntry(const QString& text) {
    for (QAction* menu : window->menuBar()->actions()) {
      if (menu->text().remove(u'&') != "Window")
        continue;
      Q_EMIT menu->menu()->aboutToShow();
      for (QAction* action : menu->menu()->actions())
        if (action->text().remove(u'&') == text)
          return action;
    }
    return nullptr;
  }
  void Choose(const QString& text) {
    QAction* entry = WindowEntry(text);
    ASSERT_TRUE(entry) << text.toStdString();
    entry->trigger();
    Settle();
  }
  // As when the program ends and is started again.
  void Restart() {
    window->close();
    window.reset();
    window = std::make_unique<App::MainWindow>([] {});
    window->resize(1200, 900);
    window->RestoreLayout(true);
    window->ShowProject();
    window->show();
    Settle();
  }
  void ImportMany(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
      char line[80];
      std::snprintf(line, sizeof line, "%d\n00:%02d:%02d,000 --> 00:%02d:%02d,500\nLine %d\n\n", i + 1, i / 60, i % 60,
                    i / 60, i % 60, i);
      text += line;
    }
    const auto report =
        session().ImportCaptions(clip, folder.Write("many.srt", text), App::GetStreamFormat("cea608", 2));
    ASSERT_TRUE(report) << report.problem.text;
    session().SelectStream(report.value->stream);
    Settle();
  }
};

} // namespace

TEST_F(WorkspaceOfProgram, AWindowThatGrowsGivesThePanelWhatItGains) {
  window->resize(1240, 800);
  Settle();
  const QSize bin = FindDock(QStringLiteral("bin"))->size();
  const QSize panel = Dock()->size();
  const QSize gained(300, 150);
  window->resize(window->size() + gained);
  Settle();
  EXPECT_EQ(FindDock(QStringLiteral("bin"))->width(), bin.width());
  EXPECT_EQ(Dock()->size(), panel + gained);
}

TEST_F(WorkspaceOfProgram, ThePanelStandsInTabsWithAnotherDockAndComesToTheFront) {
  QDockWidget* bin = FindDock(QStringLiteral("bin"));
  window->tabifyDockWidget(Dock(), bin);
  bin->raise();
  Settle();
  ASSERT_EQ(window->tabifiedDockWidgets(bin), QList<QDockWidget*>{Dock()});
  EXPECT_FALSE(Panel()->IsFrontMost());
  Panel()->BringToFront(true, false);
  Settle();
  EXPECT_TRUE(Panel()->IsFrontMost());
  EXPECT_EQ(PanelWidget().size(), Column().viewport()->size());
}

TEST_F(WorkspaceOfProgram, AFloatingPanelFillsItsOwnWindowAndUndoWorksInIt) {
  Dock()->setFloating(true);
  Dock()->resize(700, 400);
  Settle();
  ASSERT_TRUE(Dock()->isWindow());
  EXPECT_TRUE(Panel()->IsShown());
  EXPECT_EQ(PanelWidget().size(), Column().viewport()->size());
  QTextEdit* field = Dock()->findChild<QTextEdit*>();
  ASSERT_TRUE(field);
  QKeyEvent undo(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
  undo.accept();
  QApplication::sendEvent(field, &undo);
  EXPECT_FALSE(undo.isAccepted()) << "a text field of the window took undo for itself";
}

TEST_F(WorkspaceOfProgram, AFileDroppedOnAFloatingPanelComesIn) {
  Dock()->setFloating(true);
  Settle();
  ASSERT_TRUE(Drop(&PanelWidget(), {folder.Write("dropped.srt", kTwoCaptions)}));
  Settle();
  EXPECT_EQ(clip->GetStreams().size(), 2u);
}

TEST_F(WorkspaceOfProgram, AClosedPanelStaysClosedInTheNextRunAndOpensFromTheMenu) {
  Dock()->close();
  Restart();
  ASSERT_TRUE(Panel());
  EXPECT_FALSE(Panel()->IsShown());
  Choose("Captions");
  EXPECT_TRUE(Panel()->IsShown());
  EXPECT_TRUE(Dock()->isVisible());
}

TEST_F(WorkspaceOfProgram, APanelFloatsAgainInTheNextRunWhereItWas) {
  Dock()->setFloating(true);
  Dock()->setGeometry(50, 60, 640, 420);
  Settle();
  Restart();
  EXPECT_TRUE(Dock()->isFloating());
  EXPECT_EQ(Dock()->size(), QSize(640, 420));
}

TEST_F(WorkspaceOfProgram, TabsAndSizesAreThereAgainInTheNextRun) {
  window->tabifyDockWidget(FindDock(QStringLiteral("bin")), FindDock(QStringLiteral("timeline")));
  window->resize(1000, 700);
  Settle();
  Restart();
  EXPECT_EQ(window->tabifiedDockWidgets(FindDock(QStringLiteral("bin"))),
            QList<QDockWidget*>{FindDock(QStringLiteral("timeline"))});
  EXPECT_EQ(window->size(), QSize(1000, 700));
}

TEST_F(WorkspaceOfProgram, ResetPutsEveryDockBack) {
  QMap<QString, Qt::DockWidgetArea> areas;
  for (QDockWidget* dock : window->findChildren<QDockWidget*>())
    areas[dock->objectName()] = window->dockWidgetArea(dock);
  Dock()->setFloating(true);
  FindDock(QStringLiteral("bin"))->close();
  window->addDockWidget(Qt::RightDockWidgetArea, FindDock(QStringLiteral("timeline")));
  App::settings::SetPanelsStacked(true);
  Dock()->SetStacked(true);
  Settle();
  Choose("Reset Workspace");
  EXPECT_FALSE(Dock()->isFloating());
  EXPECT_FALSE(Dock()->IsStacked());
  EXPECT_TRUE(FindDock(QStringLiteral("bin"))->isVisible());
  for (QDockWidget* dock : window->findChildren<QDockWidget*>())
    EXPECT_EQ(window->dockWidgetArea(dock), areas[dock->objectName()]) << dock->objectName().toStdString();
}

TEST_F(WorkspaceOfProgram, ResetOpensAPanelThatWasClosed) {
  Dock()->close();
  Choose("Reset Workspace");
  EXPECT_TRUE(Panel()->IsShown());
  EXPECT_TRUE(Dock()->isVisible());
}

// --- Columns

TEST_F(WorkspaceOfProgram, AStackedPanelTakesItsMinimumHeightAndTheColumnScrolls) {
  ImportMany(30);
  ASSERT_TRUE(PanelBar());
  EXPECT_TRUE(PanelBar()->isVisible());
  Choose("Captions in a Column");
  EXPECT_TRUE(Panel()->GetIsStacked());
  EXPECT_EQ(Panel()->GetStackedDimensionHeightMin(), 30 * kRow + kAroundRows);
  EXPECT_EQ(PanelWidget().height(), 30 * kRow + kAroundRows);
  EXPECT_FALSE(PanelBar()->isVisible());
  EXPECT_TRUE(Column().verticalScrollBar()->isVisible());
  EXPECT_EQ(Column().verticalScrollBar()->maximum(), PanelWidget().height() - Column().viewport()->height());
  Choose("Captions in a Column");
  EXPECT_FALSE(Panel()->GetIsStacked());
  EXPECT_EQ(PanelWidget().height(), Column().viewport()->height());
  EXPECT_TRUE(PanelBar()->isVisible());
  EXPECT_FALSE(Column().verticalScrollBar()->isVisible());
}

TEST_F(WorkspaceOfProgram, AStackedPanelGrowsAndShrinksWithItsRows) {
  ImportMany(20);
  Choose("Captions in a Column");
  const int before = PanelWidget().height();
  ASSERT_EQ(before, 20 * kRow + kAroundRows);
  session().SelectStream(clip->GetStreams().at(0));
  Settle();
  EXPECT_EQ(PanelWidget().height(), std::max(2 * kRow + kAroundRows, Column().viewport()->height()));
  session().SelectStream(clip->GetStreams().at(1));
  Settle();
  EXPECT_EQ(PanelWidget().height(), before);
}

TEST_F(WorkspaceOfProgram, TheWheelOverAStackedPanelScrollsTheColumn) {
  ImportMany(30);
  Choose("Captions in a Column");
  QTextEdit* row = PanelWidget().findChild<QTextEdit*>();
  ASSERT_TRUE(row);
  const QPoint place = row->mapTo(&PanelWidget(), QPoint());
  QWheelEvent wheel(QPointF(5, 80), PanelWidget().mapToGlobal(QPointF(5, 80)), QPoint(), QPoint(0, -120), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&PanelWidget(), &wheel);
  EXPECT_FALSE(wheel.isAccepted());
  QWheelEvent passed(QPointF(5, 80), Column().viewport()->mapToGlobal(QPointF(5, 80)), QPoint(), QPoint(0, -120),
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(Column().viewport(), &passed);
  EXPECT_GT(Column().verticalScrollBar()->value(), 0);
  EXPECT_EQ(row->mapTo(&PanelWidget(), QPoint()), place) << "the rows moved inside the panel";
}

TEST_F(WorkspaceOfProgram, TheColumnFollowsTheKeyboard) {
  ImportMany(30);
  Choose("Captions in a Column");
  std::vector<QTextEdit*> rows;
  for (QTextEdit* row : PanelWidget().findChildren<QTextEdit*>())
    if (row->isVisible() && row->height() > 40)
      rows.push_back(row);
  ASSERT_EQ(rows.size(), 30u);
  std::ranges::sort(rows, {}, [this](QTextEdit* row) { return row->mapTo(&PanelWidget(), QPoint()).y(); });
  rows.back()->setFocus();
  Settle();
  const int top = rows.back()->mapTo(Column().viewport(), QPoint()).y();
  EXPECT_GE(top, 0);
  EXPECT_LE(top + rows.back()->height(), Column().viewport()->height());
}

TEST_F(WorkspaceOfProgram, APanelTooTallForAColumnKeepsItsOwnScrollBar) {
  ImportMany(500);
  Choose("Captions in a Column");
  EXPECT_FALSE(Panel()->GetIsStacked());
  EXPECT_TRUE(PanelBar()->isVisible());
  EXPECT_EQ(PanelWidget().height(), Column().viewport()->height());
  // It stands in its column as soon as it fits.
  session().SelectStream(clip->GetStreams().at(0));
  Settle();
  EXPECT_TRUE(Panel()->GetIsStacked());
  EXPECT_FALSE(PanelBar()->isVisible());
}

TEST_F(WorkspaceOfProgram, ColumnsAreThereAgainInTheNextRun) {
  ImportMany(30);
  Choose("Captions in a Column");
  Restart();
  ASSERT_TRUE(Panel());
  EXPECT_TRUE(Panel()->GetIsStacked());
  EXPECT_TRUE(WindowEntry("Captions in a Column")->isChecked());
}

} // namespace AppTest
