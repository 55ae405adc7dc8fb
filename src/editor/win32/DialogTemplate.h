#pragma once

#include <windows.h>

namespace tvn2x {

/// Dialog units around what a dialog shows, and between things that belong together.
namespace dialog_unit {

constexpr int margin = 7;
constexpr int gap = 4;

}  // namespace dialog_unit

/// An empty dialog, whose controls are made one by one.
struct EmptyTemplate
{
    DLGTEMPLATE head{};
    WORD noMenu = 0;
    WORD usualClass = 0;
    WORD noTitle = 0;
};

}  // namespace tvn2x
