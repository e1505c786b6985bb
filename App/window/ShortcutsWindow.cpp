#include "App/window/ShortcutsWindow.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <functional>

#include "App/window/Labels.h"
#include "UIF/ModalScope.h"

namespace App {

namespace {

constexpr QSize kSize{620, 560};
constexpr int kWidthOfCommands = 340;

QString Native(const UIF::Keys& keys) {
  return QKeySequence::fromString(QString::fromStdString(keys), QKeySequence::PortableText)
      .toString(QKeySequence::NativeText);
}

UIF::ShortcutManager& Manager() {
  return *UIF::ShortcutManager::Instance();
}

QString NameOf(const std::string& command) {
  return ToQString(Manager().GetCommandText(command));
}

} // namespace

// A field that shows the keys that are pressed in it. Tab goes on to the next control and Escape closes the window, as
// everywhere: neither can be a shortcut.
class KeyRecorder : public QLineEdit {
 public:
  explicit KeyRecorder(QWidget* parent) : QLineEdit(parent) {
    setReadOnly(true);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAttribute(Qt::WA_InputMethodEnabled, false);
  }

  std::function<void()> whenRecorded;
  const UIF::Keys& GetKeys() const { return mKeys; }
  void SetKeys(const UIF::Keys& keys) {
    mKeys = keys;
    setText(Native(keys));
  }

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride) {
      event->accept();
      return true;
    }
    if (event->type() == QEvent::KeyPress && Record(*static_cast<QKeyEvent*>(event)))
      return true;
    return QLineEdit::event(event);
  }

 private:
  bool Record(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
      return false;
    case Qt::Key_Control:
    case Qt::Key_Shift:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_unknown:
      return true;
    default:
      break;
    }
    const auto modifiers = event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    const QKeySequence sequence(QKeyCombination(modifiers, static_cast<Qt::Key>(event.key())));
    SetKeys(sequence.toString(QKeySequence::PortableText).toStdString());
    if (whenRecorded)
      whenRecorded();
    return true;
  }

  UIF::Keys mKeys;
};

ShortcutsWindow::ShortcutsWindow(QWidget* parent) : QDialog(parent) {
  setWindowTitle(Label("$$$/Vidra/Captivo/Shortcuts/Title=Keyboard Shortcuts"));
  resize(kSize);
  auto* layout = new QVBoxLayout(this);

  mSearch = new QLineEdit(this);
  mSearch->setObjectName(QStringLiteral("search"));
  mSearch->setClearButtonEnabled(true);
  mSearch->setPlaceholderText(Label("$$$/Vidra/Captivo/Shortcuts/Search=Search by command or key"));
  mSearch->setAccessibleName(mSearch->placeholderText());
  layout->addWidget(mSearch);

  mTree = new QTreeWidget(this);
  mTree->setHeaderLabels(
      {Label("$$$/Vidra/Captivo/Shortcuts/Command=Command"), Label("$$$/Vidra/Captivo/Shortcuts/Keys=Keys")});
  mTree->header()->resizeSection(0, kWidthOfCommands);
  mTree->setAccessibleName(windowTitle());
  layout->addWidget(mTree, 1);

  auto* line = new QHBoxLayout;
  auto* label = new QLabel(Label("$$$/Vidra/Captivo/Shortcuts/NewKeys=&New keys:"), this);
  mRecorder = new KeyRecorder(this);
  mRecorder->setObjectName(QStringLiteral("recorder"));
  mRecorder->setPlaceholderText(Label("$$$/Vidra/Captivo/Shortcuts/PressKeys=Click here and press the keys"));
  label->setBuddy(mRecorder);
  mAssign = new QPushButton(Label("$$$/Vidra/Captivo/Shortcuts/Assign=&Assign"), this);
  mAssign->setObjectName(QStringLiteral("assign"));
  mRemove = new QPushButton(Label("$$$/Vidra/Captivo/Shortcuts/Remove=Re&move"), this);
  mRemove->setObjectName(QStringLiteral("remove"));
  mReset = new QPushButton(Label("$$$/Vidra/Captivo/Shortcuts/Reset=&Reset"), this);
  mReset->setObjectName(QStringLiteral("reset"));
  line->addWidget(label);
  line->addWidget(mRecorder, 1);
  for (QPushButton* button : {mAssign, mRemove, mReset}) {
    button->setAutoDefault(false);
    line->addWidget(button);
  }
  layout->addLayout(line);

  mWarning = new QLabel(this);
  mWarning->setObjectName(QStringLiteral("warning"));
  mWarning->setWordWrap(true);
  mWarning->setMinimumHeight(2 * mWarning->fontMetrics().height());
  layout->addWidget(mWarning);

  auto* buttons = new QDialogButtonBox(this);
  QPushButton* all =
      buttons->addButton(Label("$$$/Vidra/Captivo/Shortcuts/ResetAll=Reset A&ll"), QDialogButtonBox::ResetRole);
  all->setObjectName(QStringLiteral("resetAll"));
  all->setAutoDefault(false);
  buttons->addButton(Label("$$$/Vidra/Captivo/Button/OK=OK"), QDialogButtonBox::AcceptRole);
  buttons->addButton(Label("$$$/Vidra/Captivo/Button/Cancel=Cancel"), QDialogButtonBox::RejectRole);
  layout->addWidget(buttons);

  connect(mSearch, &QLineEdit::textChanged, this, [this](const QString& text) { Filter(text); });
  connect(mTree, &QTreeWidget::currentItemChanged, this, [this] { ShowCurrent(); });
  mRecorder->whenRecorded = [this] { ShowClashes(); };
  connect(mAssign, &QPushButton::clicked, this, [this] { Assign(); });
  connect(mRemove, &QPushButton::clicked, this, [this] {
    if (const Row* row = GetCurrent()) {
      Manager().SetKeys(row->command, {});
      UpdateRows();
      ShowCurrent();
    }
  });
  connect(mReset, &QPushButton::clicked, this, [this] {
    const Row* row = GetCurrent();
    if (!row)
      return;
    const UIF::KeysList keys = Manager().GetDefaultKeys(row->command);
    mRecorder->SetKeys(keys.empty() ? UIF::Keys() : keys.front());
    Manager().ResetKeys(row->command);
    UpdateRows();
    ShowClashes();
  });
  connect(all, &QPushButton::clicked, this, [this] {
    Manager().ResetAllKeys();
    UpdateRows();
    ShowCurrent();
  });
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  FillTree();
  ShowCurrent();
}

