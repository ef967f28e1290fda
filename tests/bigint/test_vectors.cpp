// Runs the hand-picked cases of arith_vectors.txt through the public operations.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <sstream>

#include "support.h"

namespace {

struct Frac {
    Num n, d;
    explicit Frac(const std::string& text)
        : n(text.substr(0, text.find('/'))),
          d(text.find('/') == std::string::npos ? "1" : text.substr(text.find('/') + 1)) {}
};

struct Outcome {
    std::vector<std::string> results;
    int code;
};

using Args = std::vector<std::string>;
using Op = std::function<Outcome(CalcContext*, const Args&)>;

std::string FracText(const Num& n, const Num& d) { return Text(n) + "/" + Text(d); }

Op Binary(int (*f)(CalcContext*, BigInt*, const BigInt*, const BigInt*)) {
    return [f](CalcContext* ctx, const Args& a) {
        Num x(a[0]), y(a[1]), r;
        const int code = f(ctx, &r.v, &x.v, &y.v);
        return Outcome{{Text(r)}, code};
    };
}

Op BinaryLast(int (*f)(CalcContext*, const BigInt*, const BigInt*, BigInt*)) {
    return [f](CalcContext* ctx, const Args& a) {
        Num x(a[0]), y(a[1]), r;
        const int code = f(ctx, &x.v, &y.v, &r.v);
        return Outcome{{Text(r)}, code};
    };
}

Op Unary(int (*f)(CalcContext*, const BigInt*, BigInt*)) {
    return [f](CalcContext* ctx, const Args& a) {
        Num x(a[0]), r;
        const int code = f(ctx, &x.v, &r.v);
        return Outcome{{Text(r)}, code};
    };
}

Op Fraction(int (*f)(CalcContext*, BigInt*, BigInt*, const BigInt*, const BigInt*,
                     const BigInt*, const BigInt*)) {
    return [f](CalcContext* ctx, const Args& a) {
        Frac x(a[0]), y(a[1]);
        Num n, d;
        const int code = f(ctx, &n.v, &d.v, &x.n.v, &x.d.v, &y.n.v, &y.d.v);
        return Outcome{{FracText(n, d)}, code};
    };
}

Op Modular(int (*f)(CalcContext*, BigInt*, const BigInt*, const BigInt*, const BigInt*)) {
    return [f](CalcContext* ctx, const Args& a) {
        Num x(a[0]), y(a[1]), m(a[2]), r;
        const int code = f(ctx, &r.v, &x.v, &y.v, &m.v);
        return Outcome{{Text(r)}, code};
    };
}

const std::map<std::string, Op>& Ops() {
    static const std::map<std::string, Op> ops = {
        {"read", [](CalcContext*, const Args& a) {
             std::string text = a[0];
             Num r;
             const int code = BigFromText(&text[0], &r.v);
             return Outcome{{Text(r)}, code};
         }},
        {"mul", Binary(BigMul)},
        {"divmod", [](CalcContext* ctx, const Args& a) {
             Num x(a[0]), d(a[1]), q, r;
             const int code = BigDivMod(ctx, &x.v, &d.v, &q.v, &r.v);
             return Outcome{{Text(q), Text(r)}, code};
         }},
        {"frac+", Fraction(FracAdd)},
        {"frac-", Fraction(FracSub)},
        {"frac*", Fraction(FracMul)},
        {"frac/", Fraction(FracDiv)},
        {"pow", Binary(BigPow)},
        {"fpow", [](CalcContext* ctx, const Args& a) {
             Frac b(a[0]);
             Num e(a[1]), n, d;
             const int code = FracPow(ctx, &n.v, &d.v, &b.n.v, &b.d.v, &e.v);
             return Outcome{{FracText(n, d)}, code};
         }},
        {"sqrt", Unary(BigSqrt)},
        {"cbrt", Unary(BigCbrt)},
        {"fact", [](CalcContext* ctx, const Args& a) {
             Num n(a[0]), r;
             const int code = BigFact(ctx, &r.v, &n.v);
             return Outcome{{Text(r)}, code};
         }},
        {"perm", Binary(BigPerm)},
        {"binom", Binary(BigBinomial)},
        {"gcd", BinaryLast(BigGcd)},
        {"lcm", BinaryLast(BigLcm)},
        {"hail", [](CalcContext* ctx, const Args& a) {
             Num x(a[0]);
             const int code = BigHail(ctx, &x.v);
             return Outcome{{Text(x)}, code};
         }},
        {"mod", BinaryLast(BigMod)},
        {"inv", BinaryLast(ModInverse)},
        {"modadd", Modular(ModAdd)},
        {"modsub", Modular(ModSub)},
        {"modmul", Modular(ModMul)},
        {"modpow", [](CalcContext* ctx, const Args& a) {
             Num b(a[0]), e(a[1]), m(a[2]), r;
             const int code = ModPow(ctx, &b.v, &e.v, &r.v, &m.v);
             return Outcome{{Text(r)}, code};
         }},
        {"conv", [](CalcContext* ctx, const Args& a) {
             std::string text = a[2];
             for (char& c : text) {
                 if (c == '~') c = ' ';
             }
             const int code = ConvertBase(ctx, std::stoi(a[0]), std::stoi(a[1]), &text);
             return Outcome{{text.empty() ? "_" : text}, code};
         }},
    };
    return ops;
}

TEST(HandPickedCases, EveryLineOfTheVectorFileHolds) {
    std::ifstream in(TestDataPath("arith_vectors.txt"));
    ASSERT_TRUE(in) << "cannot open the vector file";
    std::string line;
    int lineNo = 0, cases = 0;
    while (std::getline(in, line)) {
        ++lineNo;
        if (line.empty() || line[0] == '#') continue;
        std::istringstream tokens(line);
        std::vector<std::string> args, expected;
        std::string token, op;
        int code = 0;
        bool afterArrow = false;
        CalcContext ctx;
        while (tokens >> token) {
            if (op.empty() && token.rfind("M=", 0) == 0) {
                std::string m = token.substr(2);
                ctx.modulusMode = true;
                BigFromText(&m[0], &ctx.modulus);
            } else if (op.empty()) {
                op = token;
            } else if (token == "->") {
                afterArrow = true;
            } else if (token[0] == '!') {
                code = std::stoi(token.substr(1));
            } else {
                (afterArrow ? expected : args).push_back(token);
            }
        }
        const auto found = Ops().find(op);
        ASSERT_NE(found, Ops().end()) << "line " << lineNo << ": unknown operation " << op;
        const Outcome got = found->second(&ctx, args);
        ++cases;
        EXPECT_EQ(got.code, code) << "line " << lineNo << ": " << line;
        ASSERT_EQ(got.results.size(), expected.size()) << "line " << lineNo;
        for (size_t i = 0; i < expected.size(); ++i) {
            if (expected[i] != "?") {
                EXPECT_EQ(got.results[i], expected[i]) << "line " << lineNo << ": " << line;
            }
        }
    }
    EXPECT_GT(cases, 100);
}

}  // namespace
