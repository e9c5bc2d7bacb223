// A document held against a schema, either while it is parsed or as a tree.
//
// Belongs to one thread; the schema is shared.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

class XmlSchema;
class XmlTree;

class XmlValidation {
public:
    // Told of each violation, with its sentence. Must not throw.
    using Listener = std::function<void(char const * message)>;

    XmlValidation(std::shared_ptr<XmlSchema const> schema, Listener listener);
    XmlValidation(XmlValidation const &) = delete;
    XmlValidation & operator=(XmlValidation const &) = delete;
    ~XmlValidation();

    // Stands between a parser and its handlers until the object goes.
    void Attach(xmlParserCtxtPtr parser);

    // Tells the validator of a tree, which has a root, as a parser would.
    void Replay(XmlTree const & tree);

    // False also when the validator has given up without a word.
    bool IsValid() const { return xmlSchemaIsValid(m_Validator.get()) == 1; }

private:
    static void OnError(void * self, xmlErrorPtr error);

    std::shared_ptr<XmlSchema const> const m_Schema;
    Listener const m_Listener;
    std::unique_ptr<xmlSchemaValidCtxt, decltype(&xmlSchemaFreeValidCtxt)> const m_Validator;
    xmlSchemaSAXPlugPtr m_Plug = nullptr;
    // In the place of a parser's, for a tree. The plug writes to them until it goes.
    xmlSAXHandlerPtr m_Handler = nullptr;
    void * m_Data = nullptr;
};
