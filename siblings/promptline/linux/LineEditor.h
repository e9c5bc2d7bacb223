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
    ~LineEditor();

    // From the first Begin to End the terminal is the editor's, and is put back also by a signal
    // that ends or stops the process. What was typed before the first Begin is dropped.
    void Begin(Prompt prompt, Complete complete);
    // Behind a line that was finished, whose cursor is at the start of a line already.
    void EndLine();
    // Gives the terminal back as it was, with the cursor at the start of a line.
    void End();
    bool IsActive() const;

    // Takes one key, which must have come. More: the line is not complete.
    enum class Outcome { More, Line, EndOfInput };
    Outcome Read(std::wstring & line);

    // Take the line away and draw it again.
    void Hide();
    void Redraw();

    // Readable when the process goes on behind a stop; RedrawContinued is then due.
    static int ContinuedDescriptor();
    void RedrawContinued();

    // The terminal can take a line away.
    bool CanRedraw() const;

    // Between Begin and End only while hidden.
    static void Write(std::wstring const & text);

private:
    struct Parts;
    std::unique_ptr<Parts> m_Parts;
};
