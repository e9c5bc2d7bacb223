// The guard of a name.
#include "app/CLimitSingleInstance.h"

#include "platform/Synchronization.h"

CLimitSingleInstance::CLimitSingleInstance(wchar_t const * name) {
    m_Mutex = CreateMutexW(nullptr, FALSE, name);
    m_LastError = GetLastError();
}

CLimitSingleInstance::~CLimitSingleInstance() {
    if (m_Mutex != nullptr) CloseHandle(m_Mutex);
}

int CLimitSingleInstance::IsAnotherInstanceRunning() {
    return m_LastError == ERROR_ALREADY_EXISTS ? 1 : 0;
}
