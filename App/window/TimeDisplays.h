#pragma once

#include <QString>

#include <functional>
#include <vector>

#include "zebmediatypes/TimeDisplay.h"

class QMenu;

namespace App {

// How times are written, chosen for clips (sources) and for sequences. The choice is the user's, is kept between runs
// and is told to every timecode control on the station that goes with it.
namespace timedisplays {

enum class Which { Source, Sequence };

// All that can be chosen, in the order of menus, without the one that leaves it to the clip or sequence.
const std::vector<zebmediatypes::TimeDisplay>& GetAll();
QString GetName(zebmediatypes::TimeDisplay display);

// The invalid display, at first, leaves it to the clip or sequence.
zebmediatypes::TimeDisplay Get(Which which);
// Keeps it and says it.
void Choose(Which which, zebmediatypes::TimeDisplay display);
// Says both again, to a panel that was made or has taken up something else since. Nothing that was never chosen.
void SayAgain();

// The choices, the current one checked. whenChosen is called after the choice was said.
void FillMenu(QMenu& menu, Which which, const std::function<void()>& whenChosen);

} // namespace timedisplays

} // namespace App
