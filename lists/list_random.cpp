#include "lists/list_random.h"

ListRandom& SharedListRandom() {
    static ListRandom shared;
    return shared;
}
