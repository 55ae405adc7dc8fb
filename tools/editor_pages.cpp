// Opens the setup editor on a setup file and shows its pages one after the other, for pictures of them: prints the
// dialog's place on the screen and the page's number, then waits for a line of input.

#include <initguid.h>

#include <cstdio>

#include "EditorDriver.h"

namespace tvn2x::client {
namespace {

int ShowPages(const wchar_t* path)
{
    const auto setup = Create<_clsSetup>(L"TVN2x.clsSetup").As<ISetup>();
    Bstr model(L"2x");
    BSTR modelArgument = model.Detach();
    long mode = 4;
    VARIANT_BOOL loaded = VARIANT_FALSE;
    setup->Load(Bstr(L"TVN Host").Get(), Bstr(path).Get(), &modelArgument, &mode, &loaded);
    SysFreeString(modelArgument);
    if (!loaded) {
        return 1;
    }
    setup->put_Notes(Bstr(L"{\\rtf1\\ansi{\\fonttbl{\\f0\\fmodern Lucida Console;}}"
                          L"{\\colortbl;\\red0\\green0\\blue128;}\\f0\\fs18 "
                          L"{\\cf1\\protect Outlet:}  Hauptstrasse 12, 2nd floor\\par "
                          L"{\\cf1\\protect Engineer:}\\par "
                          L"{\\cf1\\protect Weather:}\\par\\par "
                          L"Connect the receiver to the outlet with the calibrated cable.\\par}")
                         .Get());
    EditorDriver person;
    bool accepted = false;
    person.Edit(setup.Get(), accepted, [](EditorDriver& editor) {
        editor.OnGuiThread([] { SetCursorPos(0, 0); });  // not over a control, which would show it
        for (int32_t page = 0; page < pageCount; ++page) {
            editor.ClickTab(static_cast<Page>(page));
            if (static_cast<Page>(page) == Page::frequencies) {
                editor.ClickHeading(MP_FREQUENCY);
                editor.ClickRow(MP_FREQUENCY, 2);
                editor.Press(VK_ESCAPE);
                editor.Press(VK_DOWN);
                editor.Press(VK_DOWN, shift);
            }
            if (static_cast<Page>(page) == Page::parameters) {
                editor.ClickRow(displayColumn, 3);
            }
            editor.OnGuiThread([&] {
                RedrawWindow(editor.dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
                GdiFlush();
            });
            RECT place{};
            GetWindowRect(editor.dialog, &place);
            std::printf("%ldx%ld+%ld+%ld %d\n", place.right - place.left, place.bottom - place.top, place.left,
                        place.top, page);
            std::fflush(stdout);
            std::getchar();
        }
    });
    return 0;
}

}  // namespace
}  // namespace tvn2x::client

int wmain(int count, wchar_t** words)
{
    if (count != 2) {
        return 2;
    }
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const int result = tvn2x::client::ShowPages(words[1]);
    CoUninitialize();
    return result;
}
