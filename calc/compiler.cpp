#include "calc/compiler.h"

#include <cctype>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "calc/codes.h"
#include "resources/limits.h"

namespace {

struct FunctionName {
    const char* name;
    int code;
};

// Searched in this order; the first exact match wins.
const FunctionName kFunctionNames[] = {
    {"FACT", kCodeFact}, {"ABS", kCodeAbs},    {"BINOM", kCodeBinom}, {"BIN", kCodeBinom},
    {"C", kCodeBinom},   {"COMB", kCodeBinom}, {"MOD", kCodeMod},     {"GCD", kCodeGcd},
    {"LCM", kCodeLcm},   {"P", kCodePerm},     {"PERM", kCodePerm},   {"SQR", kCodeSqrt},
    {"SQRT", kCodeSqrt}, {"CURT", kCodeCurt},  {"HAIL", kCodeHail},   {"QUO", kCodeQuo},
    {"INT", kCodeInt},
};
static_assert(sizeof(kFunctionNames) / sizeof(kFunctionNames[0]) == 17, "17 function names");

// One token per code. numerator is set for number tokens only; the
// denominator of every token is 1 and is made when its leaf node is.
struct Token {
    int kind = 0;
    int count = 0;  // commas folded into a list function
    int at = -1;    // index in the formula's text, for reports; inserted tokens borrow one
    BigInt numerator = {};
    ExprNode* node = nullptr;
};

// The token array of one compile. Whatever it still owns when the compile
// ends (numbers, nodes not handed out as the root) is released here.
class Tokens {
public:
    Tokens() = default;
    Tokens(const Tokens&) = delete;
    Tokens& operator=(const Tokens&) = delete;
    ~Tokens() {
        for (Token& t : items) Release(&t);
    }

    static void Release(Token* t) {
        BigFree(&t->numerator);
        FreeTree(t->node);
        t->node = nullptr;
    }
    int Kind(int i) const { return items[static_cast<size_t>(i)].kind; }
    int Size() const { return static_cast<int>(items.size()); }
    Token& At(int i) { return items[static_cast<size_t>(i)]; }
    void Insert(int i, int kind, int at) {
        Token t;
        t.kind = kind;
        t.at = at;
        items.insert(items.begin() + i, t);
    }
    void Erase(int i) {
        Release(&At(i));
        items.erase(items.begin() + i);
    }
    // Removes the record without releasing what it refers to (its node has
    // been linked into another node).
    void Drop(int i) { items.erase(items.begin() + i); }

