// Validation by the engine's streaming validator, which listens to the events of a parser.
#include "platform/linux/XmlValidation.h"

#include <deque>
#include <new>
#include <utility>
#include <vector>

#include "platform/linux/XmlMemory.h"
#include "platform/linux/XmlSchema.h"
#include "platform/linux/XmlTree.h"

namespace {

// The events of a parser, made of a tree.
class Replayer {
public:
    explicit Replayer(XmlValidation & validation) : m_Validation(validation) {}

    // A node and what it contains.
    void Tell(XmlNode const & node) {
        switch (node.type) {
        case NODE_ELEMENT:
            return TellElement(node);
        case NODE_TEXT:
        case NODE_CDATA_SECTION:
            m_Validation.Text(node.value);
            return;
        default:
            return;
        }
    }

private:
    struct Binding {
        std::string prefix;
        std::string uri;
    };

    // A name in its two halves, prefix first. The second ends where the name does, in a NUL, and
    // lasts as long as the tree: the validator keeps it.
    static std::pair<std::string, xmlChar const *> Split(std::string_view name) {
        auto const colon = name.find(':');
        if (colon == name.npos) return {"", AsXml(name.data())};
        return {std::string(name.substr(0, colon)), AsXml(name.data() + colon + 1)};
    }

    static bool IsDeclaration(std::string_view name) {
        return name == "xmlns" || name.starts_with("xmlns:");
    }

    static xmlChar const * OrNull(std::string const & text) {
        return text.empty() ? nullptr : AsXml(text.c_str());
    }

    // The namespace of a prefix; null: none.
    xmlChar const * UriOf(std::string const & prefix) const {
        if (prefix == "xml") return XML_XML_NAMESPACE;
        for (auto i = m_Bindings.rbegin(); i != m_Bindings.rend(); ++i)
            if (i->prefix == prefix) return OrNull(i->uri);
        return nullptr;
    }

    void Bind(XmlNode const & element) {
        for (auto const & [name, value] : element.attributes) {
            if (!IsDeclaration(name)) continue;
            auto const [xmlns, prefix] = Split(name);
            m_Bindings.push_back({xmlns.empty() ? "" : AsChars(prefix), std::string(value)});
        }
    }

    void TellElement(XmlNode const & element) {
        std::size_t const outer = m_Bindings.size();
        Bind(element);
        auto const [prefix, name] = Split(element.name);
        TellStart(element, prefix, name, outer);
        for (auto const * child = element.firstChild; child != nullptr; child = child->next)
            Tell(*child);
        m_Validation.EndElement(name, OrNull(prefix), UriOf(prefix));
        m_Bindings.resize(outer);
    }

    void TellStart(
        XmlNode const & element, std::string const & prefix, xmlChar const * name,
        std::size_t outer) {
        std::vector<xmlChar const *> namespaces;
        for (std::size_t i = outer; i != m_Bindings.size(); ++i) {
            namespaces.push_back(OrNull(m_Bindings[i].prefix));
            namespaces.push_back(AsXml(m_Bindings[i].uri.c_str()));
        }
        std::vector<std::pair<std::string, xmlChar const *>> names;
        std::vector<std::string_view> values;
        for (auto const & [written, value] : element.attributes) {
            if (IsDeclaration(written)) continue;
            names.push_back(Split(written));
            values.push_back(value);
        }
        std::vector<xmlChar const *> fields;
        for (std::size_t i = 0; i != names.size(); ++i) {
            auto const & [its, local] = names[i];
            auto const * const value = AsXml(values[i].data());
            fields.insert(
                fields.end(), {local, OrNull(its), its.empty() ? nullptr : UriOf(its), value,
                               value + values[i].size()});
        }
        m_Validation.StartElement(
            name, OrNull(prefix), UriOf(prefix), static_cast<int>(namespaces.size() / 2),
            namespaces.data(), static_cast<int>(names.size()), fields.data());
    }

    XmlValidation & m_Validation;
    // The validator keeps the addresses of what is bound: a deque does not move it.
    std::deque<Binding> m_Bindings;
};

} // namespace

XmlValidation::XmlValidation(std::shared_ptr<XmlSchema const> schema, Listener listener)
    : m_Schema(std::move(schema)),
      m_Listener(std::move(listener)),
      m_Validator(xmlSchemaNewValidCtxt(m_Schema->Compiled()), xmlSchemaFreeValidCtxt) {
    if (!m_Validator) throw std::bad_alloc();
    xmlSchemaSetValidStructuredErrors(m_Validator.get(), OnError, this);
    Plug();
}

// When a document ends too early, the engine (2.9.14) clears its open elements only behind the
// cache that it puts their keys into, and forgets the cache. A second, empty run clears that too.
XmlValidation::~XmlValidation() {
    xmlSchemaSAXUnplug(m_Plug);
    m_Handler = nullptr;
    m_Plug = xmlSchemaSAXPlug(m_Validator.get(), &m_Handler, &m_Data);
    if (m_Plug != nullptr) xmlSchemaSAXUnplug(m_Plug);
}

void XmlValidation::Plug() {
    m_Plug = xmlSchemaSAXPlug(m_Validator.get(), &m_Handler, &m_Data);
    if (m_Plug == nullptr) throw std::bad_alloc();
}

void XmlValidation::OnError(void * self, xmlErrorPtr error) {
    if (error->level >= XML_ERR_ERROR)
        static_cast<XmlValidation *>(self)->m_Listener(error->message);
}

void XmlValidation::FlushText() {
    if (m_Text.empty()) return;
    m_Handler->characters(m_Data, AsXml(m_Text.data()), static_cast<int>(m_Text.size()));
    m_Text.clear();
}

void XmlValidation::StartElement(
    xmlChar const * name, xmlChar const * prefix, xmlChar const * uri, int namespaceCount,
    xmlChar const ** namespaces, int attributeCount, xmlChar const ** attributes) {
    FlushText();
    m_Handler->startElementNs(
        m_Data, name, prefix, uri, namespaceCount, namespaces, attributeCount, 0, attributes);
}

void XmlValidation::EndElement(xmlChar const * name, xmlChar const * prefix, xmlChar const * uri) {
    FlushText();
    m_Handler->endElementNs(m_Data, name, prefix, uri);
}

bool XmlValidation::Text(std::string_view text) {
    m_Text.append(text);
    return m_Text.size() <= MaximumXmlText;
}

void XmlValidation::Replay(XmlTree const & tree) { Replayer(*this).Tell(*tree.Root()); }
