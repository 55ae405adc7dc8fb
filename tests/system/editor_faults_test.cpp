// The setup editor's window where memory runs out: in this program's own copy of it, whose allocations can be made to
// fail.

#include <initguid.h>

#include <richedit.h>

#include <new>

#include "EditorDriver.h"
#include "HeldHandles.h"
#include "editor/win32/frmFreqList.h"
#include "support/DocumentParts.h"
#include "support/FailingMemory.h"

namespace tvn2x::client {
namespace {

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
    const auto answer = [&] {
        while (IsWindow(editor.dialog) && !editor.AnswerMessageBox().empty()) {
        }
    };
    const auto act = [&](auto deed) {
        if (IsWindow(editor.dialog)) {
            deed();
        }
        answer();
    };
    answer();
    act([&] { editor.ClickTab(Page::frequencies); });
    act([&] { editor.ClickHeading(MP_FREQUENCY); });
    act([&] { editor.ClickRow(MP_USERFIELD, 2); });
    act([&] { editor.Type(L"!"); });
    act([&] { editor.Press(VK_TAB); });
    act([&] { editor.Type(L"6"); });
    act([&] { editor.Press(VK_RETURN); });
    act([&] { editor.Click(control_id::Of(RowCommand::moveUp, Grid::channels)); });
    act([&] { editor.ClickTab(Page::parameters); });
    act([&] { editor.ClickRow(saveColumn, 0); });
    act([&] { editor.Click(control_id::Of(RowCommand::insert, Grid::parameters)); });
    act([&] { editor.ClickTab(Page::notes); });
    act([&] { editor.Alt(L't'); });
    act([&] { editor.Press(VK_END, control); });
    act([&] { editor.Type(L"!"); });
    act([&] { editor.Click(control_id::protect); });
    act([&] { editor.Click(control_id::ok); });
}

TEST(EditorFaults, NoMemoryLeavesTheDocumentWholeAndNoHandleBehind)
{
    EditorDriver person;
    for (int time = 0; time < 3; ++time) {  // what the system keeps once and for all
        SetupDocument document = TwoChannels();
        person.Work([&] { EditSetup(document, SystemLocale()); }, WorkThrough);
    }
    const HeldHandles before = HeldHandles::Now();
    const HGDIOBJ one = CreateSolidBrush(0x123456);
    EXPECT_EQ(HeldHandles::Now().Since(before), 1) << "one is seen";
    DeleteObject(one);

    // One after the other where the dialog is made, then every few, in strides that meet no pattern.
    long opened = 0;
    long rounds = 0;
    for (bool failed = true; failed; opened += opened < 50 ? 1 : 23) {
        SCOPED_TRACE(opened);
        ++rounds;
        SetupDocument document = TwoChannels();
        const auto whole = Everything(document);
        bool isOk = false;
        person.Work(
            [&] {
                FailAllocationsFrom(opened);
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
    }
    EXPECT_GT(opened, 200);
    EXPECT_LT(HeldHandles::Now().Since(before), rounds / 10);
}

}  // namespace
}  // namespace tvn2x::client
