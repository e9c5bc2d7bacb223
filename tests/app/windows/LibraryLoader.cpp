// Loads the library, with a listener if told so, and writes a letter for each step of its coming
// and going: LibraryLoader [listen] [unload]
//
// i, d: a lock of its statics comes, goes. R, U: the provider is registered, withdrawn. A, D: the
// record of the attach, of the detach. A full stop: the library has been unloaded.
//
// The loader tells of the library before it runs any of it; its imports are then turned to
// operations of this program.
#include <array>
#include <cstdarg>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/Tracing.h"

namespace {

bool hasListener = false;
std::array<char const *, 3> locks;

void Note(char step) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), &step, 1, &written, nullptr);
}

// The library's run-time has sections of its own.
bool IsOfALock(CRITICAL_SECTION const * section) {
    for (char const * const lock : locks)
        if (reinterpret_cast<char const *>(section) == lock) return true;
    return false;
}

void WINAPI Initialize(CRITICAL_SECTION * section) {
    if (IsOfALock(section)) Note('i');
    InitializeCriticalSection(section);
}

void WINAPI Delete(CRITICAL_SECTION * section) {
    if (IsOfALock(section)) Note('d');
    DeleteCriticalSection(section);
}

ULONG WINAPI Register(
    WMIDPREQUEST control, void * context, GUID const *, ULONG, TRACE_GUID_REGISTRATION *,
    char const *, char const *, TRACEHANDLE * handle) {
    Note('R');
    *handle = 1;
    ULONG size = 0;
    char buffer = 0;
    if (hasListener) control(WMI_ENABLE_EVENTS, context, &size, &buffer);
    return ERROR_SUCCESS;
}

ULONG WINAPI Unregister(TRACEHANDLE) {
    Note('U');
    return ERROR_SUCCESS;
}

TRACEHANDLE WINAPI Logger(void *) { return 7; }
UCHAR WINAPI Level(TRACEHANDLE) { return 255; }
ULONG WINAPI Flags(TRACEHANDLE) { return 1; }

// The records of coming and going have no arguments.
ULONG Message(TRACEHANDLE logger, ULONG flags, GUID const * guid, USHORT number, ...) {
    static constexpr GUID messages = {
        0xdb37377c, 0x43e1, 0x3754, {0x75, 0xb1, 0xea, 0xc6, 0xc7, 0xc9, 0x3f, 0xaa}};
    std::va_list arguments;
    va_start(arguments, number);
    bool const isBare = va_arg(arguments, void const *) == nullptr;
    va_end(arguments);
    bool const isOurs =
        logger == 7 && flags == 0x2B && std::memcmp(guid, &messages, sizeof messages) == 0;
    Note(!isBare || !isOurs ? '?' : number == 10 ? 'A' : number == 11 ? 'D' : '?');
    return ERROR_SUCCESS;
}

struct Replacement {
    std::string_view name;
    void * function;
};

template <typename Function>
Replacement By(std::string_view name, Function * function) {
    return {name, reinterpret_cast<void *>(function)};
}

std::array const replacements = {
    By("InitializeCriticalSection", Initialize),
    By("DeleteCriticalSection", Delete),
    By("RegisterTraceGuidsA", Register),
    By("UnregisterTraceGuids", Unregister),
    By("GetTraceLoggerHandle", Logger),
    By("GetTraceEnableLevel", Level),
    By("GetTraceEnableFlags", Flags),
    By("TraceMessage", Message)};

template <typename Part>
Part * At(char * module, std::size_t offset) {
    return reinterpret_cast<Part *>(module + offset);
}

void Replace(char const * name, IMAGE_THUNK_DATA & import) {
    for (auto const & [replaced, function] : replacements) {
        if (replaced != name) continue;
        DWORD protection = 0;
        VirtualProtect(&import, sizeof import, PAGE_READWRITE, &protection);
        import.u1.Function = reinterpret_cast<ULONGLONG>(function);
        VirtualProtect(&import, sizeof import, protection, &protection);
    }
}

void ReplaceImports(char * module) {
    auto const * const dos = At<IMAGE_DOS_HEADER>(module, 0);
    auto const * const headers =
        At<IMAGE_NT_HEADERS>(module, static_cast<std::size_t>(dos->e_lfanew));
    auto const & table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto * from = At<IMAGE_IMPORT_DESCRIPTOR>(module, table.VirtualAddress); from->Name != 0;
         ++from) {
        auto const * name = At<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
        auto * import = At<IMAGE_THUNK_DATA>(module, from->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++import)
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                Replace(At<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData)->Name, *import);
    }
}

void FindLocks(HMODULE module) {
    constexpr std::array names = {
        "_ZN9CAppState12m_HelperLockE", "_ZN9CAppState18m_MessageQueueLockE",
        "_ZN13COutputBuffer11m_TheOBLockE"};
    for (std::size_t i = 0; i < names.size(); ++i)
        locks[i] = reinterpret_cast<char const *>(GetProcAddress(module, names[i]));
}

// What the loader hands over; its header has no declaration of it.
struct CountedText {
    USHORT size;
    USHORT capacity;
    wchar_t const * text;
};
struct LoadedModule {
    ULONG flags;
    CountedText const * path;
    CountedText const * name;
    void * base;
    ULONG size;
};

void CALLBACK Loaded(ULONG reason, LoadedModule const * module, void *) {
    std::wstring_view const name(module->name->text, module->name->size / sizeof(wchar_t));
    if (reason != 1 || name != L"Morvex.dll") return;
    FindLocks(static_cast<HMODULE>(module->base));
    ReplaceImports(static_cast<char *>(module->base));
}

bool Watch() {
    using Register = LONG(NTAPI *)(ULONG, decltype(&Loaded), void *, void **);
    auto const watch = reinterpret_cast<Register>(reinterpret_cast<void *>(
        GetProcAddress(GetModuleHandleA("ntdll.dll"), "LdrRegisterDllNotification")));
    void * cookie = nullptr;
    return watch != nullptr && watch(0, Loaded, nullptr, &cookie) == 0;
}

bool IsAmong(int count, char ** words, std::string_view word) {
    for (int i = 1; i < count; ++i)
        if (words[i] == word) return true;
    return false;
}

} // namespace

int main(int count, char ** words) {
    hasListener = IsAmong(count, words, "listen");
    if (!Watch()) return 2;
    HMODULE const library = LoadLibraryA("Morvex.dll");
    if (library == nullptr) return 3;
    if (!IsAmong(count, words, "unload")) return 0;
    if (!FreeLibrary(library)) return 4;
    Note('.');
    return 0;
}
