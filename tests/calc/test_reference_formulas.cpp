// Random formulas against a reference evaluator on GMP. The generator builds a
// tree and prints it as a user would type it (precedence-minimal brackets,
// extra brackets, aliases, either case, implicit products, postfix '!',
// stray spaces); the program compiles and evaluates the text while the
// reference walks the tree. Codes must agree; values by cross-multiplication,
// and whether the value is whole.
//
// The reference keeps fractions as the program's unreduced pairs, because the
// kept quirks depend on the pair, not the value: a denominator of 1 or -1
// counts as whole and a whole operation then reads the numerator alone
// (10/-1 + 1 = 11), [ABS] clears only the numerator's sign, and a negated
// literal is folded into a leaf that modulus mode never reduces. [MOD] and
// the modulus reductions send a negative x to 1..|m| (-6 mod 3 = 3), and a
// modular power reduces step by step, which the reference repeats.
#include <gmpxx.h>
#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <memory>
#include <random>
#include <string>

#include "calc_test_util.h"

namespace {

using Z = mpz_class;
constexpr int kSkip = -100;  // outside the test's bounds: the formula is dropped

// clang-format off
enum Op { kLit, kVar, kAdd, kSub, kMul, kDiv, kPow, kNeg, kFact, kAbs, kBinom, kPerm, kMod, kQuo,
          kGcd, kLcm, kHail, kInt, kSqrt, kCurt };
// clang-format on

struct Node {
    Op op = kLit;
    long lit = 0;                // kLit's value, kVar's label 1..26
    int form = 0;                // printing choice
    std::unique_ptr<Node> a, b;  // a is the only operand of a prefix function
};

struct Val {
    int code = 0;
    Z num = 0, den = 1;
};

bool Whole(const Val& v) { return abs(v.den) == 1; }

struct Reference {
    bool modMode = false;
    Z m;
    Val vars[27];  // by label; code 2 where the letter is empty

