// Internal character codes of the formula language.
//
// Before scanning, every bracketed function name is replaced by one byte, so
// from then on each token is exactly one code. The compiler's passes and the
// evaluator switch on these values; they are part of the design and never
// change.
#pragma once

constexpr int kCodeOperand = 35;        // '#': a number, or a subtree already built
constexpr int kCodeFactorialMark = 33;  // '!' postfix factorial
constexpr int kCodeQuote = 39;          // '\'': scanned, but belongs to no class
constexpr int kCodeOpen = 40;           // '('
constexpr int kCodeClose = 41;          // ')'
constexpr int kCodeComma = 44;          // ','
constexpr int kCodeTimes = 42;          // '*'
constexpr int kCodePlus = 43;           // '+'
constexpr int kCodeMinus = 45;          // binary '-'
constexpr int kCodeDivide = 47;         // '/'
constexpr int kCodePower = 94;          // '^'
constexpr int kCodePercent = 37;        // '%': accepted, never joined into a tree
constexpr int kCodeTilde = 126;         // '~': likewise
constexpr int kCodeAmpersand = 38;      // '&': likewise
constexpr int kCodeAt = 64;             // '@': likewise; also the start/end mark
constexpr int kCodeBar = 124;           // '|': allowed after ')' by the syntax rule
constexpr int kCodeNegate = 146;        // unary minus
constexpr int kCodeFact = 132;          // [FACT]
constexpr int kCodeAbs = 139;           // [ABS]
constexpr int kCodeBinom = 159;         // [BINOM] [BIN] [C] [COMB], infix
constexpr int kCodePerm = 160;          // [P] [PERM], infix
constexpr int kCodeMod = 208;           // [MOD], infix
constexpr int kCodeGcd = 209;           // [GCD], list function
constexpr int kCodeLcm = 210;           // [LCM], list function
constexpr int kCodeHail = 211;          // [HAIL]
constexpr int kCodeQuo = 212;           // [QUO], infix
constexpr int kCodeInt = 213;           // [INT]
constexpr int kCodeSqrt = 251;          // [SQR] [SQRT]
constexpr int kCodeCurt = 252;          // [CURT]

inline bool IsLetterCode(int c) { return c >= 'A' && c <= 'Z'; }
inline bool IsDigitCode(int c) { return c >= '0' && c <= '9'; }
inline bool IsListFunction(int c) { return c == kCodeGcd || c == kCodeLcm; }

// Binary operators, including the four that no precedence level takes and the
// list functions (which become infix once their commas are folded).
inline bool IsBinaryOperator(int c) {
    switch (c) {
    case kCodeTimes:
    case kCodePlus:
    case kCodeMinus:
    case kCodeDivide:
    case kCodePower:
    case kCodePercent:
    case kCodeTilde:
    case kCodeAmpersand:
    case kCodeAt:
    case kCodeBinom:
    case kCodePerm:
    case kCodeMod:
    case kCodeQuo:
    case kCodeGcd:
    case kCodeLcm: return true;
    default: return false;
    }
}

// Prefix functions take one parenthesised argument; list functions are not
// among them.
inline bool IsPrefixFunction(int c) {
    switch (c) {
    case kCodeFact:
    case kCodeAbs:
    case kCodeNegate:
    case kCodeHail:
    case kCodeInt:
    case kCodeSqrt:
    case kCodeCurt: return true;
    default: return false;
    }
}
