#pragma once

#include "Captions/shell/HostTypes.h"

// Stored text ends its lines with single line feeds, a text control with CR LF pairs. Positions are therefore counted
// in two units: stored ones, where a line end counts one, and those of the control, where a pair counts two.
namespace Captivo::LineEnds {

// Each CR LF becomes LF, in place; a lone CR or LF stays.
void Normalize(UString& text);

// The pairs before the start of the range are what tells the two units apart; both ends move by their number.
TextRange ToStoredRange(const UString& controlText, const TextRange& controlRange);
TextRange ToControlRange(const UString& controlText, const TextRange& storedRange);

} // namespace Captivo::LineEnds