    // x reduced by y as [MOD] does.
    static int ModOf(const Z& x, const Z& y, Z* r) {
        if (x < 0 && y == 0) return 104;
        *r = x >= 0 ? (y == 0 ? Z(0) : Z(x % y)) : Z(abs(y) - abs(Z(x % y)));
        return 0;
    }
    Z Red(Z x) const { return ModOf(x, m, &x), x; }  // M > 0: never 104
    // The program loops (or answers 1 by accident) for a multiple of M from M
    // on; those formulas are dropped.
    int Inverse(Z a, Z* v) const {
        if (a < 0) return 6;
        if (a >= m && a % m == 0) return kSkip;
        a %= m, *v = 0;
        if (gcd(a, m) == 1) mpz_invert(v->get_mpz_t(), a.get_mpz_t(), m.get_mpz_t());
        return 0;
    }
    static Z Gcd(const Z& x, const Z& y) {
        return x == 0 || abs(x) == abs(y) ? y : y == 0 ? x : gcd(x, y);
    }
    static int Perm(const Z& n, const Z& r, Z* out) {
        if (r < 1 || n < r || abs(n) >= 100000000 || abs(r) >= 100000000) return 17;
        if (n > 200) return kSkip;
        *out = 1;
        for (Z k = n - r + 1; k <= n; ++k) *out *= k;
        return 0;
    }
    static int Binom(const Z& n, const Z& k, Z* out) {
        *out = k == 0 || (n >= 0 && abs(n) == abs(k)) ? 1 : 0;
        if (*out == 1 || k < 0 || (n >= 0 && abs(k) > abs(n))) return 0;
        const Z mm = n < 0 ? Z(abs(n) - 1) : k, big = n < 0 ? Z(mm + k) : n;
        Z j = big - mm, p, f;
        if (abs(j) > abs(mm)) j = mm;
        int code = Perm(big, j, &p);
        if (code == 0) code = Perm(j, j, &f);
        if (code == 0) *out = n < 0 && k % 2 != 0 ? Z(-(p / f)) : Z(p / f);
        return code;
    }
    Val Arith(Op op, const Val& x, const Val& y) const {
        if (op == kDiv && y.num == 0) return Val{104};
        if (!Whole(x) || !Whole(y)) {  // unreduced, and never modulo M
            if (op == kDiv) return Val{0, x.num * y.den, x.den * y.num};
            if (op == kMul) return Val{0, x.num * y.num, x.den * y.den};
            const Z sum =
                op == kAdd ? Z(x.num * y.den + x.den * y.num) : Z(x.num * y.den - x.den * y.num);
            return Val{0, sum, x.den * y.den};
        }
        Val v;
        if (op == kDiv && modMode) {
            Z inv;
            v.code = Inverse(y.num, &inv);
            v.num = Red(x.num * inv);
        } else if (op == kDiv) {  // exact, or reduced
            const Z g = x.num % y.num == 0 ? Z(y.num) : gcd(x.num, y.num);
            v.num = x.num / g, v.den = y.num / g;
        } else {
            v.num = op == kAdd   ? Z(x.num + y.num)
                    : op == kSub ? Z(x.num - y.num)
                                 : Z(x.num * y.num);
            if (modMode) v.num = Red(v.num);
        }
        return v;
    }
    Val Power(const Val& x, Z e) const {
        Val v;
        if (e < 0 && x.num == 0) return Val{104};
        if (Whole(x) && modMode) {  // step by step, each product reduced
            Z b = x.num;
            if (e < 0) v.code = Inverse(x.num, &b), e = -e;
            for (v.num = 1; e != 0; e /= 2) {
                if (e % 2 != 0) v.num = Red(v.num * b), e -= 1;
                if (e / 2 != 0) b = Red(b * b);
            }
            return v;
        }
        if (abs(e) > 40) return Val{kSkip};
        Z p = x.num, q = Whole(x) ? Z(1) : x.den;
        if (e < 0) std::swap(p, q);
        mpz_pow_ui(v.num.get_mpz_t(), p.get_mpz_t(), Z(abs(e)).get_ui());
        mpz_pow_ui(v.den.get_mpz_t(), q.get_mpz_t(), Z(abs(e)).get_ui());
        return v;
    }
    // The compiler folds a minus over a literal into the literal.
    static bool FoldsToLeaf(const Node& n) {
        return n.op == kLit || (n.op == kNeg && FoldsToLeaf(*n.a));
    }
    Val Apply(const Node& n, const Val& x, const Val& y) const {
        const Z& p = x.num;
        const Z& r = y.num;
        Val v;
        switch (n.op) {
        case kPow: return Whole(y) ? Power(x, r) : Val{6};
        case kNeg: return FoldsToLeaf(*n.a) ? Val{0, -p, x.den} : Arith(kMul, {0, -1}, x);
        case kAbs: return Val{0, abs(p), x.den};
        case kInt: return Val{0, p / x.den};  // truncated
        case kQuo: v = Arith(kDiv, x, y); return Val{v.code, v.num / v.den};
        default:
            if (n.op <= kDiv) return Arith(n.op, x, y);
        }
        if (!Whole(x) || (n.b && !Whole(y))) return Val{6};
        switch (n.op) {  // the stored ones are reduced modulo M in modulus mode
        case kHail: return Val{0, p % 2 == 0 ? Z(p / 2) : p < 0 ? Z(3 * p - 1) : Z(3 * p + 1)};
        case kSqrt:
            if (p < 0) return Val{14};
            [[fallthrough]];
        case kCurt: mpz_root(v.num.get_mpz_t(), p.get_mpz_t(), n.op == kSqrt ? 2 : 3); return v;
        case kFact: v.code = Perm(p, p, &v.num); break;
        case kPerm: v.code = Perm(p, r, &v.num); break;
        case kBinom: v.code = Binom(p, r, &v.num); break;
        case kMod: v.code = ModOf(p, r, &v.num); break;
        case kGcd: v = Val{p == 0 && r == 0 ? 6 : 0, Gcd(p, r)}; break;
        default: v = p == 0 || r == 0 ? Val{104} : Val{0, abs(Z(p * r)) / Gcd(p, r)};  // lcm
        }
        if (modMode) v.num = Red(v.num);
        return v;
    }
    Val Eval(const Node& n) const {
        if (n.op == kLit) return Val{0, n.lit, 1};
        if (n.op == kVar) return vars[n.lit];
        Val x = n.a ? Eval(*n.a) : Val{}, y = n.b ? Eval(*n.b) : Val{};
        if (x.code != 0 || y.code != 0) return x.code != 0 ? x : y;  // left first
        Val v = Apply(n, x, y);
        if (mpz_sizeinbase(v.num.get_mpz_t(), 2) + mpz_sizeinbase(v.den.get_mpz_t(), 2) > 4000)
            v.code = kSkip;
        return v;
    }
};

// Binding levels, loosest first; a subtree printed where a tighter level is
// needed gets brackets.
enum Level { kList, kSum, kProduct, kPower, kAtom };

struct Generator {
    std::mt19937 rng;
    bool modMode = false;
    int Pick(int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); }

