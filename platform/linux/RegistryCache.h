// What was read from a registry's file, good for as long as the file has the stamp of that time.
//
// Missing keys and values are kept too. It empties itself when it grows beyond a limit. No lock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/linux/RegistryDatabase.h"

class RegistryCache {
public:
    using Stamp = RegistryDatabase::Stamp;
    // Null: there is no such value.
    using Value = std::shared_ptr<RegistryValue const>;
    using Numbers = std::shared_ptr<std::vector<std::int64_t> const>;

    // No key has this number: the key is missing.
    static constexpr KeyId NoKey = 0;

    // Forgets what was read under another stamp.
    void Turn(Stamp const & stamp);
    void Clear();

    // After the holder's own write of one value, which began at the last stamp: all else still
    // holds if nobody came in between.
    void TurnAfterWriting(KeyId key, std::string const & name, Stamp const & stamp);

    // Null: not read yet. Names match in any case of A to Z.
    KeyId const * FindKey(KeyId base, std::string const & path) const;
    Value const * FindValue(KeyId key, std::string const & name) const;
    Numbers FindNumbers(KeyId key) const;

    void KeepKey(KeyId base, std::string const & path, KeyId key);
    void KeepValue(KeyId key, std::string const & name, Value const & value);
    void KeepNumbers(KeyId key, Numbers const & numbers);

private:
    void MakeRoom(std::size_t bytes);

    bool m_IsValid = false;
    Stamp m_Stamp = {};
    std::size_t m_Bytes = 0;
    std::unordered_map<std::string, KeyId> m_Keys;
    std::unordered_map<std::string, Value> m_Values;
    std::unordered_map<KeyId, Numbers> m_Numbers;
};
