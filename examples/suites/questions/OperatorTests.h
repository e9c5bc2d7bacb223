// One question of each kind to the operator: how a test asks.
#pragma once

#include <vector>

#include "examples/TestSuite.h"

// Utilities, which fail nothing. They ask CAppState::UserInput(), which must be there.
std::vector<TestCase> OperatorTests();
