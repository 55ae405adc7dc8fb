#!/usr/bin/env bash
# The script client, and that it really ran to its end.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tools/common.sh
root=$PWD
said=$(tools/wine cscript //nologo tests/system/script_test.vbs "$(wine_path tests/data/clean.ini)" | tr -d '\r')
echo "$said"
[ "$said" = "all as expected" ]
