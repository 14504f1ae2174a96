// Dates out of text, month first.

#include "platform/base/Dates.h"

#include <algorithm>
#include <array>
#include <vector>

namespace vardelin {

namespace {

enum class Kind { Number, Word, Separator };

struct Token
{
    Kind kind;
    QStringView text;
    int number = 0; // of a Number
};

constexpr std::array<QStringView, 12> kMonths = {u"january",   u"february", u"march",    u"april",
                                                 u"may",       u"june",     u"july",     u"august",
                                                 u"september", u"october",  u"november", u"december"};
constexpr std::array<QStringView, 7> kDays = {u"sunday",   u"monday", u"tuesday", u"wednesday",
                                              u"thursday", u"friday", u"saturday"};

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// The number, from 1, of the name that the word is, or that it shortens to three letters or more; 0 if there
// is none.
template <std::size_t N>
int nameNumber(const std::array<QStringView, N> &names, QStringView word)
{
    if (word.endsWith(u'.'))
        word.chop(1);
    if (word.size() < 3)
        return 0;
    for (std::size_t i = 0; i < N; ++i) {
        if (names[i].startsWith(word, Qt::CaseInsensitive))
            return static_cast<int>(i) + 1;
    }
    return 0;
}

// nullopt for a character that no date has.
std::optional<std::vector<Token>> tokensOf(QStringView text)
{
    std::vector<Token> tokens;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype start = at;
        const QChar c = text[at++];
        if (isDigit(c)) {
            while (at < text.size() && isDigit(text[at]))
                ++at;
            const QStringView digits = text.sliced(start, at - start);
            if (digits.size() > 4)
                return std::nullopt;
            tokens.push_back({Kind::Number, digits, digits.toInt()});
        } else if (c.isLetter()) {
            while (at < text.size() && text[at].isLetter())
                ++at;
            if (at < text.size() && text[at] == u'.')
                ++at;
            tokens.push_back({Kind::Word, text.sliced(start, at - start)});
        } else if (c == u'/' || c == u'-' || c == u':' || c == u',') {
            tokens.push_back({Kind::Separator, text.sliced(start, 1)});
        } else if (!c.isSpace()) {
            return std::nullopt;
        }
    }
    return tokens;
}

class DateReader
{
public:
    explicit DateReader(std::vector<Token> tokens) : m_tokens(std::move(tokens)) {}
    std::optional<DateSerial> read();

private:
    const Token *peek(std::size_t ahead = 0) const
    {
        return m_at + ahead < m_tokens.size() ? &m_tokens[m_at + ahead] : nullptr;
    }
    bool peekSeparator(QChar c, std::size_t ahead = 0) const
    {
        const Token *token = peek(ahead);
        return token && token->kind == Kind::Separator && token->text[0] == c;
    }
    bool peekHalfOfDay(std::size_t ahead) const;
    bool timeFollows() const;
    bool readTime();
    bool readDatePart();
    bool readDate();
    bool orderParts();
    bool setDay(int year, int month, int day, bool maySwap);

