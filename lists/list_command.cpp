#include "lists/list_command.h"

#include "lists/list_generators.h"
#include "lists/list_inputs.h"

namespace {

using Args = std::vector<std::string>;

// The optional words after the bounds: each may appear once, in any order.
bool ReadFlags(const Args& args, size_t from,
               std::initializer_list<std::pair<const char*, bool*>> flags) {
    for (size_t i = from; i < args.size(); ++i) {
        bool known = false;
        for (const auto& [word, flag] : flags)
            if (args[i] == word && !*flag) {
                *flag = known = true;
                break;
            }
        if (!known) return false;
    }
    return true;
}

// The lists of one number.
struct OneNumberList {
    const char* name;
    ListKind kind;
    Result (*run)(CalcContext*, uint32_t, ListOutput*);
};

// A list of one number and a choice, with the choice made.
template <Result (*List)(CalcContext*, uint32_t, bool, ListOutput*), bool kChoice>
Result WithChoice(CalcContext* ctx, uint32_t n, ListOutput* out) {
    return List(ctx, n, kChoice, out);
}

const OneNumberList kOneNumberLists[] = {
    {"primes", ListKind::primes, ListPrimes},
    {"triples", ListKind::primitiveTriples, WithChoice<ListHypotenuseTriples, true>},
    {"alltriples", ListKind::allTriples, WithChoice<ListHypotenuseTriples, false>},
    {"generators", ListKind::generators, ListTripleGenerators},
    {"common", ListKind::commonEntry, ListCommonEntry},
    {"tri60", ListKind::tri60, WithChoice<ListAngleTriangles, false>},
    {"tri120", ListKind::tri120, WithChoice<ListAngleTriangles, true>},
    {"cyclotomic", ListKind::cyclotomic, ListCyclotomic},
    {"soddy", ListKind::soddyCircles, ListSoddyCircles},
    {"soddy3", ListKind::soddySpheres, ListSoddySpheres},
    {"soddyline", ListKind::soddyLine, ListSoddyLine},
    {"soddyplane", ListKind::soddyPlane, ListSoddyPlane},
    {"tetra", ListKind::tetrahedra, ListRationalTetrahedra},
    {"cyclic", ListKind::cyclicQuads, ListCyclicQuadrilaterals},
    {"bicentric", ListKind::bicentricQuads, ListBicentricQuadrilaterals},
};

Result RunTriangles(CalcContext* ctx, const Args& args, ListOutput* out) {
    TriangleOptions o;
    const std::string& name = args[0];
    if (args.size() < 3) return Result::kCannotUnderstand;
    if (!ParseListUnsigned(args[1], &o.minPerimeter) ||
        !ParseListUnsigned(args[2], &o.maxPerimeter))
        return Result::kOutOfBounds;
    if (name == "heron") {
        if (!ReadFlags(args, 3, {{"right", &o.right}, {"isosceles", &o.isosceles}}))
            return Result::kCannotUnderstand;
        return ListHeronian(ctx, o, out);
    }
    if (name == "ratmed") {
        if (!ReadFlags(args, 3,
                       {{"right", &o.right}, {"isosceles", &o.isosceles}, {"two", &o.atLeastTwo}}))
            return Result::kCannotUnderstand;
        return ListRationalMedians(ctx, o, out);
    }
    if (args.size() != 3) return Result::kCannotUnderstand;
    return ListPerpendicularMedians(ctx, o, out);
}

Result RunQuads(CalcContext* ctx, const Args& args, ListOutput* out) {
    QuadOptions o;
    if (args.size() < 3) return Result::kCannotUnderstand;
    if (!ParseListUnsigned(args[1], &o.minLength) || !ParseListUnsigned(args[2], &o.maxLength))
        return Result::kOutOfBounds;
    bool distinct = false, repeats = false;
    if (!ReadFlags(args, 3,
                   {{"primitive", &o.primitiveOnly},
                    {"ascending", &o.ascending},
                    {"distinct", &distinct},
                    {"repeats", &repeats},
                    {"zeros", &o.zeros}}) ||
        (distinct && repeats))
        return Result::kCannotUnderstand;
    o.kind = distinct ? QuadKind::distinct : repeats ? QuadKind::repeats : QuadKind::any;
    return ListQuadruples(ctx, o, out);
}

Result RunPolygons(CalcContext* ctx, const Args& args, ListOutput* out) {
    if (args.size() != 4 && args.size() != 5) return Result::kCannotUnderstand;
    uint32_t n = 0, m = 0, rounds = 0, seed = 1;
    if (!ParseListUnsigned(args[1], &n) || !ParseListUnsigned(args[2], &m))
        return Result::kOutOfBounds;
    if (!ParseListUnsigned(args[3], &rounds) ||
        (args.size() == 5 && !ParseListUnsigned(args[4], &seed)))
        return Result::kCannotUnderstand;
    ListRandom rng(seed);
    return ListPolygons(ctx, n, m, rounds, &rng, out);
}

// cubes MAX [dups]
Result RunCubes(CalcContext* ctx, const Args& args, ListOutput* out) {
    if (args.size() < 2) return Result::kCannotUnderstand;
    uint32_t max = 0;
    if (Result code = ReadListValue(ListKind::latticeCubes, args[1], &max)) return code;
    bool duplicates = false;
    if (!ReadFlags(args, 2, {{"dups", &duplicates}})) return Result::kCannotUnderstand;
    return ListLatticeCubes(ctx, max, duplicates, out);
}

// curvatures [A B C D] MAX
Result RunCurvatures(CalcContext* ctx, const Args& args, ListOutput* out) {
    if (args.size() != 2 && args.size() != 6) return Result::kCannotUnderstand;
    DescartesQuadruple start{{-1, 2, 2, 3}};
    if (args.size() == 6) {
        const std::string quad = args[1] + ' ' + args[2] + ' ' + args[3] + ' ' + args[4];
        if (Result code = ReadDescartesQuadruple(quad, start.k)) return code;
    }
    uint32_t max = 0;
    if (!ParseListUnsigned(args.back(), &max)) return Result::kOutOfBounds;
    if (Result code = CheckCurvatureBound(max)) return code;
    return ListCurvatures(ctx, start, max, out);
}

// The lists of one typed text.
Result RunTextList(CalcContext* ctx, const Args& args, ListOutput* out) {
    if (args.size() != 2) return Result::kCannotUnderstand;
    if (args[0] == "factor") return ListFactor(ctx, args[1], out);
    if (args[0] == "divisors") return ListDivisors(ctx, args[1], out);
    return ListTwoSquares(ReadListUnsignedLoose(args[1]), out);
}

// The lists that read their arguments themselves.
const struct {
    const char* name;
    Result (*run)(CalcContext*, const Args&, ListOutput*);
} kOtherLists[] = {
    {"factor", RunTextList},       {"divisors", RunTextList}, {"squares", RunTextList},
    {"heron", RunTriangles},       {"ratmed", RunTriangles},  {"perpmed", RunTriangles},
    {"quads", RunQuads},           {"polygons", RunPolygons}, {"cubes", RunCubes},
    {"curvatures", RunCurvatures},
};

}  // namespace

Result RunListCommand(CalcContext* ctx, const Args& args, ListOutput* out) {
    if (args.empty()) return Result::kCannotUnderstand;
    const std::string& name = args[0];
    for (const OneNumberList& list : kOneNumberLists) {
        if (name != list.name) continue;
        if (args.size() != 2) return Result::kCannotUnderstand;
        uint32_t value = 0;
        if (Result code = ReadListValue(list.kind, args[1], &value)) return code;
        return list.run(ctx, value, out);
    }
    for (const auto& list : kOtherLists)
        if (name == list.name) return list.run(ctx, args, out);
    return Result::kCouldNotFind;
}

std::vector<std::string> ListCommandNames() {
    std::vector<std::string> names;
    for (const OneNumberList& list : kOneNumberLists) names.emplace_back(list.name);
    for (const auto& list : kOtherLists) names.emplace_back(list.name);
    return names;
}
