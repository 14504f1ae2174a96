#pragma once
// The General order of text, locale 0x0409, version 0: without regard to case, letters with marks beside the
// plain letter, apostrophe and hyphen only as a last resort. The same keys serve indexes, comparison and
// ORDER BY.

#include "platform/jet/Types.h"

#include <string>
#include <string_view>

namespace vardelin::jet {

// The key of a text, without start byte, ending in 00; keys compare bytewise. maxUnits: 255 in an index, no
// limit in queries.
std::string textKey(std::u16string_view text, std::size_t maxUnits = 255);

// Below 0, 0, above 0, as the keys of the whole texts compare; quicker than making both for texts that differ
// early or not at all.
int compareText(std::u16string_view left, std::u16string_view right);

} // namespace vardelin::jet