    std::vector<Token> items;
};

// An operand, for the precedence passes: a number, a subtree already built,
// or a variable.
bool IsOperand(int c) { return c == kCodeOperand || IsLetterCode(c); }

// Characters that may precede an operand.
bool IsOpener(int c) {
    return IsBinaryOperator(c) || c == kCodeAt || c == kCodeNegate || c == kCodeOpen;
}

// Characters that may begin an operand.
bool IsStarter(int c) {
    return c == kCodeOperand || c == kCodeOpen || IsLetterCode(c) || IsPrefixFunction(c);
}

// valid ::= letter | digit | '!' | '\'' | '(' | ')' | ',' | prefix | binary
bool IsValidInput(int c) {
    return IsLetterCode(c) || IsDigitCode(c) || c == kCodeFactorialMark || c == kCodeQuote ||
           c == kCodeOpen || c == kCodeClose || c == kCodeComma || IsPrefixFunction(c) ||
           IsBinaryOperator(c);
}

// Spaces are removed and letters upper-cased. A byte above 127 typed by the
// user could collide with a function code, so it becomes '?', which the scan
// refuses. at[i] is where text[i] stood in the formula.
void PrepareText(std::string* text, std::vector<int>* at) {
    std::string out;
    out.reserve(text->size());
    at->clear();
    for (size_t i = 0; i < text->size(); ++i) {
        unsigned char c = static_cast<unsigned char>((*text)[i]);
        if (c == ' ') continue;
        if (c > 127) c = '?';
        out.push_back(static_cast<char>(std::toupper(c)));
        at->push_back(static_cast<int>(i));
    }
    text->swap(out);
}

// "[NAME]" -> the name's code byte, from the first '[' on, until a '['
// without ']' or an unknown name; that '[' stays and the scan refuses it.
void ReplaceBracketNames(std::string* text, std::vector<int>* at) {
    for (;;) {
        size_t open = text->find('[');
        if (open == std::string::npos) return;
        size_t close = text->find(']', open + 1);
        if (close == std::string::npos) return;
        int code = LookUpFunction(text->substr(open + 1, close - open - 1));
        if (code == 0) return;
        (*text)[open] = static_cast<char>(code);
        text->erase(open + 1, close - open);
        at->erase(at->begin() + static_cast<long>(open) + 1,
                  at->begin() + static_cast<long>(close) + 1);
    }
}

// A '-' is unary (146) at the start and after a binary operator, '(', ',' or
// another unary minus.
void MarkUnaryMinus(std::string* text) {
    for (size_t i = 0; i < text->size(); ++i) {
        if ((*text)[i] != '-') continue;
        int before = i == 0 ? -1 : static_cast<unsigned char>((*text)[i - 1]);
        if (i == 0 || IsBinaryOperator(before) || before == kCodeOpen || before == kCodeComma ||
            before == kCodeNegate)
            (*text)[i] = static_cast<char>(kCodeNegate);
    }
}

// One token per character; the first invalid character gives kCannotUnderstand.
// *failedAt: where the failing token stood in the formula (every pass below).
Result ScanTokens(const std::string& text, const std::vector<int>& at, Tokens* tokens,
                  int* failedAt) {
    tokens->items.reserve(2 * text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        int c = static_cast<unsigned char>(text[i]);
        if (!IsValidInput(c)) {
            *failedAt = at[i];
            return Result::kCannotUnderstand;
        }
        tokens->Insert(tokens->Size(), c, at[i]);
    }
    return Result::kOk;
}

// depth never below 0 and 0 at the end, else kUnbalanced (at the surplus ')',
// or at the last '(' left open).
Result CheckParentheses(Tokens* tokens, int* failedAt) {
    std::vector<int> open;
    for (int i = 0; i < tokens->Size(); ++i) {
        if (tokens->Kind(i) == kCodeOpen) open.push_back(tokens->At(i).at);
        if (tokens->Kind(i) != kCodeClose) continue;
        if (open.empty()) {
            *failedAt = tokens->At(i).at;
            return Result::kUnbalanced;
        }
        open.pop_back();
    }
    if (open.empty()) return Result::kOk;
    *failedAt = open.back();
    return Result::kUnbalanced;
}

// number ::= digit{1..255}: each run of digits becomes one operand; the
// 256th digit starts a new number (which is then multiplied, see the syntax
// pass).
Result FormNumbers(Tokens* tokens) {
    char digits[kMaxLiteralDigits + 1];
    for (int i = 0; i < tokens->Size(); ++i) {
        if (!IsDigitCode(tokens->Kind(i))) continue;
        int n = 0;
        while (i + n < tokens->Size() && n < kMaxLiteralDigits &&
               IsDigitCode(tokens->Kind(i + n))) {
            digits[n] = static_cast<char>(tokens->Kind(i + n));
            ++n;
        }
        digits[n] = '\0';
        Token& t = tokens->At(i);
        t.kind = kCodeOperand;
        Result code = BigFromText(digits, &t.numerator);
        if (!Ok(code)) return code;
        for (int k = 1; k < n; ++k) tokens->Erase(i + 1);
    }
    return Result::kOk;
}

// x! -> [FACT](x) and (...)! -> [FACT](...); a '!' first gives kCannotUnderstand.
Result RewriteFactorials(Tokens* tokens, int* failedAt) {
    for (int i = 0; i < tokens->Size(); ++i) {
        if (tokens->Kind(i) != kCodeFactorialMark) continue;
        const int at = tokens->At(i).at;
        if (i == 0) {
            *failedAt = at;
            return Result::kCannotUnderstand;
        }
        tokens->Erase(i);
        if (tokens->Kind(i - 1) == kCodeClose) {
            int depth = 0, j = i - 1;
            for (; j >= 0; --j) {
                if (tokens->Kind(j) == kCodeClose) ++depth;
                if (tokens->Kind(j) == kCodeOpen && --depth == 0) break;
            }
            tokens->Insert(j, kCodeFact, at);
        } else {
            tokens->Insert(i, kCodeClose, at);
            tokens->Insert(i - 1, kCodeOpen, at);
            tokens->Insert(i - 1, kCodeFact, at);
        }
    }
    return Result::kOk;
}

// [GCD](a,b,c) -> (a GCD b GCD c): each comma takes the code of the list
// function before its enclosing '('; a comma anywhere else gives
// kCannotUnderstand. A list function without commas stays as an ordinary
// infix operator.
Result FoldLists(Tokens* tokens, int* failedAt) {
    for (int i = 0; i < tokens->Size(); ++i) {
        if (tokens->Kind(i) != kCodeComma) continue;
        int depth = 0, j = i - 1;
        for (; j >= 0; --j) {
            if (tokens->Kind(j) == kCodeClose) ++depth;
            if (tokens->Kind(j) == kCodeOpen && depth-- == 0) break;
        }
        if (j <= 0 || !IsListFunction(tokens->Kind(j - 1))) {
            *failedAt = tokens->At(i).at;
            return Result::kCannotUnderstand;
        }
        tokens->At(i).kind = tokens->Kind(j - 1);
        tokens->At(j - 1).count += 1;
    }
    for (int i = tokens->Size() - 1; i >= 0; --i)
        if (IsListFunction(tokens->Kind(i)) && tokens->At(i).count > 0) tokens->Erase(i);
    return Result::kOk;
}

// Whether the token at i, between before and after ('@' at either end),
// is where the grammar allows it:
//   '('      after a prefix function or an opener, before a starter
//   ')'      after '#', ')' or a letter; before the end, ')', '|' or a binary operator
//   operand  after an opener; before the end, ')' or a binary operator
//   binary   after '#', ')' or a letter; before a starter
//   146      after '#', a letter or an opener; before a starter
//   prefix   after an opener; before '('
bool FitsSyntax(int kind, int before, int after) {
    bool afterValue = before == kCodeOperand || before == kCodeClose || IsLetterCode(before);
    if (kind == kCodeOpen)
        return (IsPrefixFunction(before) || IsOpener(before)) && IsStarter(after);
    if (kind == kCodeClose)
        return afterValue && (after == kCodeClose || after == kCodeBar || IsBinaryOperator(after));
    if (kind == kCodeOperand || IsLetterCode(kind))
        return IsOpener(before) && (after == kCodeClose || IsBinaryOperator(after));
    if (IsBinaryOperator(kind)) return afterValue && IsStarter(after);
    if (kind == kCodeNegate)
        return (before == kCodeOperand || IsLetterCode(before) || IsOpener(before)) &&
               IsStarter(after);
    if (IsPrefixFunction(kind)) return IsOpener(before) && after == kCodeOpen;
    return false;
}

// Products of constants: '#', ')' or a letter followed by '#', '(', a letter
// or a prefix function gets a '*' in between (2A, AB, 2(3), (2)(3), A2). Then
// every token must fit the syntax rule, else kInconsistent; no tokens at all
// gives kNothingToDo.
Result InsertProductsAndCheckSyntax(Tokens* tokens, int* failedAt) {
    if (tokens->Size() == 0) return Result::kNothingToDo;
    for (int i = 0; i < tokens->Size(); ++i) {
        int kind = tokens->Kind(i);
        bool last = i + 1 == tokens->Size();
        if (!last && (kind == kCodeOperand || kind == kCodeClose || IsLetterCode(kind))) {
            int next = tokens->Kind(i + 1);
            if (next == kCodeOperand || next == kCodeOpen || IsLetterCode(next) ||
                IsPrefixFunction(next))
                tokens->Insert(i + 1, kCodeTimes, tokens->At(i + 1).at);
        }
        int before = i == 0 ? kCodeAt : tokens->Kind(i - 1);
        int after = i + 1 == tokens->Size() ? kCodeAt : tokens->Kind(i + 1);
        if (!FitsSyntax(kind, before, after)) {
            *failedAt = tokens->At(i).at;
            return Result::kInconsistent;
        }
    }
    return Result::kOk;
}

// The span being reduced: tokens first..last, and the node most recently
// made (the tree's root once everything is reduced).
struct Span {
    int first;
    int last;
    ExprNode** latest;
};

// op at i takes the operand after it as its right child.
void ReduceUnary(Tokens* tokens, Span* span, int i) {
    Token& op = tokens->At(i);
    op.node->right = tokens->At(i + 1).node;
    op.kind = kCodeOperand;
    *span->latest = op.node;
    tokens->Drop(i + 1);
    span->last -= 1;
}

// op at i takes the operands before and after it; answers the new index of
// the resulting operand.
int ReduceBinary(Tokens* tokens, Span* span, int i) {
    Token& op = tokens->At(i);
    op.node->left = tokens->At(i - 1).node;
    op.node->right = tokens->At(i + 1).node;
    op.kind = kCodeOperand;
    *span->latest = op.node;
    tokens->Drop(i + 1);
    tokens->Drop(i - 1);
    span->last -= 2;
    return i - 1;
}

bool IsPrefixExceptNegate(int c) { return IsPrefixFunction(c) && c != kCodeNegate; }
bool IsProductLevel(int c) {
    return c == kCodeTimes || c == kCodeDivide || c == kCodeQuo || c == kCodeBinom ||
           c == kCodePerm || c == kCodeMod;
}
bool IsSumLevel(int c) { return c == kCodePlus || c == kCodeMinus; }

// Level 1: prefix functions (not 146), from the left: f x -> f(x).
bool ReducePrefixFunctions(Tokens* tokens, Span* span) {
    bool found = false;
    for (int i = span->first; i < span->last; ++i) {
        if (IsPrefixExceptNegate(tokens->Kind(i)) && IsOperand(tokens->Kind(i + 1))) {
            ReduceUnary(tokens, span, i);
            found = true;
        }
    }
    return found;
}

// Level 2: 146 and '^', from the right, so 2^3^2 = 2^9 and -2^2 = -(2^2).
bool ReduceNegateAndPower(Tokens* tokens, Span* span) {
    bool found = false;
    for (int i = span->last; i >= span->first; --i) {
        if (i > span->last) continue;
        int kind = tokens->Kind(i);
        bool operandAfter = i < span->last && IsOperand(tokens->Kind(i + 1));
        if (kind == kCodeNegate && operandAfter) {
            ReduceUnary(tokens, span, i);
            found = true;
        } else if (kind == kCodePower && operandAfter && i > span->first &&
                   IsOperand(tokens->Kind(i - 1))) {
            i = ReduceBinary(tokens, span, i) + 1;
            found = true;
        }
    }
    return found;
}

// Levels 3 to 5: left-associative binary operators of one level, from the left.
bool ReduceBinaryLevel(Tokens* tokens, Span* span, bool (*atLevel)(int)) {
    bool found = false;
    for (int i = span->first + 1; i < span->last; ++i) {
        if (atLevel(tokens->Kind(i)) && IsOperand(tokens->Kind(i - 1)) &&
            IsOperand(tokens->Kind(i + 1))) {
            i = ReduceBinary(tokens, span, i);
            found = true;
        }
    }
    return found;
}

// The precedence passes over one span, each repeated until it finds nothing:
// prefix functions; 146 and '^'; * / QUO C P MOD; + -; GCD LCM. '%', '~', '&'
// and '@' belong to no level and are never joined.
void ReduceSpan(Tokens* tokens, Span* span) {
    while (ReducePrefixFunctions(tokens, span)) {}
    while (ReduceNegateAndPower(tokens, span)) {}
    while (ReduceBinaryLevel(tokens, span, IsProductLevel)) {}
    while (ReduceBinaryLevel(tokens, span, IsSumLevel)) {}
    while (ReduceBinaryLevel(tokens, span, IsListFunction)) {}
}

// Leaf nodes for every token, then the innermost parenthesis group again and
// again (first ')' and the last '(' before it) is reduced and its parentheses
// dropped; then the whole rest. The root is the node made last, or the first
// token's when nothing was reduced; tokens left unjoined are discarded.
Result BuildTree(Tokens* tokens, TreePtr* root) {
    for (Token& t : tokens->items) {
        t.node = NewNode(t.kind);
        if (!t.node) return Result::kNoMemory;
        if (t.kind == kCodeOperand) {
            t.node->numerator = t.numerator;
            t.numerator = BigInt{};
            if (BigFromInt(&t.node->denominator, 1) != 0) return Result::kNoMemory;
        }
    }
    ExprNode* latest = nullptr;
    for (;;) {
        int close = 0;
        while (close < tokens->Size() && tokens->Kind(close) != kCodeClose) ++close;
        if (close == tokens->Size()) break;
        int open = close - 1;
        while (tokens->Kind(open) != kCodeOpen) --open;
        Span span{open + 1, close - 1, &latest};
        ReduceSpan(tokens, &span);
        tokens->Erase(span.last + 1);
        tokens->Erase(open);
    }
    Span all{0, tokens->Size() - 1, &latest};
    ReduceSpan(tokens, &all);
    root->reset(latest ? latest : tokens->At(0).node);
    for (Token& t : tokens->items)
        if (t.node == root->get()) t.node = nullptr;
    return Result::kOk;
}

// Children first: 146 over a leaf becomes the leaf with its sign flipped;
// any other 146 becomes (-1) * operand.
Result RewriteUnaryMinus(ExprNode* node) {
    if (!node) return Result::kOk;
    Result code = RewriteUnaryMinus(node->left);
    if (Ok(code)) code = RewriteUnaryMinus(node->right);
    if (!Ok(code) || node->kind != kCodeNegate) return code;
    ExprNode* operand = node->right;
    if (operand && operand->kind == kCodeOperand) {
        std::swap(node->numerator, operand->numerator);
        std::swap(node->denominator, operand->denominator);
        node->numerator.negative = node->numerator.negative ? 0 : 1;
        node->kind = kCodeOperand;
        node->right = nullptr;
        FreeTree(operand);
        return Result::kOk;
    }
    ExprNode* minusOne = NewNode(kCodeOperand);
    if (!minusOne) return Result::kNoMemory;
    if (BigFromInt(&minusOne->numerator, -1) != 0 || BigFromInt(&minusOne->denominator, 1) != 0) {
        FreeTree(minusOne);
        return Result::kNoMemory;
    }
    node->kind = kCodeTimes;
    node->left = minusOne;
    return Result::kOk;
}

}  // namespace

