#pragma once

#include "Captions/contracts/Caption.h"

// Lines of a caption's text end in a line feed or in a CR LF pair. Places in it are told by those who count a pair as
// one unit, whichever of the two it is.
namespace zebcaptioning {

// The range in units of the text; its end may be kTextRange_End. What lies behind the text stays as far behind it.
TextRange ToTextUnits(const zebcore::UString& text, const TextRange& range);

// The same caption with the line ends of a text, each kept in its run; the given state if the two texts differ in more
// than in those.
CaptionStatePtr TakeLineEnds(const CaptionStatePtr& state, const zebcore::UString& text);

} // namespace zebcaptioning
