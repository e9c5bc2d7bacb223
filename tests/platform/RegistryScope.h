// A machine's registry of the test's own, empty at first and gone with the scope.
//
// On Windows HKEY_LOCAL_MACHINE stands meanwhile for a key of the user's, elsewhere the registry
// lies in a folder of its own. Break makes every later operation fail, by codes of the platform.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/Registry.h"

#if defined(_WIN32)

class RegistryScope {
public:
    RegistryScope() : m_Path("Software\\MorvexTests\\" + std::to_string(GetCurrentProcessId())) {
        HKEY key = nullptr;
        RegDeleteTreeA(HKEY_CURRENT_USER, m_Path.c_str());
        LSTATUS const created = RegCreateKeyExA(
            HKEY_CURRENT_USER, m_Path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
            nullptr);
        if (created != ERROR_SUCCESS) throw std::runtime_error("no key for the test");
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, key);
        RegCloseKey(key);
    }
    RegistryScope(RegistryScope const &) = delete;
    RegistryScope & operator=(RegistryScope const &) = delete;
    ~RegistryScope() {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        RegDeleteTreeA(HKEY_CURRENT_USER, m_Path.c_str());
        RegDeleteKeyA(HKEY_CURRENT_USER, m_Path.c_str());
    }

    // The key is gone.
    void Break() {
        RegDeleteTreeA(HKEY_CURRENT_USER, m_Path.c_str());
        RegDeleteKeyA(HKEY_CURRENT_USER, m_Path.c_str());
    }

private:
    std::string const m_Path;
};

#else

#include <cstdlib>
#include <filesystem>
#include <fstream>

class RegistryScope {
public:
    RegistryScope() {
        std::string pattern = (std::filesystem::temp_directory_path() / "registry-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for the test");
        m_Folder = pattern;
        setenv("QN_REGISTRY", pattern.c_str(), 1);
    }
    RegistryScope(RegistryScope const &) = delete;
    RegistryScope & operator=(RegistryScope const &) = delete;
    ~RegistryScope() {
        unsetenv("QN_REGISTRY");
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }

    // The file is another program's.
    void Break() { std::ofstream(File()) << "no registry"; }

    std::filesystem::path const & Folder() const { return m_Folder; }
    std::filesystem::path File() const { return m_Folder / "registry.db"; }

private:
    std::filesystem::path m_Folder;
};

#endif
