// The run's shared state: the chosen VIF files, in memory and in the registry.
#include "app/CAppState.h"

#include "app/Replace.h"
#include "platform/Registry.h"
#include "settings/LastRegistryError.h"
#include "settings/Registry.h"
#include "siblings/Keelbase.h"

namespace {

std::string ApplicationKey() {
    std::string key;
    GetProductKey(key, *CAppState::ApplicationName());
    return key;
}

std::string DFPVifsKey() { return ApplicationKey() + '\\' + CAppState::m_DFP_VIFS_REG_KEY_NAME; }

// False: the old list is still there.
bool DeleteDFPVifs(std::string const & key) {
    ClearLastRegistryError();
    LSTATUS const result = RegDeleteKeyA(HKEY_LOCAL_MACHINE, key.c_str());
    if (result == static_cast<LSTATUS>(ERROR_SUCCESS)) return true;
    SetRegistryErrMsgString(result);
    return result == static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND);
}

void WriteDFPVifs(std::string const & key, std::vector<CSafeString> const & names) {
    unsigned int number = 0;
    for (CSafeString const & name : names) {
        std::string const value = "Vif_" + std::to_string(++number);
        TS_SetRegistryString(HKEY_LOCAL_MACHINE, key.c_str(), value.c_str(), name.get());
    }
}

} // namespace

void CAppState::UFPVifName(std::string const & name) { Replace(m_sTheApp->m_UFPVifName, name); }

bool CAppState::UFPVifLoaded() { return UFPVifName() != nullptr && !UFPVifName()->empty(); }

void CAppState::DFPVifNames(std::vector<CSafeString> const & names) {
    Replace(m_sTheApp->m_DFPVifNames, names);
}

bool CAppState::DFPVifLoaded() { return DFPVifNames() != nullptr && !DFPVifNames()->empty(); }

bool CAppState::ReadUFPVifFromRegistry() {
    std::string name;
    bool const read = TS_GetRegistryString(
        HKEY_LOCAL_MACHINE, ApplicationKey().c_str(), m_UFP_VIF_REG_VALUE_NAME, name);
    if (read) UFPVifName(name);
    return read;
}

bool CAppState::WriteUFPVifToRegistry() {
    std::string const name = UFPVifName() != nullptr ? *UFPVifName() : std::string();
    return TS_SetRegistryString(
        HKEY_LOCAL_MACHINE, ApplicationKey().c_str(), m_UFP_VIF_REG_VALUE_NAME, name);
}

// Deliberate: false in every case, and a missing key empties the list.
// Pinned by CAppStateVifTest.ReadingTheDFPListIsFalseAlsoWhenItWasThere.
bool CAppState::ReadDFPVifsFromRegistry() {
    bool ok = false;
    auto const names = TS_GetAllStringValuesOfKey(HKEY_LOCAL_MACHINE, DFPVifsKey().c_str(), ok);
    DFPVifNames(*names);
    return ok;
}

// Deliberate: false in every case.
// Pinned by CAppStateVifTest.WritingTheDFPListIsFalseAlsoWhenItSucceeds.
bool CAppState::WriteDFPVifsToRegistry() {
    std::string const key = DFPVifsKey();
    if (DeleteDFPVifs(key) && DFPVifLoaded()) WriteDFPVifs(key, *DFPVifNames());
    return false;
}
