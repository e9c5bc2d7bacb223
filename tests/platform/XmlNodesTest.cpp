// Nodes of a loaded document: names, values, order, and what answers to which interface.
#include <string>

#include "tests/platform/XmlFixture.h"

namespace {

using Names = std::vector<std::wstring>;

class XmlNodesTest : public XmlFixture {};

} // namespace

TEST_F(XmlNodesTest, NamesKeepTheirPrefix) {
    Load("<p:a xmlns:p='u' p:b='1'/>");
    EXPECT_EQ(NameOf(QueryFor<IXMLDOMNode>(Root())), L"p:a");
    EXPECT_EQ(AttributesOf(Root()) ? LengthOf(AttributesOf(Root())) : 0, 2);
}

TEST_F(XmlNodesTest, DeclarationsAreAttributesAndStandInTheOrderOfTheDocument) {
    Load("<a one='1' xmlns:p='u' two='2' p:three='3'\n  xmlns:q = \"v'>\" four='4'/>");
    Names const inOrder = {L"one", L"xmlns:p", L"two", L"p:three", L"xmlns:q", L"four"};
    // Wine puts declarations last.
    Names const wine = {L"one", L"two", L"p:three", L"four", L"xmlns:p", L"xmlns:q"};
    EXPECT_EQ(NamesIn(AttributesOf(Root())), UnderWine() ? wine : inOrder);
}

TEST_F(XmlNodesTest, DefaultDeclarationIsAnAttributeToo) {
    if (UnderWine()) GTEST_SKIP() << "Wine counts it and fails to give it";
    Load("<a xmlns='u' one='1'/>");
    auto const attributes = AttributesOf(Root());
    EXPECT_EQ(NamesIn(attributes), (Names{L"xmlns", L"one"}));
    EXPECT_EQ(TextValueOf(ItemOf(attributes, 0)), L"u");
}

TEST_F(XmlNodesTest, AttributeIsANodeWithATextAndNoChildrenOfItsOwn) {
    Load("<a b='text'/>");
    auto const attribute = ItemOf(AttributesOf(Root()), 0);
    EXPECT_EQ(TypeOf(attribute), NODE_ATTRIBUTE);
    EXPECT_EQ(TextValueOf(attribute), L"text");
    EXPECT_FALSE(QueryFor<IXMLDOMElement>(attribute));
    ComPtr<IXMLDOMNamedNodeMap> none;
    EXPECT_EQ(attribute->get_attributes(none.Receive()), S_FALSE);
    EXPECT_FALSE(none);
}

TEST_F(XmlNodesTest, EmptyValueIsAText) {
    Load("<a b=''/>");
    EXPECT_EQ(TextValueOf(ItemOf(AttributesOf(Root()), 0)), L"");
}

TEST_F(XmlNodesTest, ElementHasNoValue) {
    Load("<a/>");
    VARIANT value;
    VariantInit(&value);
    EXPECT_EQ(Root()->get_nodeValue(&value), S_FALSE);
    EXPECT_EQ(value.vt, VT_NULL);
    EXPECT_EQ(TypeOf(QueryFor<IXMLDOMNode>(Root())), NODE_ELEMENT);
}

TEST_F(XmlNodesTest, ChildrenStandInTheOrderOfTheDocument) {
    Load("<a><b/><c/><b/></a>");
    auto const children = ChildrenOf(Root());
    EXPECT_EQ(NamesIn(children), (Names{L"b", L"c", L"b"}));
    EXPECT_EQ(NameOf(ItemOf(children, 1)), L"c");
    EXPECT_EQ(NameOf(ItemOf(children, 0)), L"b");
}

