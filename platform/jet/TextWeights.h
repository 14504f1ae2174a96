#pragma once
// What each UTF-16 unit contributes to a text key. Only TextOrder.cpp looks at it.

#include <array>
#include <cstdint>

namespace vardelin::jet {

struct TextWeight
{
    enum class Kind : std::uint8_t {
        Plain,   // inline bytes
        Accent,  // inline bytes, and extra bytes for the marks on the letter
        Punct,   // no inline bytes; code goes to the punctuation part
        Mark,    // combining: no inline bytes; code is added to the extra part
        KanaTwo, // inline bytes, perhaps extra bytes, and kana code 2
        KanaThree,
        Skip // nothing
    };
    Kind kind = Kind::Skip;
    std::uint8_t inlineLength = 0; // 0 to 4
    std::uint8_t extraLength = 0;  // 0 to 2
    std::uint8_t code = 0;         // Punct, Mark
    std::uint32_t inlineBytes = 0; // the first byte of the key is the most significant
    std::uint16_t extraBytes = 0;
};

// For U+0000 to U+00FF: the inline byte of a unit that contributes nothing else, 0 for all others.
const std::array<std::uint8_t, 256> &plainLatinBytes();
TextWeight textWeight(char16_t unit);

} // namespace vardelin::jet
