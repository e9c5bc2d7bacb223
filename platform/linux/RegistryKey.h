// An open key: where it stands, and what its handle may be used for.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "platform/linux/Handles.h"
#include "platform/linux/RegistryStore.h"

class RegistryKey : public HandleObject {
public:
    // The root of a store. Everything is allowed.
    RegistryKey(std::shared_ptr<RegistryStore> store, bool isMachine)
        : m_Store(std::move(store)), m_IsMachine(isMachine) {}

    // As the operation of the registry; `opened` is untouched on failure.
    DWORD
    Open(std::string const & path, REGSAM access, std::shared_ptr<RegistryKey> & opened) const;
    DWORD Create(
        std::string const & path, REGSAM access, std::shared_ptr<RegistryKey> & opened,
        bool & created) const;
    DWORD Remove(std::string const & path) const;

    using Value = RegistryStore::Value;
    DWORD Find(std::string const & name, Value & value) const;
    // See RegEnumValueA for what a failure does to later numbers.
    DWORD At(std::size_t index, Value & value);
    DWORD Write(RegistryValue const & value) const;
    DWORD RemoveValue(std::string const & name) const;

    // A key is nothing that can be waited for.
    DWORD Wait(DWORD milliseconds) override;

private:
    RegistryKey(RegistryKey const & base, KeyId key, std::string path, REGSAM access)
        : m_Store(base.m_Store),
          m_IsMachine(base.m_IsMachine),
          m_Key(key),
          m_Path(std::move(path)),
          m_Access(access) {}

    std::shared_ptr<RegistryKey> Opened(KeyId key, std::string path, REGSAM access) const;
    std::string Below(std::string const & path) const;
    bool IsSystem(std::string const & path) const;
    bool IsWithinSystem(std::string const & path) const;
    DWORD CheckAccess(std::string const & path, REGSAM access) const;
    DWORD Load(std::size_t index, Value & value) const;

    std::shared_ptr<RegistryStore> const m_Store;
    bool const m_IsMachine;
    KeyId const m_Key = RootKey;
    // From the root, in lower case.
    std::string const m_Path;
    REGSAM const m_Access = KEY_READ | KEY_WRITE;
    std::atomic<bool> m_EnumerationFailed = false;
};

// HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER as keys; null: `key` is neither.
std::shared_ptr<RegistryKey> PredefinedKey(HKEY key);
