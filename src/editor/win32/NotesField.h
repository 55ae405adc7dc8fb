#pragma once

#include <windows.h>

#include <richedit.h>

#include <string>

#include "editor/Editor.h"
#include "editor/win32/Handles.h"
#include "editor/win32/Subclass.h"

namespace tvn2x {

/// The notes: a rich-text field whose protected ranges the user cannot change.
class NotesField
{
public:
    explicit NotesField(Editor& editor);

    /// Raises where the system has no rich-text control.
    HWND Create(HWND parent, const RECT& place, int id);

    void Load(const std::wstring& text, bool isRichText);
    std::wstring AsRichText() const;
    void ProtectSelection(bool protect);
    void ColourSelection(Colour colour);

    LRESULT OnMessage(const Subclass& control, UINT message, WPARAM wParam, LPARAM lParam);
    /// The system's question whether protected text may be changed: 1 for no.
    LRESULT OnProtected(const ENPROTECTED& question);
    void OnChanged();
    /// The field's menu, at a place of the screen or (null) at the caret.
    void ShowMenu(HWND owner, const POINT* where);

private:
    void StreamIn(const std::string& richText) const;
    std::string StreamOut(WPARAM format) const;
    void ProtectHidden() const;
    bool HasProtected(CHARRANGE range) const;
    CHARRANGE Selection() const;
    CHARRANGE Affected(UINT message, WPARAM wParam) const;
    bool TouchesProtected(CHARRANGE range) const;
    void TypeUnprotected();
    LONG WordEdge(LONG from, WPARAM direction) const;
    void Format(const CHARFORMAT2W& format, WPARAM what) const;
    template <class Work>
    void Quietly(Work work) const;

    Editor& editor_;
    const bool isDark_;  ///< colours are shown that can be read there; the notes keep their own
    Library library_;
    HWND window_ = nullptr;
    bool updating_ = false;  ///< the field itself is changing its content
};

}  // namespace tvn2x
