#include "App/window/ProblemsWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <cstdio>

#include "App/window/Labels.h"
#include "zebui/NodeManager.h"

namespace App {

namespace {

constexpr int kWidth = 620;
constexpr int kHeight = 380;

bool sPrinted = false;

QString LineText(const Formats::Problem& problem) {
  return problem.line > 0 ? QString::number(problem.line) : QStringLiteral("–");
}

QTableWidget* MakeTable(const std::vector<Formats::Problem>& problems) {
  auto* table = new QTableWidget(static_cast<int>(problems.size()), 2);
  table->setHorizontalHeaderLabels(
      {Label("$$$/Vidra/Captivo/Problems/Line=Line"), Label("$$$/Vidra/Captivo/Problems/Reason=Reason")});
  table->horizontalHeaderItem(1)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table->horizontalHeader()->setStretchLastSection(true);
  table->verticalHeader()->hide();
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setShowGrid(false);
  table->setAlternatingRowColors(true);
  for (int row = 0; row < table->rowCount(); ++row) {
    const Formats::Problem& problem = problems[static_cast<std::size_t>(row)];
    auto* line = new QTableWidgetItem(LineText(problem));
    line->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* reason = new QTableWidgetItem(QString::fromStdString(problem.reason));
    reason->setToolTip(reason->text());
    table->setItem(row, 0, line);
    table->setItem(row, 1, reason);
  }
  return table;
}

} // namespace

void SetProblemsPrinted(bool printed) {
  sPrinted = printed;
}

QString ProblemsAsText(const std::vector<Formats::Problem>& problems) {
  QString text;
  for (const Formats::Problem& problem : problems)
    text += LineText(problem) + u'\t' + QString::fromStdString(problem.reason) + u'\n';
  return text;
}

void ShowProblems(QWidget* parent, const QString& title, const QString& summary,
                  const std::vector<Formats::Problem>& problems) {
  if (sPrinted) {
    std::fprintf(stderr, "%s\n%s", qPrintable(summary), qPrintable(ProblemsAsText(problems)));
    return;
  }
  QDialog dialog(parent);
  dialog.setWindowTitle(title);
  dialog.resize(kWidth, kHeight);
  auto* layout = new QVBoxLayout(&dialog);
  auto* label = new QLabel(summary);
  label->setWordWrap(true);
  layout->addWidget(label);
  layout->addWidget(MakeTable(problems));
  auto* buttons = new QDialogButtonBox;
  QPushButton* close = buttons->addButton(Label("$$$/Vidra/Captivo/Button/Close=Close"), QDialogButtonBox::AcceptRole);
  QPushButton* copy =
      buttons->addButton(Label("$$$/Vidra/Captivo/Problems/Copy=Copy List"), QDialogButtonBox::ActionRole);
  close->setDefault(true);
  close->setFocus();
  layout->addWidget(buttons);
  QObject::connect(close, &QPushButton::clicked, &dialog, &QDialog::accept);
  QObject::connect(copy, &QPushButton::clicked,
                   [&problems] { QApplication::clipboard()->setText(ProblemsAsText(problems)); });
  zebui::ui::UI_NodeManager::Get(true)->PushModalWindow();
  dialog.exec();
  zebui::ui::UI_NodeManager::Get(true)->PopModalWindow();
}

} // namespace App
