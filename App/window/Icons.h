#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace App {

// A symbol of the program's own, drawn in the colour of the text around it at any size; grey where it is disabled.
QIcon Symbol(const QString& name);
QIcon Symbol(const QString& name, const QColor& color);
// The program's own icon, in its own colours.
QIcon ProgramIcon();

// For what the user must not overlook, legible on the window background of either theme.
QColor WarningColor();

} // namespace App
