// Where and why a document was refused, as a component.
#include "platform/linux/ComObject.h"
#include "platform/linux/ComText.h"
#include "platform/linux/XmlFailure.h"
#include "platform/linux/XmlObjects.h"

namespace {

class ParseError : public ComObject<IXMLDOMParseError, IDispatch> {
public:
    explicit ParseError(XmlFailure const & failure) : m_Failure(failure) {}

    HRESULT get_errorCode(LONG * code) override {
        if (code == nullptr) return E_POINTER;
        *code = m_Failure.code;
        return m_Failure ? S_OK : S_FALSE;
    }

    HRESULT get_url(BSTR * url) override { return GiveText(url, m_Failure.file); }
    HRESULT get_reason(BSTR * reason) override { return GiveText(reason, m_Failure.reason); }
    HRESULT get_line(LONG * line) override { return GiveNumber(line, m_Failure.line); }
    HRESULT get_linepos(LONG * column) override { return GiveNumber(column, m_Failure.column); }

private:
    static HRESULT GiveText(BSTR * to, std::string const & text) {
        if (!Clear(to)) return E_POINTER;
        if (text.empty()) return S_FALSE;
        return AsMethod([&] {
            *to = NewText(text);
            return S_OK;
        });
    }

    static HRESULT GiveNumber(LONG * to, LONG number) {
        if (to == nullptr) return E_POINTER;
        *to = number;
        return number != 0 ? S_OK : S_FALSE;
    }

    XmlFailure const m_Failure;
};

} // namespace

IXMLDOMParseError * NewXmlParseError(XmlFailure const & failure) { return new ParseError(failure); }
