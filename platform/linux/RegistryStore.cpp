// Keys are found by walking their path, values by name; changes are one transaction each.
//
// What was read is kept with the stamp that the file had meanwhile. A reader in a transaction keeps
// writers out, so stamp and contents belong together; a writer changes the stamp in the file before
// its transaction counts as done, so an old stamp means that nothing was written since.
#include "platform/linux/RegistryStore.h"

#include <utility>

namespace {

std::string_view TakeName(std::string_view & path) {
    auto const end = path.find('\\');
    std::string_view const name = path.substr(0, end);
    path = end != path.npos ? path.substr(end + 1) : std::string_view();
    return name;
}

bool IsRoot(KeyId base, std::string const & path) { return base == RootKey && path.empty(); }

} // namespace

RegistryStore::~RegistryStore() {
    if (m_Database != nullptr && m_Process != getpid()) m_Database->Abandon();
}

bool RegistryStore::Serves(RegistryPlace const & place) {
    if (m_Process != getpid() || m_Place != place) return false;
    std::scoped_lock const lock(m_Mutex);
    return m_Database == nullptr || !m_Database->HasMoved();
}

template <typename Act>
DWORD RegistryStore::Guarded(Act const & act) {
    if (m_Process != getpid()) return ERROR_INVALID_HANDLE;
    std::scoped_lock const lock(m_Mutex);
    try {
        return act();
    } catch (RegistryError const & error) {
        m_Cache.Clear();
        return error.code;
    }
}

template <typename Act>
DWORD RegistryStore::Change(Act const & act) {
    return Guarded([&]() -> DWORD {
        RegistryDatabase & database = ForWriting();
        m_Cache.Clear();
        RegistryDatabase::Writing scope(database);
        DWORD const result = act(database);
        if (result == ERROR_SUCCESS) scope.Commit();
        return result;
    });
}

RegistryDatabase * RegistryStore::ForReading() {
    if (m_Database == nullptr) m_Database = RegistryDatabase::Open(m_Place);
    return m_Database.get();
}

RegistryDatabase & RegistryStore::ForWriting() {
    if (m_Database == nullptr) m_Database = RegistryDatabase::OpenOrCreate(m_Place);
    return *m_Database;
}

RegistryCache & RegistryStore::Fresh() {
    m_Cache.Turn(m_Database->ReadStamp());
    return m_Cache;
}

std::optional<KeyId> RegistryStore::Walk(KeyId base, std::string_view path) {
    if (!m_Database->KeyExists(base)) throw RegistryError{ERROR_KEY_DELETED};
    std::optional<KeyId> key = base;
    while (key && !path.empty())
        key = m_Database->FindSubkey(*key, TakeName(path));
    return key;
}

KeyId RegistryStore::WalkOrMake(KeyId base, std::string_view path, bool & created) {
    if (!m_Database->KeyExists(base)) throw RegistryError{ERROR_KEY_DELETED};
    KeyId key = base;
    created = false;
    while (!path.empty()) {
        std::string_view const name = TakeName(path);
        auto const found = m_Database->FindSubkey(key, name);
        created = !found;
        key = found ? *found : m_Database->InsertSubkey(key, name);
    }
    return key;
}

DWORD RegistryStore::LoadKey(KeyId base, std::string const & path, KeyId & key) {
    KeyId found = RegistryCache::NoKey;
    if (KeyId const * const known = Fresh().FindKey(base, path)) {
        found = *known;
    } else {
        RegistryDatabase::Reading const scope(*m_Database);
        found = Walk(base, path).value_or(RegistryCache::NoKey);
        Fresh().KeepKey(base, path, found);
    }
    if (found == RegistryCache::NoKey) return ERROR_FILE_NOT_FOUND;
    key = found;
    return ERROR_SUCCESS;
}

DWORD RegistryStore::FindKey(KeyId base, std::string const & path, KeyId & key) {
    return Guarded([&]() -> DWORD {
        if (IsRoot(base, path)) {
            key = RootKey;
            return ERROR_SUCCESS;
        }
        return ForReading() != nullptr ? LoadKey(base, path, key) : ERROR_FILE_NOT_FOUND;
    });
}

