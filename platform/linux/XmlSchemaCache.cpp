// The schema that documents are validated against, as a component.
#include <string>
#include <utility>

#include "platform/linux/ComObject.h"
#include "platform/linux/ComText.h"
#include "platform/linux/ErrorInfo.h"
#include "platform/linux/XmlFile.h"
#include "platform/linux/XmlObjects.h"
#include "platform/linux/XmlSchema.h"

namespace {

// Answered by our caches alone.
constexpr IID OwnCache = {
    0x5D0B1A52, 0x6C53, 0x4E0A, {0x9B, 0x3B, 0x61, 0x0E, 0x8C, 0x2C, 0x4D, 0x17}};

class SchemaCache : public ComObject<IXMLDOMSchemaCollection2, IXMLDOMSchemaCollection, IDispatch> {
public:
    HRESULT add(BSTR namespaceUri, VARIANT location) override {
        if (location.vt != VT_BSTR || location.bstrVal == nullptr)
            return FailWith(E_INVALIDARG, "A schema is added by the name of its file.");
        return AsMethod(
            [&] { return Add(Narrow(namespaceUri), NativePath(Narrow(location.bstrVal))); });
    }

    std::shared_ptr<XmlSchema const> const & Schema() const { return m_Schema; }

protected:
    void * QueryOther(IID const & id) override {
        if (id == InterfaceId<ISupportErrorInfo>)
            return static_cast<ISupportErrorInfo *>(&m_Source);
        return id == OwnCache ? this : nullptr;
    }

private:
    HRESULT Add(std::string const & space, std::string const & path) {
        if (m_Schema && path != m_Path)
            return FailWith(E_NOTIMPL, path + ": There is one schema to a collection.");
        XmlFailure failure;
        auto schema = SchemaIn(path, failure);
        if (!schema) return Refuse(failure);
        std::string const target = schema->TargetNamespace();
        if (target != space)
            return FailWith(
                E_FAIL, path + ": The schema's target namespace is \"" + target + "\", not \""
                            + space + "\".");
        m_Schema = std::move(schema);
        m_Path = path;
        return S_OK;
    }

    static HRESULT Refuse(XmlFailure const & failure) {
        return FailWith(failure.code == E_OUTOFMEMORY ? E_OUTOFMEMORY : E_FAIL, Sentence(failure));
    }

    std::shared_ptr<XmlSchema const> m_Schema;
    std::string m_Path;
    ErrorSource m_Source{*this};
};

} // namespace

IUnknown * NewXmlSchemaCache() { return new SchemaCache; }

std::shared_ptr<XmlSchema const> SchemaOf(IDispatch * cache) {
    void * own = nullptr;
    if (cache == nullptr || FAILED(cache->QueryInterface(OwnCache, &own))) return nullptr;
    auto & found = *static_cast<SchemaCache *>(own);
    auto schema = found.Schema();
    found.Release();
    return schema;
}
