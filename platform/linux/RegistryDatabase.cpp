// The registry's file as an SQLite database with a rollback journal.
//
//     key(id, parent, name)            names without regard to the case of A to Z
//     value(seq, key, name, type, data)    seq: the order of first writing
//
// The root has the id 1. application_id and user_version tell the file from others and from later
// layouts, which are refused.
#include "platform/linux/RegistryDatabase.h"

#include <new>
#include <thread>

namespace {

// "MRVX".
constexpr std::int64_t ApplicationId = 0x4D525658;
constexpr std::int64_t LayoutVersion = 1;

// For others who hold the file, for as long as nothing in it changes and in all.
constexpr std::chrono::seconds Patience{5};
constexpr std::chrono::seconds LastPatience{60};

constexpr char Layout[] =
    "CREATE TABLE key(id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER NOT NULL,"
    " name TEXT NOT NULL COLLATE NOCASE, UNIQUE(parent, name));"
    "CREATE TABLE value(seq INTEGER PRIMARY KEY AUTOINCREMENT,"
    " key INTEGER NOT NULL REFERENCES key(id) ON DELETE CASCADE,"
    " name TEXT NOT NULL COLLATE NOCASE, type INTEGER NOT NULL, data BLOB NOT NULL,"
    " UNIQUE(key, name));"
    "INSERT INTO key(id, parent, name) VALUES(1, 0, '');"
    "PRAGMA application_id = 1297241688;"
    "PRAGMA user_version = 1;";
static_assert(ApplicationId == 1297241688 && LayoutVersion == 1 && RootKey == 1);

// In the order of the enumeration.
constexpr char const * Queries[] = {
    "BEGIN",
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
    "SELECT 1 FROM key WHERE id = ?1",
    "SELECT id FROM key WHERE parent = ?1 AND name = ?2",
    "SELECT 1 FROM key WHERE parent = ?1 LIMIT 1",
    "INSERT INTO key(parent, name) VALUES(?1, ?2)",
    "DELETE FROM key WHERE id = ?1",
    "SELECT name, type, data FROM value WHERE key = ?1 AND name = ?2",
    "SELECT seq FROM value WHERE key = ?1 ORDER BY seq",
    "SELECT name, type, data FROM value WHERE seq = ?1",
    "INSERT INTO value(key, name, type, data) VALUES(?1, ?2, ?3, ?4)"
    " ON CONFLICT(key, name) DO UPDATE SET type = excluded.type, data = excluded.data",
    "DELETE FROM value WHERE key = ?1 AND name = ?2",
};

std::string Bytes(sqlite3_stmt * row, int column) {
    auto const * const data = static_cast<char const *>(sqlite3_column_blob(row, column));
    auto const size = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
    return data != nullptr ? std::string(data, size) : std::string();
}

RegistryValue ValueIn(sqlite3_stmt * row) {
    return {Bytes(row, 0), static_cast<DWORD>(sqlite3_column_int64(row, 1)), Bytes(row, 2)};
}

} // namespace

// A prepared statement in use: bound, stepped, and ready for the next use on every way out.
class RegistryDatabase::Running {
public:
    Running(RegistryDatabase & database, Statement statement)
        : m_Database(database), m_Row(database.Prepared(statement)) {}
    Running(Running const &) = delete;
    Running & operator=(Running const &) = delete;
    ~Running() {
        sqlite3_reset(m_Row);
        sqlite3_clear_bindings(m_Row);
    }

    Running & Bind(int place, std::int64_t number) {
        m_Database.Check(sqlite3_bind_int64(m_Row, place, number));
        return *this;
    }

    // The text stays where it is until the statement has run.
    Running & BindText(int place, std::string_view text) {
        // A null pointer would bind NULL.
        char const * const data = text.data() != nullptr ? text.data() : "";
        m_Database.Check(
            sqlite3_bind_text64(m_Row, place, data, text.size(), SQLITE_STATIC, SQLITE_UTF8));
        return *this;
    }

    Running & BindBytes(int place, std::string const & bytes) {
        m_Database.Check(
            sqlite3_bind_blob64(m_Row, place, bytes.data(), bytes.size(), SQLITE_STATIC));
        return *this;
    }

    // False: there is no further row.
    bool Step() { return m_Database.Check(sqlite3_step(m_Row)) == SQLITE_ROW; }

    sqlite3_stmt * Row() const { return m_Row; }

private:
    RegistryDatabase & m_Database;
    sqlite3_stmt * const m_Row;
};

RegistryDatabase::Reading::Reading(RegistryDatabase & database) : m_Database(database) {
    m_Database.Prepared(End);
    m_Database.Run(Begin);
}

RegistryDatabase::Reading::~Reading() { m_Database.EndScope(End); }

