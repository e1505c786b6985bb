// The inside of view focus and duty, for UIF's own sources.
#pragma once

namespace UIF {

class TabView;

// Hears of focus changes from now on.
void FollowViewFocus();
// Null for none. Both are told, once.
void SetTabViewOnDuty(TabView* view);
TabView* GetTabViewOnDuty();
// A view that is destroyed is told that it goes off duty.
void TakeOffDuty(TabView* view);
// A view that goes takes no leave.
void ForgetDutyOf(const TabView* view);

} // namespace UIF