TEST_F(XmlNodesTest, ItemBeyondTheEndsIsNothing) {
    Load("<a b='1'><c/></a>");
    auto const children = ChildrenOf(Root());
    auto const attributes = AttributesOf(Root());
    for (LONG const index : {-1, 1, 2'000'000'000}) {
        ComPtr<IXMLDOMNode> node;
        EXPECT_EQ(children->get_item(index, node.Receive()), S_FALSE);
        EXPECT_FALSE(node);
        EXPECT_EQ(attributes->get_item(index, node.Receive()), S_FALSE);
        EXPECT_FALSE(node);
    }
}

TEST_F(XmlNodesTest, WhiteSpaceBetweenElementsIsDropped) {
    Load("<a>\n  <b/>\r\n\t<c> </c>\n</a>\n");
    EXPECT_EQ(NamesIn(ChildrenOf(Root())), (Names{L"b", L"c"}));
    auto const inner = QueryFor<IXMLDOMElement>(ItemOf(ChildrenOf(Root()), 1));
    EXPECT_EQ(LengthOf(ChildrenOf(inner)), 0);
}

TEST_F(XmlNodesTest, WhiteSpaceInsideTextStays) {
    Load("<a> one <b/> two</a>");
    auto const children = ChildrenOf(Root());
    EXPECT_EQ(NamesIn(children), (Names{L"#text", L"b", L"#text"}));
    EXPECT_EQ(TextValueOf(ItemOf(children, 0)), L" one ");
    EXPECT_EQ(TextValueOf(ItemOf(children, 2)), L" two");
}

TEST_F(XmlNodesTest, SpaceRuleKeepsWhiteSpaceUntilItIsTakenBack) {
    Load("<a xml:space='preserve'> <b> <c xml:space='default'> <d/> </c></b></a>");
    auto const children = ChildrenOf(Root());
    EXPECT_EQ(NamesIn(children), (Names{L"#text", L"b"}));
    auto const b = QueryFor<IXMLDOMElement>(ItemOf(children, 1));
    EXPECT_EQ(NamesIn(ChildrenOf(b)), (Names{L"#text", L"c"}));
    auto const c = QueryFor<IXMLDOMElement>(ItemOf(ChildrenOf(b), 1));
    // Wine does not take it back.
    if (!UnderWine()) {
        EXPECT_EQ(NamesIn(ChildrenOf(c)), (Names{L"d"}));
    }
}

TEST_F(XmlNodesTest, OnlyElementsAnswerToTheElementInterface) {
    Load("<a><b/><!--c-->text<![CDATA[data]]><?target instruction?></a>");
    auto const children = ChildrenOf(Root());
    EXPECT_EQ(
        NamesIn(children), (Names{L"b", L"#comment", L"#text", L"#cdata-section", L"target"}));
    DOMNodeType const types[] = {
        NODE_ELEMENT, NODE_COMMENT, NODE_TEXT, NODE_CDATA_SECTION, NODE_PROCESSING_INSTRUCTION};
    for (LONG i = 0; i < LengthOf(children); ++i) {
        auto const node = ItemOf(children, i);
        EXPECT_EQ(TypeOf(node), types[i]);
        void * element = nullptr;
        HRESULT const result = node->QueryInterface(InterfaceId<IXMLDOMElement>, &element);
        EXPECT_EQ(result, i == 0 ? S_OK : E_NOINTERFACE);
        EXPECT_EQ(element == nullptr, i != 0);
        if (element != nullptr) static_cast<IXMLDOMElement *>(element)->Release();
    }
    EXPECT_EQ(TextValueOf(ItemOf(children, 1)), L"c");
    EXPECT_EQ(TextValueOf(ItemOf(children, 2)), L"text");
    EXPECT_EQ(TextValueOf(ItemOf(children, 3)), L"data");
    EXPECT_EQ(TextValueOf(ItemOf(children, 4)), L"instruction");
}

TEST_F(XmlNodesTest, LeavesHaveNoChildren) {
    Load("<a>text</a>");
    auto const text = ItemOf(ChildrenOf(Root()), 0);
    VARIANT_BOOL has = 42;
    EXPECT_EQ(text->hasChildNodes(&has), S_FALSE);
    EXPECT_EQ(has, VARIANT_FALSE);
    ComPtr<IXMLDOMNodeList> children;
    EXPECT_EQ(text->get_childNodes(children.Receive()), S_OK);
    EXPECT_EQ(LengthOf(children), 0);
}

TEST_F(XmlNodesTest, HavingChildrenIsMinusOneOrNought) {
    Load("<a><b/></a>");
    VARIANT_BOOL has = 42;
    EXPECT_EQ(Root()->hasChildNodes(&has), S_OK);
    EXPECT_EQ(has, VARIANT_TRUE);
    auto const inner = ItemOf(ChildrenOf(Root()), 0);
    EXPECT_EQ(inner->hasChildNodes(&has), S_FALSE);
    EXPECT_EQ(has, VARIANT_FALSE);
}

TEST_F(XmlNodesTest, NodesOutliveTheirDocument) {
    Load("<a><b c='d'/></a>");
    auto const node = ItemOf(ChildrenOf(Root()), 0);
    m_Document.Reset();
    EXPECT_EQ(NameOf(node), L"b");
    EXPECT_EQ(TextValueOf(ItemOf(AttributesOf(QueryFor<IXMLDOMElement>(node)), 0)), L"d");
}

TEST_F(XmlNodesTest, ElementAnswersToItsBasesAndToNothingElse) {
    Load("<a><b/></a>");
    auto const root = Root();
    EXPECT_TRUE(QueryFor<IUnknown>(root));
    EXPECT_TRUE(QueryFor<IDispatch>(root));
    EXPECT_TRUE(QueryFor<IXMLDOMNode>(root));
    EXPECT_FALSE(QueryFor<IXMLDOMDocument>(root));
}
