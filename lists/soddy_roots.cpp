// Placeholder until the generator lands.
#include "lists/list_generators.h"

Result ListSoddyCircles(CalcContext*, uint32_t, ListOutput*) { return Result::kKitchenClosed; }
Result ListSoddySpheres(CalcContext*, uint32_t, ListOutput*) { return Result::kKitchenClosed; }
Result ListSoddyLine(CalcContext*, uint32_t, ListOutput*) { return Result::kKitchenClosed; }
Result ListSoddyPlane(CalcContext*, uint32_t, ListOutput*) { return Result::kKitchenClosed; }