int LookUpFunction(const std::string& name) {
    for (const FunctionName& f : kFunctionNames)
        if (name == f.name) return f.code;
    return 0;
}

std::vector<std::string> FunctionNames() {
    std::vector<std::string> names;
    for (const FunctionName& f : kFunctionNames) names.emplace_back(f.name);
    return names;
}

namespace {

// The passes keep their work in standard containers; one that cannot grow
// throws, and the unwinding releases the tokens and the partial tree.
Result CompileText(const std::string& formula, TreePtr* root, int* failedAt) {
    // The working buffer of a formula holds kMaxFormulaChars; a longer text
    // is refused rather than cut.
    if (formula.size() > static_cast<size_t>(kMaxFormulaChars)) return Result::kCannotUnderstand;
    std::string text = formula;
    std::vector<int> at;
    PrepareText(&text, &at);
    // Deliberately unchecked: a bracket left behind is refused by the scan.
    ReplaceBracketNames(&text, &at);
    MarkUnaryMinus(&text);
    if (text.empty()) return Result::kNothingToDo;

    Tokens tokens;
    Result code = ScanTokens(text, at, &tokens, failedAt);
    if (Ok(code)) code = CheckParentheses(&tokens, failedAt);
    if (Ok(code)) code = FormNumbers(&tokens);
    if (Ok(code)) code = RewriteFactorials(&tokens, failedAt);
    if (Ok(code)) code = FoldLists(&tokens, failedAt);
    if (Ok(code)) code = InsertProductsAndCheckSyntax(&tokens, failedAt);
    TreePtr tree;
    if (Ok(code)) code = BuildTree(&tokens, &tree);
    if (Ok(code)) code = RewriteUnaryMinus(tree.get());
    if (Ok(code)) *root = std::move(tree);
    return code;
}

}  // namespace

Result CompileFormula(const std::string& formula, TreePtr* root, int* failedAt) {
    root->reset();
    int unused = -1;
    if (!failedAt) failedAt = &unused;
    *failedAt = -1;
    if (formula.empty()) return Result::kNothingToDo;
    try {
        return CompileText(formula, root, failedAt);
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
}
