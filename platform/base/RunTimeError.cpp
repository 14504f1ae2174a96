#include "platform/base/RunTimeError.h"

#include <algorithm>
#include <iterator>

namespace vardelin {

using namespace Qt::StringLiterals;

namespace {

struct Entry
{
    int number;
    const char16_t *description;
};

// In order of number.
constexpr Entry kDescriptions[] = {
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {10, u"This array is fixed or temporarily locked"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {14, u"Out of string space"},
    {16, u"Expression too complex"},
    {17, u"Can't perform requested operation"},
    {18, u"User interrupt occurred"},
    {28, u"Out of stack space"},
    {35, u"Sub or Function not defined"},
    {48, u"Error in loading DLL"},
    {51, u"Internal error"},
    {52, u"Bad file name or number"},
    {53, u"File not found"},
    {54, u"Bad file mode"},
    {55, u"File already open"},
    {57, u"Device I/O error"},
    {58, u"File already exists"},
    {59, u"Bad record length"},
    {61, u"Disk full"},
    {62, u"Input past end of file"},
    {63, u"Bad record number"},
    {67, u"Too many files"},
    {68, u"Device unavailable"},
    {70, u"Permission denied"},
    {71, u"Disk not ready"},
    {74, u"Can't rename with different drive"},
    {75, u"Path/File access error"},
    {76, u"Path not found"},
    {91, u"Object variable or With block variable not set"},
    {92, u"For loop not initialized"},
    {93, u"Invalid pattern string"},
    {94, u"Invalid use of Null"},
    {321, u"Invalid file format"},
    {340, u"Control array element doesn't exist"},
    {380, u"Invalid property value"},
    {381, u"Invalid property array index"},
    {400, u"Form already displayed; can't show modally"},
    {401, u"Can't show non-modal form when modal form is displayed"},
    {402, u"Must close or hide topmost modal form first"},
    {424, u"Object required"},
    {429, u"ActiveX component can't create object"},
    {438, u"Object doesn't support this property or method"},
    {440, u"Automation error"},
    {450, u"Wrong number of arguments or invalid property assignment"},
    {457, u"This key is already associated with an element of this collection"},
    {460, u"Invalid Clipboard format"},
    {461, u"Specified format doesn't match format of data"},
    {480, u"Can't create AutoRedraw image"},
    {481, u"Invalid picture"},
    {482, u"Printer error"},
    {483, u"Printer driver does not support specified property"},
    {484, u"Problem getting printer information from the system. Make sure the printer is set up correctly"},
    {486, u"Can't print form image to this type of printer"},
    {521, u"Can't open Clipboard"},
    {735, u"Can't save file to TEMP directory"},
    {3001, u"Invalid argument."},
    {3020, u"Update or CancelUpdate without AddNew or Edit."},
    {3021, u"No current record."},
    {3022, u"The changes you requested to the table were not successful because they would create duplicate "
           u"values in "
           u"the index, primary key, or relationship.  Change the data in the field or fields that contain "
           u"duplicate "
           u"data, remove the index, or redefine the index to permit duplicate entries and try again."},
    {3027, u"Cannot update.  Database or object is read-only."},
    {3034, u"You tried to commit or rollback a transaction without first beginning a transaction."},
    {3058, u"Index or primary key cannot contain a Null value."},
    {3159, u"Not a valid bookmark."},
    {3163, u"The field is too small to accept the amount of data you attempted to add.  Try inserting or "
           u"pasting less "
           u"data."},
    {3167, u"Record is deleted."},
    {3219, u"Invalid operation."},
    {3251, u"Operation is not supported for this type of object."},
    {3265, u"Item not found in this collection."},
    {3420, u"Object invalid or no longer set."},
    {3421, u"Data type conversion error."},
    {3426, u"This action was cancelled by an associated object."},
    {3704, u"Operation is not allowed when the object is closed."},
    {3705, u"Operation is not allowed when the object is open."},
    {3709, u"The connection cannot be used to perform this operation. It is either closed or invalid in this "
           u"context."},
    {32755, u"Cancel was selected."},
};

} // namespace

RunTimeError::RunTimeError(int number) : RunTimeError(number, descriptionOf(number)) {}

RunTimeError::RunTimeError(int number, const QString &description)
    : m_number(number), m_description(description), m_utf8(description.toUtf8())
{}

QString descriptionOf(int number)
{
    const auto entry = std::ranges::lower_bound(kDescriptions, number, {}, &Entry::number);
    if (entry == std::end(kDescriptions) || entry->number != number)
        return u"Application-defined or object-defined error"_s;
    return QString::fromUtf16(entry->description);
}

QString standardMessage(const RunTimeError &error)
{
    return u"Run-time error '%1':\n\n"_s.arg(error.number()) + error.description();
}

} // namespace vardelin