bool ShortcutsWindow::Run() {
  const UIF::ModalScope modal;
  return exec() == QDialog::Accepted;
}

void ShortcutsWindow::FillTree() {
  for (const auto& context : Manager().GetContexts()) {
    if (context->GetCommands().empty())
      continue;
    auto* top = new QTreeWidgetItem(mTree, {ToQString(context->GetName())});
    top->setFlags(Qt::ItemIsEnabled);
    QFont font = top->font(0);
    font.setBold(true);
    top->setFont(0, font);
    for (const UIF::CommandDeclaration& command : context->GetCommands())
      mRows.push_back({context->GetID(), command.name, new QTreeWidgetItem(top, {NameOf(command.name)})});
  }
  mTree->expandAll();
  UpdateRows();
  if (!mRows.empty())
    mTree->setCurrentItem(mRows.front().item);
}

QString ShortcutsWindow::Describe(const UIF::KeysList& keys) const {
  QStringList texts;
  for (const UIF::Keys& one : keys)
    texts.append(Native(one));
  return texts.join(QStringLiteral(", "));
}

// What the user has changed stands out.
void ShortcutsWindow::UpdateRows() {
  for (const Row& row : mRows) {
    row.item->setText(1, Describe(Manager().GetKeys(row.command)));
    QFont font = row.item->font(1);
    font.setBold(!Manager().AreKeysDefault(row.command));
    row.item->setFont(1, font);
  }
}

void ShortcutsWindow::Filter(const QString& text) {
  for (const Row& row : mRows) {
    const bool fits =
        row.item->text(0).contains(text, Qt::CaseInsensitive) || row.item->text(1).contains(text, Qt::CaseInsensitive);
    row.item->setHidden(!fits);
  }
  for (int i = 0; i < mTree->topLevelItemCount(); ++i) {
    QTreeWidgetItem* top = mTree->topLevelItem(i);
    bool any = false;
    for (int child = 0; child < top->childCount(); ++child)
      any = any || !top->child(child)->isHidden();
    top->setHidden(!any);
  }
  const QTreeWidgetItem* current = mTree->currentItem();
  if (current && !current->isHidden())
    return;
  for (const Row& row : mRows) {
    if (!row.item->isHidden()) {
      mTree->setCurrentItem(row.item);
      return;
    }
  }
}

const ShortcutsWindow::Row* ShortcutsWindow::GetCurrent() const {
  const QTreeWidgetItem* current = mTree->currentItem();
  for (const Row& row : mRows) {
    if (row.item == current && !row.item->isHidden())
      return &row;
  }
  return nullptr;
}

void ShortcutsWindow::ShowCurrent() {
  const Row* row = GetCurrent();
  const UIF::KeysList keys = row ? Manager().GetKeys(row->command) : UIF::KeysList();
  mRecorder->SetKeys(keys.empty() ? UIF::Keys() : keys.front());
  mRecorder->setEnabled(row != nullptr);
  ShowClashes();
}

void ShortcutsWindow::ShowClashes() {
  const Row* row = GetCurrent();
  const UIF::Keys& keys = mRecorder->GetKeys();
  QString warning;
  bool usable = row && !keys.empty();
  if (usable && UIF::IsTypingKey(keys)) {
    usable = false;
    warning = Label("$$$/Vidra/Captivo/Shortcuts/TypingKey={1} is needed for typing and for moving about. Add Ctrl or "
                    "Alt, or take a function key.",
                    {Native(keys).toStdString()});
  } else if (usable) {
    QStringList others;
    for (const auto& clash : Manager().FindClashes(row->context, row->command, keys))
      others.append(NameOf(clash.command));
    if (!others.isEmpty())
      warning =
          Label("$$$/Vidra/Captivo/Shortcuts/Clash={1} is taken by: {2}. If you assign it, it is taken away there.",
                {Native(keys).toStdString(), others.join(QStringLiteral(", ")).toStdString()});
  }
  mWarning->setText(warning);
  const UIF::KeysList now = row ? Manager().GetKeys(row->command) : UIF::KeysList();
  mAssign->setEnabled(usable && now != UIF::KeysList{keys});
  mRemove->setEnabled(!now.empty());
  mReset->setEnabled(row && !Manager().AreKeysDefault(row->command));
}

// The key goes to this command alone.
void ShortcutsWindow::Assign() {
  const Row* row = GetCurrent();
  const UIF::Keys keys = mRecorder->GetKeys();
  if (!row || keys.empty() || UIF::IsTypingKey(keys))
    return;
  for (const auto& clash : Manager().FindClashes(row->context, row->command, keys)) {
    UIF::KeysList rest = Manager().GetKeys(clash.command);
    std::erase(rest, keys);
    Manager().SetKeys(clash.command, rest);
  }
  Manager().SetKeys(row->command, {keys});
  UpdateRows();
  ShowClashes();
}

} // namespace App
