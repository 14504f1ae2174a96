#pragma once
// How the engine says no. Numbers and descriptions are the customary ones of the engine; one table holds them
// (Error.cpp).

#include <stdexcept>
#include <string>
#include <string_view>

namespace vardelin::jet {

enum class Code : int {
    InvalidArgument = 3001,
    CannotStartTransaction = 3246,
    ItemExists = 3010,     // table %1 already exists
    ObjectNotFound = 3011, // %1: the object's name
    NoCurrentRecord = 3021,
    DuplicateKey = 3022,
    FileNotFound = 3024, // %1: path
    DiskFull = 3026,
    ReadOnlyDatabase = 3027,
    Password = 3031,
    PathNotFound = 3044, // %1: path
    FileInUse = 3045,    // %1: path
    Locked = 3050,
    CannotOpenFile = 3051, // %1: path
    RecordTooLarge = 3047,
    NullInKey = 3058,
    TableNotFound = 3078, // %1: name
    IoError = 3040,
    WriteError = 3043,  // disk or network error
    NewerFormat = 3343, // %1: path; also any file that isn't such a database
    OlderFormat = 3041,
    Damaged = 3049, // %1: path. The file, or a part of it, can't be made out
    RowDeleted = 3167,
    FieldTooSmall = 3163,
    DatabaseExists = 3204,
    ItemNotFound = 3265,
    NullRequired = 3314, // %1: Table.Column
    ZeroLength = 3315,   // %1: Table.Column
    FileTooLarge = 3036,
    TooManyColumns = 3190,
    TooManyIndexes = 3626,
    UnknownTextOrder = 3613, // a write to a table with an index in an order that this engine can't make
    AutoNumberReadOnly = 3164,
    RelatedRecords = 3200,        // %1: the table that refers to the row
    RelatedRecordRequired = 3201, // %1: the table that lacks it
    NumberOverflow = 3349,        // the auto-numbers are used up
    DecimalTruncated = 3758,
    DecimalTooLarge = 3759,
};

// what() is the description in UTF-8, ready to be shown.
class Error : public std::runtime_error
{
public:
    // detail: what stands for %1 in the description. reason: for Damaged, what was found and where ("page 31:
    // ..."), kept for checkFile and logs of tests and not a part of the description.
    explicit Error(Code code, std::string_view detail = {}, std::string_view reason = {});
    Code code() const { return m_code; }
    int number() const { return static_cast<int>(m_code); }
    const std::string &reason() const { return m_reason; }

private:
    Code m_code;
    std::string m_reason;
};

std::string toUtf8(std::u16string_view text);
std::u16string toUtf16(std::string_view text);

} // namespace vardelin::jet
