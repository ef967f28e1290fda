// Tetrahedra with integer edges: the volume from the six edges and whether
// every face has integer area. Edges are in the order AB, AC, AD, BC, BD, CD,
// so the opposite pairs are AB-CD, AC-BD and AD-BC.
#pragma once

#include <cstdint>

struct TetraEdges {
    uint32_t e[6];  // AB, AC, AD, BC, BD, CD
};

struct TetraVolume {
    uint64_t num;  // V = num / den in lowest terms
    uint32_t den;  // divides 12
    bool integerFaces;
};

// True when every face is a proper triangle (strict triangle inequalities),
// the volume is positive and rational; *v then holds it. Edges below 1290,
// where 144 V^2 <= 2 * edge^6 still fits in 64 bits.
bool RationalTetraVolume(const TetraEdges& t, TetraVolume* v);

// The lexicographically largest of the 24 labellings of the same tetrahedron
// (the vertex permutations acting on the edges): AB is a longest edge.
TetraEdges CanonicalTetra(const TetraEdges& t);
