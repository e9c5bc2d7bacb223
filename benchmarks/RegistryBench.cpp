// Settings in the registry, beside the least that they cost on the store beneath: reading one value
// beside a prepared look-up on an open connection, writing one beside a transaction that replaces
// it.
//
// The goals: at most 1.5 times the look-up and 1.3 times the transaction. TS_GetRegistryDword and
// TS_SetRegistryDword open their key and close it again.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <sqlite3.h>

#include "settings/Registry.h"

namespace {

constexpr char Path[] = "Software\\Velmora\\Quillon";
constexpr int Values = 100;

std::string ValueName(std::size_t number) { return "Setting " + std::to_string(number % Values); }

// A registry of the program's own, beside the bare store on the same disk.
class Folder {
public:
    Folder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder");
        m_Path = pattern;
        setenv("QN_REGISTRY", pattern.c_str(), 1);
        for (std::size_t number = 0; number != Values; ++number)
            TS_SetRegistryDword(
                HKEY_LOCAL_MACHINE, Path, ValueName(number).c_str(),
                static_cast<unsigned long>(number));
        std::filesystem::copy_file(m_Path / "registry.db", Bare());
    }
    ~Folder() { std::filesystem::remove_all(m_Path); }

    std::filesystem::path Bare() const { return m_Path / "bare.db"; }

private:
    std::filesystem::path m_Path;
};

Folder const & TheFolder() {
    static Folder const folder;
    return folder;
}

// The store by itself: one connection, prepared statements, the key known by its number.
class BareStore {
public:
    BareStore() {
        sqlite3_open(TheFolder().Bare().c_str(), &m_Database);
        Run("PRAGMA journal_mode = TRUNCATE; PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON");
        m_Select = Prepare("SELECT type, data FROM value WHERE key = 4 AND name = ?1");
        m_Upsert = Prepare(
            "INSERT INTO value(key, name, type, data) VALUES(4, ?1, 4, ?2)"
            " ON CONFLICT(key, name) DO UPDATE SET type = excluded.type, data = excluded.data");
        m_Begin = Prepare("BEGIN IMMEDIATE");
        m_Commit = Prepare("COMMIT");
    }
    BareStore(BareStore const &) = delete;
    BareStore & operator=(BareStore const &) = delete;
    ~BareStore() {
        for (sqlite3_stmt * const each : {m_Select, m_Upsert, m_Begin, m_Commit})
            sqlite3_finalize(each);
        sqlite3_close(m_Database);
    }

    std::uint32_t Read(std::string const & name) {
        BindName(m_Select, name);
        std::uint32_t number = 0;
        if (sqlite3_step(m_Select) != SQLITE_ROW) throw std::runtime_error("no value");
        std::memcpy(&number, sqlite3_column_blob(m_Select, 1), sizeof number);
        sqlite3_reset(m_Select);
        return number;
    }

    void Write(std::string const & name, std::uint32_t number) {
        Step(m_Begin);
        BindName(m_Upsert, name);
        sqlite3_bind_blob(m_Upsert, 2, &number, sizeof number, SQLITE_STATIC);
        Step(m_Upsert);
        Step(m_Commit);
    }

private:
    static void BindName(sqlite3_stmt * statement, std::string const & name) {
        sqlite3_bind_text(statement, 1, name.c_str(), static_cast<int>(name.size()), SQLITE_STATIC);
    }

    static void Step(sqlite3_stmt * statement) {
        if (sqlite3_step(statement) != SQLITE_DONE) throw std::runtime_error("no step");
        sqlite3_reset(statement);
    }

    void Run(char const * script) {
        if (sqlite3_exec(m_Database, script, nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_Database));
    }

    sqlite3_stmt * Prepare(char const * query) {
        sqlite3_stmt * statement = nullptr;
        if (sqlite3_prepare_v2(m_Database, query, -1, &statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_Database));
        return statement;
    }

    sqlite3 * m_Database = nullptr;
    sqlite3_stmt * m_Select;
    sqlite3_stmt * m_Upsert;
    sqlite3_stmt * m_Begin;
    sqlite3_stmt * m_Commit;
};

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (std::size_t number = 0; number != Values; ++number)
        names.push_back(ValueName(number));
    return names;
}

void BareRead(benchmark::State & state) {
    BareStore store;
    auto const names = Names();
    std::size_t next = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(store.Read(names[next++ % Values]));
}

void Read(benchmark::State & state) {
    TheFolder();
    auto const names = Names();
    std::size_t next = 0;
    for (auto _ : state) {
        unsigned long number = 0;
        if (!TS_GetRegistryDword(HKEY_LOCAL_MACHINE, Path, names[next++ % Values].c_str(), &number))
            state.SkipWithError("no value");
        benchmark::DoNotOptimize(number);
    }
    state.counters["goal"] = 1.5;
}

void BareWrite(benchmark::State & state) {
    BareStore store;
    auto const names = Names();
    std::uint32_t next = 0;
    for (auto _ : state) {
        store.Write(names[next % Values], next);
        ++next;
    }
}

void Write(benchmark::State & state) {
    TheFolder();
    auto const names = Names();
    std::size_t next = 0;
    for (auto _ : state) {
        if (!TS_SetRegistryDword(HKEY_LOCAL_MACHINE, Path, names[next % Values].c_str(), next))
            state.SkipWithError("not written");
        ++next;
    }
    state.counters["goal"] = 1.3;
}

BENCHMARK(BareRead)->Name("RegistryRead/limit");
BENCHMARK(Read)->Name("RegistryRead/morvex");
BENCHMARK(BareWrite)->Name("RegistryWrite/limit");
BENCHMARK(Write)->Name("RegistryWrite/morvex");

} // namespace

BENCHMARK_MAIN();
