// The registry's file checked by SQLite itself.
#include "platform/StoreCheck.h"

#include <sqlite3.h>

namespace {

int Append(void * faults, int count, char ** texts, char **) {
    for (int i = 0; i != count; ++i)
        static_cast<std::string *>(faults)->append(texts[i] != nullptr ? texts[i] : "?");
    return 0;
}

} // namespace

std::string FaultsOfTheFile(RegistryScope const & scope) {
    std::string faults;
    sqlite3 * database = nullptr;
    std::string const file = (scope.Folder() / "user.db").string();
    if (sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK
        || sqlite3_exec(database, "PRAGMA integrity_check", Append, &faults, nullptr) != SQLITE_OK
        || sqlite3_exec(database, "PRAGMA foreign_key_check", Append, &faults, nullptr)
               != SQLITE_OK)
        faults += sqlite3_errmsg(database);
    sqlite3_close(database);
    return faults;
}
