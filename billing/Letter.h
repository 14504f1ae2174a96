#pragma once
// The words of the letters to a client, from one row of Active Clients: the invoice and the two statements.
// Line ends are CR LF.

#include "database/Names.h"
#include "platform/data/Dao.h"

namespace vardelin {

enum class Letter { Invoice, Disbursements, Payments };

// What a letter takes from the client's row, as stored; Null stays Null, for it isn't always treated as the
// empty text is.
struct LetterClient
{
    std::array<Value, 3> addresses; // first, second, third line
    Value city, state, zip;
    Value reLine, greeting, closing;
};

struct LetterTexts
{
    QString AddressBlock, ZipText, ReLineText, GreetingText, ClosingText;
};

// The two parts of a client as picked or typed, "Last, First". RunTimeError 5 for a text without comma and
// blank, and for one with nothing behind them. The first name is cut from the right, in the length that the
// trimmed text leaves for it: blanks around the text shift it.
SplitName splitClient(const QString &client);

// The client's row, from the first one on; nullopt for who isn't an active client (any more).
std::optional<LetterClient> findLetterClient(dao::Database &database, const SplitName &name);

// Without a row the letter has only the name.
LetterTexts letterTexts(Letter kind, const SplitName &name, const std::optional<LetterClient> &client);

} // namespace vardelin
