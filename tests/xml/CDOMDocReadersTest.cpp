// The small readers, on doubles: each answer, each failing read with its text.
#include <vector>

#include "tests/xml/FakeDomFixture.h"

namespace {

using Names = std::vector<std::wstring>;

constexpr char NoAttributeList[] = "ERROR:  Unable to get attribute list.";
constexpr char NoAttributeListLength[] = "ERROR:  Unable to get attribute list length.";
constexpr char NoNode[] = "ERROR:  Unable to get node from node list.";
constexpr char NoNodeValue[] = "ERROR:  Unable to get node value.";
constexpr char NoNodeName[] = "ERROR:  Couldn't get node name.\r\n";
constexpr char NoChildList[] = "ERROR:  Couldn't get child node list.";
constexpr char NoChildListLength[] = "ERROR:  Couldn't get child node list length.";
constexpr char NoNodeType[] = "ERROR:  Unable to get node type from element.";
constexpr char EmptyReference[] = "_com_error 80004003";

class CDOMDocReadersTest : public FakeDomFixture {
protected:
    CDOMDocReadersTest() { m_Dom.m_Calls.clear(); }

    ComPtr<IXMLDOMElement> Element(FakeNode const & node) {
        m_Node = node;
        ComPtr<IXMLDOMElement> element;
        *element.Receive() = NewFakeElement(m_Dom, m_Node);
        return element;
    }

    ComPtr<IXMLDOMNode> Node(FakeNode const & node) {
        m_Node = node;
        ComPtr<IXMLDOMNode> object;
        *object.Receive() = NewFakeNode(m_Dom, m_Node);
        return object;
    }

    // How a call ends while another fails.
    std::string EndWithout(char const * failing, std::function<void()> const & call) {
        m_Dom.Fail(failing, AFailure);
        std::string const end = EndOf(call);
        m_Dom.Succeed();
        return end;
    }

    FakeNode m_Node{L""};
    std::unique_ptr<OpenDoc> const m_OwnDoc = Make();
    OpenDoc & m_Doc = *m_OwnDoc;
};

FakeNode const WithAttributes{
    L"suite", {{L"id", L"1"}, {L"p:label", L"first"}, {L"q:label", L"second"}}};

} // namespace

TEST_F(CDOMDocReadersTest, NameIsWhatFollowsTheFirstColon) {
    EXPECT_EQ(m_Doc.GetNodeName(Node({L"name"})), L"name");
    EXPECT_EQ(m_Doc.GetNodeName(Node({L"p:name"})), L"name");
    EXPECT_EQ(m_Doc.GetNodeName(Node({L"a:b:c"})), L"b:c");
    EXPECT_EQ(m_Doc.GetNodeName(Node({L"p:"})), L"");
    EXPECT_EQ(m_Doc.GetElementName(Element({L"p:check"})), L"check");
}

TEST_F(CDOMDocReadersTest, NameThatCannotBeReadHasItsText) {
    auto const node = Node({L"name"});
    auto const element = Element({L"name"});
    EXPECT_EQ(EndWithout("nodeName", [&] { m_Doc.GetNodeName(node); }), NoNodeName);
    EXPECT_EQ(EndWithout("nodeName", [&] { m_Doc.GetElementName(element); }), NoNodeName);
    EXPECT_EQ(
        EndWithout("nodeName", [&] { m_Doc.ConfirmElementName(element, L"name"); }), NoNodeName);
    EXPECT_EQ(EndOf([&] { m_Doc.GetNodeName(nullptr); }), EmptyReference);
    EXPECT_EQ(EndOf([&] { m_Doc.GetElementName(nullptr); }), EmptyReference);
}

TEST_F(CDOMDocReadersTest, NameIsConfirmedWithoutItsPrefixAndInItsCase) {
    auto const element = Element({L"p:check"});
    EXPECT_TRUE(m_Doc.ConfirmElementName(element, L"check"));
    EXPECT_FALSE(m_Doc.ConfirmElementName(element, L"Check"));
    EXPECT_FALSE(m_Doc.ConfirmElementName(element, L"p:check"));
    EXPECT_FALSE(m_Doc.ConfirmElementName(element, L"chec"));
}

