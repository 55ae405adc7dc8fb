# What the scripts that test the host share: each runs a command and says what it should end with and print. Sourced after
# wine_environment, with the programs' folder in $bin and a folder of the script's own in $work.

fail() {
    echo "$said: $*"
    tail -n 40 "$work/out" "$work/err"
    exit 1
}
expect_exit() { # CODE ARGUMENT...
    local code=$1 status=0
    shift
    said="tvnhost $*"
    "$wine_program" "$bin/tvnhost.exe" "$@" >"$work/out" 2>"$work/err" </dev/null || status=$?
    [ "$status" = "$code" ] || fail "ends with $status instead of $code"
}
expect_notice() { grep -qF -- "$1" "$work/err" || fail "does not tell: $1"; }
