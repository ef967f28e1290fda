// Runs the hand-picked cases of arith_vectors.txt through the public operations.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>

#include "support/test_support.h"

namespace {

// The vector file sits beside this source.
std::string TestDataPath(const char* name) {
    const std::string here = __FILE__;
    return here.substr(0, here.find_last_of('/') + 1) + name;
}

struct Frac {
    Num n, d;
    explicit Frac(const std::string& t)
        : n(t.substr(0, t.find('/'))),
          d(t.find('/') == std::string::npos ? "1" : t.substr(t.find('/') + 1)) {}
};

struct Outcome {
    std::vector<std::string> results;
    int code = -99;
};

Outcome RunCase(CalcContext* c, const std::string& op, const std::vector<std::string>& args) {
    std::vector<std::unique_ptr<Frac>> f;
    for (const std::string& a : args) f.emplace_back(new Frac(a));
    auto X = [&](size_t i) { return &f[i]->n.v; };
    auto D = [&](size_t i) { return &f[i]->d.v; };
    Num r, s;
    Outcome o;
    const bool pair = op.rfind("frac", 0) == 0 || op == "fpow";
    if (op == "read") {
        std::string t = args[0];
        o.code = BigFromText(&t[0], &r.v);
    } else if (op == "conv") {
        std::string t = args[2];
        for (char& ch : t) ch = ch == '~' ? ' ' : ch;
        o.code = ConvertBase(c, std::stoi(args[0]), std::stoi(args[1]), &t);
        return {{t.empty() ? "_" : t}, o.code};
    } else if (op == "divmod") {
        o.code = BigDivMod(c, X(0), X(1), &r.v, &s.v);
        return {{Text(r), Text(s)}, o.code};
    } else if (pair) {
        auto frac = op == "frac+"   ? FracAdd
                    : op == "frac-" ? FracSub
                    : op == "frac*" ? FracMul
                                    : FracDiv;
        o.code = op == "fpow" ? FracPow(c, &r.v, &s.v, X(0), D(0), X(1))
                              : frac(c, &r.v, &s.v, X(0), D(0), X(1), D(1));
        return {{Text(r) + "/" + Text(s)}, o.code};
    }
    if (op == "mul") o.code = BigMul(c, &r.v, X(0), X(1));
    if (op == "pow") o.code = BigPow(c, &r.v, X(0), X(1));
    if (op == "sqrt") o.code = BigSqrt(c, X(0), &r.v);
    if (op == "cbrt") o.code = BigCbrt(c, X(0), &r.v);
    if (op == "fact") o.code = BigFact(c, &r.v, X(0));
    if (op == "perm") o.code = BigPerm(c, &r.v, X(0), X(1));
    if (op == "binom") o.code = BigBinomial(c, &r.v, X(0), X(1));
    if (op == "gcd") o.code = BigGcd(c, X(0), X(1), &r.v);
    if (op == "lcm") o.code = BigLcm(c, X(0), X(1), &r.v);
    if (op == "mod") o.code = BigMod(c, X(0), X(1), &r.v);
    if (op == "inv") o.code = ModInverse(c, X(0), X(1), &r.v);
    if (op == "modmul") o.code = ModMul(c, &r.v, X(0), X(1), X(2));
    if (op == "modpow") o.code = ModPow(c, X(0), X(1), &r.v, X(2));
    if (op == "hail") {
        o.code = BigHail(c, X(0));
        return {{Text(X(0))}, o.code};
    }
    o.results.push_back(Text(r));
    return o;
}

TEST(HandPickedCases, EveryLineOfTheVectorFileHolds) {
    std::ifstream in(TestDataPath("arith_vectors.txt"));
    ASSERT_TRUE(in) << "cannot open the vector file";
    std::string line, token;
    for (int lineNo = 1; std::getline(in, line); ++lineNo) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream tokens(line);
        std::vector<std::string> args, expected;
        std::string op;
        int code = 0;
        bool afterArrow = false;
        CalcContext ctx;
        while (tokens >> token) {
            if (op.empty() && token.rfind("M=", 0) == 0) {
                ctx.modulusMode = true;
                ASSERT_EQ(BigFromText(&token[2], &ctx.modulus), Result::kOk) << "line " << lineNo;
            } else if (op.empty()) {
                op = token;
            } else if (token == "->" || token[0] == '!') {
                afterArrow = true;
                if (token[0] == '!') code = std::stoi(token.substr(1));
            } else {
                (afterArrow ? expected : args).push_back(token);
            }
        }
        const Outcome got = RunCase(&ctx, op, args);
        ASSERT_NE(got.code, -99) << "line " << lineNo << ": unknown operation " << op;
        EXPECT_EQ(got.code, code) << "line " << lineNo << ": " << line;
        ASSERT_EQ(got.results.size(), expected.size()) << "line " << lineNo;
        for (size_t i = 0; i < expected.size(); ++i) {
            if (expected[i] != "?") {
                EXPECT_EQ(got.results[i], expected[i]) << "line " << lineNo;
            }
        }
    }
}

}  // namespace