    std::vector<Token> m_tokens;
    std::size_t m_at = 0;
    DateParts m_parts;
    std::vector<const Token *> m_numbers; // of the date, in their order
    int m_month = 0;                      // by name
    bool m_hasTime = false;
};

bool DateReader::peekHalfOfDay(std::size_t ahead) const
{
    const Token *token = peek(ahead);
    if (!token || token->kind != Kind::Word)
        return false;
    static constexpr std::array<QStringView, 4> kHalves = {u"am", u"pm", u"a", u"p"};
    return std::ranges::any_of(
        kHalves, [&](QStringView half) { return token->text.compare(half, Qt::CaseInsensitive) == 0; });
}

bool DateReader::timeFollows() const
{
    const Token *token = peek();
    return token && token->kind == Kind::Number && (peekSeparator(u':', 1) || peekHalfOfDay(1));
}

// 21:54, 9:54:33 PM, 9 PM.
bool DateReader::readTime()
{
    int fields[3] = {0, 0, 0};
    int count = 0;
    do {
        if (count > 0)
            ++m_at;
        const Token *token = peek();
        if (count == 3 || !token || token->kind != Kind::Number)
            return false;
        fields[count++] = token->number;
        ++m_at;
    } while (peekSeparator(u':'));
    int hour = fields[0];
    if (peekHalfOfDay(0)) {
        const bool afternoon = peek()->text[0].toLower() == u'p';
        if (hour > 12 && !afternoon)
            return false;
        if (hour < 12 && afternoon)
            hour += 12;
        else if (hour == 12 && !afternoon)
            hour = 0;
        ++m_at;
    }
    m_parts.hour = hour;
    m_parts.minute = fields[1];
    m_parts.second = fields[2];
    m_hasTime = true;
    return hour < 24 && fields[1] < 60 && fields[2] < 60;
}

bool DateReader::readDatePart()
{
    const Token *token = peek();
    if (token->kind == Kind::Number) {
        m_numbers.push_back(token);
    } else if (const int month = nameNumber(kMonths, token->text); month != 0 && m_month == 0) {
        m_month = month;
    } else if (nameNumber(kDays, token->text) == 0 || !m_numbers.empty() || m_month != 0) {
        return false;
    }
    ++m_at;
    return true;
}

// The parts of the date up to its end or to its time.
bool DateReader::readDate()
{
    bool partNext = true; // a separator stands between two parts
    while (peek() && !timeFollows()) {
        if (peek()->kind == Kind::Separator) {
            if (partNext || peekSeparator(u':'))
                return false;
            partNext = true;
            ++m_at;
            continue;
        }
        if (m_numbers.size() + (m_month != 0 ? 1 : 0) >= 3 || !readDatePart())
            return false;
        partNext = false;
    }
    return !partNext && orderParts();
}

int daysIn(int year, int month)
{
    return static_cast<int>(month == 12 ? 31
                                        : serialOf({year, month + 1, 1, 0, 0, 0}).days -
                                              serialOf({year, month, 1, 0, 0, 0}).days);
}

int fullYear(const Token &token)
{
    if (token.text.size() > 2)
        return token.number;
    return token.number < 30 ? 2000 + token.number : 1900 + token.number;
}

bool DateReader::setDay(int year, int month, int day, bool maySwap)
{
    if (maySwap && month > 12 && day <= 12)
        std::swap(month, day);
    if (year < 100 || month < 1 || month > 12 || day < 1 || day > daysIn(year, month))
        return false;
    m_parts.year = year;
    m_parts.month = month;
    m_parts.day = day;
    return true;
}

// Which number is the year, the month, the day.
bool DateReader::orderParts()
{
    const auto &n = m_numbers;
    const int thisYear = QDate::currentDate().year();
    const auto looksLikeYear = [](const Token *token) {
        return token->text.size() > 2 || token->number > 31;
    };
    if (m_month != 0) {
        if (n.size() == 1)
            return looksLikeYear(n[0]) ? setDay(fullYear(*n[0]), m_month, 1, false)
                                       : setDay(thisYear, m_month, n[0]->number, false);
        if (n.size() != 2)
            return false;
        return looksLikeYear(n[0]) ? setDay(fullYear(*n[0]), m_month, n[1]->number, false)
                                   : setDay(fullYear(*n[1]), m_month, n[0]->number, false);
    }
    if (n.size() == 2) {
        if (looksLikeYear(n[1]))
            return setDay(fullYear(*n[1]), n[0]->number, 1, false);
        return setDay(thisYear, n[0]->number, n[1]->number, true);
    }
    if (n.size() != 3)
        return false;
    if (looksLikeYear(n[0]))
        return setDay(fullYear(*n[0]), n[1]->number, n[2]->number, true);
    return setDay(fullYear(*n[2]), n[0]->number, n[1]->number, true);
}

std::optional<DateSerial> DateReader::read()
{
    if (m_tokens.empty())
        return std::nullopt;
    if (timeFollows() && !readTime())
        return std::nullopt;
    if (peek() && !readDate())
        return std::nullopt;
    if (peek() && (m_hasTime || !readTime() || peek()))
        return std::nullopt;
    return serialOf(m_parts);
}

} // namespace

std::optional<DateSerial> dateFromText(QStringView text)
{
    std::optional<std::vector<Token>> tokens = tokensOf(text);
    if (!tokens)
        return std::nullopt;
    return DateReader(std::move(*tokens)).read();
}

} // namespace vardelin
