#include "calc/evaluator.h"

#include "calc/codes.h"
#include "resources/result.h"

NumberValue::~NumberValue() {
    BigFree(&numerator);
    BigFree(&denominator);
}

VariableReader::~VariableReader() = default;

namespace {

bool IsWhole(const ExprNode* n) { return n && BigIsOne(&n->denominator); }

bool IsNegative(const BigInt* v) { return v->negative && !BigIsZero(v); }

// node := value / 1 through StoreResult (reduced modulo M in modulus mode).
Result StoreWhole(CalcContext* ctx, ExprNode* node, BigInt* value, Result code) {
    if (!Ok(code)) {
        BigFree(value);
        return code;
    }
    if (BigFromInt(&node->denominator, 1) != 0) {
        BigFree(value);
        return Result::kNoMemory;
    }
    return StoreResult(ctx, &node->numerator, value);
}

// node := value / 1 as computed, without reduction.
Result SetWhole(ExprNode* node, BigInt* value) {
    node->numerator = *value;
    *value = BigInt{};
    return BigFromInt(&node->denominator, 1) != 0 ? Result::kNoMemory : Result::kOk;
}

// The integer part of a fraction: the quotient truncated toward zero.
Result IntegerPart(CalcContext* ctx, ExprNode* node, const BigInt* num, const BigInt* den) {
    BigInt q = {}, r = {};
    Result code = BigDivMod(ctx, num, den, &q, &r);
    BigFree(&r);
    if (!Ok(code)) {
        BigFree(&q);
        return code;
    }
    return SetWhole(node, &q);
}

Result CopyValue(ExprNode* node, const BigInt* num, const BigInt* den) {
    if (BigCopy(&node->numerator, num) != 0) return Result::kNoMemory;
    if (BigCopy(&node->denominator, den) != 0) return Result::kNoMemory;
    return Result::kOk;
}

// The node's own operation, its children already evaluated.
Result Apply(CalcContext* ctx, const VariableReader& variables, ExprNode* node) {
    ExprNode* l = node->left;
    ExprNode* r = node->right;
    const int kind = node->kind;
    BigInt t = {};

    if (IsLetterCode(kind)) {
        const NumberValue* v = variables.Variable(kind - 'A' + 1);
        if (!v) return Result::kCouldNotFind;
        return CopyValue(node, &v->numerator, &v->denominator);
    }
    switch (kind) {
    case kCodePlus:
    case kCodeMinus:
    case kCodeTimes:
    case kCodeDivide: {
        if (!l || !r) return Result::kInconsistent;
        auto op = kind == kCodePlus    ? FracAdd
                  : kind == kCodeMinus ? FracSub
                  : kind == kCodeTimes ? FracMul
                                       : FracDiv;
        return op(ctx, &node->numerator, &node->denominator, &l->numerator, &l->denominator,
                  &r->numerator, &r->denominator);
    }
    case kCodePower:
        if (!l || !r || !IsWhole(r)) return Result::kInconsistent;
        return FracPow(ctx, &node->numerator, &node->denominator, &l->numerator, &l->denominator,
                       &r->numerator);
    case kCodeFact:
        if (!IsWhole(r)) return Result::kInconsistent;
        return StoreWhole(ctx, node, &t, BigFact(ctx, &t, &r->numerator));
    case kCodeAbs: {
        if (!r) return Result::kInconsistent;
        Result code = CopyValue(node, &r->numerator, &r->denominator);
        node->numerator.negative = 0;
        return code;
    }
    case kCodeBinom:
    case kCodePerm:
    case kCodeMod:
    case kCodeGcd:
    case kCodeLcm: {
        if (!IsWhole(l) || !IsWhole(r)) return Result::kInconsistent;
        const BigInt* a = &l->numerator;
        const BigInt* b = &r->numerator;
        Result code = kind == kCodeBinom  ? BigBinomial(ctx, &t, a, b)
                      : kind == kCodePerm ? BigPerm(ctx, &t, a, b)
                      : kind == kCodeMod  ? BigMod(ctx, a, b, &t)
                      : kind == kCodeGcd  ? BigGcd(ctx, a, b, &t)
                                          : BigLcm(ctx, a, b, &t);
        return StoreWhole(ctx, node, &t, code);
    }
    case kCodeHail: {
        if (!IsWhole(r)) return Result::kInconsistent;
        if (BigCopy(&t, &r->numerator) != 0) {
            BigFree(&t);
            return Result::kNoMemory;
        }
        const Result step = BigHail(ctx, &t);
        if (IsError(step)) {  // kHailOddStep is the odd branch's success
            BigFree(&t);
            return step;
        }
        return SetWhole(node, &t);
    }
    case kCodeQuo: {
        if (!l || !r) return Result::kInconsistent;
        BigInt qd = {};
        Result code =
            FracDiv(ctx, &t, &qd, &l->numerator, &l->denominator, &r->numerator, &r->denominator);
        if (Ok(code)) code = IntegerPart(ctx, node, &t, &qd);
        BigFree(&t);
        BigFree(&qd);
        return code;
    }
    case kCodeInt:
        if (!r) return Result::kInconsistent;
        return IntegerPart(ctx, node, &r->numerator, &r->denominator);
    case kCodeSqrt:
    case kCodeCurt: {
        if (!IsWhole(r)) return Result::kInconsistent;
        if (kind == kCodeSqrt && IsNegative(&r->numerator)) return Result::kPositiveValue;
        const Result code =
            kind == kCodeSqrt ? BigSqrt(ctx, &r->numerator, &t) : BigCbrt(ctx, &r->numerator, &t);
        if (code != Result::kOk && code != kRootInexact) {  // an inexact root is a root
            BigFree(&t);
            return code;
        }
        return SetWhole(node, &t);
    }
    default: return Result::kOk;
    }
}

}  // namespace

