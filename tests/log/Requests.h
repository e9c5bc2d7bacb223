// Counts how often memory is asked for.
//
// Calls of malloc and its kin count for the program's own code; on ELF platforms operator new
// counts for every library too.
#pragma once

#include <functional>

// How often, while `action` runs.
int RequestsDuring(std::function<void()> const & action);
