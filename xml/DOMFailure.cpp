// From a failed call to an exception.
#include "xml/DOMFailure.h"

namespace {

ComPtr<IErrorInfo> ErrorOf(IUnknown * object, IID const & id) {
    ComPtr<ISupportErrorInfo> support;
    ComPtr<IErrorInfo> error;
    HRESULT const asked =
        object->QueryInterface(InterfaceId<ISupportErrorInfo>, support.ReceiveUntyped());
    if (FAILED(asked) || support->InterfaceSupportsErrorInfo(id) != S_OK) return error;
    if (GetErrorInfo(0, error.Receive()) != S_OK) error.Detach();
    return error;
}

} // namespace

void CheckCall(HRESULT result, IUnknown * object, IID const & id) {
    if (FAILED(result)) throw _com_error(result, ErrorOf(object, id).Detach());
}