    std::unique_ptr<Node> Make(int depth) {
        auto n = std::make_unique<Node>();
        n->form = Pick(4);
        if (depth == 0 || Pick(5) == 0) {
            n->op = Pick(3) == 0 ? kVar : kLit;
            n->lit = n->op == kVar ? (Pick(40) == 0 ? 26 : 1 + Pick(7))  // Z is empty
                                   : (Pick(8) == 0 ? Pick(100000) : Pick(13));
            return n;
        }
        static const Op kWeighted[] = {kAdd, kAdd, kSub, kSub,  kMul,  kMul,  kDiv,   kDiv,  kDiv,
                                       kPow, kPow, kNeg, kNeg,  kFact, kAbs,  kBinom, kPerm, kMod,
                                       kQuo, kGcd, kLcm, kHail, kInt,  kSqrt, kCurt};
        do n->op = kWeighted[Pick(sizeof kWeighted / sizeof *kWeighted)];
        while (modMode && n->op == kQuo);  // whether [QUO] divides modularly is not settled
        n->a = Make(depth - 1);
        const bool prefix = n->op == kNeg || n->op == kFact || n->op >= kHail || n->op == kAbs;
        if (n->op == kPow || !prefix) n->b = Make(n->op == kPow ? Pick(3) == 0 : depth - 1);
        return n;
    }

    static int LevelOf(const Node& n) {
        static const int kLevels[] = {kAtom,    kAtom,    kSum,     kSum,     kProduct,
                                      kProduct, kPower,   kPower,   kAtom,    kAtom,
                                      kProduct, kProduct, kProduct, kProduct, kAtom};
        if (n.op == kGcd || n.op == kLcm) return n.form == 0 ? kList : kAtom;
        return n.op < kGcd ? kLevels[n.op] : kAtom;
    }
    // A bracket name: any alias, letters in either case.
    std::string Name(Op op) {
        // clang-format off
        static const char* const kNames[][4] = {{"FACT"}, {"ABS"}, {"BINOM", "BIN", "C", "COMB"},
            {"P", "PERM"}, {"MOD"}, {"QUO"}, {"GCD"}, {"LCM"}, {"HAIL"}, {"INT"}, {"SQR", "SQRT"},
            {"CURT"}};
        // clang-format on
        int k = Pick(4);
        while (!kNames[op - kFact][k]) --k;
        std::string s = kNames[op - kFact][k];
        for (char& c : s) c = static_cast<char>(Pick(2) ? tolower(c) : c);
        return "[" + s + "]";
    }
    // The arguments of a list function; a left operand of the same list
    // function with form 1 joins the list ([GCD](a,b,c)).
    std::string Args(const Node& n) {
        const bool join = n.a->op == n.op && n.a->form == 1;
        return (join ? Args(*n.a) : Print(*n.a, kSum)) + "," + Print(*n.b, kSum);
    }
    std::string Print(const Node& n, int need) {
        std::string s = Bare(n);
        return LevelOf(n) < need || Pick(12) == 0 ? "(" + s + ")" : s;
    }
    std::string Bare(const Node& n) {
        const int level = LevelOf(n);
        if (n.op == kLit) return std::to_string(n.lit);
        if (n.op == kVar)
            return std::string(1, static_cast<char>((Pick(2) ? 'A' : 'a') + n.lit - 1));
        if (n.op == kNeg) return "-" + Print(*n.a, kPower);
        if (n.op == kPow) return Print(*n.a, kAtom) + "^" + Print(*n.b, kPower);
        if (n.op == kMul) {
            std::string l = Print(*n.a, kProduct), r = Print(*n.b, kPower);
            // "2A", "A(3)", "(2)3": the compiler inserts the '*'
            const bool digits = isdigit(l.back()) && isdigit(r.front());
            const bool tight =
                (isalnum(l.back()) || l.back() == ')') && r.front() != '-' && r.front() != '[';
            return l + (n.form == 0 && tight && !digits ? "" : "*") + r;
        }
        if (level < kPower) {
            const std::string op = n.op <= kDiv ? std::string(1, "+-*/"[n.op - kAdd]) : Name(n.op);
            return Print(*n.a, level) + op + Print(*n.b, level + 1);
        }
        if (n.op == kGcd || n.op == kLcm) return Name(n.op) + "(" + Args(n) + ")";
        if (n.op == kFact && n.form == 0 && (n.a->op == kLit || n.a->op == kVar))
            return Bare(*n.a) + "!";
        if (n.op == kFact && n.form == 1) return "(" + Print(*n.a, kList) + ")!";
        return Name(n.op) + "(" + Print(*n.a, kList) + ")";
    }
    // Spaces anywhere: the compiler removes them first.
    std::string Text(const Node& n) {
        std::string s;
        for (char c : Bare(n)) s += Pick(25) == 0 ? std::string(" ") + c : std::string(1, c);
        return s;
    }
};

