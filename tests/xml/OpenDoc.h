// A document whose protected half is open to tests.
#pragma once

#include "xml/CDOMDoc.h"

class OpenDoc : public CDOMDoc {
public:
    using CDOMDoc::CDOMDoc;

    using CDOMDoc::CheckDocLoad;
    using CDOMDoc::ConfirmElementName;
    using CDOMDoc::GetAllAttributes;
    using CDOMDoc::GetAttribute;
    using CDOMDoc::GetAttributeList;
    using CDOMDoc::GetChildList;
    using CDOMDoc::GetChildNode;
    using CDOMDoc::GetElementName;
    using CDOMDoc::GetNodeName;
    using CDOMDoc::GetNodeType;
    using CDOMDoc::HasChildren;
    using CDOMDoc::IsNodeComment;
    using CDOMDoc::m_Document;
    using CDOMDoc::m_Level;
    using CDOMDoc::m_Namespace;
    using CDOMDoc::m_Nodes;
    using CDOMDoc::m_ParseError;
    using CDOMDoc::m_Schema;
    using CDOMDoc::MakeDisplayString;
    using CDOMDoc::MakeFullSchemaPath;
    using CDOMDoc::ParseElement;
};
