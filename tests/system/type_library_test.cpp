// The published contract, read from the finished files: what a compiler, a script engine or a marshaller finds there.

#include <initguid.h>

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "Client.h"

namespace tvn2x::client {
namespace {

using Contract = Apartment;

/// The libraries by the names under which this program's neighbours embed them.
const std::pair<const wchar_t*, const wchar_t*> embedded[] = {
    {L"TVN2x.dll\\1", L"TVN2x"},   {L"TVN2x.dll\\2", L"TVNINT"},   {L"XKTR2x.dll\\1", L"XKTR2x"},
    {L"XKTR2x.dll\\2", L"TVNINT"}, {L"XKIQ2x.dll\\1", L"XKIQ2x"},  {L"XKIQ2x.dll\\2", L"XKTR2x"},
    {L"XKIQ2x.dll\\3", L"TVNINT"}, {L"tvnhost.exe\\1", L"TVNINT"},
};

ComPtr<ITypeLib> Load(const std::wstring& name)
{
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::wstring folder(program, wcsrchr(program, L'\\') + 1);
    ComPtr<ITypeLib> library;
    EXPECT_EQ(LoadTypeLibEx((folder + name).c_str(), REGKIND_NONE, library.Put()), S_OK);
    return library;
}

std::string Narrow(std::wstring_view text)
{
    return {text.begin(), text.end()};
}

/// One line for each type of a library and for each member of a type.
class Description
{
public:
    explicit Description(ITypeLib* library) : library_(library)
    {
        for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
            ComPtr<ITypeInfo> info;
            EXPECT_EQ(library->GetTypeInfo(i, info.Put()), S_OK);
            Add(info.Get());
        }
    }

