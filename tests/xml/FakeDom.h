// Doubles of a document, its schema cache and its nodes: every call is noted, and any of them can
// be made to fail.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/Xml.h"
#include "tests/platform/ComDouble.h"

struct FakeAttribute {
    std::wstring name;
    std::wstring value;
    VARTYPE type = VT_BSTR;
};

struct FakeNode {
    std::wstring name;
    std::vector<FakeAttribute> attributes = {};
    std::vector<FakeNode> children = {};
    DOMNodeType type = NODE_ELEMENT;
    // Whether the node gives itself as an element, whatever its type.
    bool isElement = true;
    // hasChildNodes answers this instead of the truth, unless it is 42.
    VARIANT_BOOL hasChildren = 42;
};

// What the doubles share: the document that they show, what they answer, and what they were asked.
class FakeDom {
public:
    FakeNode m_Root{L"root"};
    bool m_HasRoot = true;
    LONG m_LoadCode = 0;
    LONG m_ValidateCode = 0;
    // Error objects are null.
    bool m_HasNoErrorObject = false;
    // The interfaces whose failures leave an error object behind; empty: there is no
    // ISupportErrorInfo at all.
    std::vector<IID> m_Explained;

    // Names of the calls in their order, some with their arguments.
    std::vector<std::string> m_Calls;
    std::vector<IID> m_AskedForErrorsOf;

    // Lets the calls with this name fail from the `nth` on.
    void Fail(std::string const & name, HRESULT result, int nth = 1) {
        m_Failures[name] = {result, nth};
    }
    void Succeed() { m_Failures.clear(); }

    // What a call answers. `name` may be longer by arguments, from a blank on.
    HRESULT Called(std::string const & call);

    int Count(std::string const & name) const;

private:
    struct Failure {
        HRESULT result;
        int left;
    };
    std::map<std::string, Failure> m_Failures;
};

std::string AsciiOf(std::wstring const & text);
// What a value holds, as text.
std::string ShowValue(VARIANT const & value);

IUnknown * NewFakeDocument(FakeDom & dom);
IUnknown * NewFakeSchemaCache(FakeDom & dom);
IXMLDOMElement * NewFakeElement(FakeDom & dom, FakeNode const & node);
IXMLDOMNode * NewFakeNode(FakeDom & dom, FakeNode const & node);
IXMLDOMNodeList * NewFakeList(FakeDom & dom, std::vector<FakeNode> const & nodes);
IXMLDOMParseError * NewFakeError(FakeDom & dom, LONG code);