Z FromBig(const BigInt* v) { return Z(::Text(v)); }

}  // namespace

// Ends a runaway evaluation (a fault that loops) with -1 after a budget of
// polls, so that it shows as a disagreement instead of a hang.
struct Budget : CalcContext {
    long left = 0;
    int PollQuitKey() override { return --left < 0 ? kQuitKey : 0; }
};

TEST(ReferenceFormulas, AgreeWithGmp) {
    Budget ctx;
    CalcModel model(&ctx);
    Reference ref;
    // Letters A-G: whole, fractions with either sign in either place, and
    // 10/-1, which counts as whole; Z stays empty.
    const char* const kValues[][2] = {{"7", "1"},   {"-12", "1"}, {"3", "4"}, {"-5", "6"},
                                      {"10", "-1"}, {"4", "-6"},  {"0", "1"}};
    for (int label = 1; label <= 26; ++label) ref.vars[label] = Val{2};
    for (int label = 1; label <= 7; ++label) {
        Num num(kValues[label - 1][0]), den(kValues[label - 1][1]);
        ASSERT_EQ(model.StoreValue(label, "", &num.v, &den.v), Result::kOk);
        ref.vars[label] = Val{0, Z(kValues[label - 1][0]), Z(kValues[label - 1][1])};
    }
    Generator gen{std::mt19937(20261124)};
    std::map<int, int> codes;
    int compared = 0, failures = 0;
    for (const char* modulus : {"0", "7", "12", "13", "101"}) {  // 0: modulus mode off
        Num m(modulus);
        ASSERT_EQ(model.SetModulus(&m.v), Result::kOk);
        model.SetModulusMode(modulus[0] != '0');
        gen.modMode = ref.modMode = model.ModulusMode();
        ref.m = Z(modulus);
        for (int i = 0; i < (ref.modMode ? 1500 : 6000); ++i) {
            const std::unique_ptr<Node> tree = gen.Make(1 + gen.Pick(5));
            const Val want = ref.Eval(*tree);
            if (want.code == kSkip) continue;
            const std::string text = gen.Text(*tree);
            NumberValue got;
            ctx.left = 1000000;
            const Result code = model.EvaluateFormula(text, &got);
            ++compared, ++codes[want.code];
            bool same = code == want.code;
            if (same && Ok(code)) {
                const Z num = FromBig(&got.numerator), den = FromBig(&got.denominator);
                same = num * want.den == want.num * den && (abs(den) == 1) == Whole(want);
            }
            if (!same && ++failures <= 20)
                ADD_FAILURE() << "M=" << modulus << "  " << text << "\n  ours: code " << code
                              << (Ok(code) ? " " + Value(&got.numerator, &got.denominator) : "")
                              << "\n  want: code " << want.code << " "
                              << want.num.get_str() + "/" + want.den.get_str();
        }
    }
    EXPECT_EQ(failures, 0);
    // The run is meant to reach every outcome, not only values.
    for (int c : {0, 2, 6, 14, 17, 104}) EXPECT_GT(codes[c], 0) << "no formula gave code " << c;
    EXPECT_GT(compared, 11000);
}
