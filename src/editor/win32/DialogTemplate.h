#pragma once

#include <windows.h>

namespace tvn2x {

/// An empty dialog, whose controls are made one by one.
struct EmptyTemplate
{
    DLGTEMPLATE head{};
    WORD noMenu = 0;
    WORD usualClass = 0;
    WORD noTitle = 0;
};

}  // namespace tvn2x
