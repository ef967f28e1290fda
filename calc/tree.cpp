#include "calc/tree.h"

#include <new>

#include "calc/codes.h"

ExprNode* NewNode(int kind) {
    ExprNode* node = new (std::nothrow) ExprNode;
    if (node) node->kind = static_cast<int16_t>(kind);
    return node;
}

void FreeTree(ExprNode* node) {
    if (!node) return;
    FreeTree(node->left);
    FreeTree(node->right);
    BigFree(&node->numerator);
    BigFree(&node->denominator);
    delete node;
}

void ReleaseValues(ExprNode* node) {
    if (!node) return;
    ReleaseValues(node->left);
    ReleaseValues(node->right);
    if (node->kind != kCodeOperand) {
        BigFree(&node->numerator);
        BigFree(&node->denominator);
    }
}
