// One root of the registry: keys by path and values by name in the root's file, and what was read
// from it for as long as the file stays as it is.
//
// Every operation answers with an error code. There is one connection to the file for the process;
// a forked child has none through a store of its parent's, whose operations give
// ERROR_INVALID_HANDLE there. Every function may be called from any thread.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include <unistd.h>

#include "platform/linux/RegistryCache.h"
#include "platform/linux/RegistryDatabase.h"
#include "platform/linux/RegistryFile.h"

class RegistryStore {
public:
    explicit RegistryStore(RegistryPlace place) : m_Place(std::move(place)) {}
    RegistryStore(RegistryStore const &) = delete;
    RegistryStore & operator=(RegistryStore const &) = delete;
    ~RegistryStore();

    // Whether this is still the store of the place, in this process.
    bool Serves(RegistryPlace const & place);

    // A path holds names with single backslashes between them; empty stands for the base.
    DWORD FindKey(KeyId base, std::string const & path, KeyId & key);
    DWORD MakeKey(KeyId base, std::string const & path, KeyId & key, bool & created);
    DWORD RemoveKey(KeyId base, std::string const & path);

    using Value = RegistryCache::Value;
    DWORD FindValue(KeyId key, std::string const & name, Value & value);
    DWORD ValueAt(KeyId key, std::size_t index, Value & value);
    DWORD WriteValue(KeyId key, RegistryValue const & value);
    DWORD RemoveValue(KeyId key, std::string const & name);

    // ERROR_ACCESS_DENIED: the file can only be read.
    DWORD CheckWritable();

private:
    template <typename Act>
    DWORD Guarded(Act const & act);
    template <typename Act>
    DWORD Change(Act const & act);

    // Null: there is nothing to read yet.
    RegistryDatabase * ForReading();
    RegistryDatabase & ForWriting();

    // What was read and still holds.
    RegistryCache & Fresh();

    std::optional<KeyId> Walk(KeyId base, std::string_view path);
    KeyId WalkOrMake(KeyId base, std::string_view path, bool & created);
    DWORD LoadKey(KeyId base, std::string const & path, KeyId & key);
    DWORD LoadValue(KeyId key, std::string const & name, Value & value);
    RegistryCache::Numbers LoadNumbers(KeyId key);
    void TurnCacheAfterWriting(KeyId key, std::string const & name);

    RegistryPlace const m_Place;
    pid_t const m_Process = getpid();
    std::mutex m_Mutex;
    std::unique_ptr<RegistryDatabase> m_Database;
    RegistryCache m_Cache;
};
