#include "platform/sql/ExpressionParser.h"
#include "platform/sql/SqlError.h"

namespace vardelin::sql {

using namespace Qt::StringLiterals;

NodeId Tree::add(Node node, std::span<const NodeId> children)
{
    node.firstChild = static_cast<std::uint32_t>(childIds.size());
    node.childCount = static_cast<std::uint32_t>(children.size());
    childIds.insert(childIds.end(), children.begin(), children.end());
    nodes.push_back(std::move(node));
    return static_cast<NodeId>(nodes.size() - 1);
}

namespace {

class StatementParser
{
public:
    explicit StatementParser(const QString &text) : m_lexer(text) {}
    SelectSyntax parse();

private:
    void parseItem();
    bool parseStar();
    void parseFrom();
    void parseGroupBy();
    void parseOrderBy();
    void parseEnd();
    bool atEnd() const { return m_lexer.peek().kind == TokenKind::End || m_lexer.peek().is(";"_L1); }
    bool atName() const { return m_lexer.peek().isName() && !isReserved(m_lexer.peek()); }
    void expectBy(QLatin1StringView clause);

    Lexer m_lexer;
    SelectSyntax m_select;
};

// * or Table.*
bool StatementParser::parseStar()
{
    if (m_lexer.accept("*"_L1)) {
        m_select.items.emplace_back();
        return true;
    }
    if (!m_lexer.peek().isName())
        return false;
    const Token name = m_lexer.next();
    if (m_lexer.accept("."_L1) && m_lexer.accept("*"_L1)) {
        m_select.items.emplace_back().table = name.text;
        return true;
    }
    m_lexer.rewind(name.position);
    return false;
}

void StatementParser::parseItem()
{
    if (parseStar())
        return;
    if (atEnd() || m_lexer.peek().isWord("from"_L1) || m_lexer.peek().is(","_L1))
        failInSelectList(m_lexer.peek().position);
    Item item;
    item.expression = ExpressionParser(m_lexer, m_select.tree, {","_L1, "as"_L1, "from"_L1}).parse();
    if (m_lexer.accept("as"_L1)) {
        if (!atName())
            failInSelectList(m_lexer.peek().position);
        item.alias = m_lexer.next().text;
    }
    m_select.items.push_back(std::move(item));
}

void StatementParser::parseFrom()
{
    if (!atName())
        failInClause("FROM"_L1, m_lexer.peek().position);
    const Token name = m_lexer.next();
    m_select.table = name.text;
    m_select.tablePosition = name.position;
    const bool named = m_lexer.accept("as"_L1);
    if (named && !atName())
        failInClause("FROM"_L1, m_lexer.peek().position);
    if (atName()) // "As" may be left out
        m_select.tableAlias = m_lexer.next().text;
    const Token &next = m_lexer.peek();
    if (!atEnd() && !next.isWord("where"_L1) && !next.isWord("group"_L1) && !next.isWord("having"_L1) &&
        !next.isWord("order"_L1))
        failInClause("FROM"_L1, next.position);
}

void StatementParser::expectBy(QLatin1StringView clause)
{
    if (!m_lexer.accept("by"_L1) || atEnd())
        failInClause(clause, m_lexer.peek().position);
}

void StatementParser::parseGroupBy()
{
    expectBy("GROUP BY"_L1);
    do {
        m_select.groupBy.push_back(
            ExpressionParser(m_lexer, m_select.tree, {","_L1, "having"_L1, "order"_L1}).parse());
    } while (m_lexer.accept(","_L1));
}

void StatementParser::parseOrderBy()
{
    expectBy("ORDER BY"_L1);
    do {
        if (atEnd())
            failInClause("ORDER BY"_L1, m_lexer.peek().position);
        OrderItem item;
        item.expression = ExpressionParser(m_lexer, m_select.tree, {","_L1, "asc"_L1, "desc"_L1}).parse();
        item.descending = m_lexer.accept("desc"_L1);
        if (!item.descending)
            m_lexer.accept("asc"_L1);
        m_select.orderBy.push_back(std::move(item));
    } while (m_lexer.accept(","_L1));
    if (!atEnd())
        failInClause("ORDER BY"_L1, m_lexer.peek().position);
}

void StatementParser::parseEnd()
{
    m_lexer.accept(";"_L1);
    if (m_lexer.peek().kind != TokenKind::End)
        fail(u"Characters found after end of SQL statement."_s, m_lexer.peek().position);
}

SelectSyntax StatementParser::parse()
{
    if (!m_lexer.accept("select"_L1))
        fail(u"Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'."_s, 0);
    do {
        parseItem();
    } while (m_lexer.accept(","_L1));
    if (m_lexer.accept("from"_L1))
        parseFrom();
    else if (!atEnd())
        failInSelectList(m_lexer.peek().position);
    if (m_lexer.accept("where"_L1)) {
        if (atEnd())
            failInClause("WHERE"_L1, m_lexer.peek().position);
        m_select.where =
            ExpressionParser(m_lexer, m_select.tree, {"group"_L1, "having"_L1, "order"_L1}).parse();
    }
    if (m_lexer.accept("group"_L1))
        parseGroupBy();
    if (m_lexer.accept("having"_L1))
        m_select.having = ExpressionParser(m_lexer, m_select.tree, {"order"_L1}).parse();
    if (m_lexer.accept("order"_L1))
        parseOrderBy();
    parseEnd();
    return std::move(m_select);
}

} // namespace

SelectSyntax parseSelect(const QString &text)
{
    return StatementParser(text).parse();
}

} // namespace vardelin::sql
