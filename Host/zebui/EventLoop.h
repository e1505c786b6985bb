#pragma once

namespace zebui {

// Connects timers and posted messages to the toolkit's event loop, which from now on fires and delivers them. Needs the
// application object; for a program on a clock that runs by itself.
void InstallEventLoop();
// Before the application object goes.
void UninstallEventLoop();

} // namespace zebui
