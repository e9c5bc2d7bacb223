// The scope in which the operator's abort is thrown.
#include "output/CExceptionSwitch.h"

#include "output/CUIUpdate.h"

CExceptionSwitch::CExceptionSwitch() { CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(true); }

CExceptionSwitch::~CExceptionSwitch() {
    CUIUpdate::SendUpdate(false);
    // Deliberate: for the switches around this one too.
    // Pinned by CUIUpdateTest.TheEndOfAnInnerSwitchDisarmsTheOuter.
    CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(false);
}
