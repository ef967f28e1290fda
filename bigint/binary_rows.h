// Row products on 64-bit words for the schoolbook products of binary words
// (binary_words.cpp): r[0..n) += x[0..n)·y, answering the carry word.
// With BMI2 and ADX (mulx and two carry chains) where the processor has
// them, else 128-bit products in C++.
#pragma once

#include <cstdint>

using AddRowFn = uint64_t (*)(uint64_t* r, const uint64_t* x, int32_t n, uint64_t y);

// The row product for this processor (chosen once), or the portable one.
AddRowFn BinaryAddRow();
// For tests: the portable rows even where mulx could run.
void UsePortableRows(bool portable);
