#include "resources/result.h"

#include "resources/strings.h"

const char* ResultMessage(Result r) {
    return OxString(400 + ToInt(r == Result::kStopped ? Result::kInterrupted : r));
}
