#include "resources/strings.h"

#include <algorithm>
#include <iterator>

namespace {

struct Entry {
    int id;
    const char* text;
};

// Each part of the program keeps its entries in its own file; ids are unique
// across them (checked by the tests).
const Entry kEntries[] = {
#include "resources/strings_app.inc"
#include "resources/strings_calc.inc"
#include "resources/strings_dialogs.inc"
#include "resources/strings_lists.inc"
#include "resources/strings_messages.inc"
#include "resources/strings_tables.inc"
#include "resources/strings_windows.inc"
};

}  // namespace

const char* OxString(int id) {
    for (const Entry& e : kEntries)
        if (e.id == id) return e.text;
    return "";
}

int OxStringCount() { return static_cast<int>(std::size(kEntries)); }
int OxStringIdAt(int i) { return kEntries[i].id; }
