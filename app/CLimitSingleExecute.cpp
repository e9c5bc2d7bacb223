// The guard of the one program.
#include "app/CLimitSingleExecute.h"

#include "platform/Synchronization.h"

namespace {

constexpr wchar_t Name[] = L"{F0BDBC18-5C8B-478C-A242-69CE5DD16058}";

} // namespace

constinit CLimitSingleExecute * CLimitSingleExecute::m_sTheSingleExecute = nullptr;

CLimitSingleExecute::CLimitSingleExecute() {
    m_Mutex = CreateMutexW(nullptr, FALSE, Name);
    m_LastError = GetLastError();
}

CLimitSingleExecute::~CLimitSingleExecute() {
    if (m_Mutex != nullptr) CloseHandle(m_Mutex);
}

CLimitSingleExecute * CLimitSingleExecute::GetSingleExecute() {
    if (m_sTheSingleExecute == nullptr) m_sTheSingleExecute = new CLimitSingleExecute;
    return m_sTheSingleExecute;
}

void CLimitSingleExecute::FreeSingleExecute() {
    delete m_sTheSingleExecute;
    m_sTheSingleExecute = nullptr;
}

bool CLimitSingleExecute::IsAnotherInstanceRunning() const {
    return m_LastError == ERROR_ALREADY_EXISTS;
}
