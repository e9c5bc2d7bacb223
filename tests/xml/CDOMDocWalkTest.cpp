// The walk into the table of rows, on doubles: order, levels, and every way in which it is left.
#include <new>
#include <vector>

#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "support/Allocations.h"
#include "tests/output/Transcript.h"
#include "tests/xml/FakeDomFixture.h"

namespace {

using Rows = std::vector<CDOMDoc::Node>;

class CDOMDocWalkTest : public FakeDomFixture {
protected:
    ~CDOMDocWalkTest() override { CUIUpdate::FreeUIUpdate(); }

    void Show(FakeNode const & root) { m_Dom.m_Root = root; }

    // The entries that have come to the host's buffer.
    Lines Shown() {
        Lines lines;
        auto * const table = m_Buffer.GetText();
        if (table == nullptr) return lines;
        for (auto const & [text, format] : *table)
            if (text != nullptr)
                lines.push_back(Escaped(*text) + Number(" %06lX", format.format.crTextColor));
        COutputBuffer::DeleteDataTable(table);
        return lines;
    }

    void AttachBuffer() {
        COutputBuffer::InitializeDefaultFormatInfo(CHARFORMAT2A{});
        CUIUpdate::GetUIUpdate()->SetOutputBuffer(&m_Buffer);
    }

    COutputBuffer m_Buffer;
    std::unique_ptr<OpenDoc> const m_OwnDoc = Make();
    OpenDoc & m_Doc = *m_OwnDoc;
};

FakeNode const Family{L"a", {}, {{L"b", {}, {{L"c"}}}, {L"d"}}};
FakeNode const Comment{L"#comment", {}, {}, NODE_COMMENT, false};

} // namespace

TEST_F(CDOMDocWalkTest, RowsStandInDocumentOrderWithTheirLevels) {
    Show(Family);
    EXPECT_TRUE(m_Doc.ParseDoc());
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}, {2, L"b"}, {3, L"c"}, {2, L"d"}}));
    EXPECT_EQ(m_Doc.m_Level, 0);
}

TEST_F(CDOMDocWalkTest, RootAloneIsOneRow) {
    Show({L"p:a"});
    EXPECT_TRUE(m_Doc.ParseDoc());
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}}));
}

TEST_F(CDOMDocWalkTest, SecondWalkAppends) {
    Show({L"a", {}, {{L"b"}}});
    EXPECT_TRUE(m_Doc.ParseDoc());
    EXPECT_TRUE(m_Doc.ParseDoc());
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}, {2, L"b"}, {1, L"a"}, {2, L"b"}}));
}

TEST_F(CDOMDocWalkTest, CommentThatAnswersAsAnElementIsSkipped) {
    FakeNode comment = Comment;
    comment.isElement = true;
    Show({L"a", {}, {comment, {L"b"}}});
    EXPECT_TRUE(m_Doc.ParseDoc());
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}, {2, L"b"}}));
    EXPECT_EQ(m_Doc.m_Level, 0);
}

TEST_F(CDOMDocWalkTest, TextContentIsAnEmptyReference) {
    Show({L"a", {}, {{L"b"}, {L"#text", {}, {}, NODE_TEXT, false}, {L"c"}}});
    EXPECT_EQ(EndOf([&] { m_Doc.ParseDoc(); }), "_com_error 80004003");
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}, {2, L"b"}}));
    EXPECT_EQ(m_Doc.m_Level, 2);
}

TEST_F(CDOMDocWalkTest, PlainCommentIsAnEmptyReferenceToo) {
    Show({L"a", {}, {Comment}});
    EXPECT_EQ(EndOf([&] { m_Doc.ParseDoc(); }), "_com_error 80004003");
}

TEST_F(CDOMDocWalkTest, NextWalkBeginsAtTheTop) {
    Show({L"a", {}, {Comment}});
    EndOf([&] { m_Doc.ParseDoc(); });
    Show({L"b"});
    EXPECT_TRUE(m_Doc.ParseDoc());
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}, {1, L"b"}}));
}

TEST_F(CDOMDocWalkTest, NothingLoadedIsAnEmptyReference) {
    m_Dom.m_HasRoot = false;
    EXPECT_EQ(EndOf([&] { m_Doc.ParseDoc(); }), "_com_error 80004003");
    EXPECT_TRUE(m_Doc.GetNodes().empty());
}

TEST_F(CDOMDocWalkTest, ElementIsAskedForItsNodeFirst) {
    Show({L"a"});
    m_Dom.m_Calls.clear();
    m_Doc.ParseDoc();
    ASSERT_GT(m_Dom.m_Calls.size(), 2u);
    EXPECT_EQ(m_Dom.m_Calls[0], "documentElement");
    EXPECT_EQ(m_Dom.m_Calls[1], "QueryInterface");
    EXPECT_EQ(m_Dom.m_Calls[2], "nodeType");
}

