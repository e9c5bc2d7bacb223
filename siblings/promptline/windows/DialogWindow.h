// One question as a dialog box that does not hold up its thread.
//
// For the window's thread.
#pragma once

#include "siblings/promptline/Desk.h"

class DialogWindow {
public:
    // The controls, besides IDOK: a reader of the dialog finds them by these numbers.
    static constexpr int SecondButton = 7;
    static constexpr int List = 100;
    static constexpr int Edit = 101;
    static constexpr int TimeLeft = 102;
    static constexpr int Problem = 103;
    static constexpr int Message = 104;

    explicit DialogWindow(SharedDialog dialog);
    DialogWindow(DialogWindow const &) = delete;
    DialogWindow & operator=(DialogWindow const &) = delete;
    ~DialogWindow();

    // False: the system has shown none.
    bool IsShown() const { return m_Handle != nullptr; }
    SharedDialog const & GetDialog() const { return m_Dialog; }

    void ShowTimeLeft();
    bool TakesMessage(MSG & message) { return IsDialogMessageW(m_Handle, &message) != 0; }

private:
    static INT_PTR CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    void Fill(HWND window);
    void FillList();
    void Place() const;
    void OnFirst();
    std::wstring TextOf(int control) const;
    std::optional<Reply> ReadReplyFromControls(std::wstring & problem) const;
    std::optional<Reply> ReadList(std::wstring & problem) const;
    LRESULT Send(int control, UINT message, WPARAM wParam, LPARAM lParam) const;

    SharedDialog const m_Dialog;
    HWND m_Handle = nullptr;
    // The fill reaches the controls before the handle is known.
    HWND m_Filled = nullptr;
};
