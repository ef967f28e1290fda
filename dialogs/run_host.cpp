#include "dialogs/run_host.h"

RunHost::~RunHost() = default;
