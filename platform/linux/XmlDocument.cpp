// The document as a component.
#include <string>
#include <string_view>
#include <utility>

#include "platform/ComPtr.h"
#include "platform/linux/ComObject.h"
#include "platform/linux/ComText.h"
#include "platform/linux/ErrorInfo.h"
#include "platform/linux/XmlFile.h"
#include "platform/linux/XmlLoad.h"
#include "platform/linux/XmlObjects.h"
#include "platform/linux/XmlSchema.h"

namespace {

class Document : public ComObject<IXMLDOMDocument2, IXMLDOMDocument, IDispatch> {
public:
    HRESULT get_documentElement(IXMLDOMElement ** element) override {
        if (!Clear(element)) return E_POINTER;
        if (!m_Tree) return S_FALSE;
        return AsMethod([&] {
            *element = NewXmlRoot(m_Tree);
            return S_OK;
        });
    }

    HRESULT load(VARIANT source, VARIANT_BOOL * isSuccessful) override {
        if (isSuccessful == nullptr) return E_POINTER;
        *isSuccessful = VARIANT_FALSE;
        if (source.vt != VT_BSTR)
            return FailWith(E_INVALIDARG, "A document is loaded by the name of its file.");
        return AsMethod([&] {
            Load(Narrow(source.bstrVal));
            if (m_Failure.code == E_OUTOFMEMORY) return E_OUTOFMEMORY;
            *isSuccessful = m_Failure ? VARIANT_FALSE : VARIANT_TRUE;
            return m_Failure ? S_FALSE : S_OK;
        });
    }

    HRESULT get_parseError(IXMLDOMParseError ** error) override {
        return GiveError(error, m_Failure);
    }

    HRESULT put_async(VARIANT_BOOL isAsync) override {
        return isAsync == VARIANT_FALSE ? S_OK
                                        : FailWith(E_NOTIMPL, "A load is never in progress.");
    }

    HRESULT put_validateOnParse(VARIANT_BOOL isValidating) override {
        m_ValidatesOnParse = isValidating != VARIANT_FALSE;
        return S_OK;
    }

    HRESULT put_resolveExternals(VARIANT_BOOL) override { return S_OK; }

    HRESULT putref_schemas(VARIANT schemas) override {
        if (schemas.vt != VT_DISPATCH && schemas.vt != VT_NULL) return E_INVALIDARG;
        m_Cache = ComPtr<IDispatch>(schemas.vt == VT_DISPATCH ? schemas.pdispVal : nullptr);
        m_Validated.reset();
        return S_OK;
    }

    HRESULT validate(IXMLDOMParseError ** error) override {
        if (!Clear(error)) return E_POINTER;
        return AsMethod([&] {
            XmlFailure const failure = Validate();
            HRESULT const result = GiveError(error, failure);
            return result == S_OK && failure ? S_FALSE : result;
        });
    }

    HRESULT setProperty(BSTR name, VARIANT value) override {
        return AsMethod([&] {
            std::string const property = Narrow(name);
            if (property != "SelectionLanguage")
                return FailWith(E_INVALIDARG, "There is no property \"" + property + "\".");
            if (value.vt != VT_BSTR || Narrow(value.bstrVal) != "XPath")
                return FailWith(E_INVALIDARG, "The SelectionLanguage is \"XPath\".");
            return S_OK;
        });
    }

protected:
    void * QueryOther(IID const & id) override {
        return id == InterfaceId<ISupportErrorInfo> ? static_cast<ISupportErrorInfo *>(&m_Source)
                                                    : nullptr;
    }

private:
    static HRESULT GiveError(IXMLDOMParseError ** error, XmlFailure const & failure) {
        if (!Clear(error)) return E_POINTER;
        return AsMethod([&] {
            *error = NewXmlParseError(failure);
            return S_OK;
        });
    }

    // The old tree goes first: two documents need not fit into memory at once.
    void Load(std::string const & name) {
        m_Tree.reset();
        m_Validated.reset();
        if (name.empty()) {
            m_Failure = {E_INVALIDARG, "No file is named.", {}, 0, 0};
            return;
        }
        auto const schema = m_ValidatesOnParse ? SchemaOf(m_Cache.Get()) : nullptr;
        auto loaded = LoadXml(NativePath(name), schema);
        m_Tree = std::move(loaded.tree);
        m_Failure = std::move(loaded.failure);
        if (m_Failure) m_Failure.file = name;
        if (m_Tree) m_Validated = schema;
    }

    // A tree does not change: what was validated while it was loaded is valid.
    XmlFailure Validate() {
        if (!m_Tree) return {E_XML_NOTWF, "There is no document.", {}, 0, 0};
        auto const schema = SchemaOf(m_Cache.Get());
        if (!schema) return {E_XML_NODTD, "There is no schema to validate against.", {}, 0, 0};
        if (m_Validated == schema) return {};
        XmlFailure const failure = ValidateTree(*m_Tree, schema);
        if (!failure) m_Validated = schema;
        return failure;
    }

    std::shared_ptr<XmlTree const> m_Tree;
    XmlFailure m_Failure;
    ComPtr<IDispatch> m_Cache;
    bool m_ValidatesOnParse = true;
    // The schema that the tree is known to agree with.
    std::shared_ptr<XmlSchema const> m_Validated;
    ErrorSource m_Source{*this};
};

} // namespace

IUnknown * NewXmlDocument() { return new Document; }
