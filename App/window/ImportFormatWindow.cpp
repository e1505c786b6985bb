#include "App/window/ImportFormatWindow.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <set>

#include "App/window/Labels.h"
#include "App/window/Settings.h"
#include "zebui/NodeManager.h"

namespace App {

namespace {

constexpr int kChannelsShown = 8;

// The free channels of a family; the number is the item's data.
void FillChannels(QComboBox& channels, const std::string& family, const std::set<zebcaptioning::StreamFormat>& held) {
  channels.clear();
  for (int channel = 1; channel <= kChannelsShown; ++channel) {
    const zebcaptioning::StreamFormat format = GetStreamFormat(family, channel);
    if (format == zebcaptioning::kStreamFormat_None)
      break;
    if (!held.contains(format))
      channels.addItem(ToQString(zebcaptioning::GetFullStreamFormatLabel(format)), channel);
  }
  channels.setCurrentIndex(std::max(0, channels.findData(settings::GetImportChannel())));
}

} // namespace

QString FamilyLabel(const std::string& family) {
  if (family == "cea608")
    return QStringLiteral("CEA-608");
  if (family == "cea708")
    return QStringLiteral("CEA-708");
  if (family == "teletext")
    return Label("$$$/Vidra/Captivo/Family/Teletext=Teletext");
  if (family == "ebu_n19")
    return QStringLiteral("EBU N19");
  if (family == "australian")
    return Label("$$$/Vidra/Captivo/Family/Australian=Australian");
  return Label("$$$/Vidra/Captivo/Family/Open=Open Captions");
}

zebcaptioning::StreamFormat GetLastImportFormat() {
  const zebcaptioning::StreamFormat format = GetStreamFormat(settings::GetImportFamily(), settings::GetImportChannel());
  return format != zebcaptioning::kStreamFormat_None ? format : GetStreamFormat("open", 1);
}

std::optional<zebcaptioning::StreamFormat> AskImportFormat(QWidget* parent, const InterfaceRef<BE::MasterClip>& clip,
                                                           const QString& fileName) {
  std::set<zebcaptioning::StreamFormat> held;
  BE::QueryAvailableCaptionStreamFormats(clip, held);

  QDialog dialog(parent);
  dialog.setWindowTitle(Label("$$$/Vidra/Captivo/Import/Title=Import Captions"));
  auto* families = new QComboBox;
  auto* channels = new QComboBox;
  for (const std::string& family : GetStreamFamilies())
    families->addItem(FamilyLabel(family), QString::fromStdString(family));
  families->setCurrentIndex(std::max(0, families->findData(QString::fromStdString(settings::GetImportFamily()))));

  auto* buttons = new QDialogButtonBox;
  QPushButton* import =
      buttons->addButton(Label("$$$/Vidra/Captivo/Import/Import=Import"), QDialogButtonBox::AcceptRole);
  buttons->addButton(Label("$$$/Vidra/Captivo/Button/Cancel=Cancel"), QDialogButtonBox::RejectRole);
  import->setDefault(true);
  const auto refill = [&] {
    FillChannels(*channels, families->currentData().toString().toStdString(), held);
    import->setEnabled(channels->count() > 0);
  };
  refill();
  QObject::connect(families, &QComboBox::currentIndexChanged, &dialog, refill);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);

  auto* form = new QFormLayout;
  form->addRow(Label("$$$/Vidra/Captivo/Import/Format=Format"), families);
  form->addRow(Label("$$$/Vidra/Captivo/Import/Stream=Stream"), channels);
  auto* layout = new QVBoxLayout(&dialog);
  layout->addWidget(new QLabel(Label("$$$/Vidra/Captivo/Import/Question={1} becomes a caption stream of {2}.",
                                     {fileName.toStdString(), zebcore::ToUTF8(clip->GetName())})));
  layout->addLayout(form);
  layout->addWidget(buttons);

  zebui::ui::UI_NodeManager::Get(true)->PushModalWindow();
  const bool accepted = dialog.exec() == QDialog::Accepted;
  zebui::ui::UI_NodeManager::Get(true)->PopModalWindow();
  if (!accepted)
    return std::nullopt;
  const std::string family = families->currentData().toString().toStdString();
  const int channel = channels->currentData().toInt();
  settings::SetImportFormat(family, channel);
  return GetStreamFormat(family, channel);
}

} // namespace App
