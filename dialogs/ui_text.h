// The string table's entries as Qt text.
#pragma once

#include <QString>

#include "resources/strings.h"

inline QString OxText(int id) { return QString::fromUtf8(OxString(id)); }
