#!/usr/bin/env bash
# Who serves what after every order of registering and unregistering; and that in the end the registry is as it was.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh registry_test

classes='HKLM\Software\Classes'
hostLibrary=$classes'\TypeLib\{CCFB3DDF-7A82-4F26-92C6-0E7D10C02784}\1.0'
plugInClass='CLSID\{488198DB-6507-4E93-AE94-D262381549D9}\InprocServer32'
other=$work/another\ folder/TVN2x.dll # the plug-in, installed a second time
narrow=$work/x86.dll                  # stands for a library of 32-bit programs

wine_reg() { "$wine_program" reg "$@" /f >/dev/null </dev/null; }
step() { # +NAME registers, -NAME unregisters, !NAME deletes the file
    local undo=
    [ "${1:0:1}" = - ] && undo=/u
    case $1 in
        ?plugin) "$wine_program" regsvr32 /s $undo "$(wine_path "$bin/TVN2x.dll")" </dev/null ;;
        ?driver) "$wine_program" regsvr32 /s $undo "$(wine_path "$bin/XKTR2x.dll")" </dev/null ;;
        ?host) "$wine_program" "$bin/tvnhost.exe" "${undo:+un}register" >/dev/null </dev/null ;;
        !other) rm "$other" ;;
        ?other) "$wine_program" regsvr32 /s $undo "$(wine_path "$other")" </dev/null ;;
        !narrow) rm "$narrow" ;;
        +narrow)
            touch "$narrow"
            wine_reg add "$hostLibrary\\0\\win32" /ve /d "$(wine_path "$narrow")"
            wine_reg add "$classes\\$plugInClass" /ve /d "$(wine_path "$narrow")" /reg:32 ;;
        -narrow) wine_reg delete "$classes\\${plugInClass%\\*}" /reg:32 ;;
    esac
}
export_classes() {
    "$wine_program" reg export "$classes" "$(wine_path "$1")" /y >/dev/null </dev/null
    iconv -f UTF-16 -t UTF-8 "$1" | tr -d '\r' >"$1.txt"
}
# What a key of the last export says, as the name of the module whose file it is; "-" where there is no such key.
says() {
    local value
    value=$(KEY="[HKEY_LOCAL_MACHINE\\Software\\Classes\\$1]" awk '
        tolower($0) == tolower(ENVIRON["KEY"]) { here = 1; next } /^\[/ { here = 0 } here && sub(/^@=/, "") { print }' now.reg.txt)
    case $value in
        *another*TVN2x.dll*) echo other ;;
        *TVN2x.dll*) echo plugin ;;
        *XKTR2x.dll*) echo driver ;;
        *tvnhost.exe*) echo host ;;
        *x86.dll*) echo narrow ;;
        '') echo - ;;
        *) echo "$value" ;;
    esac
}
install_again() { mkdir -p "${other%/*}" && cp "$bin/TVN2x.dll" "$other"; }
all() { for name in host driver plugin; do step "$1$name"; done; }

# The receiver of recordings would take the place of whoever goes.
recordings() { "$wine_program" regsvr32 /s ${1:-} "$(wine_path "$bin/XKIQ2x.dll")" </dev/null; }
recordings /u
install_again
all +
export_classes registered.reg
all -
export_classes clean.reg
all - # a second time finds nothing and does no harm
all +
all +
export_classes now.reg
cmp registered.reg now.reg
for name in TVN2x.clsSetup TVN2x.clsSupport TVN2x.clsTimeout XKTR2x.clsReceiver XKTR2x.clsRunControl XKTR2x.clsErrorReport; do
    said=$name
    [ "$(says "$name\\CLSID")" != - ] || fail "is not registered"
done
all -

