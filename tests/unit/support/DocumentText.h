#pragma once

#include <string>

#include "editor/Choices.h"
#include "setup/SetupDocument.h"

namespace tvn2x {

/// Everything that the editor can change, as one text.
inline std::wstring Everything(const SetupDocument& document)
{
    std::wstring text = document.LevelUnit() + L"|" + document.Notes() + L"|" + std::to_wstring(document.dirty);
    const auto add = [&text](auto value) {
        text += L',';
        text += std::to_wstring(value);
    };
    for (int32_t choice = 0; choice < choiceCount; ++choice)
        add(PositionIn(document, static_cast<Choice>(choice)));
    for (const bool flag : {document.CoupleDisplayAndSave(), document.ShowNotesBefore(), document.ShowNotesAfter()})
        add(flag);
    add(document.DefaultSymbolRate());
    add(document.MaxSettlingTime());
    for (int32_t channel = 1; channel <= document.ListSize(); ++channel) {
        add(document.Frequency(channel));
        add(document.SymbolRate(channel));
        text += document.UserField(channel);
    }
    for (int32_t parameter = 1; parameter <= document.Count(); ++parameter) {
        text += document.Caption(parameter);
        add(document.Order(parameter));
        for (const int32_t action : {0, 1, 2})
            add(document.Parameter(action, parameter));
    }
    return text;
}

}  // namespace tvn2x
