#include "host/link/RegistryView.h"

#include <oleauto.h>

#include "com/ComPtr.h"
#include "com/EntryFile.h"
#include "com/Errors.h"
#include "com/OpenKey.h"
#include "fmt/format.h"
#include "fmt/xchar.h"

namespace tvn2x {
namespace {

constexpr int ownBits = 8 * sizeof(void*);

/// None where there is no such key or it may not be read.
com::OpenKey Open(const RegistryView& view, const std::wstring& key)
{
    return {view.hive, L"Software\\Classes\\" + key, KEY_READ | view.access};
}

bool HasTwoWordLengths()
{
    BOOL isEmulated = FALSE;
    return ownBits == 64 || (IsWow64Process(GetCurrentProcess(), &isEmulated) && isEmulated);
}

std::wstring VersionOf(const std::wstring& file)
{
    DWORD unused = 0;
    std::vector<BYTE> block(GetFileVersionInfoSizeW(file.c_str(), &unused));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT size = 0;
    if (block.empty() || !GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &size)) {
        return {};
    }
    return fmt::format(L"{}.{}.{}", HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS),
                       HIWORD(fixed->dwFileVersionLS));
}

/// The word length that a program file is made for; 0 for what is no program.
int BitsOf(const std::wstring& file)
{
    const HMODULE image = LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (!image) {
        return 0;
    }
    // The low bits of such a handle tell how the file was loaded.
    const auto* const base = reinterpret_cast<const BYTE*>(reinterpret_cast<ULONG_PTR>(image) & ~ULONG_PTR{3});
    const auto* const header =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const WORD machine = header->FileHeader.Machine;
    FreeLibrary(image);
    return machine == IMAGE_FILE_MACHINE_AMD64 || machine == IMAGE_FILE_MACHINE_ARM64 ? 64 : 32;
}

std::wstring LoadFault(const std::wstring& file, bool hasClasses)
{
    const HMODULE library = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!library) {
        return L"does not load: " + com::SystemText(HRESULT_FROM_WIN32(GetLastError()));
    }
    const bool serves = !hasClasses || GetProcAddress(library, "DllGetClassObject");
    FreeLibrary(library);
    return serves ? L"" : L"is no component server";
}

}  // namespace

std::optional<std::wstring> RegistryView::Read(const std::wstring& key, const wchar_t* name) const
{
    const com::OpenKey open = Open(*this, key);
    wchar_t text[1024];
    DWORD size = sizeof text;
    if (!open || RegGetValueW(open, nullptr, name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    return text;
}

bool RegistryView::Has(const std::wstring& key) const
{
    return Open(*this, key) != nullptr;
}

std::vector<RegistryView> RegistryViews()
{
    std::vector<RegistryView> views;
    for (const bool isUsers : {true, false}) {
        const HKEY hive = isUsers ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
        if (HasTwoWordLengths()) {
            views.push_back({hive, KEY_WOW64_64KEY, 64, isUsers});
        }
        views.push_back({hive, KEY_WOW64_32KEY, 32, isUsers});
    }
    return views;
}

FileState StateOfLibrary(const std::wstring& path, int bits, bool hasClasses)
{
    const std::wstring file = com::EntryFile(path).Name();
    const bool isGone = com::EntryFile(path).IsGone();
    FileState state{isGone ? L"" : VersionOf(file), {}};
    const int found = isGone ? 0 : BitsOf(file);
    com::ComPtr<ITypeLib> library;
    if (isGone) {
        state.fault = L"is not there";
    } else if (hasClasses && found == 0) {
        state.fault = L"is no library";
    } else if (hasClasses && found != bits) {
        state.fault = fmt::format(L"is of {} bits", found);
    } else if (hasClasses && bits == ownBits) {
        state.fault = LoadFault(file, hasClasses);
    } else if (!hasClasses && FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()))) {
        state.fault = L"holds no type library";
    }
    return state;
}

}  // namespace tvn2x
