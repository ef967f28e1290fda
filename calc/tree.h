// The compiled form of a formula: a binary tree whose leaves hold exact values
// and whose inner nodes name an operation by its internal code (calc/codes.h).
//
// A prefix function keeps its operand as the right child; a binary operator
// has both. Every node carries a numerator and a denominator: a leaf ('#') the
// value it was compiled with, any other node the result of its last
// evaluation (released records until it is evaluated).
#pragma once

#include <cstdint>
#include <memory>

#include "bigint/bigint.h"

struct ExprNode {
    int16_t kind = 0;
    ExprNode* left = nullptr;
    ExprNode* right = nullptr;
    BigInt numerator = {};
    BigInt denominator = {};
};

// A node of the given kind with released values and no children; null when
// memory is exhausted.
[[nodiscard]] ExprNode* NewNode(int kind);
// Frees both children recursively, then both values, then the node.
void FreeTree(ExprNode* node);
// Releases the values of every node that is not a leaf, so that the tree can
// be evaluated again from its leaves.
void ReleaseValues(ExprNode* node);

struct TreeDeleter {
    void operator()(ExprNode* node) const { FreeTree(node); }
};
using TreePtr = std::unique_ptr<ExprNode, TreeDeleter>;
