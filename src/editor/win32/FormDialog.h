#pragma once

#include <windows.h>

#include <exception>
#include <string>
#include <vector>

#include "editor/EditorView.h"
#include "editor/win32/Layout.h"

namespace tvn2x {

/// Asks a form: a small dialog over another window, with a field for each entry, what is wrong with the answers below
/// them, and two buttons.
class FormDialog
{
public:
    FormDialog(const Form& form, const FormAnswers& take, HFONT font)
        : form_(form), take_(take), font_(font), metrics_(font)
    {
    }
    FormDialog(const FormDialog&) = delete;
    FormDialog& operator=(const FormDialog&) = delete;

    /// Returns when it is closed. What `take` throws is thrown here.
    void Show(HWND owner);

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    void Fill(HWND window);
    HWND Add(const wchar_t* windowClass, const std::wstring& text, DWORD style, int id, const Area& area);
    void Accept();
    void Place(HWND owner, int height) const;

    const Form& form_;
    const FormAnswers& take_;
    const HFONT font_;
    const Metrics metrics_;
    HWND window_ = nullptr;
    HWND fault_ = nullptr;
    std::vector<HWND> fields_;
    std::exception_ptr exception_;
};

}  // namespace tvn2x
