#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "editor/EditorView.h"
#include "setup/SetupDocument.h"
#include "util/modListUtils.h"

namespace tvn2x {

/// The entries of a drop-down list, in their order.
std::span<const ListItem> ItemsOf(Choice choice);

/// The entry that shows the document's value, the first one where none does.
int32_t PositionIn(const SetupDocument& document, Choice choice);

/// Writes the entry at a position into the document.
void StoreChoice(SetupDocument& document, Choice choice, int32_t position);

/// What stands beside or on the controls, "&" before the access key.
std::wstring_view CaptionOf(Page page);
std::wstring_view CaptionOf(Choice choice);
std::wstring_view CaptionOf(Field field);
std::wstring_view CaptionOf(Check check);
std::wstring_view CaptionOf(RowCommand command);  ///< of the four that are buttons
std::wstring_view HeadingOf(Column column);

}  // namespace tvn2x
