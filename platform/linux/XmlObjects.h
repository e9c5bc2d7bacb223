// The components of XML, made with one reference for the caller. Throw std::bad_alloc.
#pragma once

#include <memory>

#include "platform/Xml.h"

struct XmlFailure;
struct XmlNode;
class XmlSchema;
class XmlTree;

IUnknown * NewXmlDocument();
IUnknown * NewXmlSchemaCache();

// The root element of a tree, which the object keeps.
IXMLDOMElement * NewXmlRoot(std::shared_ptr<XmlTree const> const & tree);

IXMLDOMParseError * NewXmlParseError(XmlFailure const & failure);

// What a schema cache was given; null when that is nothing yet, or the object is no cache of ours.
std::shared_ptr<XmlSchema const> SchemaOf(IDispatch * cache);
