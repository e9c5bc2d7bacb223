// The values that tell which system this is, in the key where Windows keeps them.
#pragma once

#include <string>
#include <vector>

#include "platform/linux/RegistryDatabase.h"

// The key's path below HKEY_LOCAL_MACHINE in lower case. It can be read and not be changed.
inline constexpr char SystemKeyPath[] = "software\\microsoft\\windows nt\\currentversion";

// "ProductName", the distribution's own name for itself, and "BuildLabEx", the kernel's.
std::vector<RegistryValue> const & SystemValues();
