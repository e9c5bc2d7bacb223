// What the library does when a process loads and unloads it: its trace provider comes and goes.
//
// The provider stands between the statics and everything else, so its own static has to be built
// last and hence torn down first. Statics are built in link order: this object file is the last of
// the library. A destructor function would not do, since at the end of a process it runs behind
// the statics' destructors.
#include "app/TraceProvider.h"

namespace {

class LibraryEntry {
public:
    LibraryEntry() { TraceProvider::Attach(); }
    ~LibraryEntry() { TraceProvider::Detach(); }
    LibraryEntry(LibraryEntry const &) = delete;
    LibraryEntry & operator=(LibraryEntry const &) = delete;
};

LibraryEntry const entry;

} // namespace
