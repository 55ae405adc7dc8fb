#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "EditorDriver.h"
#include "editor/Choices.h"

namespace tvn2x::client {

/// User field, frequency and symbol rate.
using Channels = std::vector<std::tuple<std::wstring, double, double>>;

/// A setup, and a person who edits it.
struct EditedSetup
{
    EditedSetup() { setup->put_ListSize(0); }

    /// True for OK.
    bool Edit(const EditorDriver::Deeds& deeds)
    {
        bool accepted = false;
        EXPECT_EQ(person.Edit(setup.As<ISetup>().Get(), accepted, deeds), S_OK);
        return accepted;
    }

    void Put(const Channels& channels)
    {
        setup->put_ListSize(static_cast<long>(channels.size()));
        long row = 0;
        for (const auto& [userField, frequency, symbolRate] : channels) {
            setup->put_UserField(++row, Bstr(userField).Get());
            setup->put_Frequency(row, frequency);
            setup->put_SymbolRate(row, symbolRate);
        }
    }

    Channels Stored() const
    {
        Channels channels(static_cast<size_t>(Get(setup, &_clsSetup::get_ListSize)));
        long row = 0;
        for (auto& [userField, frequency, symbolRate] : channels) {
            Bstr text;
            setup->get_UserField(++row, text.Put());
            userField = text.View();
            setup->get_Frequency(row, &frequency);
            setup->get_SymbolRate(row, &symbolRate);
        }
        return channels;
    }

    bool Parameter(long action, ::MP_TYPES parameter) const
    {
        VARIANT_BOOL value = VARIANT_FALSE;
        setup->get_Parameter(action, parameter, &value);
        return value != VARIANT_FALSE;
    }

    ComPtr<_clsSetup> setup = Create<_clsSetup>(L"TVN2x.clsSetup");
    EditorDriver person;
};

struct SetupEditor : Apartment, EditedSetup
{
};

}  // namespace tvn2x::client
