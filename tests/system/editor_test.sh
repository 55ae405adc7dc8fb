#!/usr/bin/env bash
# The setup editor's window.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh

on_screen build/win64/bin/system_editor.exe "$@"
on_screen build/win64/bin/system_editor_faults.exe
