#include "platform/jet/Error.h"

#include <utility>

namespace vardelin::jet {

namespace {

// %1 stands for the detail that the thrower gives. The run time describes some of these numbers too, in a
// table above this layer (platform/base/RunTimeError.cpp), in the same words.
constexpr std::pair<Code, std::string_view> kDescriptions[] = {
    {Code::InvalidArgument, "Invalid argument."},
    {Code::ItemExists, "Table '%1' already exists."},
    {Code::ObjectNotFound,
     "The Microsoft Jet database engine could not find the object '%1'. Make sure the object exists "
     "and that you spell its name and the path name correctly."},
    {Code::NoCurrentRecord, "No current record."},
    {Code::DuplicateKey, "The changes you requested to the table were not successful because they would "
                         "create duplicate values in the index, "
                         "primary key, or relationship.  Change the data in the field or fields that contain "
                         "duplicate data, remove the index, or "
                         "redefine the index to permit duplicate entries and try again."},
    {Code::FileNotFound, "Could not find file '%1'."},
    {Code::DiskFull, "Not enough space on disk."},
    {Code::ReadOnlyDatabase, "Cannot update.  Database or object is read-only."},
    {Code::Password, "Not a valid password."},
    {Code::IoError, "Disk I/O error during read."},
    {Code::OlderFormat, "Cannot open a database created with a previous version of your application."},
    {Code::WriteError, "Disk or network error."},
    {Code::PathNotFound,
     "'%1' is not a valid path. Make sure that the path name is spelled correctly and that you are "
     "connected to the server on which the file resides."},
    {Code::FileInUse, "Could not use '%1'; file already in use."},
    {Code::RecordTooLarge, "Record is too large."},
    {Code::Damaged, "Cannot open database '%1'. It may not be a database that your application recognizes, "
                    "or the file may be "
                    "corrupt."},
    {Code::Locked, "Could not lock file."},
    {Code::CannotOpenFile,
     "The Microsoft Jet database engine cannot open the file '%1'. It is already opened exclusively by "
     "another user, or you need permission to view its data."},
    {Code::NullInKey, "Index or primary key cannot contain a Null value."},
    {Code::TableNotFound,
     "The Microsoft Jet database engine cannot find the input table or query '%1'. Make sure it exists "
     "and that its name is spelled correctly."},
    {Code::FieldTooSmall,
     "The field is too small to accept the amount of data you attempted to add.  Try inserting or pasting "
     "less data."},
    {Code::AutoNumberReadOnly, "Field cannot be updated."},
    {Code::RowDeleted, "Record is deleted."},
    {Code::FileTooLarge, "Database has reached maximum size."},
    {Code::TooManyColumns, "Too many fields defined."},
    {Code::DatabaseExists, "Database already exists."},
    {Code::CannotStartTransaction, "Operation not supported in transactions."},
    {Code::ItemNotFound, "Item not found in this collection."},
    {Code::NullRequired,
     "The field '%1' cannot contain a Null value because the Required property for this field is set to "
     "True. Enter a value in this field."},
    {Code::ZeroLength, "Field '%1' cannot be a zero-length string."},
    {Code::NewerFormat, "Unrecognized database format '%1'."},
    {Code::UnknownTextOrder, "Selected collating sequence not supported by the operating system."},
    {Code::RelatedRecords,
     "The record cannot be deleted or changed because table '%1' includes related records."},
    {Code::RelatedRecordRequired,
     "You cannot add or change a record because a related record is required in table '%1'."},
    {Code::NumberOverflow, "Numeric field overflow."},
    {Code::DecimalTruncated, "Scaling of decimal value resulted in data truncation."},
    {Code::DecimalTooLarge,
     "The decimal field's precision is too small to accept the numeric you attempted to add."},
    {Code::TooManyIndexes,
     "The operation failed. There are too many indexes on table '%1'. Delete some of the indexes on the "
     "table and try the operation again."},
};

std::string describe(Code code, std::string_view detail)
{
    for (const auto &[known, text] : kDescriptions) {
        if (known != code)
            continue;
        std::string description(text);
        if (const std::size_t place = description.find("%1"); place != std::string::npos)
            description.replace(place, 2, detail);
        return description;
    }
    return "Reserved error.";
}

constexpr char32_t kReplacement = 0xFFFD;

void appendUtf8(std::string &out, char32_t c)
{
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

bool isHigh(char16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLow(char16_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

// The character at the front of `text`, which isn't empty, and its length in bytes; a byte that starts none
// counts alone.
std::pair<char32_t, std::size_t> firstOf(std::string_view text)
{
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = at(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 && lead < 0xF5   ? 4
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                                                             : 0;
    if (length == 0 || length > text.size())
        return {kReplacement, 1};
    char32_t c = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80)
            return {kReplacement, 1};
        c = (c << 6) | (at(i) & 0x3Fu);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < kLeast[length] || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000))
        return {kReplacement, 1};
    return {c, length};
}

} // namespace

Error::Error(Code code, std::string_view detail, std::string_view reason)
    : std::runtime_error(describe(code, detail)), m_code(code), m_reason(reason)
{}

std::string toUtf8(std::u16string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (isHigh(unit) && i + 1 < text.size() && isLow(text[i + 1]))
            appendUtf8(out, 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (text[++i] - 0xDC00u));
        else
            appendUtf8(out, isHigh(unit) || isLow(unit) ? kReplacement : unit);
    }
    return out;
}

std::u16string toUtf16(std::string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const auto [c, length] = firstOf(text);
        text.remove_prefix(length);
        if (c < 0x10000) {
            out += static_cast<char16_t>(c);
        } else {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        }
    }
    return out;
}

} // namespace vardelin::jet
