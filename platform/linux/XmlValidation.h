// A document held against a schema, either while it is parsed or as a tree.
//
// Belongs to one thread; the schema is shared.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

class XmlSchema;
class XmlTree;

class XmlValidation {
public:
    // Told of each violation, with its sentence. Must not throw.
    using Listener = std::function<void(char const * message)>;

    // Throws std::bad_alloc, as each operation but the last does.
    XmlValidation(std::shared_ptr<XmlSchema const> schema, Listener listener);
    XmlValidation(XmlValidation const &) = delete;
    XmlValidation & operator=(XmlValidation const &) = delete;
    ~XmlValidation();

    // The events of a parser, with its arguments. What lies between two tags is told as one text:
    // for each further piece the validator would go over all that it has got. False: that text is
    // longer than MaximumXmlText.
    void StartElement(
        xmlChar const * name, xmlChar const * prefix, xmlChar const * uri, int namespaceCount,
        xmlChar const ** namespaces, int attributeCount, xmlChar const ** attributes);
    void EndElement(xmlChar const * name, xmlChar const * prefix, xmlChar const * uri);
    bool Text(std::string_view text);

    // Tells the events of a tree, which has a root, as a parser would.
    void Replay(XmlTree const & tree);

    // False also when the validator has given up without a word.
    bool IsValid() const { return xmlSchemaIsValid(m_Validator.get()) == 1; }

private:
    static void OnError(void * self, xmlErrorPtr error);
    void Plug();
    void FlushText();

    std::shared_ptr<XmlSchema const> const m_Schema;
    Listener const m_Listener;
    std::unique_ptr<xmlSchemaValidCtxt, decltype(&xmlSchemaFreeValidCtxt)> const m_Validator;
    xmlSchemaSAXPlugPtr m_Plug = nullptr;
    // In the place of a parser's. The plug writes to them until it goes.
    xmlSAXHandlerPtr m_Handler = nullptr;
    void * m_Data = nullptr;
    std::string m_Text; // what the validator has not been told yet
};
