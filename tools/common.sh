# What the project's commands share. Sourced with the project's root in $root.

export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}

# build PRESET [TARGET...]: configures when needed, builds, says nothing unless something is wrong.
build() {
    local preset=$1 log=$root/build/$1.log
    shift
    mkdir -p "$root/build"
    {
        ( cd "$root" && cmake --preset "$preset" ) &&
            cmake --build "$root/build/$preset" ${@:+--target "$@"}
    } >"$log" 2>&1 || {
        grep -E -A6 'error|FAILED|Error' "$log" | head -60 >&2 || true
        echo "build of '$preset' failed; the whole log is $log" >&2
        return 1
    }
}

# The build tree whose programs run under Wine: TVN_TREE names another one (win64-debug).
windows_tree=${TVN_TREE:-win64}

# The Wine prefix of the project's own, and a quiet Wine in it. TVN_PREFIX names another one: programs that need a screen
# must not meet a Wine that was started without.
wine_environment() {
    export WINEPREFIX=$root/build/${TVN_PREFIX:-wine} WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES='mscoree,mshtml='
    wine_program=/usr/lib/wine/wine64
}

# Makes the prefix when it is not there, and registers the libraries when one of them has changed.
wine_ready() {
    wine_environment
    local bin=$root/build/$windows_tree/bin stamp=$WINEPREFIX/registered
    if [ ! -f "$WINEPREFIX/made" ]; then
        rm -rf "$WINEPREFIX"
        mkdir -p "$WINEPREFIX"
        "$wine_program" wineboot -i >"$root/build/wineboot.log" 2>&1 </dev/null
        wineserver -w
        touch "$WINEPREFIX/made"
    fi
    local now
    now=$(sha256sum "$bin/TVN2x.dll" "$bin/XKTR2x.dll" "$bin/XKIQ2x.dll" "$bin/tvnhost.exe")
    if [ "$(cat "$stamp" 2>/dev/null)" != "$now" ]; then
        "$wine_program" "$bin/tvnhost.exe" register >/dev/null </dev/null
        "$wine_program" regsvr32 /s "$(wine_path "$bin/XKTR2x.dll")" </dev/null
        "$wine_program" regsvr32 /s "$(wine_path "$bin/XKIQ2x.dll")" </dev/null
        "$wine_program" regsvr32 /s "$(wine_path "$bin/TVN2x.dll")" </dev/null
        echo "$now" >"$stamp"
    fi
}

# on_screen PROGRAM [ARGUMENT...]: a Windows program on a screen that nobody sees, in a Wine of its own: one that was
# started without a screen cannot open windows later.
on_screen() {
    (
        export TVN_PREFIX=wine-screen TVN_BUILT=1
        wine_environment
        trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
        if [ ! -f "$WINEPREFIX/screen" ]; then
            # Without a window manager, windows have frames only if Wine draws them itself.
            xvfb-run -a "$root/tools/wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null
            touch "$WINEPREFIX/screen"
        fi
        wineserver -k >/dev/null 2>&1 || true
        xvfb-run -a "$root/tools/wine" "$@"
    )
}

# Runs a Windows program without input. What Wine could not start at all has done nothing and is started again: that is
# rare and says nothing of us.
started() { # OUTPUT ERRORS COMMAND...
    local out=$1 err=$2 status attempt
    shift 2
    for attempt in 1 2 3; do
        status=0
        "$@" >"$out" 2>"$err" </dev/null || status=$?
        grep -qs --devices=skip 'ShellExecuteEx failed: Internal error' "$out" "$err" || break
    done
    return "$status"
}

# The Windows name of a file: drive Z: is the root of this machine.
wine_path() {
    local full
    full=$(realpath -m "$1")
    echo "Z:${full//\//\\}"
}