RegistryDatabase::Writing::Writing(RegistryDatabase & database) : m_Database(database) {
    m_Database.Prepared(Undo);
    m_Database.Run(BeginWriting);
}

RegistryDatabase::Writing::~Writing() { m_Database.EndScope(Undo); }

void RegistryDatabase::Writing::Commit() { m_Database.Run(End); }

std::unique_ptr<RegistryDatabase> RegistryDatabase::Open(RegistryPlace const & place) {
    if (!RegistryFileExists(place)) return nullptr;
    if (HasWriteAheadLog(place)) throw RegistryError{ERROR_NOT_REGISTRY_FILE};
    auto database = Connect(place);
    {
        Reading const scope(*database);
        if (!database->HoldsRegistry()) return nullptr;
    }
    database->Run("PRAGMA journal_mode = TRUNCATE");
    return database;
}

std::unique_ptr<RegistryDatabase> RegistryDatabase::OpenOrCreate(RegistryPlace const & place) {
    if (auto database = Open(place)) return database;
    CreateRegistryFile(place);
    auto database = Connect(place);
    database->Run("PRAGMA journal_mode = TRUNCATE");
    database->CreateRegistry();
    return database;
}

std::unique_ptr<RegistryDatabase> RegistryDatabase::Connect(RegistryPlace const & place) {
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    std::unique_ptr<RegistryDatabase> database(new RegistryDatabase);
    int const result = sqlite3_open_v2(place.file.c_str(), &database->m_Connection, flags, nullptr);
    sqlite3 * const connection = database->m_Connection;
    database->Check(result);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_busy_handler(connection, Wait, database.get());
    sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &database->m_File);
    database->Run("PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON;"
                  "PRAGMA trusted_schema = OFF; PRAGMA cell_size_check = ON");
    return database;
}

RegistryDatabase::~RegistryDatabase() {
    for (sqlite3_stmt * const statement : m_Statements)
        sqlite3_finalize(statement);
    sqlite3_close(m_Connection);
}

void RegistryDatabase::Abandon() {
    m_Statements.fill(nullptr);
    m_Connection = nullptr;
}

bool RegistryDatabase::IsReadOnly() const { return sqlite3_db_readonly(m_Connection, "main") == 1; }

