#include "App/window/DecodeNotice.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStatusBar>

#include <filesystem>

#include "App/Session.h"
#include "App/session/Text.h"
#include "App/window/Icons.h"
#include "App/window/Labels.h"
#include "Captions/contracts/Stations.h"
#include "Captions/contracts/StreamMessages.h"
#include "ML/RenderFrame.h"

namespace App {

namespace {

// Pictures of a project that was closed meanwhile may still fail.
bool IsInProject(const std::filesystem::path& media) {
  const auto project = Session::Instance().GetProject();
  if (!project)
    return false;
  for (const auto& clip : project->GetClips()) {
    if (clip->GetMediaPath() == media)
      return true;
  }
  return false;
}

} // namespace

DecodeNotice::DecodeNotice(QStatusBar* bar) : QWidget(bar), mText(new QLabel) {
  setObjectName(QStringLiteral("undecodable"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  auto* symbol = new QLabel;
  symbol->setPixmap(Symbol(QStringLiteral("warning"), WarningColor()).pixmap(16));
  row->addWidget(symbol);
  row->addWidget(mText, 1);
  mText->setStyleSheet(QStringLiteral("color: %1").arg(WarningColor().name()));
  // A long text is cut off, and whole in the tool tip: the window keeps its width.
  mText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  bar->addWidget(this, 1);
  Update();
  zebcore::messaging::AddListener(ML::kStation_UndecodablePictures, this);
  zebcore::messaging::AddListener(BE::kBackendProjectActivationStationID, this);
}

DecodeNotice::~DecodeNotice() {
  zebcore::messaging::RemoveListener(BE::kBackendProjectActivationStationID, this);
  zebcore::messaging::RemoveListener(ML::kStation_UndecodablePictures, this);
}

void DecodeNotice::HandleMessage(const zebcore::messaging::Message& message) {
  if (zebcore::messaging::MessageCast<BE::ProjectActivatedMessage>(message)) {
    mDamagedFiles.clear();
  } else if (const auto* failed = zebcore::messaging::MessageCast<ML::PictureUndecodableMessage>(message)) {
    std::error_code error;
    if (!std::filesystem::exists(failed->media, error) || !IsInProject(failed->media))
      return;
    mDamagedFiles.insert(failed->media.filename().string());
  }
  Update();
}

void DecodeNotice::Update() {
  setVisible(!mDamagedFiles.empty());
  if (mDamagedFiles.empty())
    return;
  const QString text =
      mDamagedFiles.size() == 1
          ? Label("$$$/Vidra/Captivo/Undecodable/One=Pictures of {1} cannot be decoded and stay empty. The file is "
                  "damaged; copy or record it again.",
                  {Quoted(*mDamagedFiles.begin())})
          : Label("$$$/Vidra/Captivo/Undecodable/Several=Pictures of {1} files cannot be decoded and stay empty. The "
                  "files are damaged; copy or record them again.",
                  {std::to_string(mDamagedFiles.size())});
  mText->setText(text);
  mText->setToolTip(text);
}

} // namespace App
