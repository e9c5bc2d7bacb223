// Shared libraries by the dynamic linker.
#include "examples/QNExe/Module.h"

#include <filesystem>

#include <dlfcn.h>

Module LoadModule(std::string const & file, std::string & reason) {
    auto const path = std::filesystem::absolute(file);
    void * const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) reason = dlerror();
    return static_cast<Module>(module);
}

ModuleFunction FindFunction(Module module, char const * name) {
    return reinterpret_cast<ModuleFunction>(dlsym(module, name));
}

void UnloadModule(Module module) { dlclose(module); }
