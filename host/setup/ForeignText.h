#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/setup/SetupInspection.h"
#include "host/setup/SetupText.h"
#include "util/CodePage.h"

namespace tvn2x {

/// What tells that a file's texts are read as others than were written, or that it is no text; nothing where nothing
/// does. `setup` is what was read of the bytes.
std::optional<SetupRemark> ForeignTextRemark(std::string_view bytes, const SetupText& setup, const CodePage& codePage);

/// The level unit that a code page without a micro sign, or another than the reader's, has made such a text of; "" for
/// any other text.
std::wstring UnitBefore(std::wstring_view text);

}  // namespace tvn2x
