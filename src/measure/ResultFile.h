#pragma once

#include <string>

#include "measure/ResultTable.h"
#include "setup/SetupDocument.h"
#include "util/FileSystem.h"
#include "util/MessageBox.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

/// The result file as bytes: a table of text that a spreadsheet opens at a double click.
///
/// First the settings, a row each with caption and value, and one of a receiver that something has to be said of; a
/// blank row; the results, which are the parameters 10..30 that the document marks to be saved, in display order under
/// their captions; where there are measurement notes, another blank row and their lines. Parameters without a display
/// position come last. The document's choice for the result file decides whether channels run across (a row per
/// parameter) or down (a row per channel); "same as display grid" takes the grid's, and down where that is left to the
/// user's view. A table that was never reset has no channels.
std::string ResultFileContent(const SetupDocument& document, const ResultTable& table, const Locale& locale);

/// Writes the result file in one step: afterwards the path holds the new file, or whatever it held before. `file` is
/// open only meanwhile. False where it cannot be written, after telling the user why.
bool SaveResults(const SetupDocument& document, const ResultTable& table, const Locale& locale, Replacement& file,
                 MessageBoxes& messages, const std::wstring& path);

}  // namespace tvn2x
