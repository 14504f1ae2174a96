#pragma once
// Patterns of the Like operator: % any text, _ any character, [abc] and [a-z] one of these, [!abc] none of
// these. Letters match without regard to case.

#include <QString>
#include <array>
#include <cstddef>
#include <span>
#include <variant>
#include <vector>

namespace vardelin::sql {

// Each character in the form in which Like compares it.
QString folded(QStringView text);

class LikePattern
{
public:
    // RunTimeError 93 where a bracket isn't closed or a range runs backward.
    explicit LikePattern(QStringView pattern);
    bool matches(QStringView text) const;
    // The same for a text as it lies in the file. A pattern that asks for a plain text somewhere searches the
    // bytes themselves.
    bool matchesStored(std::span<const std::byte> stored) const;

private:
    enum class Shape { Plain, Anything, Contains, General };
    enum class Kind : std::uint8_t { Character, AnyCharacter, AnyText, OneOf };
    struct Range
    {
        char16_t first, last;
    };
    struct Element
    {
        Kind kind = Kind::Character;
        char16_t character = 0; // folded
        bool negated = false;
        std::vector<Range> ranges; // of OneOf, folded
    };

    qsizetype readBrackets(QStringView pattern, qsizetype at);
    void findShape();
    bool matchesOne(const Element &element, char16_t c) const;
    bool matchesGeneral(QStringView text) const;
    void chooseMarks();
    template <class Unit>
    bool containedIn(const std::byte *text, std::size_t units) const;
    template <class Unit>
    bool liesAt(const std::byte *text) const;
    template <class Unit>
    bool mayBegin(const std::byte *text) const;
    template <class Unit>
    bool marked(const std::byte *text) const;

    std::vector<Element> m_elements;
    Shape m_shape = Shape::General;
    std::u16string m_needle; // Plain, Contains: folded
    // Contains: two of its characters, seldom ones, by which the text is sieved.
    struct Mark
    {
        std::size_t place = 0;       // in the needle
        char16_t ignored = 0xFFFF;   // the bits that tell its cases apart; all: it matches anything
        char16_t character = 0xFFFF; // with these bits set
    };
    std::array<Mark, 2> m_marks;
};

} // namespace vardelin::sql
