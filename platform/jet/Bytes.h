#pragma once
// Little-endian numbers and row pointers in raw bytes, and a reader that never steps beyond its bytes.

#include "platform/jet/Pager.h"
#include "platform/jet/Types.h"

#include <bit>
#include <cstring>
#include <span>
#include <string>

namespace vardelin::jet {

static_assert(std::endian::native == std::endian::little, "load and store copy the bytes as they are");

// A number at a place that the caller has checked already.
template <class T>
T load(const std::byte *at)
{
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class T>
void store(std::byte *at, T value)
{
    std::memcpy(at, &value, sizeof value);
}

inline bool sameBytes(std::span<const std::byte> a, std::span<const std::byte> b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
}

// A row pointer: u32, the row number in the low byte, the page number in the upper three. (Index entries turn
// it round.)
inline RowId rowIdOf(std::uint32_t pointer)
{
    return {pointer >> 8, static_cast<std::uint8_t>(pointer & 0xFF)};
}

inline std::uint32_t pointerOf(RowId id)
{
    return id.page << 8 | id.row;
}

inline RowId loadRowId(const std::byte *at)
{
    return rowIdOf(load<std::uint32_t>(at));
}

inline void storeRowId(std::byte *at, RowId id)
{
    store(at, pointerOf(id));
}

// A page of a file, to say what is wrong with it: "page 31: row 4 ends beyond the page".
struct Place
{
    const Pager &pager;
    PageNo page = 0;
    [[noreturn]] void damaged(const std::string &what) const
    {
        pager.damaged("page " + std::to_string(page) + ": " + what);
    }
};

// Takes values off the front of a byte string; Damaged where it ends too early.
class Reader
{
public:
    Reader(std::span<const std::byte> bytes, Place place, const char *what)
        : m_bytes(bytes), m_place(place), m_what(what)
    {}

    std::span<const std::byte> take(std::size_t count)
    {
        if (count > m_bytes.size() - m_at)
            m_place.damaged(std::string(m_what) + " ends too early");
        m_at += count;
        return m_bytes.subspan(m_at - count, count);
    }
    template <class T>
    T number()
    {
        return load<T>(take(sizeof(T)).data());
    }
    // UTF-16LE behind a u16 that counts its bytes.
    std::u16string name()
    {
        const auto raw = take(number<std::uint16_t>());
        std::u16string text(raw.size() / 2, u'\0');
        std::memcpy(text.data(), raw.data(), text.size() * 2);
        return text;
    }
    std::size_t at() const { return m_at; }
    std::size_t left() const { return m_bytes.size() - m_at; }
    const Place &place() const { return m_place; }

private:
    std::span<const std::byte> m_bytes;
    Place m_place;
    const char *m_what;
    std::size_t m_at = 0;
};

// The counterpart: puts values behind one another.
class Writer
{
public:
    template <class T>
    void number(T value)
    {
        const std::size_t at = m_bytes.size();
        m_bytes.resize(at + sizeof value);
        store(m_bytes.data() + at, value);
    }
    void bytes(std::span<const std::byte> from) { m_bytes.insert(m_bytes.end(), from.begin(), from.end()); }
    void zeros(std::size_t count) { m_bytes.resize(m_bytes.size() + count); }
    void name(std::u16string_view text)
    {
        number(static_cast<std::uint16_t>(text.size() * 2));
        bytes(std::as_bytes(std::span(text)));
    }
    std::size_t size() const { return m_bytes.size(); }
    std::byte *at(std::size_t offset) { return m_bytes.data() + offset; }
    Bytes take() { return std::move(m_bytes); }

private:
    Bytes m_bytes;
};

} // namespace vardelin::jet
