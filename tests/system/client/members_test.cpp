// Every member of the plug-in and of the simulated receiver, called as programs of 32 bits may call: with the stack at
// each alignment, in other floating-point states, with stack and heap above 2 GB.

#include <initguid.h>

#include "../Client.h"
#include "util/FloatingPoint.h"

namespace tvn2x::client {
namespace {

using Words = std::vector<DWORD>;

/// Calls a member with the stack `shift` bytes off the alignment that compilers keep.
HRESULT CallShifted(void* member, const Words& arguments, DWORD shift)
{
    HRESULT result;
    DWORD count = static_cast<DWORD>(arguments.size());
    __asm__ volatile(
        "movl %%esp, %%edi\n\t"
        "andl $-16, %%esp\n\t"
        "subl %%ebx, %%esp\n\t"
        "1: testl %%ecx, %%ecx\n\t"
        "jz 2f\n\t"
        "pushl -4(%%esi,%%ecx,4)\n\t"
        "decl %%ecx\n\t"
        "jmp 1b\n\t"
        "2: call *%%eax\n\t"
        "movl %%edi, %%esp"
        : "=a"(result), "+c"(count)
        : "0"(member), "S"(arguments.data()), "b"(shift)
        : "edx", "edi", "memory", "cc");
    return result;
}

/// An object that a new receiver hands out.
template <class Interface, class Handed>
ComPtr<IUnknown> OfReceiver(HRESULT (STDMETHODCALLTYPE Interface::*property)(Handed**))
{
    return ComPtr<IUnknown>(ComPtr<Handed>::Attach(Get(Create<Interface>(L"XKTR2x.clsReceiver"), property)).Get());
}

/// What an object offers: an interface as a type library describes it.
struct Side
{
    ComPtr<IUnknown> object;
    const GUID& library;
    const IID& interfaceId;
};

class Caller
{
public:
    Caller(const Side& side, const FloatingPointWords& words, DWORD shift) : side_(side), words_(words), shift_(shift)
    {
    }

