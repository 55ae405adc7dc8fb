#!/usr/bin/env bash
# What the built DLLs export and import, for x64 and x86: the component server's entry points undecorated, and nothing of
# the compiler's run-time libraries; the version resource; address space randomisation and no executable data.
set -euo pipefail
cd "$(dirname "$0")/../.."

entry_points='DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer'
for build in win64:x86_64-w64-mingw32 win32:i686-w64-mingw32; do
    objdump=${build#*:}-objdump
    for name in TVN2x XKTR2x XKIQ2x; do
        file=build/${build%%:*}/bin/$name.dll
        dump=$("$objdump" -p "$file")
        exports=$(sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\t.*[] ]\(Dll[A-Za-z]*\|[^ ]*\)$/\1/p' <<<"$dump" | sort | xargs)
        [ "$exports" = "$entry_points" ] || { echo "$file exports: $exports"; exit 1; }
        foreign=$(sed -n 's/^\tDLL Name: //p' <<<"$dump" | grep -viE '^(kernel32|msvcrt|ole32|oleaut32|advapi32|user32|gdi32|comctl32|uxtheme|oleacc|bcrypt|api-ms-win-.*|ucrtbase)\.dll$' || true)
        [ -z "$foreign" ] || { echo "$file imports: $foreign"; exit 1; }
        grep -q DYNAMIC_BASE <<<"$dump" && grep -q NX_COMPAT <<<"$dump" || { echo "$file is not hardened"; exit 1; }
        grep -q '\.rsrc' <<<"$("$objdump" -h "$file")" || { echo "$file has no resources"; exit 1; }
        echo "$file: exports and imports as they should be"
    done
done
