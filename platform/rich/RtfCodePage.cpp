#include "platform/rich/RtfCodePage.h"

#include <iconv.h>
#include <iterator>
#include <utility>

namespace vardelin {

namespace {

constexpr int kWestern = 1252;

struct Page
{
    int number;
    const char *name;
    bool manyBytes;
};

constexpr Page kPages[] = {
    {437, "CP437", false},   {850, "CP850", false},   {874, "CP874", false},       {932, "CP932", true},
    {936, "GBK", true},      {949, "CP949", true},    {950, "CP950", true},        {1250, "CP1250", false},
    {1251, "CP1251", false}, {1252, "CP1252", false}, {1253, "CP1253", false},     {1254, "CP1254", false},
    {1255, "CP1255", false}, {1256, "CP1256", false}, {1257, "CP1257", false},     {1258, "CP1258", false},
    {1361, "JOHAB", true},   {65001, "UTF-8", true},  {10000, "MACINTOSH", false},
};

const Page &pageOf(int number)
{
    const Page *western = nullptr;
    for (const Page &page : kPages) {
        if (page.number == number)
            return page;
        if (page.number == kWestern)
            western = &page;
    }
    return *western;
}

class Converter
{
public:
    explicit Converter(const char *name) : m_handle(iconv_open("UTF-16LE", name)) {}
    ~Converter()
    {
        if (isOpen())
            iconv_close(m_handle);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool isOpen() const { return m_handle != iconv_t(-1); }

    QString convert(QByteArrayView bytes)
    {
        QString text;
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        char *in = const_cast<char *>(bytes.data()); // iconv's signature; it only reads
        size_t left = size_t(bytes.size());
        while (left > 0) {
            const size_t before = left;
            step(&in, &left, text);
            if (left > 0 && left == before) { // a byte without a meaning, or half a character at the end
                text += QChar(QChar::ReplacementCharacter);
                ++in;
                --left;
            }
        }
        step(nullptr, nullptr, text); // some pages hold a letter back, waiting for its accent
        return text;
    }

private:
    void step(char **in, size_t *left, QString &text)
    {
        char16_t buffer[256];
        char *out = reinterpret_cast<char *>(buffer);
        size_t room = sizeof buffer;
        iconv(m_handle, in, left, &out, &room);
        text += QStringView(buffer, qsizetype((sizeof buffer - room) / 2));
    }

    iconv_t m_handle;
};

char16_t characterOf(Converter &converter, int byte)
{
    const char one = char(byte);
    const QString text =
        converter.isOpen() ? converter.convert(QByteArrayView(&one, 1)) : QString(QChar(byte));
    if (text.size() == 1 && text[0] != QChar::ReplacementCharacter)
        return text[0].unicode();
    return byte < 0xA0 ? char16_t(byte) : char16_t(QChar::ReplacementCharacter);
}

bool isAscii(QByteArrayView bytes)
{
    for (const char byte : bytes) {
        if (uchar(byte) >= 0x80)
            return false;
    }
    return true;
}

} // namespace

int codePageOfCharset(int charset)
{
    static constexpr std::pair<int, int> kCharsets[] = {
        {0, 1252},   {2, 1252},   {77, 10000}, {128, 932},  {129, 949},  {130, 1361}, {134, 936},
        {136, 950},  {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256}, {186, 1257},
        {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850},
    };
    for (const auto &[number, page] : kCharsets) {
        if (number == charset)
            return page;
    }
    return 0;
}

const CodePages::Table &CodePages::tableOf(int page)
{
    const auto known = m_tables.find(page);
    if (known != m_tables.end())
        return known->second;
    Converter converter(pageOf(page).name);
    Table table;
    for (int byte = 0; byte < 128; ++byte)
        table[size_t(byte)] = characterOf(converter, byte + 128);
    return m_tables.emplace(page, table).first->second;
}

QString CodePages::decode(QByteArrayView bytes, int number)
{
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    const Page &page = pageOf(number);
    if (page.manyBytes) {
        Converter converter(page.name);
        if (converter.isOpen())
            return converter.convert(bytes);
    }
    const Table &table = tableOf(page.manyBytes ? kWestern : page.number);
    QString text(bytes.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto byte = uchar(bytes[i]);
        text[i] = QChar(byte < 0x80 ? char16_t(byte) : table[byte - 0x80u]);
    }
    return text;
}

} // namespace vardelin