    /// How many members were called.
    int CallAll()
    {
        ComPtr<ITypeLib> library;
        ComPtr<ITypeInfo> dual, info;
        HREFTYPE reference = 0;
        EXPECT_EQ(LoadRegTypeLib(side_.library, 1, 0, LOCALE_NEUTRAL, library.Put()), S_OK);
        EXPECT_EQ(library->GetTypeInfoOfGuid(side_.interfaceId, dual.Put()), S_OK);
        EXPECT_EQ(dual->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
        EXPECT_EQ(dual->GetRefTypeInfo(reference, info.Put()), S_OK);
        void* callee = nullptr;
        EXPECT_EQ(side_.object->QueryInterface(side_.interfaceId, &callee), S_OK);
        FUNCDESC* member = nullptr;
        int count = 0;
        for (; SUCCEEDED(info->GetFuncDesc(static_cast<UINT>(count), &member)); ++count) {
            Call(callee, *member);
            info->ReleaseFuncDesc(member);
        }
        static_cast<IUnknown*>(callee)->Release();
        return count;
    }

private:
    void Call(void* callee, const FUNCDESC& member)
    {
        Words arguments{reinterpret_cast<DWORD>(callee)};
        for (int i = 0; i < member.cParams; ++i) {
            Add(member.lprgelemdescParam[i].tdesc.vt, member.lprgelemdescParam[i].paramdesc.wParamFlags, arguments);
        }
        void* const code = (*static_cast<void***>(callee))[member.oVft / sizeof(void*)];
        const FloatingPointWords before = FloatingPointWords::Now();
        words_.Load();
        CallShifted(code, arguments, shift_);
        const FloatingPointWords after = FloatingPointWords::Now();
        before.Load();
        EXPECT_TRUE(after.ComputesLike(words_)) << member.memid;
    }

    void Add(VARTYPE type, WORD flags, Words& arguments)
    {
        const auto addBits = [&](const auto& value) {
            const auto* const words = reinterpret_cast<const DWORD*>(&value);
            arguments.insert(arguments.end(), words, words + sizeof value / sizeof(DWORD));
        };
        if (type == VT_R8) {
            addBits(474.0);
        } else if (type == VT_R4) {
            addBits(0.01f);
        } else if (type == VT_VARIANT) {
            addBits(VARIANT{});
        } else if (type == VT_BSTR) {
            addBits(text_.Get());
        } else if (type == VT_PTR && (flags & PARAMFLAG_FOUT)) {
            outs_.push_back(std::make_unique<VARIANT>());
            addBits(outs_.back().get());
        } else {
            arguments.push_back(type == VT_PTR || type == VT_DISPATCH || type == VT_UNKNOWN ? 0 : 1);
        }
    }

    const Side& side_;
    const FloatingPointWords& words_;
    const DWORD shift_;
    const Bstr text_{L"C:\\members.ini"};
    std::vector<std::unique_ptr<VARIANT>> outs_;  ///< what is handed out in them is given up with the process
};

/// Takes all memory below 2 GB, so that whatever is wanted from now on lies above.
void UseUpLowMemory()
{
    constexpr size_t largest = 256u << 20, smallest = 64u << 10;
    for (size_t size = largest; size >= smallest; size /= 2) {
        while (void* const taken = VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS)) {
            if (reinterpret_cast<ULONG_PTR>(taken) + size > 0x80000000u) {
                VirtualFree(taken, 0, MEM_RELEASE);
                break;
            }
        }
    }
    for (size_t size = 16; size <= 65536; size *= 2) {
        while (reinterpret_cast<ULONG_PTR>(HeapAlloc(GetProcessHeap(), 0, size)) < 0x80000000u) {
        }
    }
}

void CallEveryMember(int& calls)
{
    constexpr FloatingPointWords states[] = {{0x027F, 0x1F80}, {0x0370, 0x1800}, {0x0C7F, 0xFFC0}};
    Create<IRunControl>(L"XKTR2x.clsRunControl")->put_StopFlag(VARIANT_TRUE);
    const auto setup = [] { return Create<IUnknown>(L"TVN2x.clsSetup"); };
    const auto receiver = [] { return Create<IUnknown>(L"XKTR2x.clsReceiver"); };
    const Side sides[] = {
        {setup(), LIBID_TVN2x, __uuidof(_clsSetup)},
        {setup(), LIBID_TVNINT, __uuidof(ISetup)},
        {setup(), LIBID_TVNINT, __uuidof(IMeasure)},
        {setup(), LIBID_TVNINT, __uuidof(IDriver)},
        {setup(), LIBID_TVNINT, __uuidof(ICheckHardware)},
        {setup(), LIBID_TVN2x, __uuidof(IResults)},
        {Create<IUnknown>(L"TVN2x.clsSupport"), LIBID_TVNINT, __uuidof(ISupport)},
        {Create<IUnknown>(L"TVN2x.clsTimeout"), LIBID_TVN2x, __uuidof(_clsTimeout)},
        {receiver(), LIBID_XKTR2x, __uuidof(IReceiver)},
        {receiver(), LIBID_TVNINT, __uuidof(IDriver)},
        {receiver(), LIBID_XKTR2x, __uuidof(IIdentification)},
        {OfReceiver(&IReceiver::get_ErrorCounters), LIBID_XKTR2x, __uuidof(IErrorCounters)},
        {OfReceiver(&IDriver::get_Settings), LIBID_XKTR2x, __uuidof(ISimulatorSettings)},
        {Create<IUnknown>(L"XKTR2x.clsRunControl"), LIBID_XKTR2x, __uuidof(IRunControl)},
        {Create<IUnknown>(L"XKTR2x.clsErrorReport"), LIBID_XKTR2x, __uuidof(IErrorReport)},
    };
    for (const FloatingPointWords& words : states) {
        for (DWORD shift = 0; shift < 16; shift += 4) {
            for (const Side& side : sides) {
                calls += Caller(side, words, shift).CallAll();
            }
        }
    }
}

DWORD WINAPI CallFromHighStack(void* calls)
{
    const char onStack = 0;
    EXPECT_GT(reinterpret_cast<ULONG_PTR>(&onStack), 0x80000000u);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CallEveryMember(*static_cast<int*>(calls));
    CoUninitialize();
    return 0;
}

TEST(Members, AnswerAnyHostOf32Bits)
{
    const HMODULE kept[] = {LoadLibraryW(L"oleaut32.dll"), LoadLibraryW(L"ole32.dll"), LoadLibraryW(L"rpcrt4.dll")};
    EXPECT_TRUE(kept[0] && kept[1] && kept[2]);
    UseUpLowMemory();
    int calls = 0;
    constexpr DWORD stackSize = 1 << 20;
    const HANDLE thread = CreateThread(nullptr, stackSize, CallFromHighStack, &calls, 0, nullptr);
    ASSERT_TRUE(thread);
    EXPECT_EQ(WaitForSingleObject(thread, INFINITE), WAIT_OBJECT_0);
    CloseHandle(thread);
    EXPECT_GT(calls, 12 * 200);
}

}  // namespace
}  // namespace tvn2x::client
