#!/usr/bin/env bash
# The setup editor's window, on a screen that nobody sees, in a Wine of its own: one that was started without a screen
# cannot open windows later.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh

export TVN_PREFIX=wine-screen
wine_environment
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
wineserver -k >/dev/null 2>&1 || true
# Without a window manager, windows have frames only if Wine draws them itself.
xvfb-run -a tools/wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
xvfb-run -a tools/wine build/win64/bin/system_editor.exe "$@"

# The command says what it lacks, before any window.
refused() {
    local said status=0
    said=$(tools/wine tvnhost edit "${@:2}" 2>&1 </dev/null) || status=$?
    [ "$status" -eq 2 ] && grep -qF -- "$1" <<<"$said" || { echo "tvnhost edit ${*:2}: exit $status, $said"; exit 1; }
}
refused 'tvnhost edit -o FILE'
refused 'there is no such file' build/none.ini
refused 'It needs a screen' -o build/none.ini