bool RegistryDatabase::HasMoved() const {
    int moved = 0;
    sqlite3_file_control(m_Connection, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

// The header's change counter and the three numbers behind it, by which SQLite itself knows
// whether its pages are still good. The file is asked directly: the connection knows nothing of a
// failure here, only of an earlier one.
bool RegistryDatabase::TryReadStamp(Stamp & stamp) const {
    constexpr sqlite3_int64 changeCounter = 24;
    int const size = static_cast<int>(stamp.size());
    return m_File->pMethods->xRead(m_File, stamp.data(), size, changeCounter) == SQLITE_OK;
}

RegistryDatabase::Stamp RegistryDatabase::ReadStamp() const {
    Stamp stamp = {};
    if (!TryReadStamp(stamp)) throw RegistryError{ERROR_REGISTRY_IO_FAILED};
    return stamp;
}

// The system's own busy handler sleeps longer the longer it waits, so that it loses against those
// who come later.
int RegistryDatabase::Wait(void * database, int attempts) {
    if (!static_cast<RegistryDatabase *>(database)->IsWorthWaiting(attempts == 0)) return 0;
    std::this_thread::sleep_for(std::chrono::microseconds(100 * (1 + attempts % 8)));
    return 1;
}

// Between the writes of a busy process there is little time to get in, least of all on a busy
// machine: whoever sees that others get on waits for longer.
bool RegistryDatabase::IsWorthWaiting(bool isFirst) {
    auto const now = std::chrono::steady_clock::now();
    if (isFirst) m_LastGiveUp = now + LastPatience;
    Stamp stamp = {};
    bool const changed = TryReadStamp(stamp) && stamp != m_SeenWaiting;
    if (isFirst || changed) m_GiveUp = now + Patience;
    m_SeenWaiting = stamp;
    return now <= m_GiveUp && now <= m_LastGiveUp;
}

bool RegistryDatabase::HoldsRegistry() {
    std::int64_t const application = Number("PRAGMA application_id");
    std::int64_t const version = Number("PRAGMA user_version");
    if (application == ApplicationId && version == LayoutVersion) return true;
    bool const isUnused = application == 0 && version == 0;
    if (!isUnused || Number("SELECT count(*) FROM sqlite_schema") != 0)
        throw RegistryError{ERROR_NOT_REGISTRY_FILE};
    return false;
}

// Another process may have come first.
void RegistryDatabase::CreateRegistry() {
    Writing scope(*this);
    if (HoldsRegistry()) return;
    Run(Layout);
    scope.Commit();
}

std::int64_t RegistryDatabase::Number(char const * query) {
    sqlite3_stmt * statement = nullptr;
    Check(sqlite3_prepare_v2(m_Connection, query, -1, &statement, nullptr));
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)> const owned(statement, sqlite3_finalize);
    Check(sqlite3_step(statement));
    return sqlite3_column_int64(statement, 0);
}

void RegistryDatabase::Run(char const * script) {
    Check(sqlite3_exec(m_Connection, script, nullptr, nullptr, nullptr));
}

void RegistryDatabase::Run(Statement statement) { Running(*this, statement).Step(); }

// A failure may have ended the transaction already.
void RegistryDatabase::EndScope(Statement statement) {
    if (sqlite3_get_autocommit(m_Connection) != 0) return;
    sqlite3_step(m_Statements[statement]);
    sqlite3_reset(m_Statements[statement]);
}

sqlite3_stmt * RegistryDatabase::Prepared(Statement statement) {
    sqlite3_stmt *& prepared = m_Statements[statement];
    if (prepared == nullptr)
        Check(sqlite3_prepare_v3(
            m_Connection, Queries[statement], -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr));
    return prepared;
}

int RegistryDatabase::Check(int result) const {
    if (result == SQLITE_OK || result == SQLITE_ROW || result == SQLITE_DONE) return result;
    if ((result & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
    throw RegistryError{CodeOf(result)};
}

DWORD RegistryDatabase::CodeOf(int result) const {
    if (result == SQLITE_READONLY_DBMOVED) return ERROR_KEY_DELETED;
    switch (result & 0xFF) {
    case SQLITE_PERM:
    case SQLITE_READONLY:
        return ERROR_ACCESS_DENIED;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ERROR_BUSY;
    case SQLITE_FULL:
        return ERROR_DISK_FULL;
    case SQLITE_TOOBIG:
        return ERROR_NOT_ENOUGH_MEMORY;
    case SQLITE_CANTOPEN:
        return RegistryCodeOf(sqlite3_system_errno(m_Connection), ERROR_CANTOPEN);
    case SQLITE_IOERR:
        return RegistryCodeOf(sqlite3_system_errno(m_Connection), ERROR_REGISTRY_IO_FAILED);
    case SQLITE_CONSTRAINT:
        // The one constraint that can fail: a value's key is gone.
        return ERROR_KEY_DELETED;
    default:
        return ERROR_REGISTRY_CORRUPT;
    }
}

bool RegistryDatabase::KeyExists(KeyId key) {
    return Running(*this, SelectKey).Bind(1, key).Step();
}

std::optional<KeyId> RegistryDatabase::FindSubkey(KeyId parent, std::string_view name) {
    Running select(*this, SelectSubkey);
    if (!select.Bind(1, parent).BindText(2, name).Step()) return std::nullopt;
    return sqlite3_column_int64(select.Row(), 0);
}

KeyId RegistryDatabase::InsertSubkey(KeyId parent, std::string_view name) {
    Running(*this, AddKey).Bind(1, parent).BindText(2, name).Step();
    return sqlite3_last_insert_rowid(m_Connection);
}

bool RegistryDatabase::HasSubkeys(KeyId key) {
    return Running(*this, SelectAnySubkey).Bind(1, key).Step();
}

void RegistryDatabase::RemoveKey(KeyId key) { Running(*this, DeleteKey).Bind(1, key).Step(); }

std::optional<RegistryValue> RegistryDatabase::FindValue(KeyId key, std::string_view name) {
    Running select(*this, SelectValue);
    if (!select.Bind(1, key).BindText(2, name).Step()) return std::nullopt;
    return ValueIn(select.Row());
}

std::vector<std::int64_t> RegistryDatabase::ValueNumbers(KeyId key) {
    std::vector<std::int64_t> numbers;
    Running select(*this, SelectNumbers);
    select.Bind(1, key);
    while (select.Step())
        numbers.push_back(sqlite3_column_int64(select.Row(), 0));
    return numbers;
}

RegistryValue RegistryDatabase::ValueOf(std::int64_t number) {
    Running select(*this, SelectByNumber);
    if (!select.Bind(1, number).Step()) throw RegistryError{ERROR_REGISTRY_CORRUPT};
    return ValueIn(select.Row());
}

void RegistryDatabase::WriteValue(KeyId key, RegistryValue const & value) {
    Running(*this, UpsertValue)
        .Bind(1, key)
        .BindText(2, value.name)
        .Bind(3, value.type)
        .BindBytes(4, value.data)
        .Step();
}

bool RegistryDatabase::RemoveValue(KeyId key, std::string_view name) {
    Running(*this, DeleteValue).Bind(1, key).BindText(2, name).Step();
    return sqlite3_changes(m_Connection) != 0;
}
