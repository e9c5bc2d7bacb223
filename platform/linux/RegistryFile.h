// Where the files of the registry lie, and what is done with one before it is a database.
#pragma once

#include <string>

#include <sys/types.h>

#include "platform/Registry.h"

// A failed operation on the registry's file.
struct RegistryError {
    DWORD code;
};

// A registry's file, and who may use it once it was created.
struct RegistryPlace {
    std::string folder;
    std::string file;
    mode_t folderMode;
    mode_t fileMode;

    bool operator==(RegistryPlace const &) const = default;
};

// As the environment says now: a folder in QN_REGISTRY holds both.
RegistryPlace MachinePlace();
RegistryPlace UserPlace();

// Throws RegistryError when nobody can say whether there is a file.
bool RegistryFileExists(RegistryPlace const & place);

// Whether the file keeps a write-ahead log, which no registry does; reading such a file as a
// database would already write beside it.
bool HasWriteAheadLog(RegistryPlace const & place);

// Creates folder and file where they are missing, for those alone whom the place names. Throws
// RegistryError.
void CreateRegistryFile(RegistryPlace const & place);

// The code of an operation that has failed with this errno.
DWORD RegistryCodeOf(int systemError, DWORD otherwise);
