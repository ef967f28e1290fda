// The command-line entry: names, arguments, codes, and runs that cannot hang.
#include <gtest/gtest.h>

#include "list_support.h"
#include "lists/list_command.h"

namespace {

int RunList(const std::vector<std::string>& args, ListOutput* out, CalcContext* ctx = nullptr) {
    CalcContext quiet;
    return RunListCommand(ctx ? ctx : &quiet, args, out);
}

}  // namespace

TEST(ListCommand, EveryNameReachesItsList) {
    struct Case {
        std::vector<std::string> args;
        const char* caption;
    } cases[] = {
        {{"primes", "10"}, "4 primes"},
        {{"factor", "360"}, "prime factorization of 360"},
        {{"divisors", "12"}, "divisor list [12] : 6"},
        {{"triples", "5"}, "Pythagorean triples [primitive; hypotenuse < 6] : 1"},
        {{"alltriples", "10"}, "Pythagorean triples [hypotenuse < 11] : 2"},
        {{"generators", "2"}, "Pythagorean triples : 1"},
        {{"common", "12"}, "Pythagorean triples [common number = 12] : 4"},
        {{"tri60", "2"}, "0 primitive 60-degree triangles "},
        {{"tri120", "4"}, "5 primitive 120-degree triangles "},
        {{"heron", "12", "12", "right"}, "Heronian triangles [11 < perim < 13] : 1"},
        {{"ratmed", "12", "20", "two"}, "rational medians [11 < perim < 21] : 0"},
        {{"perpmed", "54", "54"}, "perpendicular medians [53 < perim < 55] : 1"},
        {{"quads", "3", "10", "zeros", "repeats"}, "Pythagorean quadruples [repeats; 2 < length < 10] : 4"},
        {{"squares", "25"}, "25 = 2 sums of two squares"},
        {{"cyclotomic", "6"}, "cyclotomic polynomial [6]"},
        {{"polygons", "5", "6", "100"}, "polygons [sides 6, squared length 5] : 0"},
    };
    for (const Case& c : cases) {
        ListOutput out;
        EXPECT_EQ(RunList(c.args, &out), 0) << c.args[0];
        EXPECT_EQ(out.caption, c.caption) << c.args[0];
    }
}

TEST(ListCommand, CodesForWrongInput) {
    struct Case {
        std::vector<std::string> args;
        int code;
    } cases[] = {
        {{"primes", "1"}, 17},
        {{"triples", "4"}, 10},
        {{"factor", "1"}, 10},
        {{"heron", "100", "50"}, 6},
        {{"quads", "3", "10", "distinct", "repeats"}, 1},
        {{"heron", "12", "50", "sideways"}, 1},
        {{"perpmed", "54", "100", "right"}, 1},
        {{"primes"}, 1},
        {{"polygons", "32045", "7", "10"}, 17},
        {{"polygons", "32045", "6"}, 1},
        {{"pentagons", "5"}, 2},
        {{}, 1},
    };
    for (const Case& c : cases) {
        ListOutput out;
        EXPECT_EQ(RunList(c.args, &out), c.code) << (c.args.empty() ? "" : c.args[0]);
        EXPECT_TRUE(out.text.empty());
    }
}

TEST(ListCommand, PolygonRoundsAndSeed) {
    ListOutput a, b, c;
    ASSERT_EQ(RunList({"polygons", "1105", "8", "50000", "9"}, &a), 0);
    ASSERT_EQ(RunList({"polygons", "1105", "8", "50000", "9"}, &b), 0);
    ASSERT_EQ(RunList({"polygons", "1105", "8", "50000", "10"}, &c), 0);
    EXPECT_EQ(a.text, b.text);
    EXPECT_NE(a.text, c.text);
    QuitAtPoll interrupt(10);
    ListOutput d;
    EXPECT_EQ(RunList({"polygons", "32045", "6", "4000000000"}, &d, &interrupt), 0);
    EXPECT_EQ(interrupt.polls(), 10) << "Ctrl+C ends an unbounded search";
}
