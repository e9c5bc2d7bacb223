// The filter for a scope.
#include "messages/CMessageFilterSetter.h"

#include "app/CAppState.h"

CMessageFilterSetter::CMessageFilterSetter(unsigned int code) {
    CAppState::SetMessageToFilter(code);
}

CMessageFilterSetter & CMessageFilterSetter::operator=(CMessageFilterSetter const &) {
    return *this;
}

CMessageFilterSetter::~CMessageFilterSetter() { CAppState::ClearMessageToFilter(); }
