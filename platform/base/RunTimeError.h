#pragma once
// The one exception of the program. Whatever goes wrong below a command reaches it as one of these.

#include <QString>
#include <exception>

namespace vardelin {

// A number and a description, both customary: those of the run time (13, "Type mismatch") and of the engine
// (3021, "No current record."). Not an error: end of records, nothing found; those are return values.
class RunTimeError : public std::exception
{
public:
    explicit RunTimeError(int number); // with the description of descriptionOf(number)
    RunTimeError(int number, const QString &description);
    int number() const { return m_number; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    int m_number;
    QString m_description;
    QByteArray m_utf8;
};

// Numbers of the run time that the program's own code raises.
namespace RunTime {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int TypeMismatch = 13;
inline constexpr int FileNotFound = 53;
inline constexpr int PathFileAccess = 75;
inline constexpr int PathNotFound = 76;
inline constexpr int ObjectNotSet = 91;
inline constexpr int InvalidUseOfNull = 94;
inline constexpr int NoCurrentRecord = 3021;
inline constexpr int CommonDialogCancel = 32755;
} // namespace RunTime

// The description of a number; "Application-defined or object-defined error" where there is none.
QString descriptionOf(int number);

// What the standard box says: "Run-time error 'N':", an empty line, the description.
QString standardMessage(const RunTimeError &error);

} // namespace vardelin