TEST_F(CDOMDocReadersTest, TypeIsPassedOn) {
    EXPECT_EQ(m_Doc.GetNodeType(Node({L"n"})), NODE_ELEMENT);
    FakeNode const comment{L"#comment", {}, {}, NODE_COMMENT, false};
    EXPECT_EQ(m_Doc.GetNodeType(Node(comment)), NODE_COMMENT);
    EXPECT_TRUE(m_Doc.IsNodeComment(Node(comment)));
    EXPECT_FALSE(m_Doc.IsNodeComment(Node({L"n"})));
}

TEST_F(CDOMDocReadersTest, TypeThatCannotBeReadHasItsText) {
    auto const node = Node({L"n"});
    EXPECT_EQ(EndWithout("nodeType", [&] { m_Doc.GetNodeType(node); }), NoNodeType);
    EXPECT_EQ(EndWithout("nodeType", [&] { m_Doc.IsNodeComment(node); }), NoNodeType);
    EXPECT_EQ(EndOf([&] { m_Doc.GetNodeType(nullptr); }), EmptyReference);
    EXPECT_EQ(EndOf([&] { m_Doc.IsNodeComment(nullptr); }), EmptyReference);
}

TEST_F(CDOMDocReadersTest, ChildrenAreThereForTrueAlone) {
    for (VARIANT_BOOL const answer : {VARIANT_TRUE, VARIANT_FALSE, VARIANT_BOOL{1}}) {
        FakeNode node{L"n"};
        node.hasChildren = answer;
        EXPECT_EQ(m_Doc.HasChildren(Element(node)), answer == -1);
    }
    EXPECT_EQ(EndOf([&] { m_Doc.HasChildren(nullptr); }), EmptyReference);
    auto const element = Element({L"n"});
    EXPECT_EQ(
        EndWithout("hasChildNodes", [&] { m_Doc.HasChildren(element); }), "_com_error 80041234");
}

TEST_F(CDOMDocReadersTest, FirstAttributeOfTheNameIsTheOneThatIsRead) {
    auto const element = Element(WithAttributes);
    EXPECT_EQ(m_Doc.GetAttribute(element, L"label"), L"first");
    EXPECT_EQ(m_Doc.GetAttribute(element, L"id"), L"1");
}

TEST_F(CDOMDocReadersTest, AttributeIsAskedForWithoutItsPrefix) {
    EXPECT_EQ(m_Doc.GetAttribute(Element(WithAttributes), L"p:label"), L"");
}

TEST_F(CDOMDocReadersTest, AbsentAttributeIsAnEmptyText) {
    EXPECT_EQ(m_Doc.GetAttribute(Element(WithAttributes), L"absent"), L"");
    EXPECT_EQ(m_Doc.GetAttribute(Element({L"bare"}), L"id"), L"");
}

TEST_F(CDOMDocReadersTest, SearchEndsWithTheFirstMatch) {
    m_Doc.GetAttribute(Element(WithAttributes), L"label");
    EXPECT_EQ(m_Dom.Count("attribute item"), 2);
    EXPECT_EQ(m_Dom.Count("nodeValue"), 1);
}

TEST_F(CDOMDocReadersTest, LastAttributeOfANameStaysInTheMap) {
    EXPECT_EQ(
        m_Doc.GetAllAttributes(Element(WithAttributes)),
        (CDOMDoc::Attributes{{L"id", L"1"}, {L"label", L"second"}}));
}

TEST_F(CDOMDocReadersTest, DeclarationsAreKeysOfTheMap) {
    FakeNode const node{L"n", {{L"xmlns", L"u"}, {L"xmlns:p", L"v"}, {L"p", L"w"}}};
    EXPECT_EQ(
        m_Doc.GetAllAttributes(Element(node)),
        (CDOMDoc::Attributes{{L"p", L"w"}, {L"xmlns", L"u"}}));
}

