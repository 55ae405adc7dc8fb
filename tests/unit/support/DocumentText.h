#pragma once

#include <iomanip>
#include <sstream>
#include <string>

#include "editor/Choices.h"
#include "setup/SetupDocument.h"

namespace tvn2x {

/// Everything that the editor can change, as one text.
inline std::wstring Everything(const SetupDocument& document)
{
    std::wostringstream text;
    text << std::setprecision(12) << document.LevelUnit() << L'|' << document.Notes() << L'|' << document.dirty
         << document.CoupleDisplayAndSave() << document.ShowNotesBefore() << document.ShowNotesAfter() << L','
         << document.DefaultSymbolRate() << L',' << document.MaxSettlingTime();
    for (int32_t choice = 0; choice < choiceCount; ++choice) {
        text << L',' << PositionIn(document, static_cast<Choice>(choice));
    }
    for (int32_t channel = 1; channel <= document.ListSize(); ++channel) {
        text << L',' << document.Frequency(channel) << L',' << document.SymbolRate(channel) << L','
             << document.UserField(channel);
    }
    for (int32_t parameter = 1; parameter <= document.Count(); ++parameter) {
        text << L',' << document.Caption(parameter) << L',' << document.Order(parameter) << L','
             << document.Parameter(0, parameter) << document.Parameter(1, parameter)
             << document.Parameter(2, parameter);
    }
    return text.str();
}

}  // namespace tvn2x
