#include "platform/data/Adodc.h"

#include <QHash>

namespace vardelin {

struct Adodc::State
{
    struct Field : BoundField
    {
        QString shown; // what the field held after `show`
    };

    explicit State(Adodc &owner) : control(owner) {}

    bool hasRecord() const { return records.isOpen() && records.AbsolutePosition() > 0; }
    QString textFor(const QString &column) const;
    void show(Field &field, const QString &text);
    void showRecord();
    void showNothing();
    std::vector<std::pair<QString, QString>> typed() const; // column and text of the edited fields
    Value valueOf(const QString &column, const QString &typedText) const;
    void tell(const RunTimeError &error) const;
    void completeMove(MoveReason reason);
    bool move(MoveReason reason, const std::function<void()> &step);

    Adodc &control;
    ado::Connection connection;
    ado::Recordset records;
    std::vector<Field> fields;
    QHash<QString, std::function<QString(const Value &)>> readers; // by name of column in lower case
};

Adodc::Adodc() : m_state(std::make_unique<State>(*this)) {}
Adodc::~Adodc() = default;

void Adodc::bind(BoundField field)
{
    m_state->fields.push_back({std::move(field), {}});
    State::Field &bound = m_state->fields.back();
    bound.shown = bound.text ? bound.text() : QString();
}

void Adodc::setColumnReader(const QString &column, std::function<QString(const Value &)> toText)
{
    m_state->readers[column.toLower()] = std::move(toText);
}

// ---- showing

QString Adodc::State::textFor(const QString &column) const
{
    if (!records.HasField(column))
        return {};
    const Value value = records.Fields(column);
    const auto reader = readers.constFind(column.toLower());
    return reader == readers.constEnd() ? joinText(value) : (*reader)(value);
}

void Adodc::State::show(Field &field, const QString &text)
{
    field.show(text);
    field.shown = field.text ? field.text() : text;
}

void Adodc::State::showNothing()
{
    for (Field &field : fields)
        show(field, QString());
}

// All of the fields show the record, or all are empty: never a part of one record beside a part of another.
void Adodc::State::showRecord()
{
    if (!hasRecord())
        return showNothing();
    std::vector<QString> texts;
    try {
        for (const Field &field : fields)
            texts.push_back(textFor(field.column));
    } catch (const RunTimeError &) {
        showNothing();
        throw;
    }
    for (std::size_t i = 0; i < fields.size(); ++i)
        show(fields[i], texts[i]);
}

void Adodc::State::tell(const RunTimeError &error) const
{
    if (!control.onError)
        throw error;
    control.onError(error);
}

// ---- moving

void Adodc::State::completeMove(MoveReason reason)
{
    std::optional<RunTimeError> gone;
    try {
        showRecord();
    } catch (const RunTimeError &error) {
        gone = error;
    }
    if (control.MoveComplete)
        control.MoveComplete(reason);
    if (gone)
        tell(*gone);
}

bool Adodc::State::move(MoveReason reason, const std::function<void()> &step)
{
    if (!control.commitEdits())
        return false;
    step();
    completeMove(reason);
    return true;
}

void Adodc::Refresh()
{
    State &s = *m_state;
    if (s.records.isOpen())
        s.records.Close();
    if (s.connection.isOpen())
        s.connection.Close();
    try {
        s.connection.Open(ConnectionString);
        s.records.CursorType = 3;
        s.records.Open(RecordSource, s.connection);
    } catch (const RunTimeError &) {
        if (s.connection.isOpen())
            s.connection.Close();
        s.showNothing();
        throw;
    }
    s.completeMove(MoveReason::Requery);
}

bool Adodc::isOpen() const
{
    return m_state->records.isOpen();
}

ado::Recordset &Adodc::Recordset()
{
    if (!isOpen())
        throw RunTimeError(RunTime::ObjectNotSet);
    return m_state->records;
}

ado::Connection &Adodc::ActiveConnection()
{
    if (!isOpen())
        throw RunTimeError(RunTime::ObjectNotSet);
    return m_state->connection;
}

bool Adodc::MoveFirst()
{
    return m_state->move(MoveReason::MoveFirst, [this] { Recordset().MoveFirst(); });
}

bool Adodc::MoveLast()
{
    return m_state->move(MoveReason::MoveLast, [this] { Recordset().MoveLast(); });
}

bool Adodc::MoveNext()
{
    return m_state->move(MoveReason::MoveNext, [this] { Recordset().MoveNext(); });
}

bool Adodc::MovePrevious()
{
    return m_state->move(MoveReason::MovePrevious, [this] { Recordset().MovePrevious(); });
}

bool Adodc::SetAbsolutePosition(int position)
{
    return m_state->move(MoveReason::Move, [this, position] { Recordset().SetAbsolutePosition(position); });
}

bool Adodc::SetBookmark(const QByteArray &bookmark)
{
    return m_state->move(MoveReason::Move, [this, &bookmark] { Recordset().SetBookmark(bookmark); });
}

void Adodc::Delete()
{
    Recordset().Delete();
    m_state->completeMove(MoveReason::Delete);
}

// ---- edits

std::vector<std::pair<QString, QString>> Adodc::State::typed() const
{
    std::vector<std::pair<QString, QString>> edits;
    for (const Field &field : fields) {
        if (!field.text || !records.HasField(field.column))
            continue;
        QString text = field.text();
        if (text != field.shown)
            edits.emplace_back(field.column, std::move(text));
    }
    return edits;
}

Value Adodc::State::valueOf(const QString &column, const QString &typedText) const
{
    if (typedText.isEmpty() && !records.Fields(column).isText())
        return NullValue{};
    return typedText;
}

bool Adodc::edited() const
{
    return m_state->hasRecord() && !m_state->typed().empty();
}

bool Adodc::commitEdits()
{
    State &s = *m_state;
    if (!s.hasRecord())
        return true;
    const auto typed = s.typed();
    if (typed.empty())
        return true;
    try {
        for (const auto &[column, text] : typed)
            s.records.SetField(column, s.valueOf(column, text));
        s.records.Update();
    } catch (const RunTimeError &error) {
        s.records.CancelUpdate(); // what was typed stays in the fields alone
        s.tell(error);
        return false;
    }
    s.showRecord();
    return true;
}

void Adodc::dropEdits()
{
    m_state->showRecord();
}

} // namespace vardelin
