#pragma once

#include <optional>
#include <string>

#include "App/Session.h"

class QString;
class QWidget;

namespace App {

// For people: "CEA-608", "Open Captions".
QString FamilyLabel(const std::string& family);

// As which stream of the clip captions shall come in; what was chosen last is offered first. Modal; nothing when it was
// cancelled.
std::optional<zebcaptioning::StreamFormat> AskImportFormat(QWidget* parent, const InterfaceRef<BE::MasterClip>& clip,
                                                           const QString& fileName);

// The format that was chosen last, without asking.
zebcaptioning::StreamFormat GetLastImportFormat();

} // namespace App