TEST_F(CDOMDocWalkTest, ChildrenAreNotAskedForWhenThereAreNone) {
    FakeNode root{L"a", {}, {{L"b"}}};
    root.hasChildren = 1;
    Show(root);
    EXPECT_TRUE(m_Doc.ParseDoc());
    EXPECT_EQ(m_Dom.Count("childNodes"), 0);
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}}));
}

TEST_F(CDOMDocWalkTest, OtherFailureToBeAnElementIsAComError) {
    Show({L"a", {}, {{L"b"}}});
    m_Dom.Fail("QueryInterface", AFailure);
    EXPECT_EQ(EndOf([&] { m_Doc.ParseDoc(); }), "_com_error 80041234");
    EXPECT_TRUE(m_Doc.GetNodes().empty());
    m_Dom.Fail("QueryInterface", AFailure, 3);
    EXPECT_EQ(EndOf([&] { m_Doc.ParseDoc(); }), "_com_error 80041234");
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}}));
}

TEST_F(CDOMDocWalkTest, UnreadableDocumentIsFalseAndTellsTheHost) {
    struct Case {
        char const * failing;
        char const * text;
        std::size_t rows;
    };
    AttachBuffer();
    Show({L"a", {{L"id", L"1"}}, {{L"b"}}});
    for (auto const & [failing, text, rows] : {
             Case{"documentElement", "Couldn't get Root Element.", 0},
             Case{"nodeType", "ERROR:  Unable to get node type from element.", 0},
             Case{"nodeName", "ERROR:  Couldn't get node name.\\d\\a", 0},
             Case{"attributes", "ERROR:  Unable to get attribute list.", 0},
             Case{"attribute length", "ERROR:  Unable to get attribute list length.", 0},
             Case{"attribute item", "ERROR:  Unable to get node from node list.", 0},
             Case{"nodeValue", "ERROR:  Unable to get node value.", 0},
             Case{"childNodes", "ERROR:  Couldn't get child node list.", 1},
             Case{"length", "ERROR:  Couldn't get child node list length.", 1},
             Case{"item", "ERROR:  Unable to get node from node list.", 1},
         }) {
        SCOPED_TRACE(failing);
        m_Doc.GetNodes().clear();
        m_Dom.Fail(failing, AFailure);
        EXPECT_FALSE(m_Doc.ParseDoc());
        m_Dom.Succeed();
        EXPECT_EQ(Shown(), (Lines{std::string("\"") + text + "\\a \" 7F007F"}));
        EXPECT_EQ(m_Doc.GetNodes().size(), rows);
    }
}

TEST_F(CDOMDocWalkTest, LevelStaysWhereTheWalkWasLeft) {
    Show(Family);
    m_Dom.Fail("nodeName", AFailure, 3);
    EXPECT_FALSE(m_Doc.ParseDoc());
    EXPECT_EQ(m_Doc.m_Level, 3);
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}, {2, L"b"}}));
}

TEST_F(CDOMDocWalkTest, WithoutABufferTheTextIsDropped) {
    Show({L"a"});
    m_Dom.Fail("nodeType", AFailure);
    EXPECT_FALSE(m_Doc.ParseDoc());
    AttachBuffer();
    EXPECT_EQ(Shown(), Lines{});
}

TEST_F(CDOMDocWalkTest, FailedQuestionForChildrenLeavesTheWalk) {
    AttachBuffer();
    Show({L"a"});
    m_Dom.Fail("hasChildNodes", AFailure);
    EXPECT_EQ(EndOf([&] { m_Doc.ParseDoc(); }), "_com_error 80041234");
    EXPECT_EQ(m_Doc.GetNodes(), (Rows{{1, L"a"}}));
    EXPECT_EQ(Shown(), Lines{});
}

TEST_F(CDOMDocWalkTest, LackOfMemoryPasses) {
    Show({L"an element with a name of some length"});
    bool isOut = false;
    AllocationWatch watch(2);
    try {
        m_Doc.ParseDoc();
    } catch (std::bad_alloc const &) {
        isOut = true;
    }
    watch.End();
    EXPECT_TRUE(isOut);
}

TEST_F(CDOMDocWalkTest, DepthHasNoLimitOfItsOwn) {
    constexpr int depth = 2000;
    FakeNode root{L"leaf"};
    for (int i = 1; i < depth; ++i) {
        FakeNode outer{L"n"};
        outer.children.push_back(std::move(root));
        root = std::move(outer);
    }
    Show(root);
    EXPECT_TRUE(m_Doc.ParseDoc());
    ASSERT_EQ(m_Doc.GetNodes().size(), static_cast<std::size_t>(depth));
    EXPECT_EQ(m_Doc.GetNodes().back(), (CDOMDoc::Node{depth, L"leaf"}));
}
