// The window's place as the program keeps it.
#pragma once

#include <string>

#include "settings/Registry.h"

inline std::string PlaceKey() {
    std::string key;
    GetQNKey(key);
    return key + "\\QNExe";
}

inline void ForgetPlace() {
    TS_DeleteRegistryVal(HKEY_CURRENT_USER, PlaceKey().c_str(), "WindowPlace");
}

inline void KeepPlace(std::string const & text) {
    TS_SetRegistryString(HKEY_CURRENT_USER, PlaceKey().c_str(), "WindowPlace", text);
}
