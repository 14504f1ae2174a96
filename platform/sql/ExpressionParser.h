#pragma once
// One expression of a statement, by operator precedence over a stack of its own.

#include "platform/sql/Lexer.h"
#include "platform/sql/Syntax.h"

#include <initializer_list>

namespace vardelin::sql {

// A bare word that is a part of the language and so no name.
bool isReserved(const Token &token);

class ExpressionParser
{
public:
    // ends: keywords and symbols that may follow the expression, besides the end of the statement. A failure
    // tells the text up to one of them.
    ExpressionParser(Lexer &lexer, Tree &tree, std::initializer_list<QLatin1StringView> ends);
    Expression parse();

private:
    enum class Frame { Operator, Bracket, Call, List, Between };
    // What waits for its operands: an operator, or an opening that waits for its close (Between: for its
    // And).
    struct Pending
    {
        Frame frame = Frame::Operator;
        Op op = Op::Equal;
        bool negated = false;
        int precedence = 0;
        std::size_t operands = 0; // Operator: how many; Call, List: how many operands were below
        qsizetype position = 0;
        QString name;
    };

    void parseOperand();
    void parseName();
    bool parseOperator(); // false: the expression is at its end
    bool parseComparison();
    bool parseWordOperator(bool negated, qsizetype position);
    void parseIsNull(qsizetype position);
    void pushBinary(Op op, bool negated, int precedence);
    void pushOperand(Node node);
    void comma();
    void close();
    void reduce(int precedence); // all that binds as tightly or more
    void reduceToFrame() { reduce(0); }
    void build(const Pending &pending);
    const Pending *openFrame() const; // the innermost one
    bool atEnd() const;
    [[noreturn]] void fail(QLatin1StringView what);
    [[noreturn]] void failUnclosed();
    QString textTo(qsizetype end) const;
    qsizetype expressionEnd();

    Lexer &m_lexer;
    Tree &m_tree;
    std::initializer_list<QLatin1StringView> m_ends;
    qsizetype m_start = 0;
    std::vector<NodeId> m_operands;
    std::vector<Pending> m_pending;
    bool m_wantsOperand = true;
};

} // namespace vardelin::sql
