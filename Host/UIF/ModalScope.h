#pragma once

#include "zebui/NodeManager.h"

namespace UIF {

// A modal window stands for as long as this lives.
class ModalScope {
 public:
  ModalScope() { zebui::ui::UI_NodeManager::Get()->PushModalWindow(); }
  ~ModalScope() { zebui::ui::UI_NodeManager::Get()->PopModalWindow(); }
  ModalScope(const ModalScope&) = delete;
  ModalScope& operator=(const ModalScope&) = delete;
};

} // namespace UIF
