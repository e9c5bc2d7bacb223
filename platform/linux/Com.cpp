// Starting COM on a thread, making objects, and the thread's error object.
#include "platform/Com.h"

#include <atomic>
#include <utility>

#include "platform/Xml.h"
#include "platform/linux/ErrorInfo.h"
#include "platform/linux/XmlObjects.h"

namespace {

struct ThreadState {
    ULONG starts = 0;
    DWORD mode = COINIT_MULTITHREADED;
};

thread_local ThreadState t_State;

// Threads that hold COM started in the multi-threaded mode: one is enough for all.
std::atomic<int> s_MultiThreaded = 0;

bool IsStarted() { return t_State.starts != 0 || s_MultiThreaded != 0; }

DWORD ModeOf(DWORD flags) { return flags & COINIT_APARTMENTTHREADED; }

using Factory = IUnknown * (*)();

Factory FindClass(CLSID const & clsid) {
    if (clsid == CLSID_DOMDocument60) return NewXmlDocument;
    if (clsid == CLSID_XMLSchemaCache60) return NewXmlSchemaCache;
    return nullptr;
}

} // namespace

HRESULT CoInitializeEx(void *, DWORD mode) {
    if (t_State.starts != 0) {
        if (t_State.mode != ModeOf(mode)) return RPC_E_CHANGED_MODE;
        ++t_State.starts;
        return S_FALSE;
    }
    t_State = {1, ModeOf(mode)};
    if (t_State.mode == COINIT_MULTITHREADED) ++s_MultiThreaded;
    return S_OK;
}

void CoUninitialize() {
    if (t_State.starts == 0 || --t_State.starts != 0) return;
    if (t_State.mode == COINIT_MULTITHREADED) --s_MultiThreaded;
    SetErrorInfo(0, nullptr);
}

HRESULT
CoCreateInstance(CLSID const & clsid, IUnknown * outer, DWORD, IID const & id, void ** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsStarted()) return CO_E_NOTINITIALIZED;
    Factory const factory = FindClass(clsid);
    if (factory == nullptr) return REGDB_E_CLASSNOTREG;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return AsMethod([&] {
        IUnknown * const made = factory();
        HRESULT const result = made->QueryInterface(id, object);
        made->Release();
        return result;
    });
}

HRESULT OleRun(IUnknown *) { return S_OK; }
