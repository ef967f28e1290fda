#include "lists/list_inputs.h"

#include <cctype>

#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

struct KindRange {
    uint32_t low, high;  // both accepted
    Result belowCode;
};

struct KindData {
    ListDialog dialog;
    KindRange range;
};

constexpr uint32_t kAll = 0xFFFFFFFFu;

const KindData& DataOf(ListKind kind) {
    // In the order of ListKind.
    static const KindData table[] = {
        {{610, kStrPrimes, kStrLargestPrimeAtMost, "", 30}, {2, 1598843, Result::kOutOfBounds}},
        {{612, kStrPrimeFactorization, kStrInput, " < = 2556298938649", 20},
         {0, kAll, Result::kOutOfBounds}},
        {{638, kStrDivisorList, kStrInput, " < = 2556298938649", 20},
         {0, kAll, Result::kOutOfBounds}},
        // The hypotenuse lists accept their own advertised limits: kept inclusive.
        {{620, kStrInput, kStrMaxHypotenuse, " [ < 197890 ]", 30},
         {5, 197890, Result::kNothingToShow}},
        {{621, kStrInput, kStrMaxHypotenuse, " [ < 95150 ]", 30},
         {5, 95150, Result::kNothingToShow}},
        {{622, kStrInput, kStrMaxGenerator, " [ < 399 ]", 30}, {2, 398, Result::kNothingToShow}},
        {{623, kStrInput, kStrCommonNumber, " [ < 65536 ]", 30},
         {3, 65535, Result::kNothingToShow}},
        {{624, kStrInput, kStrTopGenerator, " [ < 440 ]", 30}, {2, 439, Result::kNothingToShow}},
        {{625, kStrInput, kStrTopGenerator, " [ < 461 ]", 30}, {2, 460, Result::kNothingToShow}},
        {{611, kStrInput, kStrTargetNumber, " < 4294967296", 20}, {0, kAll, Result::kOutOfBounds}},
        {{637, kStrCyclotomic, kStrIndex, " [ < 65536 ]", 50}, {1, 65535, Result::kOutOfBounds}},
        // The lattice cubes are asked for in the quadruples dialog: only the range counts.
        {{630, kStrLatticeCubes, kStrLength, " [ < 65536 ]", 30}, {1, 65535, Result::kOutOfBounds}},
        {{631, kStrSoddyCircles, kStrLargestNegCurvature, " [ < 65536 ]", 30},
         {1, 65535, Result::kOutOfBounds}},
        {{632, kStrSoddySpheres, kStrLargestNegCurvature, " [ < 65536 ]", 30},
         {1, 65535, Result::kOutOfBounds}},
        {{633, kStrCirclesOnLine, kStrLargestCurvature, " [ < 65536 ]", 30},
         {4, 65535, Result::kNothingToShow}},
        {{634, kStrSpheresOnPlane, kStrLargestCurvature, " [ < 65536 ]", 30},
         {3, 65535, Result::kNothingToShow}},
        {{636, kStrRationalTetrahedra, kStrLargestEdge, " [ < 1000 ]", 30},
         {1, 999, Result::kOutOfBounds}},
        // The quadrilateral lists fill the text near perimeter 215 and 560.
        {{639, kStrInscribedQuads, kStrLargestPerimeter, " [ < 1000 ]", 30},
         {4, 999, Result::kOutOfBounds}},
        {{642, kStrCircumscribedQuads, kStrLargestPerimeter, " [ < 1000 ]", 30},
         {4, 999, Result::kOutOfBounds}},
    };
    return table[static_cast<int>(kind)];
}

}  // namespace

const ListDialog& ListDialogOf(ListKind kind) { return DataOf(kind).dialog; }

std::string ListDialogCaption(ListKind kind) { return OxString(DataOf(kind).dialog.captionId); }

std::string ListDialogPrompt(ListKind kind) {
    const ListDialog& d = DataOf(kind).dialog;
    return std::string(OxString(d.promptId)) + d.promptTail;
}

std::string ListDialogDefault(ListKind kind, ListRandom* rng) {
    switch (kind) {
    case ListKind::primes: return "1598843";
    case ListKind::factor:
    case ListKind::divisors: return std::to_string(rng->Next() % 1111 + 111);
    case ListKind::primitiveTriples:
    case ListKind::allTriples: return std::to_string(rng->Next() % 1234 + 4);
    case ListKind::generators:
    case ListKind::tri60:
    case ListKind::tri120: return std::to_string(rng->Next() % 256);
    case ListKind::commonEntry: return std::to_string(rng->Next() % 65536);
    case ListKind::twoSquares: return "32045";
    case ListKind::cyclotomic: return std::to_string(kCyclotomicFirstIndex);
    case ListKind::latticeCubes: return "100";
    case ListKind::soddyCircles: return "100";
    case ListKind::soddySpheres: return "100";
    case ListKind::soddyLine: return "1000";
    case ListKind::soddyPlane: return "1000";
    case ListKind::tetrahedra: return "40";
    case ListKind::cyclicQuads: return "100";
    case ListKind::bicentricQuads: return "300";
    }
    return std::string();
}

