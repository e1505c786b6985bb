#pragma once

#include "BE/Project.h"

class QWidget;

namespace App {

// Asks for the frame rate of a sequence and for how its times are written, and sets them. False if it was left as it
// is.
bool AskSequenceSettings(QWidget* parent, const BE::InterfaceRef<BE::Sequence>& sequence);

} // namespace App
