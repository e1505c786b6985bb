// The inside of view focus and duty, for UIF's own sources.
#pragma once

#include "UIF/CommandRouter.h"

namespace UIF {

// Hears of focus changes from now on.
void FollowViewFocus();
// A view that is destroyed is told that it goes off duty.
void TakeOffDuty(TabView* view);
// A view that goes takes no leave.
void ForgetDutyOf(const TabView* view);

} // namespace UIF
