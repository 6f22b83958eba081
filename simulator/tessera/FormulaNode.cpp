#include "tessera/FormulaNode.h"

#include <utility>

#include "tessera/FormulaToken.h"
#include "tessera/unicode.h"

namespace tsr {

namespace {

constexpr std::size_t longestFormula = 10'000; // bytes
constexpr std::size_t mostTokens = 500;        // each is looked at for each message
constexpr int deepest = 30;

class Parser {
public:
    explicit Parser(const std::string& formula) : formula_(formula), tokens_(formulaTokens(formula)) {
        if (tokens_.size() > mostTokens)
            raiseUnreadableFormula(formula_, tokens_[mostTokens].offset, "the formula has too many words");
    }

    FormulaNode parse() {
        FormulaNode node = condition(&Parser::alternatives);
        if (token().kind != FormulaToken::End) raise("'|' or '&' is expected");
        return node;
    }

private:
    using Rule = FormulaNode (Parser::*)();

    FormulaNode alternatives() { return joined('|', FormulaNode::Or, &Parser::conjunction); }
    FormulaNode conjunction() { return joined('&', FormulaNode::And, &Parser::negation); }

    // What stands alone may be a text, too.
    FormulaNode joined(char sign, FormulaNode::Kind kind, Rule rule) {
        const std::size_t start = token().offset;
        FormulaNode first = (this->*rule)();
        if (!isSign(sign)) return first;
        requireCondition(first, start);
        FormulaNode node{kind};
        node.parts.push_back(std::move(first));
        while (take(sign)) node.parts.push_back(condition(rule));
        return node;
    }

    FormulaNode negation() {
        if (!take('!')) return comparison();
        const Level level(*this);
        FormulaNode node{FormulaNode::Not};
        node.parts.push_back(condition(&Parser::negation));
        return node;
    }

    FormulaNode comparison() {
        const std::size_t start = token().offset;
        FormulaNode left = operand();
        if (!isSign('=')) return left;
        requireText(left, start);
        take('=');
        FormulaNode node{FormulaNode::Equals};
        node.parts.push_back(std::move(left));
        node.parts.push_back(text(&Parser::operand));
        return node;
    }

    FormulaNode operand() {
        const FormulaToken first = token();
        if (first.kind == FormulaToken::Function) return call();
        if (first.kind == FormulaToken::Text || first.kind == FormulaToken::Field) {
            ++position_;
            return {first.kind == FormulaToken::Text ? FormulaNode::Text : FormulaNode::Field, first.text};
        }
        if (!take('(')) raise("a text, a field, a function or '(' is expected");
        const Level level(*this);
        FormulaNode node = alternatives();
        expect(')');
        return node;
    }

    FormulaNode call() {
        const Level level(*this);
        const std::string name = toLowerCase(token().text);
        if (name != "contains" && name != "lowercase") raise("there is no such function");
        ++position_;
        expect('(');
        FormulaNode node{name == "contains" ? FormulaNode::Contains : FormulaNode::LowerCase};
        node.parts.push_back(text(&Parser::alternatives));
        if (node.kind == FormulaNode::Contains) {
            expect(';');
            node.parts.push_back(text(&Parser::alternatives));
        }
        expect(')');
        return node;
    }

    FormulaNode condition(Rule rule) {
        const std::size_t start = token().offset;
        FormulaNode node = (this->*rule)();
        requireCondition(node, start);
        return node;
    }

    FormulaNode text(Rule rule) {
        const std::size_t start = token().offset;
        FormulaNode node = (this->*rule)();
        requireText(node, start);
        return node;
    }

    void requireCondition(const FormulaNode& node, std::size_t offset) const {
        if (!node.isCondition())
            raiseUnreadableFormula(formula_, offset, "a condition is expected, and this is a text");
    }

    void requireText(const FormulaNode& node, std::size_t offset) const {
        if (node.isCondition())
            raiseUnreadableFormula(formula_, offset, "a text is expected, and this is a condition");
    }

    // Counts how deep the formula is while it is there.
    class Level {
    public:
        explicit Level(Parser& parser) : parser_(parser) {
            if (++parser_.depth_ > deepest) parser_.raise("the formula goes too deep");
        }
        ~Level() { --parser_.depth_; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        Parser& parser_;
    };

    const FormulaToken& token() const { return tokens_[position_]; } // the last one is never passed

    bool isSign(char sign) const {
        return token().kind == FormulaToken::Sign && token().text == std::string(1, sign);
    }

    bool take(char sign) {
        if (!isSign(sign)) return false;
        ++position_;
        return true;
    }

    void expect(char sign) {
        if (!take(sign)) raise(std::string("'") + sign + "' is expected");
    }

    [[noreturn]] void raise(const std::string& reason) const {
        raiseUnreadableFormula(formula_, token().offset, reason);
    }

    const std::string& formula_;
    std::vector<FormulaToken> tokens_;
    std::size_t position_ = 0;
    int depth_ = 0;
};

} // namespace

FormulaNode parseFormula(const std::string& formula) {
    if (formula.size() > longestFormula) raiseUnreadableFormula(formula, 0, "the formula is too long");
    return Parser(formula).parse();
}

} // namespace tsr