namespace {

// A variable read by an operation is lent to the letter's leaf instead of
// copied: the leaf's records share the variable's limbs only while the parent
// applies its operation (variables do not change meanwhile), and are cleared
// without freeing before anything else can see them. A letter at the root
// still copies, since its caller keeps the result.
bool IsLetterLeaf(const ExprNode* node) {
    return node && IsLetterCode(node->kind) && !node->left && !node->right;
}

Result Lend(const VariableReader& variables, ExprNode* leaf) {
    const NumberValue* v = variables.Variable(leaf->kind - 'A' + 1);
    if (!v) return Result::kCouldNotFind;
    leaf->numerator = v->numerator;
    leaf->denominator = v->denominator;
    return Result::kOk;
}

void GiveBack(ExprNode* node) {
    if (!IsLetterLeaf(node)) return;
    node->numerator = BigInt{};
    node->denominator = BigInt{};
}

Result EvaluateChild(CalcContext* ctx, const VariableReader& variables, ExprNode* child) {
    return IsLetterLeaf(child) ? Lend(variables, child) : Evaluate(ctx, variables, child);
}

}  // namespace

Result Evaluate(CalcContext* ctx, const VariableReader& variables, ExprNode* node) {
    if (!node || node->kind == kCodeOperand) return Result::kOk;
    Result code = Result::kOk;
    if (node->left) code = EvaluateChild(ctx, variables, node->left);
    if (Ok(code) && node->right) code = EvaluateChild(ctx, variables, node->right);
    if (Ok(code)) {
        BigFree(&node->numerator);
        BigFree(&node->denominator);
        code = Apply(ctx, variables, node);
    }
    GiveBack(node->left);
    GiveBack(node->right);
    return code;
}

Result StoreResult(CalcContext* ctx, BigInt* destination, BigInt* temporary) {
    Result code;
    if (ctx->modulusMode) {
        code = BigMod(ctx, temporary, &ctx->modulus, destination);
    } else {
        code = BigCopy(destination, temporary) != 0 ? Result::kNoMemory : Result::kOk;
    }
    BigFree(temporary);
    return code;
}
