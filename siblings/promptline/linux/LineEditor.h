// One line at the terminal of standard input and error, edited with libedit while the thread goes
// on serving other things.
//
// For one thread. UTF-8 whatever the locale of the process.
#pragma once

#include <functional>
#include <memory>
#include <string>

class LineEditor {
public:
    // `prompt` is asked anew at each drawing. `complete` gets the line up to the cursor at Tab, and
    // answers with what to add; it may write below the line before, and then says so in `wrote`.
    using Prompt = std::function<std::wstring()>;
    using Complete = std::function<std::wstring(std::wstring const & line, bool & wrote)>;

    LineEditor();
    LineEditor(LineEditor const &) = delete;
    LineEditor & operator=(LineEditor const &) = delete;
    // Gives the terminal back as it was.
    ~LineEditor();

    void Begin(Prompt prompt, Complete complete);
    // The cursor goes to the start of a line; EndLine is for a line that was finished, whose cursor
    // is there already.
    void End();
    void EndLine();
    bool IsActive() const;

    // Takes one key. More: the line is not complete.
    enum class Outcome { More, Line, EndOfInput };
    Outcome Read(std::wstring & line);

    // Take the line away and draw it again.
    void Hide();
    void Redraw();

    // The terminal can take a line away.
    bool CanRedraw() const;

    // Between Begin and End only while hidden.
    static void Write(std::wstring const & text);

private:
    struct Parts;
    std::unique_ptr<Parts> m_Parts;
};
