# What the scripts that test the host share. Sourced in the project's root with the name of the script's folder in build/:
# makes the folder $work anew with an empty folder in it, in which the script goes on. The rest runs a command and says
# what it should end with and print.

# TVN_BITS=32 makes it the programs of 32 bits, in their world.

# Nothing ends a script without a word.
trap 'echo "line $LINENO: ends with $?: $BASH_COMMAND"' ERR
root=$PWD
. tools/common.sh
wine_environment
bits=${TVN_BITS:-64}
bin=$root/build/win$bits/bin
work=$root/build/$1
[ "$bits" = 64 ] || work+=_x86
rm -rf "$work"
mkdir -p "$work/files"
touch "$work/out" "$work/err"

# What is to be done when the script ends, however it does: the last one first.
ends=()
at_end() { ends=("$1" "${ends[@]}"); }
trap 'for end in "${ends[@]}"; do eval "$end" || true; done' EXIT

# A registry and a Wine server of the script's own, on the disk C: that all share: nothing that it changes, and no way in
# which it ends, meets another one.
own_wine() { # PREFIX
    mkdir "$work/wine"
    ln -s "$1/drive_c" "$work/wine/drive_c"
    cp -a "$1"/{system.reg,user.reg,userdef.reg,dosdevices,made} "$work/wine"
    [ ! -f "$1/.update-timestamp" ] || cp -a "$1/.update-timestamp" "$work/wine"
}
if [ "$bits" = 64 ]; then
    [ -f "$WINEPREFIX/made" ] || tools/wine cmd /c ver >/dev/null
    own_wine "$WINEPREFIX"
    export TVN_PREFIX=${work#"$root/build/"}/wine
    wine_environment
    wineserver -p60 # none is on its way out when the next program comes
    at_end 'wineserver -k'
    wine_ready
else
    [ -f "$root/build/wine32/made" ] || tools/world32 cmd /c ver >/dev/null </dev/null
    own_wine "$root/build/wine32"
    export TVN_BARE=${work#"$root/build/"}/wine
    wine_program=$root/tools/world32
    "$wine_program" "$bin/tvnhost.exe" register >/dev/null </dev/null
    for name in XKTR2x TVN2x; do "$wine_program" regsvr32 /s "$(wine_path "$bin/$name.dll")" </dev/null; done
fi
program=("$bin/tvnhost.exe")
cd "$work/files"

wine() { "$wine_program" "$@" </dev/null; }
check() { python3 -B "$root/tests/system/report_check.py" "$@"; }
fail() {
    echo "$said: $*"
    tail -n 40 "$work/out" "$work/err"
    exit 1
}
expect_exit() { # CODE ARGUMENT..., or one CODE|of|several; prints into $output where that is set
    local code=$1 status=0
    shift
    said="${program[0]##*/} $*"
    started "${output:-$work/out}" "$work/err" "$wine_program" "${program[@]}" "$@" || status=$?
    [[ "|$code|" == *"|$status|"* ]] || fail "ends with $status instead of $code"
}
expect_text() { # LINE_OR_PART...
    local text
    for text; do grep -qF -- "$text" "$work/out" || fail "does not print: $text"; done
}
expect_match() { # PATTERN...
    local pattern
    for pattern; do grep -qE -- "$pattern" "$work/out" || fail "does not print: $pattern"; done
}
expect_notice() { # LINE_OR_PART...
    local text
    for text; do grep -qF -- "$text" "$work/err" || fail "does not tell: $text"; done
}
# On a terminal, where Ctrl+C can be typed: what the program tells is read from descriptor 4.
on_terminal() { # ARGUMENT...
    said="tvnhost $*"
    rm -f keys notices
    mkfifo keys notices
    SHELL=/bin/bash script -qec "exec '$wine_program' '$bin/tvnhost.exe' $* >'$work/out' 2>notices" /dev/null \
        <keys >/dev/null 3>&- 4>&- &
    job=$!
    at_end '[ -z "$job" ] || kill "$job" 2>/dev/null'
    exec 3<>keys 4<>notices
}
end_by_ctrl_c() { # CODE MILLISECONDS
    local pressed status=0
    pressed=$(date +%s%N)
    printf '\3' >&3
    wait "$job" || status=$?
    job=
    [ "$status" = "$1" ] || fail "ends with $status instead of $1"
    took=$((($(date +%s%N) - pressed) / 1000000))
    [ "$took" -lt "$2" ] || fail "takes $took ms to end"
}
enter() { # NAME WORD=FILE...: a file of tests/data/registry, with the place of a file for each @WORD@
    local word text place
    text=$(sed "s/@BITS@/$bits/" "$root/tests/data/registry/$1.reg")
    for word in "${@:2}"; do
        place=$(wine_path "${word#*=}")
        text=${text//@${word%%=*}@/"${place//\\/\\\\}"}
    done
    echo "$text" >"$1.reg"
    wine regedit /s "$1.reg"
}
# What is written in tests/data/sessions, line by line:
#   $ CODE ARGUMENT...  a command of the host, and what it ends with
#   > TEXT  it prints     ~ PATTERN  it prints     ! TEXT  it tells     * PATTERN  it prints or tells
#   = NEW OLD           makes a file of another; each line below it, set in, is a key with its new value
#   + FILE TEXT         is in the file             - FILE  does not exist
session() { # NAME
    local line text made value
    while IFS= read -r line; do
        line=${line//@BITS@/$bits}
        text=${line:2}
        case $line in
            '$ '*) eval "expect_exit $text" ;;
            '> '*) expect_text "$text" ;;
            '~ '*) expect_match "$text" ;;
            '! '*) expect_notice "$text" ;;
            '* '*) LC_ALL=C grep -qE -- "$text" "$work/out" "$work/err" || fail "says nowhere: $text" ;;
            '= '*) made=${text%% *} && eval "cp ${text#* } $made" ;;
            '+ '*) grep -qF -- "${text#* }" "${text%% *}" || fail "does not write into ${text%% *}: ${text#* }" ;;
            '- '*) [ ! -e "$text" ] || fail "leaves $text behind" ;;
            '    '*)
                value=${line:4}
                grep -q "^${value%%=*}=" "$made" || sed -i "s/^\[Network\]/&\n${value%%=*}=/" "$made"
                sed -i "s|^${value%%=*}=[^\r]*|$value|" "$made"
                grep -qF "$value" "$made" || fail "$made has no ${value%%=*}" ;;
            '' | '#'*) ;;
            *) fail "knows no such line of a session: $line" ;;
        esac
    done <"$root/tests/data/sessions/$1.txt"
}