TEST_F(CDOMDocReadersTest, ValueThatIsNoTextIsPassedOver) {
    FakeNode const node{L"n", {{L"p:label", L"no", VT_NULL}, {L"q:label", L"yes"}}};
    EXPECT_EQ(m_Doc.GetAttribute(Element(node), L"label"), L"yes");
    EXPECT_EQ(m_Doc.GetAllAttributes(Element(node)), (CDOMDoc::Attributes{{L"label", L"yes"}}));
    FakeNode const last{L"n", {{L"p:label", L"yes"}, {L"q:label", L"no", VARTYPE{3}}}};
    EXPECT_EQ(m_Doc.GetAllAttributes(Element(last)), (CDOMDoc::Attributes{{L"label", L"yes"}}));
}

TEST_F(CDOMDocReadersTest, AnyTypeWithTheBitOfATextIsAText) {
    constexpr VARTYPE withTheBit = 30;
    FakeNode const node{L"n", {{L"label", L"text", withTheBit}}};
    auto const element = Element(node);
    m_Dom.m_Calls.clear();
    EXPECT_EQ(m_Doc.GetAttribute(element, L"label"), L"text");
    EXPECT_EQ(m_Doc.GetAllAttributes(element), (CDOMDoc::Attributes{{L"label", L"text"}}));
}

TEST_F(CDOMDocReadersTest, AttributesThatCannotBeReadHaveTheirTexts) {
    auto const element = Element(WithAttributes);
    struct Case {
        char const * failing;
        char const * text;
    };
    for (auto const & [failing, text] :
         {Case{"attributes", NoAttributeList}, Case{"attribute length", NoAttributeListLength},
          Case{"attribute item", NoNode}, Case{"nodeName", NoNodeName},
          Case{"nodeValue", NoNodeValue}}) {
        EXPECT_EQ(EndWithout(failing, [&] { m_Doc.GetAttribute(element, L"id"); }), text);
        EXPECT_EQ(EndWithout(failing, [&] { m_Doc.GetAllAttributes(element); }), text);
    }
    EXPECT_EQ(EndOf([&] { m_Doc.GetAttribute(nullptr, L"id"); }), EmptyReference);
    EXPECT_EQ(EndOf([&] { m_Doc.GetAllAttributes(nullptr); }), EmptyReference);
}

TEST_F(CDOMDocReadersTest, AttributeListIsTheCallers) {
    ComPtr<IXMLDOMNamedNodeMap> list;
    m_Doc.GetAttributeList(Element(WithAttributes), list.Receive());
    LONG length = 0;
    EXPECT_EQ(list->get_length(&length), S_OK);
    EXPECT_EQ(length, 3);
    auto const element = Element({L"n"});
    auto const call = [&] { m_Doc.GetAttributeList(element, list.Receive()); };
    EXPECT_EQ(EndWithout("attributes", call), NoAttributeList);
    EXPECT_EQ(EndOf([&] { m_Doc.GetAttributeList(nullptr, list.Receive()); }), EmptyReference);
}

TEST_F(CDOMDocReadersTest, ChildrenAreCountedWithoutComments) {
    FakeNode const comment{L"#comment", {}, {}, NODE_COMMENT, false};
    FakeNode const text{L"#text", {}, {}, NODE_TEXT, false};
    ComPtr<IXMLDOMNodeList> list;
    long length = 42;
    long count = 42;
    m_Doc.GetChildList(
        Element({L"n", {}, {{L"a"}, comment, text, comment}}), list.Receive(), &length, &count);
    EXPECT_EQ(length, 4);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(m_Doc.GetNodeName(m_Doc.GetChildNode(0, list)), L"a");
}

TEST_F(CDOMDocReadersTest, CountOfNoChildrenIsNought) {
    ComPtr<IXMLDOMNodeList> list;
    long length = 42;
    long count = 42;
    m_Doc.GetChildList(Element({L"n"}), list.Receive(), &length, &count);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(list);
}

