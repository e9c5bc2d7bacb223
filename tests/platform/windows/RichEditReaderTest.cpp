// The system's own rich-edit control as the reader of a table: it has to take the records as they
// come, but for `cbSize`, which the reader sets.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "output/COutputBuffer.h"
#include "platform/Messaging.h"
#include "platform/RichEdit.h"

namespace {

struct FreeModule {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

// A hidden control that shows tables as a host does.
class RichEditView {
public:
    RichEditView() {
        m_Library.reset(LoadLibraryA("Msftedit.dll"));
        m_Control = CreateWindowExA(
            0, "RICHEDIT50W", "", ES_MULTILINE, 0, 0, 400, 200, HWND_MESSAGE, nullptr,
            GetModuleHandleA(nullptr), nullptr);
    }
    ~RichEditView() {
        if (m_Control != nullptr) DestroyWindow(m_Control);
    }
    RichEditView(RichEditView const &) = delete;
    RichEditView & operator=(RichEditView const &) = delete;

    bool IsOpen() const { return m_Control != nullptr; }

    bool SetDefault(CHARFORMAT2A record) const {
        record.cbSize = sizeof record;
        return SendMessageA(m_Control, EM_SETCHARFORMAT, SCF_DEFAULT, Argument(&record)) != 0;
    }

    // Walks the table and gives it back. False: the control has refused a record.
    bool Show(COutputBuffer & buffer) const {
        auto * const table = buffer.GetText();
        if (table == nullptr) return true;
        Select(-1, -1);
        bool taken = true;
        for (auto const & [text, look] : *table)
            taken &= text != nullptr ? Append(*text, look) : Change(look);
        COutputBuffer::DeleteDataTable(table);
        return taken;
    }

    std::wstring Text() const {
        std::wstring text(static_cast<std::size_t>(Length()) + 1, L'\0');
        GETTEXTEX request{};
        request.cb = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        request.codepage = 1200;
        text.resize(static_cast<std::size_t>(SendMessageW(
            m_Control, EM_GETTEXTEX, reinterpret_cast<WPARAM>(&request), Argument(text.data()))));
        return text;
    }

    // The look of the characters from `first` up to `last`.
    CHARFORMAT2A LookOf(LONG first, LONG last) const {
        Select(first, last);
        CHARFORMAT2A record{};
        record.cbSize = sizeof record;
        SendMessageA(m_Control, EM_GETCHARFORMAT, SCF_SELECTION, Argument(&record));
        return record;
    }

private:
    template <typename Value>
    static LPARAM Argument(Value * value) {
        return reinterpret_cast<LPARAM>(value);
    }

    LONG Length() const {
        GETTEXTLENGTHEX request{GTL_NUMCHARS | GTL_PRECISE, 1200};
        return static_cast<LONG>(
            SendMessageA(m_Control, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&request), 0));
    }

    void Select(LONG first, LONG last) const {
        CHARRANGE range{first, last};
        SendMessageA(m_Control, EM_EXSETSEL, 0, Argument(&range));
    }

    bool Apply(CHARFORMAT2A record) const {
        record.cbSize = sizeof record;
        return SendMessageA(m_Control, EM_SETCHARFORMAT, SCF_SELECTION, Argument(&record)) != 0;
    }

    // The selection stays at the end, where the control keeps the look of what is put in next.
    bool Change(CFormatInfo const & look) const {
        return look.format.dwMask == 0 || Apply(look.format);
    }

    bool Append(std::wstring const & text, CFormatInfo const & look) const {
        LONG const start = Length();
        SendMessageW(m_Control, EM_REPLACESEL, FALSE, Argument(text.c_str()));
        if (look.format.dwMask == 0) return true;
        Select(start + look.range.cpMin, start + look.range.cpMax);
        bool const taken = Apply(look.format);
        Select(-1, -1);
        return taken;
    }

    std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeModule> m_Library;
    HWND m_Control = nullptr;
};

// A look as a person sees it.
std::string Seen(CHARFORMAT2A const & record) {
    auto const color = [&record](DWORD automatic, COLORREF value) {
        if ((record.dwEffects & automatic) != 0) return std::string("auto");
        char text[8];
        std::snprintf(text, sizeof text, "%06lX", value);
        return std::string(text);
    };
    std::string seen = record.szFaceName;
    seen += ' ' + color(CFE_AUTOCOLOR, record.crTextColor);
    seen += " on " + color(CFE_AUTOBACKCOLOR, record.crBackColor);
    if ((record.dwEffects & CFE_BOLD) != 0) seen += " bold";
    if ((record.dwEffects & CFE_ITALIC) != 0) seen += " italic";
    if ((record.dwEffects & CFE_UNDERLINE) != 0) seen += " underlined";
    return seen;
}

class RichEditReaderTest : public testing::Test {
protected:
    RichEditReaderTest() {
        // The control's own default is bold.
        CFormatInfo standard(false, false, 400);
        standard.setUnderline(false);
        standard.clearColor();
        standard.clearBackColor();
        standard.format.dwMask |= CFM_FACE;
        std::strcpy(standard.format.szFaceName, "DejaVu Sans Mono");
        COutputBuffer::InitializeDefaultFormatInfo(standard.format);
        m_Opened = m_View.IsOpen() && m_View.SetDefault(standard.format);
    }