# Steps; then who serves the host's library, and whose the plug-in's class is.
while IFS='|' read -r steps library class; do
    read -r said <<<"$steps"
    for s in $steps; do step "$s"; done
    export_classes now.reg
    [ "$(says "${hostLibrary#*Classes\\}\\0\\win64")" = "${library// /}" ] || fail "the host's library is not served by $library"
    [ "$(says "$plugInClass")" = "${class// /}" ] || fail "the plug-in's class is not $class"
    described=$(says 'Interface\{76A22602-C1FD-4DD4-A007-831D2524B8DF}\TypeLib')
    [ "$described" = - ] && [ "${library// /}" != - ] && fail "the host's interfaces are not described"
    [ "$described" != - ] && [ "${library// /}" = - ] && fail "the host's interfaces are left behind"
    if [ "$said" = +plugin ]; then
        "$wine_program" "$bin/system_server.exe" --gtest_filter='MultithreadedClient.*' >"$work/out" </dev/null ||
            fail "is not enough for a client of a multithreaded apartment"
    fi
    install_again
    for name in $(grep -o '+[a-z]*' <<<"$steps" | tr -d + | sort -u); do step "-$name"; done
    [[ $steps == *'!'* ]] && step -plugin # whose file is gone has to be cleared up by somebody else
    export_classes left.reg
    cmp clean.reg left.reg || fail "leaves something behind: $(diff clean.reg.txt left.reg.txt)"
done <<'END'
+plugin                              | plugin | plugin
+plugin +driver                      | plugin | plugin
+plugin +driver -plugin              | driver | -
+driver +plugin -driver              | plugin | plugin
+plugin +driver -driver              | plugin | plugin
+plugin +host                        | host   | plugin
+host +plugin                        | host   | plugin
+host +plugin -plugin                | host   | -
+plugin +host -host                  | plugin | plugin
+host +driver +plugin -plugin -host  | driver | -
+plugin +other                       | other  | other
+plugin +other -plugin               | other  | other
+driver +plugin +other -driver       | other  | other
+other !other +driver                | driver | other
+driver +other !other -driver        | -      | other
+other !other +plugin                | plugin | plugin
+other !other -plugin                | -      | -
END

# Another vendor's driver keeps its class, and the other two stay free for it; a driver for the user alone takes none of
# them either. The simulated receiver's own classes are registered all the same, and taken over from an earlier copy.
said='beside another vendor'
receiver='CLSID\{78BE4523-D7A7-4F15-B0C0-964A5FB290E8}'
touch "$work/vendor.dll"
wine_reg add "$classes\\$receiver\\InprocServer32" /ve /d "$(wine_path "$work/vendor.dll")"
export_classes vendor.reg
step +driver
"$wine_program" regsvr32 /s /n /i:user "$(wine_path "$bin/XKTR2x.dll")" </dev/null
"$wine_program" reg query "HKCU\\Software\\Classes\\$receiver" >/dev/null </dev/null && fail "the user's driver hides the vendor's"
"$wine_program" regsvr32 /s /u /n /i:user "$(wine_path "$bin/XKTR2x.dll")" </dev/null
"$wine_program" "$bin/tvnhost.exe" register --user >/dev/null </dev/null
"$wine_program" reg query "HKCU${hostLibrary#HKLM}" >/dev/null </dev/null || fail "the host's library is not the user's"
"$wine_program" "$bin/tvnhost.exe" unregister --user >/dev/null </dev/null
"$wine_program" reg query "HKCU${hostLibrary#HKLM}" >/dev/null </dev/null && fail "the host's library stays the user's"
export_classes now.reg
case $(says "$receiver\\InprocServer32") in *vendor*) ;; *) fail "the vendor's class is not the vendor's" ;; esac
[ "$(says 'CLSID\{4AA7B9DA-F54D-464F-8BCE-D26AD76392BA}\InprocServer32')" = - ] || fail 'run control is taken'
[ "$(says 'XKTR2xSim.clsReceiver\CLSID')" != - ] || fail 'the simulated receiver is not registered'
step -driver
export_classes left.reg
cmp vendor.reg left.reg || fail "leaves something behind: $(diff vendor.reg.txt left.reg.txt)"
rm "$work/vendor.dll"
step +driver
export_classes now.reg
[ "$(says "$receiver\\InprocServer32")" = driver ] || fail 'what is nobody'"'"'s is not taken'
cp "$bin/XKTR2x.dll" "$work/another folder/XKTR2x.dll"
"$wine_program" regsvr32 /s "$(wine_path "$work/another folder/XKTR2x.dll")" </dev/null
export_classes now.reg
case $(says "$receiver\\InprocServer32") in driver) ;; *) fail 'an earlier copy keeps its class' ;; esac
grep -q 'another folder..XKTR2x.dll' now.reg.txt || fail 'an earlier copy keeps everything'
grep -q 'bin..XKTR2x.dll' now.reg.txt && fail 'an earlier copy keeps something'
"$wine_program" regsvr32 /s /u "$(wine_path "$work/another folder/XKTR2x.dll")" </dev/null
export_classes left.reg
cmp clean.reg left.reg || fail "leaves something behind: $(diff clean.reg.txt left.reg.txt)"

# The other word length has its own part of the library, and its own class of the same name.
said='the other word length'
step +plugin
step +narrow
step -plugin
export_classes now.reg
[ "$(says "${hostLibrary#*Classes\\}\\0\\win32")" = narrow ] || fail "loses its part of the host's library"
[ "$(says 'TVN2x.clsSetup\CLSID')" != - ] || fail "loses the class's name"
step -narrow
step !narrow
step -plugin
export_classes left.reg
cmp clean.reg left.reg || fail "leaves something behind: $(diff clean.reg.txt left.reg.txt)"
echo "the registry is as it was"
