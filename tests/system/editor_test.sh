#!/usr/bin/env bash
# The setup editor's window.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh

on_screen build/win64/bin/system_editor.exe "$@"
on_screen build/win64/bin/system_editor_faults.exe

# The command says what it lacks, before any window.
refused() {
    local said status=0
    said=$(tools/wine tvnhost edit "${@:2}" 2>&1 </dev/null) || status=$?
    [ "$status" -eq 2 ] && grep -qF -- "$1" <<<"$said" || { echo "tvnhost edit ${*:2}: exit $status, $said"; exit 1; }
}
refused 'tvnhost edit -o FILE'
refused 'there is no such file' build/none.ini
refused 'exists already' -o README.md
refused 'It needs a screen' -o build/none.ini
