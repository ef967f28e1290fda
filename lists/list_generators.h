// Every list generator. Each checks its inputs again (the same checks as
// list_inputs.h), writes its text and caption into out and answers a code as
// described in list_frame.h. ctx supplies the stop polls and may be null.
#pragma once

#include <cstdint>
#include <string>

#include "bigint/context.h"
#include "lists/list_frame.h"
#include "lists/list_random.h"

// The first primes up to bound (2..1598843), numbered below 67402 rows.
Result ListPrimes(CalcContext* ctx, uint32_t bound, ListOutput* out);
// The factorization line of the number typed (up to 2556298938649).
Result ListFactor(CalcContext* ctx, const std::string& input, ListOutput* out);
// The ascending divisors of the number typed and their sum.
Result ListDivisors(CalcContext* ctx, const std::string& input, ListOutput* out);

// Pythagorean triples by hypotenuse up to bound; primitive ones only, or all
// with a star on the primitive ones.
Result ListHypotenuseTriples(CalcContext* ctx, uint32_t bound, bool primitiveOnly, ListOutput* out);
// Primitive triples from their generating pairs n = 2..bound.
Result ListTripleGenerators(CalcContext* ctx, uint32_t bound, ListOutput* out);
// Every triple with the number as hypotenuse or as leg.
Result ListCommonEntry(CalcContext* ctx, uint32_t number, ListOutput* out);
// Triangles with a 60- or 120-degree angle from generators n up to bound.
Result ListAngleTriangles(CalcContext* ctx, uint32_t bound, bool angle120, ListOutput* out);

struct TriangleOptions {
    uint32_t minPerimeter = 12;
    uint32_t maxPerimeter = 1000;
    bool right = false;       // include right triangles
    bool isosceles = false;   // include isosceles triangles
    bool atLeastTwo = false;  // rational medians: rows with two rational medians or more
};
Result ListHeronian(CalcContext* ctx, const TriangleOptions& options, ListOutput* out);
Result ListRationalMedians(CalcContext* ctx, const TriangleOptions& options, ListOutput* out);
// Uses only the bounds of options.
Result ListPerpendicularMedians(CalcContext* ctx, const TriangleOptions& options, ListOutput* out);

enum class QuadKind { any = 0, distinct = 1, repeats = 2 };
struct QuadOptions {
    uint32_t minLength = 3;
    uint32_t maxLength = 100;
    bool primitiveOnly = false;
    bool ascending = false;  // display a < b < c
    QuadKind kind = QuadKind::any;
    bool zeros = false;
};
Result ListQuadruples(CalcContext* ctx, const QuadOptions& options, ListOutput* out);

// Every way of writing n as x^2 + y^2, x >= y >= 0.
Result ListTwoSquares(uint32_t n, ListOutput* out);
// The coefficients of the nth cyclotomic polynomial (1..65535).
Result ListCyclotomic(CalcContext* ctx, uint32_t n, ListOutput* out);
// Random search for convex lattice polygons with sides of squared length n,
// no two parallel; runs until the context stops it or after maxRounds rounds
// (the desktop program passes kPolygonRoundCap).
constexpr uint32_t kPolygonRoundCap = 2147483647u;
Result ListPolygons(CalcContext* ctx, uint32_t squaredLength, uint32_t sides, uint32_t maxRounds,
                    ListRandom* rng, ListOutput* out);

// Cubes with integer vertices: three pairwise orthogonal integer edge
// vectors u, v, w of one length n, 1 <= n <= maxLength, right-handed
// (det = +n^3). One row per cube up to the 48 symmetries of the lattice, or,
// with duplicates, one per set of edge directions {±u, ±v, ±w}.
Result ListLatticeCubes(CalcContext* ctx, uint32_t maxLength, bool duplicates, ListOutput* out);

// Root quadruples of the integral circle packings: (a+b+c+d)^2 =
// 2(a^2+b^2+c^2+d^2), gcd 1, a < 0 < b <= c <= d, a + b + c >= d, |a| up to
// the bound.
Result ListSoddyCircles(CalcContext* ctx, uint32_t maxCurvature, ListOutput* out);
// Root quintuples of the integral sphere packings: (sum k)^2 = 3 sum k^2,
// gcd 1, a < 0 < b <= c <= d <= e, a + b + c + d >= 2e, |a| up to the bound.
Result ListSoddySpheres(CalcContext* ctx, uint32_t maxCurvature, ListOutput* out);
// Three mutually tangent circles on one line: b <= c < d, sqrt d = sqrt b +
// sqrt c, gcd 1, d up to the bound.
Result ListSoddyLine(CalcContext* ctx, uint32_t maxCurvature, ListOutput* out);
// Four mutually tangent spheres on one plane: b <= c <= d <= e,
// (b+c+d+e)^2 = 3(b^2+c^2+d^2+e^2), gcd 1, e up to the bound.
Result ListSoddyPlane(CalcContext* ctx, uint32_t maxCurvature, ListOutput* out);

// The curvatures 1..maxCurvature of the circle packing that a Descartes
// quadruple generates, ascending, each with the number of circles that have
// it. kInconsistent for a quadruple that is not a Descartes one.
struct DescartesQuadruple {
    int64_t k[4];
};
Result ListCurvatures(CalcContext* ctx, const DescartesQuadruple& start, uint32_t maxCurvature,
                      ListOutput* out);

// Primitive non-degenerate tetrahedra with integer edges up to the bound and
// rational volume, one per tetrahedron up to its 24 symmetries.
Result ListRationalTetrahedra(CalcContext* ctx, uint32_t maxEdge, ListOutput* out);

// Quadrilaterals inscribed in a circle with integer sides and integer area
// (Brahmagupta), perimeter up to the bound, each cyclic order of sides once up
// to rotation and reflection.
Result ListCyclicQuadrilaterals(CalcContext* ctx, uint32_t maxPerimeter, ListOutput* out);
// Quadrilaterals both inscribed in a circle and circumscribed about one
// (a + c = b + d), integer sides and integer area sqrt(abcd), perimeter up to
// the bound, counted as the inscribed ones.
Result ListBicentricQuadrilaterals(CalcContext* ctx, uint32_t maxPerimeter, ListOutput* out);
