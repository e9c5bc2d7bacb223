// The window classes of the process.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "platform/linux/Windows.h"

namespace {

// Where the atoms of names begin.
constexpr ATOM FIRST_ATOM = 0xC000;

struct Record {
    WindowClass windowClass;
    int windows = 0;
};

struct ClassTable {
    std::mutex mutex;
    std::map<std::string, Record> classes;
    ATOM next = FIRST_ATOM;
};

// Never destroyed: statics of other libraries may end their windows while the process ends.
ClassTable & Table() {
    static auto & table = *new ClassTable;
    return table;
}

// Names match in any case.
std::string Folded(char const * name) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), [](unsigned char c) {
        return static_cast<char>(c < 0x80 ? std::tolower(c) : c);
    });
    return folded;
}

bool IsAtom(char const * name) { return reinterpret_cast<std::uintptr_t>(name) <= 0xFFFF; }

auto Find(ClassTable & table, ATOM atom) {
    return std::find_if(table.classes.begin(), table.classes.end(), [atom](auto const & entry) {
        return entry.second.windowClass.atom == atom;
    });
}

auto Find(ClassTable & table, char const * name) {
    return IsAtom(name) ? Find(table, static_cast<ATOM>(reinterpret_cast<std::uintptr_t>(name)))
                        : table.classes.find(Folded(name));
}

template <typename Result>
Result Refuse(DWORD error, Result result) {
    SetLastError(error);
    return result;
}

bool IsAcceptable(WNDCLASSA const * windowClass) {
    return windowClass != nullptr && windowClass->lpfnWndProc != nullptr
           && !IsAtom(windowClass->lpszClassName) && *windowClass->lpszClassName != '\0';
}

} // namespace

ATOM RegisterClassA(WNDCLASSA const * windowClass) {
    if (!IsAcceptable(windowClass)) {
        return Refuse(ERROR_INVALID_PARAMETER, ATOM{0});
    }
    auto & table = Table();
    std::scoped_lock const lock(table.mutex);
    auto const [place, isNew] = table.classes.try_emplace(Folded(windowClass->lpszClassName));
    if (!isNew) {
        return Refuse(ERROR_CLASS_ALREADY_EXISTS, ATOM{0});
    }
    place->second.windowClass = {table.next++, windowClass->lpfnWndProc};
    return place->second.windowClass.atom;
}

BOOL UnregisterClassA(char const * className, HINSTANCE) {
    auto & table = Table();
    std::scoped_lock const lock(table.mutex);
    auto const found = Find(table, className);
    if (found == table.classes.end()) {
        return Refuse(ERROR_CLASS_DOES_NOT_EXIST, FALSE);
    }
    if (found->second.windows != 0) {
        return Refuse(ERROR_CLASS_HAS_WINDOWS, FALSE);
    }
    table.classes.erase(found);
    return TRUE;
}

std::optional<WindowClass> EnterWindowClass(char const * name) {
    auto & table = Table();
    std::scoped_lock const lock(table.mutex);
    auto const found = Find(table, name);
    if (found == table.classes.end()) {
        return Refuse(ERROR_CANNOT_FIND_WND_CLASS, std::optional<WindowClass>{});
    }
    ++found->second.windows;
    return found->second.windowClass;
}

void LeaveWindowClass(ATOM atom) {
    auto & table = Table();
    std::scoped_lock const lock(table.mutex);
    --Find(table, atom)->second.windows;
}
