#pragma once
// What each UTF-16 unit contributes to a text key. Only TextOrder.cpp looks at it.

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

    bool isPlainByte() const { return kind == Kind::Plain && inlineLength == 1; }
};

const TextWeight &latinWeight(char16_t unit); // U+0000 to U+00FF, by one look
TextWeight textWeight(char16_t unit);

} // namespace vardelin::jet