DWORD RegistryStore::MakeKey(KeyId base, std::string const & path, KeyId & key, bool & created) {
    created = false;
    DWORD const found = FindKey(base, path, key);
    if (found != ERROR_FILE_NOT_FOUND) return found;
    return Change([&](RegistryDatabase &) -> DWORD {
        key = WalkOrMake(base, path, created);
        return ERROR_SUCCESS;
    });
}

DWORD RegistryStore::RemoveKey(KeyId base, std::string const & path) {
    KeyId key = RegistryCache::NoKey;
    DWORD const found = FindKey(base, path, key);
    if (found != ERROR_SUCCESS) return found;
    if (key == RootKey) return ERROR_ACCESS_DENIED;
    return Change([&](RegistryDatabase & database) -> DWORD {
        if (!database.KeyExists(key)) return ERROR_FILE_NOT_FOUND;
        if (database.HasSubkeys(key)) return ERROR_ACCESS_DENIED;
        database.RemoveKey(key);
        return ERROR_SUCCESS;
    });
}

DWORD RegistryStore::LoadValue(KeyId key, std::string const & name, Value & value) {
    if (Value const * const known = Fresh().FindValue(key, name)) {
        value = *known;
    } else {
        RegistryDatabase::Reading const scope(*m_Database);
        if (!m_Database->KeyExists(key)) return ERROR_KEY_DELETED;
        auto found = m_Database->FindValue(key, name);
        value = found ? std::make_shared<RegistryValue const>(*std::move(found)) : nullptr;
        Fresh().KeepValue(key, name, value);
    }
    return value != nullptr ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

DWORD RegistryStore::FindValue(KeyId key, std::string const & name, Value & value) {
    return Guarded([&]() -> DWORD {
        return ForReading() != nullptr ? LoadValue(key, name, value) : ERROR_FILE_NOT_FOUND;
    });
}

// Within a reading scope.
RegistryCache::Numbers RegistryStore::LoadNumbers(KeyId key) {
    if (!m_Database->KeyExists(key)) throw RegistryError{ERROR_KEY_DELETED};
    auto numbers = Fresh().FindNumbers(key);
    if (numbers == nullptr) {
        numbers = std::make_shared<std::vector<std::int64_t> const>(m_Database->ValueNumbers(key));
        m_Cache.KeepNumbers(key, numbers);
    }
    return numbers;
}

DWORD RegistryStore::ValueAt(KeyId key, std::size_t index, Value & value) {
    return Guarded([&]() -> DWORD {
        if (ForReading() == nullptr) return ERROR_NO_MORE_ITEMS;
        RegistryDatabase::Reading const scope(*m_Database);
        auto const numbers = LoadNumbers(key);
        if (index >= numbers->size()) return ERROR_NO_MORE_ITEMS;
        value = std::make_shared<RegistryValue const>(m_Database->ValueOf((*numbers)[index]));
        return ERROR_SUCCESS;
    });
}

// The value is on disk already: a failure from here on is none of its writer's.
void RegistryStore::TurnCacheAfterWriting(KeyId key, std::string const & name) {
    try {
        m_Cache.TurnAfterWriting(key, name, m_Database->ReadStamp());
    } catch (RegistryError const &) {
        m_Cache.Clear();
    }
}

// A replaced value leaves keys and other values as they were read.
DWORD RegistryStore::WriteValue(KeyId key, RegistryValue const & value) {
    return Guarded([&]() -> DWORD {
        RegistryDatabase & database = ForWriting();
        RegistryDatabase::Writing scope(database);
        Fresh();
        database.WriteValue(key, value);
        scope.Commit();
        TurnCacheAfterWriting(key, value.name);
        return ERROR_SUCCESS;
    });
}

DWORD RegistryStore::RemoveValue(KeyId key, std::string const & name) {
    Value value;
    DWORD const found = FindValue(key, name, value);
    if (found != ERROR_SUCCESS) return found;
    return Change([&](RegistryDatabase & database) -> DWORD {
        if (!database.KeyExists(key)) return ERROR_KEY_DELETED;
        return database.RemoveValue(key, name) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    });
}

DWORD RegistryStore::CheckWritable() {
    return Guarded([&]() -> DWORD {
        RegistryDatabase const * const database = ForReading();
        bool const denied = database != nullptr && database->IsReadOnly();
        return denied ? ERROR_ACCESS_DENIED : ERROR_SUCCESS;
    });
}