    std::string text;

private:
    static std::string NameOf(ITypeInfo* info)
    {
        Bstr name;
        EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr), S_OK);
        return Narrow(name.View());
    }

    void Add(ITypeInfo* info)
    {
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
        const TYPEKIND kind = attributes->typekind;
        const char* const kinds[] = {"enum", "record", "module", "interface", "interface", "coclass", "alias", "union"};
        wchar_t id[40];
        StringFromGUID2(attributes->guid, id, 40);
        text += fmt::format("{} {} {}\n", kinds[kind], NameOf(info), Narrow(id));
        info->ReleaseTypeAttr(attributes);
        VARDESC* constant = nullptr;
        for (UINT i = 0; SUCCEEDED(info->GetVarDesc(i, &constant)); ++i) {
            text += fmt::format("  {} = {}\n", NamesOf(info, constant->memid).front(), constant->lpvarValue->lVal);
            info->ReleaseVarDesc(constant);
        }
        INT flags = 0;
        for (UINT i = 0; kind == TKIND_COCLASS && SUCCEEDED(info->GetImplTypeFlags(i, &flags)); ++i) {
            HREFTYPE reference = 0;
            ASSERT_EQ(info->GetRefTypeOfImplType(i, &reference), S_OK);
            text += fmt::format("  {}{}\n", flags & IMPLTYPEFLAG_FDEFAULT ? "default " : "", Referred(info, reference));
        }
        if (kind == TKIND_DISPATCH) {
            const ComPtr<ITypeInfo> vtable = VtableOf(info);
            FUNCDESC* function = nullptr;
            for (UINT i = 0; SUCCEEDED(vtable->GetFuncDesc(i, &function)); ++i) {
                AddFunction(vtable.Get(), *function);
                vtable->ReleaseFuncDesc(function);
            }
        }
    }

    /// The other face of a dual interface, which shows its own functions as they stand in the vtable.
    static ComPtr<ITypeInfo> VtableOf(ITypeInfo* dispatch)
    {
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> info;
        EXPECT_EQ(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
        EXPECT_EQ(dispatch->GetRefTypeInfo(reference, info.Put()), S_OK);
        return info;
    }

    void AddFunction(ITypeInfo* info, const FUNCDESC& function)
    {
        const std::map<INVOKEKIND, const char*> kinds = {{INVOKE_FUNC, ""},
                                                         {INVOKE_PROPERTYGET, "get "},
                                                         {INVOKE_PROPERTYPUT, "put "},
                                                         {INVOKE_PROPERTYPUTREF, "putref "}};
        const std::vector<std::string> names = NamesOf(info, function.memid);
        // What a property is put to has no name of its own; the library tells the getter's for it.
        const bool isPut = function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF);
        const size_t named = std::min(names.size(), static_cast<size_t>(function.cParams) + !isPut);
        text += fmt::format("  {} {} {}{}(", function.oVft / sizeof(void*), function.memid, kinds.at(function.invkind),
                            names.front());
        for (size_t i = 0; i < static_cast<size_t>(function.cParams); ++i) {
            const ELEMDESC& parameter = function.lprgelemdescParam[i];
            text += i ? ", " : "";
            const std::pair<int, const char*> flags[] = {{PARAMFLAG_FIN, "in "},
                                                         {PARAMFLAG_FOUT, "out "},
                                                         {PARAMFLAG_FRETVAL, "retval "},
                                                         {PARAMFLAG_FOPT, "optional "}};
            for (const auto& [flag, word] : flags) {
                text += parameter.paramdesc.wParamFlags & flag ? word : "";
            }
            if (parameter.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT) {
                text += fmt::format("= {} ", parameter.paramdesc.pparamdescex->varDefaultValue.lVal);
            }
            text += TypeOf(info, parameter.tdesc) + (i + 1 < named ? " " + names[i + 1] : "");
        }
        text += ")\n";
        Bstr help;
        EXPECT_EQ(info->GetDocumentation(function.memid, nullptr, help.Put(), nullptr, nullptr), S_OK);
        EXPECT_FALSE(help.View().empty()) << names.front();
    }

    static std::vector<std::string> NamesOf(ITypeInfo* info, MEMBERID member)
    {
        BSTR names[16] = {};
        UINT count = 0;
        EXPECT_EQ(info->GetNames(member, names, 16, &count), S_OK);
        std::vector<std::string> read;
        for (UINT i = 0; i < count; ++i) {
            read.push_back(Narrow(Bstr::Attach(names[i]).View()));
        }
        return read;
    }

    std::string TypeOf(ITypeInfo* info, const TYPEDESC& type) const
    {
        const std::map<VARTYPE, const char*> simple = {
            {VT_I2, "short"},  {VT_I4, "long"},           {VT_R4, "float"},        {VT_R8, "double"},
            {VT_BSTR, "BSTR"}, {VT_BOOL, "VARIANT_BOOL"}, {VT_VARIANT, "VARIANT"}, {VT_DISPATCH, "IDispatch*"}};
        if (type.vt == VT_PTR) {
            return TypeOf(info, *type.lptdesc) + "*";
        }
        if (type.vt == VT_USERDEFINED) {
            return Referred(info, type.hreftype);
        }
        return simple.contains(type.vt) ? simple.at(type.vt) : fmt::format("VT {}", type.vt);
    }

    /// The name of a type, with that of its library where this is another one.
    std::string Referred(ITypeInfo* info, HREFTYPE reference) const
    {
        ComPtr<ITypeInfo> type;
        ComPtr<ITypeLib> library;
        UINT index = 0;
        const HRESULT found = info->GetRefTypeInfo(reference, type.Put());
        if (FAILED(found) || FAILED(type->GetContainingTypeLib(library.Put(), &index))) {
            return fmt::format("nothing ({:X})", static_cast<uint32_t>(found));
        }
        Bstr name;
        library->GetDocumentation(-1, name.Put(), nullptr, nullptr, nullptr);
        return (library.Get() == library_ ? "" : Narrow(name.View()) + ".") + NameOf(type.Get());
    }

    ITypeLib* library_;
};

/// No vtable slot, DISPID, identity, name or type of the contract changes: clients were compiled against them.
TEST_F(Contract, IsPublishedAsItAlwaysWas)
{
    for (const auto& [place, name] : embedded) {
        const ComPtr<ITypeLib> library = Load(place);
        ASSERT_TRUE(library);
        const std::string published = Description(library.Get()).text;
        std::ifstream file(std::filesystem::path(TVN_TEST_DATA L"\\contracts\\" + std::wstring(name) + L".txt"));
        EXPECT_EQ(published, std::string(std::istreambuf_iterator<char>(file), {})) << Narrow(place);
    }
}

}  // namespace
}  // namespace tvn2x::client
