#pragma once

class QWidget;

namespace App {

void ShowAbout(QWidget* parent);
void ShowKeyboard(QWidget* parent);

} // namespace App
