// A shared library at run time: loading it, finding what it exports, letting it go.
//
// A module belongs to whoever loaded it, who unloads it when nothing of it is in use any more.
#pragma once

#include <string>

using Module = struct LoadedModule *;
using ModuleFunction = void (*)();

// Loads the file itself: a name without a folder is one in the current folder. Null when it cannot
// be loaded; `reason` then says why, in the system's words.
Module LoadModule(std::string const & file, std::string & reason);

// Null when the library exports no such function.
ModuleFunction FindFunction(Module module, char const * name);

void UnloadModule(Module module);
