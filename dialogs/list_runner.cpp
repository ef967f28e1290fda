#include "dialogs/list_runner.h"

ListRunner::~ListRunner() = default;
