#include "bigint/bigint.h"

CalcContext::~CalcContext() { BigFree(&modulus); }