bool ParseListUnsigned(const std::string& text, uint32_t* value) {
    size_t i = 0, n = text.size();
    while (i < n && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
    size_t first = i;
    uint64_t v = 0;
    while (i < n && std::isdigit(static_cast<unsigned char>(text[i]))) {
        v = v * 10 + static_cast<uint64_t>(text[i] - '0');
        if (v > 0xFFFFFFFFull) return false;
        ++i;
    }
    if (i == first) return false;
    while (i < n && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
    if (i != n) return false;
    *value = static_cast<uint32_t>(v);
    return true;
}

uint32_t ReadListUnsignedLoose(const std::string& text) {
    size_t i = 0, n = text.size();
    while (i < n && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
    uint64_t v = 0;
    while (i < n && std::isdigit(static_cast<unsigned char>(text[i]))) {
        v = v * 10 + static_cast<uint64_t>(text[i] - '0');
        if (v > 0xFFFFFFFFull) return 0xFFFFFFFFu;
        ++i;
    }
    return static_cast<uint32_t>(v);
}

Result CheckListValue(ListKind kind, uint32_t value) {
    const KindRange& r = DataOf(kind).range;
    if (value < r.low) return r.belowCode;
    if (value > r.high) return Result::kOutOfBounds;
    return Result::kOk;
}

Result ReadListValue(ListKind kind, const std::string& text, uint32_t* value) {
    if (!ParseListUnsigned(text, value)) return Result::kOutOfBounds;
    return CheckListValue(kind, *value);
}

namespace {

// The two-bound dialogs: an inconsistent pair is reported before the range.
Result CheckBounds(uint32_t min, uint32_t max, uint32_t lowest, uint32_t highest) {
    if (max < min) return Result::kInconsistent;
    if (min < lowest || max > highest) return Result::kOutOfBounds;
    return Result::kOk;
}

}  // namespace

Result CheckPerimeterBounds(uint32_t minPerimeter, uint32_t maxPerimeter) {
    return CheckBounds(minPerimeter, maxPerimeter, kPerimeterMin, kPerimeterMax);
}

Result CheckQuadBounds(uint32_t minLength, uint32_t maxLength) {
    return CheckBounds(minLength, maxLength, kQuadLengthMin, kQuadLengthMax);
}

std::string PolygonLengthPrompt() {
    return std::string(OxString(kStrSquaredLength)) + " < 4294967296";
}
std::string PolygonSidesPrompt() {
    return std::string(OxString(kStrNumberOfSides)) + " (6, 8, 10, 12)";
}

Result CheckPolygonInputs(uint32_t squaredLength, uint32_t sides) {
    if (squaredLength < 5 || sides < 6 || sides > 12 || sides % 2 != 0) return Result::kOutOfBounds;
    return Result::kOk;
}

std::string CurvatureQuadruplePrompt() { return OxString(kStrDescartesQuadruple); }
std::string CurvatureBoundPrompt() {
    return std::string(OxString(kStrLargestCurvature)) + " [ < " +
           std::to_string(kCurvatureBoundMax + 1) + " ]";
}

Result ReadDescartesQuadruple(const std::string& text, int64_t k[4]) {
    size_t i = 0;
    const size_t n = text.size();
    auto blank = [&](size_t at) {
        return std::isspace(static_cast<unsigned char>(text[at])) || text[at] == ',';
    };
    for (int j = 0; j < 4; ++j) {
        while (i < n && blank(i)) ++i;
        const bool negative = i < n && text[i] == '-';
        if (negative || (i < n && text[i] == '+')) ++i;
        const size_t first = i;
        int64_t v = 0;
        while (i < n && std::isdigit(static_cast<unsigned char>(text[i]))) {
            v = v * 10 + (text[i] - '0');
            if (v > kCurvatureInputMax) return Result::kOutOfBounds;
            ++i;
        }
        if (i == first || (i < n && !blank(i))) return Result::kOutOfBounds;
        k[j] = negative ? -v : v;
    }
    while (i < n && blank(i)) ++i;
    return i == n ? Result::kOk : Result::kOutOfBounds;
}

Result CheckCurvatureBound(uint32_t bound) {
    return bound >= 1 && bound <= kCurvatureBoundMax ? Result::kOk : Result::kOutOfBounds;
}
