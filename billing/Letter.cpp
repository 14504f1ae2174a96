#include "billing/Letter.h"

#include "platform/base/RunTimeError.h"
#include "shell/state/Trim.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const QString kLineEnd = u"\r\n"_s;
const QString kSalutation = u"Dear Client:"_s + kLineEnd + kLineEnd;
const QString kVeryTruly = u"Very truly yours,"_s + kLineEnd + kLineEnd + kLineEnd;

bool isBlank(const Value &value)
{
    return Trim(joinText(value)).isEmpty();
}

// Empty as a stored text is; Null is not.
bool isEmptyText(const Value &value)
{
    return !value.isNull() && joinText(value).isEmpty();
}

QString sentence(Letter kind)
{
    switch (kind) {
    case Letter::Invoice:
        return u"This is your current statement for services rendered."_s;
    case Letter::Disbursements:
        return u"This is your current statement for disbursements we have rendered on your behalf."_s;
    case Letter::Payments:
        break;
    }
    return u"This is your current statement of payments made by you."_s;
}

// "12345-6789" of nine digits. The length alone decides: a zip code that has its hyphen gets a second one.
QString zipText(const QString &zip)
{
    constexpr qsizetype kFirstPart = 5;
    return zip.size() > kFirstPart ? zip.left(kFirstPart) + u'-' + zip.mid(kFirstPart) : zip;
}

QString nameLine(const SplitName &name)
{
    return name.first + u' ' + name.last + kLineEnd;
}

QString addressLines(const LetterClient &client)
{
    QString text;
    for (const Value &line : client.addresses) {
        if (!isBlank(line))
            text += joinText(line) + kLineEnd;
    }
    if (!isBlank(client.city) && !isBlank(client.state))
        text += Trim(joinText(client.city)) + u", "_s + Trim(joinText(client.state));
    return text;
}

// The client's own sentence takes the place of ours; the salutation stays.
QString greeting(Letter kind, const Value &own)
{
    const QString text = joinText(own);
    return kSalutation + (text.isEmpty() ? sentence(kind) : text) + kLineEnd;
}

// On an invoice the client's own closing takes the place of ours, and one that was never filled in (Null) is
// a closing without words. On a statement it stands before ours, and Null is as good as empty.
QString closing(Letter kind, const Value &own)
{
    if (kind == Letter::Invoice)
        return isEmptyText(own) ? kVeryTruly : joinText(own) + kLineEnd;
    const QString text = joinText(own);
    return text.isEmpty() ? kVeryTruly : text + kLineEnd + kLineEnd + kLineEnd + kVeryTruly;
}

} // namespace

SplitName splitClient(const QString &client)
{
    const qsizetype comma = client.indexOf(", "_L1);
    const qsizetype firstLength = Trim(client).size() - (comma + 1) - 1;
    if (comma < 0 || firstLength < 0)
        throw RunTimeError(RunTime::InvalidProcedureCall);
    return {client.left(comma), client.right(firstLength)};
}

std::optional<LetterClient> findLetterClient(dao::Database &database, const SplitName &name)
{
    const auto rows = database.OpenRecordset(u"Active Clients"_s);
    const auto column = [&](const char16_t *what) {
        return rows->Fields(u"Active Client "_s + QString::fromUtf16(what));
    };
    for (; !rows->EOF_(); rows->MoveNext()) {
        if (joinText(rows->Fields(u"Client First Name"_s)) != name.first ||
            joinText(rows->Fields(u"Client Last Name"_s)) != name.last)
            continue;
        return LetterClient{
            .addresses = {column(u"First Address"), column(u"Second Address"), column(u"Third Address")},
            .city = column(u"City"),
            .state = column(u"State"),
            .zip = column(u"Zip Code"),
            .reLine = column(u"Re Line"),
            .greeting = column(u"Greeting"),
            .closing = column(u"Closing")};
    }
    return std::nullopt;
}

LetterTexts letterTexts(Letter kind, const SplitName &name, const std::optional<LetterClient> &client)
{
    LetterTexts texts;
    texts.AddressBlock = nameLine(name);
    if (!client)
        return texts;
    texts.ZipText = zipText(Trim(joinText(client->zip)));
    // The blanks come with a city or without, with a zip code or without.
    texts.AddressBlock += addressLines(*client) + u"  "_s + texts.ZipText;
    // Null isn't the empty text, and leaves a line end.
    texts.ReLineText = isEmptyText(client->reLine) ? QString() : joinText(client->reLine) + kLineEnd;
    texts.GreetingText = greeting(kind, client->greeting);
    texts.ClosingText = closing(kind, client->closing);
    return texts;
}

} // namespace vardelin
