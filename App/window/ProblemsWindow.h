#pragma once

#include <vector>

#include "Formats/Formats.h"

class QString;
class QWidget;

namespace App {

// Shows what of a file did not come in, or what did not go out: line and reason each, to be read and copied. Modal.
void ShowProblems(QWidget* parent, const QString& title, const QString& summary,
                  const std::vector<Formats::Problem>& problems);

// Printed on standard error instead, when nobody is there to close a window.
void SetProblemsPrinted(bool printed);

// The same as text, one problem a line, line and reason divided by a tab.
QString ProblemsAsText(const std::vector<Formats::Problem>& problems);

} // namespace App
