// Open keys on their store, the key of the system's own values among them.
#include "platform/linux/RegistryKey.h"

#include <algorithm>
#include <mutex>

#include "platform/Synchronization.h"
#include "platform/linux/SystemValues.h"

namespace {

constexpr REGSAM Writing = KEY_SET_VALUE | KEY_CREATE_SUB_KEY;

std::string Lowered(std::string text) {
    for (char & letter : text)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter | 0x20);
    return text;
}

// The store of a root, made anew when its place is another by now.
class Root {
public:
    explicit Root(RegistryPlace (*place)()) : m_Place(place) {}

    std::shared_ptr<RegistryStore> Store() {
        RegistryPlace const place = m_Place();
        std::scoped_lock const lock(m_Mutex);
        if (m_Store == nullptr || !m_Store->Serves(place))
            m_Store = std::make_shared<RegistryStore>(place);
        return m_Store;
    }

private:
    RegistryPlace (*const m_Place)();
    std::mutex m_Mutex;
    std::shared_ptr<RegistryStore> m_Store;
};

// Never destroyed: statics of other libraries may write settings while the process ends.
Root & Machine() {
    static auto & root = *new Root(MachinePlace);
    return root;
}

Root & User() {
    static auto & root = *new Root(UserPlace);
    return root;
}

// The number of a system value, or how many there are.
std::size_t SystemIndex(std::string const & name) {
    auto const & values = SystemValues();
    auto const found = std::find_if(values.begin(), values.end(), [&](auto const & value) {
        return Lowered(value.name) == Lowered(name);
    });
    return static_cast<std::size_t>(found - values.begin());
}

DWORD SystemValueAt(std::size_t index, RegistryKey::Value & value, DWORD missing) {
    auto const & values = SystemValues();
    if (index >= values.size()) return missing;
    // Points into what lives as long as the process.
    value = RegistryKey::Value(RegistryKey::Value(), &values[index]);
    return ERROR_SUCCESS;
}

} // namespace

std::shared_ptr<RegistryKey> PredefinedKey(HKEY key) {
    if (key == HKEY_LOCAL_MACHINE) return std::make_shared<RegistryKey>(Machine().Store(), true);
    if (key == HKEY_CURRENT_USER) return std::make_shared<RegistryKey>(User().Store(), false);
    return nullptr;
}

std::shared_ptr<RegistryKey> RegistryKey::Opened(KeyId key, std::string path, REGSAM access) const {
    return std::shared_ptr<RegistryKey>(new RegistryKey(*this, key, std::move(path), access));
}

std::string RegistryKey::Below(std::string const & path) const {
    if (path.empty()) return m_Path;
    return m_Path.empty() ? Lowered(path) : m_Path + '\\' + Lowered(path);
}

bool RegistryKey::IsSystem(std::string const & path) const {
    return m_IsMachine && path == SystemKeyPath;
}

bool RegistryKey::IsWithinSystem(std::string const & path) const {
    return IsSystem(path) || (m_IsMachine && path.starts_with(std::string(SystemKeyPath) + '\\'));
}

DWORD RegistryKey::CheckAccess(std::string const & path, REGSAM access) const {
    if ((access & Writing) == 0) return ERROR_SUCCESS;
    return IsSystem(path) ? ERROR_ACCESS_DENIED : m_Store->CheckWritable();
}

DWORD RegistryKey::Open(
    std::string const & path, REGSAM access, std::shared_ptr<RegistryKey> & opened) const {
    std::string full = Below(path);
    KeyId key = RegistryCache::NoKey;
    DWORD result = IsSystem(full) ? ERROR_SUCCESS : m_Store->FindKey(m_Key, path, key);
    if (result == ERROR_SUCCESS) result = CheckAccess(full, access);
    if (result == ERROR_SUCCESS) opened = Opened(key, std::move(full), access);
    return result;
}

DWORD RegistryKey::Create(
    std::string const & path, REGSAM access, std::shared_ptr<RegistryKey> & opened,
    bool & created) const {
    created = false;
    DWORD const found = Open(path, access, opened);
    if (found != ERROR_FILE_NOT_FOUND) return found;
    std::string full = Below(path);
    if (IsWithinSystem(full)) return ERROR_ACCESS_DENIED;
    KeyId key = RegistryCache::NoKey;
    DWORD const result = m_Store->MakeKey(m_Key, path, key, created);
    if (result == ERROR_SUCCESS) opened = Opened(key, std::move(full), access);
    return result;
}

DWORD RegistryKey::Remove(std::string const & path) const {
    if (IsSystem(Below(path))) return ERROR_ACCESS_DENIED;
    return m_Store->RemoveKey(m_Key, path);
}

DWORD RegistryKey::Find(std::string const & name, Value & value) const {
    if ((m_Access & KEY_QUERY_VALUE) == 0) return ERROR_ACCESS_DENIED;
    if (IsSystem(m_Path)) return SystemValueAt(SystemIndex(name), value, ERROR_FILE_NOT_FOUND);
    return m_Store->FindValue(m_Key, name, value);
}

DWORD RegistryKey::Load(std::size_t index, Value & value) const {
    if ((m_Access & KEY_QUERY_VALUE) == 0) return ERROR_ACCESS_DENIED;
    if (IsSystem(m_Path)) return SystemValueAt(index, value, ERROR_NO_MORE_ITEMS);
    return m_Store->ValueAt(m_Key, index, value);
}

DWORD RegistryKey::At(std::size_t index, Value & value) {
    if (index == 0) m_EnumerationFailed = false;
    if (m_EnumerationFailed) return ERROR_NO_MORE_ITEMS;
    DWORD const result = Load(index, value);
    m_EnumerationFailed = result != ERROR_SUCCESS && result != ERROR_NO_MORE_ITEMS;
    return result;
}

DWORD RegistryKey::Write(RegistryValue const & value) const {
    if ((m_Access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
    return m_Store->WriteValue(m_Key, value);
}

DWORD RegistryKey::RemoveValue(std::string const & name) const {
    if ((m_Access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
    return m_Store->RemoveValue(m_Key, name);
}

DWORD RegistryKey::Wait(DWORD) {
    SetLastError(ERROR_INVALID_HANDLE);
    return WAIT_FAILED;
}
