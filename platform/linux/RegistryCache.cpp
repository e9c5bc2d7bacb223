// Keys and values under the number of their parent and their name in lower case.
#include "platform/linux/RegistryCache.h"

namespace {

constexpr std::size_t Limit = std::size_t{4} << 20;

std::string Label(KeyId parent, std::string const & name) {
    std::string label(reinterpret_cast<char const *>(&parent), sizeof parent);
    label.reserve(sizeof parent + name.size());
    for (char const letter : name)
        label += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
    return label;
}

template <typename Map, typename Key>
auto Find(Map const & map, Key const & key) {
    auto const found = map.find(key);
    return found != map.end() ? &found->second : nullptr;
}

// The counter that the stamp begins with, high byte first.
std::uint32_t ChangesOf(RegistryCache::Stamp const & stamp) {
    std::uint32_t changes = 0;
    for (std::size_t i = 0; i != sizeof changes; ++i)
        changes = changes << 8 | stamp[i];
    return changes;
}

} // namespace

void RegistryCache::Turn(Stamp const & stamp) {
    if (m_IsValid && stamp == m_Stamp) return;
    Clear();
    m_Stamp = stamp;
    m_IsValid = true;
}

void RegistryCache::TurnAfterWriting(KeyId key, std::string const & name, Stamp const & stamp) {
    if (m_IsValid && ChangesOf(stamp) == ChangesOf(m_Stamp) + 1) {
        m_Values.erase(Label(key, name));
        m_Numbers.erase(key);
        m_Stamp = stamp;
    } else {
        Turn(stamp);
    }
}

void RegistryCache::Clear() {
    m_IsValid = false;
    m_Bytes = 0;
    m_Keys.clear();
    m_Values.clear();
    m_Numbers.clear();
}

KeyId const * RegistryCache::FindKey(KeyId base, std::string const & path) const {
    return Find(m_Keys, Label(base, path));
}

RegistryCache::Value const * RegistryCache::FindValue(KeyId key, std::string const & name) const {
    return Find(m_Values, Label(key, name));
}

RegistryCache::Numbers RegistryCache::FindNumbers(KeyId key) const {
    auto const * const found = Find(m_Numbers, key);
    return found != nullptr ? *found : nullptr;
}

void RegistryCache::KeepKey(KeyId base, std::string const & path, KeyId key) {
    MakeRoom(path.size());
    m_Keys[Label(base, path)] = key;
}

void RegistryCache::KeepValue(KeyId key, std::string const & name, Value const & value) {
    MakeRoom(name.size() + (value != nullptr ? value->data.size() + value->name.size() : 0));
    m_Values[Label(key, name)] = value;
}

void RegistryCache::KeepNumbers(KeyId key, Numbers const & numbers) {
    MakeRoom(numbers->size() * sizeof numbers->front());
    m_Numbers[key] = numbers;
}

void RegistryCache::MakeRoom(std::size_t bytes) {
    constexpr std::size_t perEntry = 128;
    if (m_Bytes + bytes + perEntry > Limit) {
        m_Bytes = 0;
        m_Keys.clear();
        m_Values.clear();
        m_Numbers.clear();
    }
    m_Bytes += bytes + perEntry;
}
