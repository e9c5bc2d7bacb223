// The system's registry is a single whole.
#include "platform/StoreCheck.h"

std::string FaultsOfTheFile(RegistryScope const &) { return "ok"; }
