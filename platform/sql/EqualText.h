#pragma once
// A text that a column is compared with, again and again.

#include <QString>
#include <cstddef>
#include <span>
#include <vector>

namespace vardelin::sql {

class EqualText
{
public:
    explicit EqualText(QString text);
    const QString &text() const { return m_text; }
    // As compareTexts() == 0, of a text as it lies in the file. Most texts are told apart by their first
    // letter, and most equal ones are equal byte for byte; the others are decoded to `room`.
    bool matchesStored(std::span<const std::byte> stored, QString &room) const;

private:
    QString m_text;
    std::vector<std::byte> m_plain; // as UTF-16LE
    char16_t m_first; // its first unit, a letter small; 0 where that is no plain letter or digit
};

} // namespace vardelin::sql