TEST_F(CDOMDocReadersTest, NothingIsCountedWithoutAPlaceForIt) {
    ComPtr<IXMLDOMNodeList> list;
    long length = 42;
    auto const element = Element({L"n", {}, {{L"a"}, {L"b"}}});
    m_Dom.m_Calls.clear();
    m_Doc.GetChildList(element, list.Receive(), &length, nullptr);
    EXPECT_EQ(length, 2);
    EXPECT_EQ(m_Dom.m_Calls, (std::vector<std::string>{"childNodes", "length"}));
}

TEST_F(CDOMDocReadersTest, ChildrenThatCannotBeReadHaveTheirTexts) {
    auto const element = Element({L"n", {}, {{L"a"}}});
    ComPtr<IXMLDOMNodeList> list;
    long length = 42;
    long count = 42;
    auto const call = [&] { m_Doc.GetChildList(element, list.Receive(), &length, &count); };
    EXPECT_EQ(EndWithout("childNodes", call), NoChildList);
    EXPECT_EQ(length, 42);
    EXPECT_EQ(EndWithout("length", call), NoChildListLength);
    EXPECT_EQ(length, 42);
    EXPECT_EQ(EndWithout("item", call), NoNode);
    EXPECT_EQ(length, 1);
    EXPECT_EQ(EndWithout("nodeType", call), NoNodeType);
    EXPECT_EQ(count, 42);
    EXPECT_EQ(EndWithout("item", [&] { m_Doc.GetChildNode(0, list); }), NoNode);
    EXPECT_EQ(EndOf([&] { m_Doc.GetChildNode(0, nullptr); }), EmptyReference);
    EXPECT_EQ(
        EndOf([&] { m_Doc.GetChildList(nullptr, list.Receive(), &length, &count); }),
        EmptyReference);
}

TEST_F(CDOMDocReadersTest, LabelComesBeforeNameAndNameBeforeTheElements) {
    struct Case {
        CDOMDoc::Attributes attributes;
        wchar_t const * text;
    };
    for (auto const & [attributes, text] :
         {Case{{{L"label", L"L"}, {L"name", L"N"}}, L"L"}, Case{{{L"name", L"N"}}, L"N"},
          Case{{{L"Label", L"L"}, {L"NAME", L"N"}}, L"element"}, Case{{}, L"element"}}) {
        CDOMDoc::Attributes copy = attributes;
        EXPECT_EQ(m_Doc.MakeDisplayString(L"element", copy), text);
        EXPECT_EQ(copy, attributes);
    }
}

TEST_F(CDOMDocReadersTest, EmptyLabelHidesTheName) {
    CDOMDoc::Attributes attributes = {{L"label", L""}, {L"name", L"N"}};
    EXPECT_EQ(m_Doc.MakeDisplayString(L"element", attributes), L"<<Unknown element>>");
    attributes = {{L"name", L""}};
    EXPECT_EQ(m_Doc.MakeDisplayString(L"element", attributes), L"<<Unknown element>>");
    attributes.clear();
    EXPECT_EQ(m_Doc.MakeDisplayString(L"", attributes), L"<<Unknown element>>");
}

TEST_F(CDOMDocReadersTest, ElementIsShownByItsNameAndAttributes) {
    EXPECT_EQ(m_Doc.MakeDisplayString(Element(WithAttributes)), L"second");
    EXPECT_EQ(m_Doc.MakeDisplayString(Element({L"p:check"})), L"check");
}

TEST_F(CDOMDocReadersTest, ReadersGiveTheirReferencesBack) {
    auto const element = Element(WithAttributes);
    element->AddRef();
    ULONG const before = element->Release();
    m_Doc.MakeDisplayString(element);
    EndWithout("nodeValue", [&] { m_Doc.GetAllAttributes(element); });
    element->AddRef();
    EXPECT_EQ(element->Release(), before);
}
