// Reading a decimal integer from free text (pasted numbers, files, batch
// list items).
#pragma once

#include <string>

#include "bigint/bigint.h"
#include "resources/result.h"

// Reads text as BigFromText does: leading minus signs flip the sign, every
// other non-digit is dropped. A text without digits gives kCouldNotFind
// instead of an empty digit string. v is written as new. kOk, kCouldNotFind,
// kNoMemory.
Result ReadDecimal(const std::string& text, BigInt* v);
