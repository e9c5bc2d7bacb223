// Compiled schemas: made once of a file with all that it includes, shared by all threads, and made
// anew when one of the files has changed.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <libxml/xmlschemas.h>

#include "platform/linux/XmlFailure.h"
#include "platform/linux/XmlFile.h"

// Does not change once it is made; any thread may validate with it.
class XmlSchema {
public:
    using Files = std::vector<std::pair<std::string, XmlFileState>>;

    // Takes the compiled schema over.
    XmlSchema(xmlSchemaPtr compiled, Files files);
    XmlSchema(XmlSchema const &) = delete;
    XmlSchema & operator=(XmlSchema const &) = delete;
    ~XmlSchema();

    xmlSchemaPtr Compiled() const { return m_Compiled; }

    // Empty: none.
    std::string TargetNamespace() const;

    // Whether no file has changed since it was read. A file that changed only just before it was
    // read counts as changed: a second change in the same moment would not show.
    bool IsCurrent() const;

private:
    xmlSchemaPtr const m_Compiled;
    Files const m_Files;
    std::int64_t const m_Made;
};

// The schema in a file of this system. Null with the failure set when it cannot be read or is no
// schema. Throws std::bad_alloc.
std::shared_ptr<XmlSchema const> SchemaIn(std::string const & path, XmlFailure & failure);
