// Whether the registry's file of a test is whole; "ok" also where the system keeps no such file.
#pragma once

#include <string>

#include "platform/RegistryScope.h"

std::string FaultsOfTheFile(RegistryScope const & scope);
