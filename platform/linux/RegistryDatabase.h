// One file of the registry: an SQLite database with its statements, and its failures as error
// codes.
//
// It holds keys and values and knows nothing of paths, handles or caching. Failures are thrown as
// RegistryError; running out of memory as std::bad_alloc. There is no lock: the owner has one.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

#include "platform/Registry.h"
#include "platform/linux/RegistryFile.h"

struct RegistryValue {
    std::string name;
    DWORD type = 0;
    std::string data;
};

using KeyId = std::int64_t;

// The key that all others lie below.
inline constexpr KeyId RootKey = 1;

class RegistryDatabase {
public:
    // Null: there is no file, or none with a registry in it yet.
    static std::unique_ptr<RegistryDatabase> Open(RegistryPlace const & place);
    // Creates the file, its folder and what is missing above that.
    static std::unique_ptr<RegistryDatabase> OpenOrCreate(RegistryPlace const & place);

    RegistryDatabase(RegistryDatabase const &) = delete;
    RegistryDatabase & operator=(RegistryDatabase const &) = delete;
    ~RegistryDatabase();

    // In a child that was forked: lets go of the connection without touching it.
    void Abandon();

    bool IsReadOnly() const;

    // Whether another file, or none, stands in the place by now.
    bool HasMoved() const;

    // Differs after every change by whatever process; costs one read of the file.
    using Stamp = std::array<unsigned char, 16>;
    Stamp ReadStamp() const;

    // Reads within the scope see one state of the file.
    class Reading {
    public:
        explicit Reading(RegistryDatabase & database);
        Reading(Reading const &) = delete;
        Reading & operator=(Reading const &) = delete;
        ~Reading();

    private:
        RegistryDatabase & m_Database;
    };

    // Changes within the scope are made together by Commit, or not at all.
    class Writing {
    public:
        explicit Writing(RegistryDatabase & database);
        Writing(Writing const &) = delete;
        Writing & operator=(Writing const &) = delete;
        ~Writing();

        // On disk when it returns.
        void Commit();

    private:
        RegistryDatabase & m_Database;
    };

    // The following belong inside one of the two scopes.
    bool KeyExists(KeyId key);
    std::optional<KeyId> FindSubkey(KeyId parent, std::string_view name);
    KeyId InsertSubkey(KeyId parent, std::string_view name);
    bool HasSubkeys(KeyId key);
    void RemoveKey(KeyId key);

    std::optional<RegistryValue> FindValue(KeyId key, std::string_view name);
    // The numbers of a key's values, in the order of first writing, and the value with a number.
    std::vector<std::int64_t> ValueNumbers(KeyId key);
    RegistryValue ValueOf(std::int64_t number);
    // Replaces in place, or adds behind all others. RegistryError with ERROR_KEY_DELETED: no key.
    void WriteValue(KeyId key, RegistryValue const & value);
    bool RemoveValue(KeyId key, std::string_view name);

private:
    enum Statement {
        Begin,
        BeginWriting,
        End,
        Undo,
        SelectKey,
        SelectSubkey,
        SelectAnySubkey,
        AddKey,
        DeleteKey,
        SelectValue,
        SelectNumbers,
        SelectByNumber,
        UpsertValue,
        DeleteValue,
        StatementCount,
    };
    class Running;

    RegistryDatabase() = default;

    static int Wait(void * database, int attempts);
    bool IsWorthWaiting(bool isFirst);
    bool TryReadStamp(Stamp & stamp) const;

    static std::unique_ptr<RegistryDatabase> Connect(RegistryPlace const & place);

    // Inside a scope. RegistryError: the file holds something else.
    bool HoldsRegistry();
    void CreateRegistry();
    std::int64_t Number(char const * query);
    void Run(char const * script);
    void Run(Statement statement);
    void EndScope(Statement statement);
    sqlite3_stmt * Prepared(Statement statement);
    int Check(int result) const;
    DWORD CodeOf(int result) const;

    sqlite3 * m_Connection = nullptr;
    sqlite3_file * m_File = nullptr;
    std::array<sqlite3_stmt *, StatementCount> m_Statements = {};
    // While others hold the file.
    std::chrono::steady_clock::time_point m_GiveUp;
    std::chrono::steady_clock::time_point m_LastGiveUp;
    Stamp m_SeenWaiting = {};
};
