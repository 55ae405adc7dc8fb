// The setup editor's window where memory runs out: in this program's own copy of it, whose allocations can be made to
// fail.

#include <initguid.h>

#include <algorithm>
#include <functional>
#include <new>

#include "EditorDriver.h"
#include "editor/win32/frmFreqList.h"
#include "support/DocumentParts.h"
#include "support/FailingMemory.h"

namespace tvn2x::client {
namespace {

/// The handles that this process holds now, asked one by one: the system of the tests does not count them, and their
/// lower halves alone name them there.
struct HeldHandles
{
    HeldHandles()
    {
        for (uintptr_t lower = 0; lower < 0x10000; ++lower) {
            graphics += GetObjectType(reinterpret_cast<HGDIOBJ>(lower)) != 0;
            windows += IsWindow(reinterpret_cast<HWND>(lower)) || IsMenu(reinterpret_cast<HMENU>(lower));
        }
    }

    /// How many more there are, of the kind that grew most. The system itself keeps some for later whenever it likes,
    /// so that only what grows each time is a leak.
    int Since(const HeldHandles& before) const
    {
        return std::max(graphics - before.graphics, windows - before.windows);
    }

    int graphics = 0;
    int windows = 0;
};

SetupDocument TwoChannels()
{
    SetupDocument document;
    document.ListSize(2);
    for (int32_t channel = 1; channel <= 2; ++channel) {
        document.Frequency(channel, 500 - 8 * channel);
        document.SymbolRate(channel, 6.9);
        document.UserField(channel, L"a channel with a name that takes memory");
    }
    document.Notes(L"{\\rtf1\\ansi {\\protect Site:} \\par}");
    document.dirty = false;
    return document;
}

/// What a person would do in every corner of the dialog, with every box on the way answered.
void WorkThrough(EditorDriver& editor)
{
    const std::function<void()> deeds[] = {
        [] {},
        [&] { editor.ClickTab(Page::frequencies); },
        [&] { editor.ClickHeading(MP_FREQUENCY); },
        [&] { editor.ClickRow(MP_USERFIELD, 2); },
        [&] { editor.Type(L"!"); },
        [&] { editor.Press(VK_TAB); },
        [&] { editor.Type(L"6"); },
        [&] { editor.Press(VK_RETURN); },
        [&] { editor.Click(control_id::Of(RowCommand::moveUp, Grid::channels)); },
        [&] { editor.ClickTab(Page::parameters); },
        [&] { editor.ClickRow(saveColumn, 0); },
        [&] { editor.Click(control_id::Of(RowCommand::insert, Grid::parameters)); },
        [&] { editor.ClickTab(Page::notes); },
        [&] { editor.Alt(L't'); },
        [&] { editor.Press(VK_END, control); },
        [&] { editor.Type(L"!"); },
        [&] { editor.Click(control_id::protect); },
        [&] { editor.Click(control_id::ok); },
    };
    for (const auto& deed : deeds) {
        if (IsWindow(editor.dialog)) {
            deed();
        }
        while (IsWindow(editor.dialog) && !editor.AnswerMessageBox().empty()) {
        }
    }
}

/// One person's work on a document, with memory for so many allocations. Tells whether that was too little.
bool WorkWithMemoryFor(long allocations, EditorDriver& person)
{
    SetupDocument document = TwoChannels();
    const auto whole = Everything(document);
    bool isOk = false;
    bool failed = false;
    person.Work(
        [&] {
            FailAllocationsFrom(allocations);
            try {
                isOk = EditSetup(document, SystemLocale());
            } catch (const std::bad_alloc&) {
            }
            failed = AllowAllocations();
        },
        WorkThrough);
    EXPECT_EQ(isOk, Everything(document) != whole);
    EXPECT_EQ(isOk, document.ListSize() == 3);
    EXPECT_TRUE(isOk || failed);
    return failed;
}

TEST(EditorFaults, NoMemoryLeavesTheDocumentWholeAndNoHandleBehind)
{
    EditorDriver person;
    const HeldHandles none;
    const HGDIOBJ one = CreateSolidBrush(0x123456);
    EXPECT_EQ(HeldHandles().Since(none), 1) << "one is seen";
    DeleteObject(one);

    // One after the other where the dialog is made, then every few, in strides that meet no pattern. The system keeps
    // handles for later whenever it likes: what is lost is lost again where the same memory lacks.
    constexpr int often = 4;
    bool failed = true;
    HeldHandles before;
    for (long allocations = 0; failed; allocations += allocations < 50 ? 1 : 23) {
        SCOPED_TRACE(allocations);
        int losses = 0;
        for (bool grew = true; grew && losses < often; losses += grew) {
            failed = WorkWithMemoryFor(allocations, person);
            const HeldHandles now;
            grew = now.Since(before) > 0;
            before = now;
        }
        EXPECT_LT(losses, often);
        EXPECT_TRUE(failed || allocations > 200);
    }
}

}  // namespace
}  // namespace tvn2x::client
