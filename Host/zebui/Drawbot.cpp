#include "zebui/Drawbot.h"

namespace zebui::drawbot {

// The sizes that controls recommend come from their own fonts; nothing of the node is needed here.
Drawbot::Drawbot(const ui::UI_Node&) {}

Drawbot::Drawbot() = default;

Drawbot::~Drawbot() = default;

void Drawbot::SetAntiAliasing(int) {}

void Drawbot::SaveState() {}

void Drawbot::RestoreState() {}

void Drawbot::Clip(const zebcore::geom::RectT<float>&) {}

} // namespace zebui::drawbot
