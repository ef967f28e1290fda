// Reading a decimal integer from free text (pasted numbers, files, batch
// list items).
#pragma once

#include <string>

#include "bigint/bigint.h"

// Reads text as BigFromText does: leading minus signs flip the sign, every
// other non-digit is dropped. A text without digits gives 2 ("could not
// find") instead of an empty digit string. v is written as new. 0, 2, 3.
int ReadDecimal(const std::string& text, BigInt* v);
