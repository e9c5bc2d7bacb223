// Shared libraries by the system's loader.
#include "examples/QNExe/Module.h"

#include <system_error>
#include <vector>

#include <windows.h>

namespace {

HMODULE Handle(Module module) { return reinterpret_cast<HMODULE>(module); }

std::string TextOf(DWORD error) {
    return std::system_category().message(static_cast<int>(error)) + " (error "
           + std::to_string(error) + ')';
}

std::string FullPath(std::string const & file) {
    std::vector<char> path(GetFullPathNameA(file.c_str(), 0, nullptr, nullptr) + 1u);
    GetFullPathNameA(file.c_str(), static_cast<DWORD>(path.size()), path.data(), nullptr);
    return path.data();
}

} // namespace

// The altered search path lets a suite bring libraries of its own in its folder.
Module LoadModule(std::string const & file, std::string & reason) {
    HMODULE const module =
        LoadLibraryExA(FullPath(file).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr) reason = TextOf(GetLastError());
    return reinterpret_cast<Module>(module);
}

ModuleFunction FindFunction(Module module, char const * name) {
    return reinterpret_cast<ModuleFunction>(GetProcAddress(Handle(module), name));
}

void UnloadModule(Module module) { FreeLibrary(Handle(module)); }