    void SetUp() override { ASSERT_TRUE(m_Opened) << "no rich-edit control"; }

    void Add(char const * text) { m_Buffer.AddText(std::string(text)); }

    // What the display holds, run by run: `ends` are the ends of the runs.
    std::vector<std::string> Show(std::vector<LONG> const & ends) {
        std::vector<std::string> runs;
        if (!m_View.Show(m_Buffer)) runs.push_back("a record was refused");
        std::wstring const text = m_View.Text();
        LONG first = 0;
        for (LONG const last : ends) {
            std::string run;
            for (LONG at = first; at < last && at < static_cast<LONG>(text.size()); ++at)
                run += static_cast<char>(text[static_cast<std::size_t>(at)]);
            runs.push_back('[' + run + "] " + Seen(m_View.LookOf(first, last)));
            first = last;
        }
        if (static_cast<std::size_t>(first) != text.size()) runs.push_back("more text");
        return runs;
    }

    COutputBuffer m_Buffer;

private:
    RichEditView m_View;
    bool m_Opened = false;
};

using Runs = std::vector<std::string>;

} // namespace

TEST_F(RichEditReaderTest, AnEntryShowsInItsFormatAndNothingElseDoes) {
    Add("before");
    m_Buffer.AddFormat(CFormatInfo(0x0000FFul, true, 700));
    Add("entry");
    m_Buffer.RemoveFormat(1);
    Add("after");
    EXPECT_EQ(
        Show({7, 13, 19}), (Runs{
                               "[before ] DejaVu Sans Mono auto on auto",
                               "[entry ] DejaVu Sans Mono 0000FF on auto bold",
                               "[after ] DejaVu Sans Mono auto on auto"}));
}

TEST_F(RichEditReaderTest, AFormattedItemShowsEveryAttribute) {
    CFormatInfo look(0xAA0000ul, true, true, 700);
    look.setUnderline(true);
    look.setBackColor(0x00FFFFul);
    look.format.dwMask |= CFM_FACE;
    std::strcpy(look.format.szFaceName, "DejaVu Serif");
    m_Buffer.AddItem(std::string("all"), look);
    m_Buffer.RemoveFormat(1);
    Add("none");
    EXPECT_EQ(
        Show({4, 9}), (Runs{
                          "[all ] DejaVu Serif AA0000 on 00FFFF bold italic underlined",
                          "[none ] DejaVu Sans Mono auto on auto"}));
}

TEST_F(RichEditReaderTest, ARangeOfTheCallersCoversItsPartOfTheText) {
    Add("0123");
    CFormatInfo look(0x00FF00ul);
    look.range = {2, 4};
    look.autoRange = false;
    m_Buffer.AddItem(std::string("abcdef"), look);
    EXPECT_EQ(
        Show({5, 7, 9, 12}),
        (Runs{
            "[0123 ] DejaVu Sans Mono auto on auto", "[ab] DejaVu Sans Mono auto on auto",
            "[cd] DejaVu Sans Mono 00FF00 on auto", "[ef ] DejaVu Sans Mono auto on auto"}));
}

TEST_F(RichEditReaderTest, TheOuterFormatIsBackAfterTheInner) {
    m_Buffer.AddFormat(CFormatInfo(0x0000FFul));
    Add("red");
    m_Buffer.AddFormat(CFormatInfo(true, true, 700));
    Add("both");
    m_Buffer.RemoveFormat(1);
    Add("red");
    m_Buffer.RemoveFormat(1);
    Add("none");
    EXPECT_EQ(
        Show({4, 9, 13, 18}),
        (Runs{
            "[red ] DejaVu Sans Mono 0000FF on auto",
            "[both ] DejaVu Sans Mono 0000FF on auto bold italic",
            "[red ] DejaVu Sans Mono 0000FF on auto", "[none ] DejaVu Sans Mono auto on auto"}));
}

TEST_F(RichEditReaderTest, AResetBringsTheDefaultBack) {
    m_Buffer.AddFormat(CFormatInfo(0x0000FFul));
    m_Buffer.AddFormat(CFormatInfo(true, 700));
    Add("look");
    m_Buffer.SetDefaultFormatInfo();
    Add("none");
    EXPECT_EQ(
        Show({5, 10}), (Runs{
                           "[look ] DejaVu Sans Mono 0000FF on auto bold",
                           "[none ] DejaVu Sans Mono auto on auto"}));
}

TEST_F(RichEditReaderTest, LineEndsOfTwoCharactersAreOneLineEnd) {
    Add("one\r\n");
    m_Buffer.AddFormat(CFormatInfo(0x0000FFul));
    Add("two\r\n");
    m_Buffer.RemoveFormat(1);
    EXPECT_EQ(
        Show({5, 10}),
        (Runs{
            "[one\r ] DejaVu Sans Mono auto on auto", "[two\r ] DejaVu Sans Mono 0000FF on auto"}));
}
