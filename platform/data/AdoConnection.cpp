#include "platform/data/AdoState.h"

namespace vardelin::ado {

using data::fail;
using namespace Qt::StringLiterals;
namespace Number = data::Number;

namespace {

constexpr QStringView kProvider = u"Microsoft.Jet.OLEDB.4.0";

bool needsQuotes(const QString &path)
{
    return path.contains(u';') || path.contains(u'"') || path.startsWith(u'\'') || path.trimmed() != path;
}

// The value at the start of `rest`, which moves behind it and its semicolon. In quotes, a doubled quote
// stands for one.
QString takeValue(QStringView &rest)
{
    rest = rest.trimmed();
    QString value;
    if (!rest.isEmpty() && (rest[0] == u'"' || rest[0] == u'\'')) {
        const QChar quote = rest[0];
        qsizetype i = 1;
        for (; i < rest.size() && (rest[i] != quote || (i + 1 < rest.size() && rest[i + 1] == quote)); ++i) {
            i += rest[i] == quote;
            value.append(rest[i]);
        }
        rest = rest.sliced(qMin(i + 1, rest.size()));
        const qsizetype end = rest.indexOf(u';');
        rest = end < 0 ? QStringView() : rest.sliced(end + 1);
        return value;
    }
    const qsizetype end = rest.indexOf(u';');
    value = (end < 0 ? rest : rest.first(end)).trimmed().toString();
    rest = end < 0 ? QStringView() : rest.sliced(end + 1);
    return value;
}

struct ConnectionParts
{
    QString provider, dataSource;
};

ConnectionParts partsOf(QStringView text)
{
    ConnectionParts parts;
    while (!text.isEmpty()) {
        const qsizetype equals = text.indexOf(u'=');
        if (equals < 0)
            break;
        const QStringView name = text.first(equals).trimmed();
        text = text.sliced(equals + 1);
        const QString value = takeValue(text);
        if (name.compare(u"Provider", Qt::CaseInsensitive) == 0)
            parts.provider = value;
        else if (name.compare(u"Data Source", Qt::CaseInsensitive) == 0)
            parts.dataSource = value;
    }
    return parts;
}

} // namespace

QString connectionText(const QString &path, const QString &user)
{
    QString source = path;
    if (needsQuotes(path))
        source = u'"' + source.replace(u'"', u"\"\""_s) + u'"';
    const QString login = user.isEmpty() ? QString() : u"User ID="_s + user + u';';
    return u"Provider=%1;Persist Security Info=False;"_s.arg(kProvider) + login + u"Data Source="_s + source;
}

Connection::Connection() = default;
Connection::~Connection() = default;

void Connection::Open(const QString &connectionText)
{
    if (isOpen())
        fail(Number::ConnectionOpen);
    const ConnectionParts parts = partsOf(connectionText);
    if (parts.provider.compare(kProvider, Qt::CaseInsensitive) != 0)
        throw RunTimeError(Number::UnknownProvider,
                           u"Provider cannot be found. It may not be properly installed."_s);
    auto state = std::make_unique<State>();
    state->opened = data::OpenedFile::open(parts.dataSource);
    m_state = std::move(state);
}

void Connection::Close()
{
    if (!isOpen())
        fail(Number::ConnectionClosed);
    m_state->opened->close();
    m_state.reset();
}

bool Connection::isOpen() const
{
    return m_state && m_state->opened->isOpen();
}

QString Connection::path() const
{
    return isOpen() ? m_state->opened->path() : QString();
}

void Connection::BeginTrans()
{
    if (!isOpen())
        fail(Number::ConnectionClosed);
    m_state->opened->begin();
}

void Connection::CommitTrans()
{
    if (!isOpen())
        fail(Number::ConnectionClosed);
    m_state->opened->commit();
}

void Connection::RollbackTrans()
{
    if (!isOpen())
        fail(Number::ConnectionClosed);
    m_state->opened->rollback();
}

struct ReadTogether::State
{
    std::shared_ptr<data::OpenedFile> opened;
    data::OpenedFile::ReadTogether reading;
};

ReadTogether::ReadTogether(Connection &connection)
{
    if (!connection.isOpen())
        fail(Number::NoConnection);
    const auto &opened = connection.m_state->opened;
    m_state = engineCall([&] {
        return std::unique_ptr<State>(new State{opened, data::OpenedFile::ReadTogether(*opened)});
    });
}

ReadTogether::~ReadTogether() = default;

} // namespace vardelin::ado
