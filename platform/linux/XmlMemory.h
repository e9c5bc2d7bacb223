// The engine's texts and the memory that they come in.
#pragma once

#include <cstdlib>
#include <memory>

#include <libxml/globals.h>
#include <libxml/xmlstring.h>

inline xmlChar const * AsXml(char const * text) { return reinterpret_cast<xmlChar const *>(text); }
inline char const * AsChars(xmlChar const * text) { return reinterpret_cast<char const *>(text); }

struct XmlTextDeleter {
    void operator()(xmlChar * text) const { xmlFree(text); }
};

// A text that the engine has allocated. Null: it had no memory.
using XmlText = std::unique_ptr<xmlChar, XmlTextDeleter>;
