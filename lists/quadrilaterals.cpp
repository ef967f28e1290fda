// Placeholder until the generator lands.
#include "lists/list_generators.h"

Result ListCyclicQuadrilaterals(CalcContext*, uint32_t, ListOutput*) {
    return Result::kKitchenClosed;
}
Result ListBicentricQuadrilaterals(CalcContext*, uint32_t, ListOutput*) {
    return Result::kKitchenClosed;
}
