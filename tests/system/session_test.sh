#!/usr/bin/env bash
# A user's session with the host as it is written down in tests/data/sessions:   session_test.sh NAME
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh "$1_test"
receivers=$root/examples/receivers setups=$root/tests/data/setups
session "$1"
echo "all as it is written"
