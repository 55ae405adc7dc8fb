// refer_types LIBRARY OWNER RESULT: the interface compiler copies the interfaces of an imported library into the one
// that it writes. RESULT is LIBRARY with references to OWNER in their place.

#include <cstdio>
#include <exception>
#include <filesystem>

#include "TypeLibraryFile.h"

int main(int count, char** arguments)
{
    if (count != 4) {
        std::fprintf(stderr, "refer_types LIBRARY OWNER RESULT\n");
        return 2;
    }
    try {
        const std::filesystem::path owner = arguments[2];
        tvn2x::tools::TypeLibraryFile library(arguments[1]);
        library.ReferTo(tvn2x::tools::TypeLibraryFile(owner), owner.filename().string());
        library.Write(arguments[3]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "refer_types: %s: %s\n", arguments[1], error.what());
        return 1;
    }
    return 0;
}
