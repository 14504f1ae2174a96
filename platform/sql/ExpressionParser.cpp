#include "platform/sql/ExpressionParser.h"

#include "platform/sql/SqlError.h"

#include <algorithm>

namespace vardelin::sql {

using namespace Qt::StringLiterals;

namespace {

struct Binary
{
    QLatin1StringView text;
    Op op;
    int precedence;
};

constexpr int kNot = 6, kComparison = 7, kNegate = 13;

constexpr Binary kBinaries[] = {
    {"imp"_L1, Op::Imp, 1},
    {"eqv"_L1, Op::Eqv, 2},
    {"xor"_L1, Op::Xor, 3},
    {"or"_L1, Op::Or, 4},
    {"and"_L1, Op::And, 5},
    {"="_L1, Op::Equal, kComparison},
    {"<>"_L1, Op::NotEqual, kComparison},
    {"<"_L1, Op::Less, kComparison},
    {"<="_L1, Op::LessEqual, kComparison},
    {">"_L1, Op::Greater, kComparison},
    {">="_L1, Op::GreaterEqual, kComparison},
    {"&"_L1, Op::Join, 8},
    {"+"_L1, Op::Add, 9},
    {"-"_L1, Op::Subtract, 9},
    {"mod"_L1, Op::Modulo, 10},
    {"\\"_L1, Op::WholeDivide, 11},
    {"*"_L1, Op::Multiply, 12},
    {"/"_L1, Op::Divide, 12},
    {"^"_L1, Op::Power, 14},
};

constexpr QLatin1StringView kReserved[] = {
    "select"_L1, "from"_L1, "where"_L1, "order"_L1, "group"_L1, "having"_L1, "by"_L1,      "as"_L1,
    "and"_L1,    "or"_L1,   "xor"_L1,   "eqv"_L1,   "imp"_L1,   "like"_L1,   "between"_L1, "in"_L1,
    "is"_L1,     "mod"_L1,  "on"_L1,    "union"_L1, "inner"_L1, "join"_L1,   "distinct"_L1};

bool matches(const Token &token, QLatin1StringView text)
{
    return token.is(text) || token.isWord(text);
}

constexpr auto kMissingOperator = "Syntax error (missing operator)"_L1;

} // namespace

bool isReserved(const Token &token)
{
    return std::ranges::any_of(kReserved, [&](QLatin1StringView word) { return token.isWord(word); });
}

ExpressionParser::ExpressionParser(Lexer &lexer, Tree &tree, std::initializer_list<QLatin1StringView> ends)
    : m_lexer(lexer), m_tree(tree), m_ends(ends), m_start(lexer.peek().position)
{}

Expression ExpressionParser::parse()
{
    for (;;) {
        if (m_wantsOperand)
            parseOperand();
        else if (!parseOperator())
            break;
    }
    reduceToFrame();
    if (!m_pending.empty())
        failUnclosed();
    return {m_operands.front(), textTo(m_lexer.previousEnd())};
}

bool ExpressionParser::atEnd() const
{
    const Token &token = m_lexer.peek();
    return token.kind == TokenKind::End || token.is(";"_L1) ||
           std::ranges::any_of(m_ends, [&](QLatin1StringView end) { return matches(token, end); });
}

void ExpressionParser::pushOperand(Node node)
{
    m_operands.push_back(m_tree.add(std::move(node)));
    m_wantsOperand = false;
}

void ExpressionParser::parseOperand()
{
    const Token &token = m_lexer.peek();
    Pending prefix;
    prefix.position = token.position;
    prefix.operands = 1;
    if (token.kind == TokenKind::Literal) {
        Node node;
        node.position = token.position;
        node.literal = m_lexer.next().value;
        pushOperand(std::move(node));
    } else if (token.is("("_L1)) {
        m_lexer.next();
        prefix.frame = Frame::Bracket;
        m_pending.push_back(prefix);
    } else if (token.is("-"_L1) || token.isWord("not"_L1)) {
        prefix.op = token.is("-"_L1) ? Op::Negate : Op::Not;
        prefix.precedence = prefix.op == Op::Negate ? kNegate : kNot;
        m_lexer.next();
        m_pending.push_back(prefix);
    } else if (token.is("+"_L1)) {
        m_lexer.next();
    } else if (token.isName() && !isReserved(token)) {
        parseName();
    } else if (token.is(")"_L1) && !m_pending.empty() && m_pending.back().frame == Frame::Call &&
               m_pending.back().operands == m_operands.size()) {
        m_wantsOperand = false; // a call without arguments
    } else if (token.is("*"_L1) && !m_pending.empty() && m_pending.back().frame == Frame::Call) {
        Node node;
        node.kind = NodeKind::Star;
        node.position = m_lexer.next().position;
        pushOperand(std::move(node));
    } else {
        fail(kMissingOperator);
    }
}

// A column, a call's opening, or one of the words that are values.
void ExpressionParser::parseName()
{
    const Token name = m_lexer.next();
    Node node;
    node.position = name.position;
    if (m_lexer.peek().is("("_L1) && name.kind == TokenKind::Name) {
        m_lexer.next();
        Pending call;
        call.frame = Frame::Call;
        call.operands = m_operands.size();
        call.position = name.position;
        call.name = name.text;
        m_pending.push_back(std::move(call));
        return;
    }
    if (name.isWord("null"_L1)) {
        node.literal = Value(NullValue());
    } else if (name.isWord("true"_L1) || name.isWord("false"_L1)) {
        node.literal = Value(name.isWord("true"_L1));
    } else {
        node.kind = NodeKind::Column;
        node.name = name.text;
        if (m_lexer.peek().is("!"_L1) || m_lexer.peek().is("."_L1)) {
            m_lexer.next();
            if (!m_lexer.peek().isName())
                fail("Invalid use of '.', '!', or '()'."_L1);
            node.table = name.text;
            node.name = m_lexer.next().text;
        }
    }
    pushOperand(std::move(node));
}

bool ExpressionParser::parseOperator()
{
    const Token &token = m_lexer.peek();
    if (token.is(")"_L1) && openFrame()) {
        close();
    } else if (token.is(","_L1) && openFrame()) {
        comma();
    } else if (atEnd()) {
        return false;
    } else if (token.is(")"_L1)) {
        fail("Extra )"_L1);
    } else if (token.is(","_L1)) {
        fail("Syntax error (comma)"_L1);
    } else if (!parseComparison()) {
        const auto binary =
            std::ranges::find_if(kBinaries, [&](const Binary &b) { return matches(token, b.text); });
        if (binary == std::end(kBinaries))
            fail(kMissingOperator);
        const Pending *frame = binary->op == Op::And ? openFrame() : nullptr;
        if (frame && frame->frame == Frame::Between) {
            reduceToFrame();
            m_pending.back().frame = Frame::Operator;
            m_pending.back().operands = 3;
            m_wantsOperand = true;
        } else {
            pushBinary(binary->op, false, binary->precedence);
        }
        m_lexer.next();
    }
    return true;
}

// Like, Between, In, with or without Not ahead, and Is Null.
bool ExpressionParser::parseComparison()
{
    const qsizetype position = m_lexer.peek().position;
    if (m_lexer.accept("is"_L1)) {
        parseIsNull(position);
        return true;
    }
    if (!m_lexer.accept("not"_L1))
        return parseWordOperator(false, position);
    if (!parseWordOperator(true, position))
        fail(kMissingOperator);
    return true;
}

bool ExpressionParser::parseWordOperator(bool negated, qsizetype position)
{
    if (m_lexer.accept("like"_L1)) {
        pushBinary(Op::Like, negated, kComparison);
        return true;
    }
    const bool between = m_lexer.peek().isWord("between"_L1);
    if (!between && !m_lexer.peek().isWord("in"_L1))
        return false;
    m_lexer.next();
    reduce(kComparison);
    Pending pending;
    pending.op = between ? Op::Between : Op::In;
    pending.frame = between ? Frame::Between : Frame::List;
    pending.negated = negated;
    pending.precedence = kComparison;
    pending.position = position;
    pending.operands = m_operands.size() - 1;
    if (!between && !m_lexer.accept("("_L1))
        fail("In operator without ()"_L1);
    m_pending.push_back(std::move(pending));
    m_wantsOperand = true;
    return true;
}

void ExpressionParser::parseIsNull(qsizetype position)
{
    reduce(kComparison);
    Pending test;
    test.op = Op::IsNull;
    test.negated = m_lexer.accept("not"_L1);
    test.operands = 1;
    test.position = position;
    if (!m_lexer.accept("null"_L1))
        fail("Invalid use of Is operator"_L1);
    build(test);
}

void ExpressionParser::pushBinary(Op op, bool negated, int precedence)
{
    reduce(precedence);
    Pending binary;
    binary.op = op;
    binary.negated = negated;
    binary.precedence = precedence;
    binary.operands = 2;
    binary.position = m_lexer.previousEnd();
    m_pending.push_back(std::move(binary));
    m_wantsOperand = true;
}

const ExpressionParser::Pending *ExpressionParser::openFrame() const
{
    const auto frame = std::ranges::find_if(m_pending.rbegin(), m_pending.rend(),
                                            [](const Pending &p) { return p.frame != Frame::Operator; });
    return frame == m_pending.rend() ? nullptr : &*frame;
}

void ExpressionParser::comma()
{
    reduceToFrame();
    const Frame frame = m_pending.back().frame;
    if (frame == Frame::Between)
        fail("Between operator without And"_L1);
    if (frame == Frame::Bracket)
        fail("Syntax error (comma)"_L1);
    m_lexer.next();
    m_wantsOperand = true;
}

void ExpressionParser::close()
{
    reduceToFrame();
    Pending frame = std::move(m_pending.back());
    m_pending.pop_back();
    if (frame.frame == Frame::Between)
        fail("Between operator without And"_L1);
    m_lexer.next();
    if (frame.frame == Frame::Bracket)
        return;
    frame.operands = m_operands.size() - frame.operands;
    build(frame);
}

void ExpressionParser::reduce(int precedence)
{
    while (!m_pending.empty() && m_pending.back().frame == Frame::Operator &&
           m_pending.back().precedence >= precedence) {
        const Pending top = std::move(m_pending.back());
        m_pending.pop_back();
        build(top);
    }
}

void ExpressionParser::build(const Pending &pending)
{
    Node node;
    node.kind = pending.frame == Frame::Call ? NodeKind::Call : NodeKind::Operator;
    node.op = pending.op;
    node.negated = pending.negated;
    node.position = pending.position;
    node.name = pending.name;
    const std::size_t below = m_operands.size() - pending.operands;
    const NodeId id = m_tree.add(std::move(node), std::span(m_operands).subspan(below));
    m_operands.resize(below);
    m_operands.push_back(id);
}

void ExpressionParser::failUnclosed()
{
    if (m_pending.back().frame == Frame::Between)
        fail("Between operator without And"_L1);
    fail("Missing ), ], or Item"_L1);
}

void ExpressionParser::fail(QLatin1StringView what)
{
    const Token token = m_lexer.peek();
    if (token.kind == TokenKind::BadText)
        what = "Syntax error in string"_L1;
    else if (token.kind == TokenKind::BadDate)
        what = "Syntax error in date"_L1;
    else if (token.kind == TokenKind::BadNumber)
        what = "Syntax error in number"_L1;
    else if (token.kind == TokenKind::BadName)
        what = "Missing ), ], or Item"_L1;
    // Two operands side by side are told before what is wrong inside the second.
    if (!m_wantsOperand && token.kind == TokenKind::BadText)
        what = kMissingOperator;
    failInExpression(what, textTo(expressionEnd()), token.position);
}

// Where the expression would end if it were right: at the first word outside of brackets that may follow it.
qsizetype ExpressionParser::expressionEnd()
{
    Lexer lexer(m_lexer.text());
    lexer.rewind(m_start);
    int depth = 0;
    for (; lexer.peek().kind != TokenKind::End; lexer.next()) {
        const Token &token = lexer.peek();
        depth += token.is("("_L1) ? 1 : token.is(")"_L1) ? -1 : 0;
        if (depth > 0)
            continue;
        if (token.is(";"_L1) ||
            std::ranges::any_of(m_ends, [&](QLatin1StringView end) { return matches(token, end); }))
            break;
    }
    return lexer.previousEnd();
}

QString ExpressionParser::textTo(qsizetype end) const
{
    return m_lexer.text().sliced(m_start, std::max<qsizetype>(end - m_start, 0)).trimmed();
}

} // namespace vardelin::sql
