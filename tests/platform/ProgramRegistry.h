// The machine's registry as programs see it that a test starts, without settings of the product at
// the beginning and at the end.
//
// Off Windows it lies in the folder of the RegistryScope that stands around it. On Windows it is
// the system's own, which no test shares with another and which is only ours under Wine.
#pragma once

#include "platform/Registry.h"

#if defined(_WIN32)

class ProgramRegistry {
public:
    ProgramRegistry() {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        Clear();
    }
    ProgramRegistry(ProgramRegistry const &) = delete;
    ProgramRegistry & operator=(ProgramRegistry const &) = delete;
    ~ProgramRegistry() { Clear(); }

private:
    static void Clear() {
        RegDeleteTreeA(HKEY_LOCAL_MACHINE, "Software\\Velmora");
        RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Velmora");
    }
};

#else

class ProgramRegistry {
public:
    ProgramRegistry() {}
};

#endif
