#!/usr/bin/env bash
# The installer of one word length, in a Wine of its own: what it puts where, what it registers, what stays when it goes;
# and that clients of every kind work with what it has installed.
#   tests/system/package_test.sh x64 | x86
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/common.sh
bits=${1:-x64}
preset=win64 compiler=x86_64-w64-mingw32-g++-posix
[ "$bits" = x64 ] || preset=win32 compiler=i686-w64-mingw32-g++-posix
work=$root/build/package_test_$bits
rm -rf "$work"
mkdir -p "$work"
said=
fail() { echo "${said:+$said: }$*"; exit 1; }
trap 'echo "${said:+$said: }line $LINENO ends with $?: $BASH_COMMAND"' ERR # nothing ends a script without a word

export WINEPREFIX=$work/prefix
if [ "$bits" = x64 ]; then
    export WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
    start() { /usr/lib/wine/wine64 "$@"; }
    mkdir "$WINEPREFIX"
    wineserver -p # no server is on its way out when the next program comes
    trap 'wineserver -k || true' EXIT
else
    start() { TVN_BARE=${WINEPREFIX#"$root/build/"} "$root/tools/world32" "$@"; }
    trap 'start wineboot -k </dev/null || true' EXIT
fi
wine() {
    local status=0
    started "$work/wine.out" "$work/wine.err" start "$@" || status=$?
    cat "$work/wine.out"
    cat "$work/wine.err" >&2
    return $status
}
# Registry and disk, without the installer's own records and what Wine writes at any time.
state() {
    local hive
    for hive in HKLM HKCU; do
        wine reg export "$hive\\Software" "$(wine_path "$work/$hive.reg")" /y >/dev/null
        iconv -f UTF-16 -t UTF-8 "$work/$hive.reg" | tr -d '\r' |
            awk '/^\[/ { key = $0 } key !~ /\\Installer|\\Uninstall\\|\\Wine\\|\\Microsoft\\Windows NT/ && /[^ ]/ && !(/^\[/ && /\\(Classes|CLSID|Interface|TypeLib)\]$/)'
    done >"$work/$1.registry"
    (cd "$WINEPREFIX/drive_c" && find . -type f ! -path './windows/Installer/*' | LC_ALL=C sort) >"$work/$1.disk"
}
same() { # WHAT BEFORE AFTER
    diff "$work/$2.registry" "$work/$3.registry" >"$work/difference" || fail "$1: $(head -20 "$work/difference")"
    diff "$work/$2.disk" "$work/$3.disk" >"$work/difference" || fail "$1: $(head -20 "$work/difference")"
}
installer() { wine msiexec "$@" /qn /l "$(wine_path "$work/msi.log")"; }

TVN_PACKAGE_VERSION=9.8.0 ./package "$bits" >/dev/null
cp build/package/TVN2x-9.8.0-$bits.msi "$work/newer.msi"
./package "$bits" >/dev/null
cp build/package/TVN2x-*-"$bits".msi "$work/package.msi"
(cd build/package && sha256sum --quiet -c SHA256SUMS)
wine wineboot -i >/dev/null 2>&1
echo 'WScript.Echo 1' >"$work/first.vbs"
wine cscript //nologo "$(wine_path "$work/first.vbs")" >/dev/null # registers itself when it is first used
package=$(wine_path "$work/package.msi")
newer=$(wine_path "$work/newer.msi")
state clean

said='for the machine'
folder='C:\Prüf technik\TVN 2x'
installer /i "$package" "INSTALLDIR=$folder"
state machine
for name in TVN2x.dll XKTR2x.dll XKIQ2x.dll tvnhost.exe guide.html LICENSE.txt NOTICES.txt examples/scan.vbs; do
    grep -qxF "./Prüf technik/TVN 2x/$name" "$work/machine.disk" || fail "$name is not there"
done
[ "$(grep -c 'Start Menu.*TVN2x' "$work/machine.disk")" = 3 ] || fail 'the start menu lacks an entry'
wine "$folder\\tvnhost.exe" scan "$folder\\examples\\first-scan.ini" --write \
    --network "$folder\\examples\\first-scan-network.ini" >"$work/grid" || [ $? -eq 1 ] || fail "the scan ended with $?"
grep -q '8 channels, 7 synchronised, 1 not' "$work/grid" || fail "the scan: $(tail -5 "$work/grid")"
wine cscript //nologo "$folder\\examples\\scan.vbs" "$folder\\examples\\first-scan.ini" \
    "$folder\\examples\\first-scan-network.ini" | tr -d '\r' >"$work/script" || [ $? -eq 1 ] || fail "the script ended with $?"
[ "$(tail -1 "$work/script")" = '7 of 8 channels synchronised' ] || fail "the script: $(tail -3 "$work/script")"

# Other clients, each with one channel; what they come with of ours is what was installed, or the kit that is given to
# those who write them.
unzip -q build/package/TVN2x-*-kit.zip -d "$work/kit"
compile() { # SOURCE PROGRAM
    "$compiler" -std=c++20 -O1 -municode -static -I "$work"/kit/*/include "$1" -o "$2" -lole32 -loleaut32 -luuid
}
compile "$work"/kit/*/examples/scan.cpp "$work/scan.exe"
compile tests/system/client/late_client.cpp "$work/late_client.exe"
cp tests/system/client/channel.js "$work"
examples="$folder\\examples"
channel=("$examples\\first-scan.ini" "$examples\\first-scan-network.ini" 3)
late=$(wine "$(wine_path "$work/late_client.exe")" "${channel[@]}" | tr -d '\r')
[ "$late" = 'true true OK' ] || fail "the late-bound program: $late"
java=$(wine cscript //nologo "$(wine_path "$work/channel.js")" "${channel[@]}" | tr -d '\r')
[ "$java" = 'true true OK' ] || fail "JScript: $java"
wine "$(wine_path "$work/scan.exe")" "${channel[@]:0:2}" | tr -d '\r' >"$work/program" || [ $? -eq 1 ] || fail "the program ended with $?"
[ "$(tail -1 "$work/program")" = '7 of 8 channels synchronised' ] || fail "the program: $(tail -3 "$work/program")"

# The entry of the start menu comes as far as the editor, which has no screen here.
shortcut=$(msiinfo export "$work/package.msi" Shortcut | awk -F'\t' '$1 == "EditorShortcut" { print $6 }')
echo "@${shortcut#/c }" | sed 's/\[#tvnhost.exe\]/%HOST%/g' >"$work/menu.bat"
(cd "$work" && wine cmd /c "set HOST=$folder\\tvnhost.exe&& menu.bat") >"$work/editor" 2>&1 || true
grep -q 'It needs a screen' "$work/editor" || fail "the menu's editor: $(cat "$work/editor")"

# What the libraries would register themselves is there already, but for folders of help that they have not got.
state before
wine "$folder\\tvnhost.exe" register >/dev/null
for name in XKTR2x XKIQ2x TVN2x; do wine regsvr32 /s "$folder\\$name.dll"; done
state after
diff "$work/before.registry" "$work/after.registry" | grep '^[<>]' | grep -vE 'HELPDIR|^> @="C:.*TVN 2x"$' >"$work/difference" &&
    fail "the libraries register more: $(head -20 "$work/difference")"
for name in TVN2x XKIQ2x XKTR2x; do wine regsvr32 /u /s "$folder\\$name.dll"; done
wine "$folder\\tvnhost.exe" unregister >/dev/null

said=repair
rm "$WINEPREFIX/drive_c/Prüf technik/TVN 2x/TVN2x.dll"
installer /i "$package" REINSTALL=ALL REINSTALLMODE=omus
state repaired
same 'is not as new' machine repaired

said=upgrade
echo '[x]' >"$WINEPREFIX/drive_c/Prüf technik/TVN 2x/mine.ini"
installer /i "$newer"
[ -f "$WINEPREFIX/drive_c/Prüf technik/TVN 2x/mine.ini" ] || fail "the user's setup is gone"
rm "$WINEPREFIX/drive_c/Prüf technik/TVN 2x/mine.ini"
state newer
same 'is not where the older version was' machine newer
# A vendor who registers himself over ours has the place, whatever the installer does later.
said='upgrade beside a vendor'
driver='HKLM\Software\Classes\CLSID\{78BE4523-D7A7-4F15-B0C0-964A5FB290E8}\InprocServer32'
wine reg add "$driver" /ve /d 'C:\vendor\driver.dll' /f >/dev/null
installer /i "$newer" REINSTALL=ALL REINSTALLMODE=omus
grep -q vendor <<<"$(wine reg query "$driver" /ve)" || fail "the vendor's driver is replaced"
wine reg add "$driver" /ve /d "$folder\\XKTR2x.dll" /f >/dev/null

said=downgrade
installer /i "$package" && fail 'is not refused'
state kept
same 'has changed something' newer kept

said=uninstall
installer /x "$newer"
state left
same 'leaves something behind' clean left

# Another vendor's driver and another host's library keep their places, and outlive ours.
said='beside others'
classes='HKLM\Software\Classes'
wine reg add "$classes\\CLSID\\{78BE4523-D7A7-4F15-B0C0-964A5FB290E8}\\InprocServer32" /ve /d 'C:\vendor\driver.dll' /f >/dev/null
wine reg add "$classes\\TypeLib\\{CCFB3DDF-7A82-4F26-92C6-0E7D10C02784}\\1.0\\0\\$preset" /ve /d 'C:\vendor\host.exe' /f >/dev/null
state vendor
installer /i "$package"
state beside
grep -q 'driver.dll' "$work/beside.registry" || fail "the vendor's driver is replaced"
grep -q 'host.exe' "$work/beside.registry" || fail "the other host's library is replaced"
grep -q 'XKTR2x.dll' "$work/beside.disk" || fail 'the simulated receiver is missing'
installer /x "$package"
state vendor_after
same 'takes something with it' vendor vendor_after
wine reg delete "$classes\\CLSID\\{78BE4523-D7A7-4F15-B0C0-964A5FB290E8}" /f >/dev/null
wine reg delete "$classes\\TypeLib\\{CCFB3DDF-7A82-4F26-92C6-0E7D10C02784}" /f >/dev/null

said='for the user'
installer /i "$package" ALLUSERS=
state user
diff <(grep HKEY_LOCAL_MACHINE "$work/clean.registry") <(grep HKEY_LOCAL_MACHINE "$work/user.registry") || fail "the machine's part has changed"
grep -q '^./users/.*/Local/Programs/TVN2x/TVN2x.dll' "$work/user.disk" || fail "is not in the user's folder"
installer /x "$package" ALLUSERS=
state user_left
same 'leaves something behind' clean user_left

said='without the simulated receiver'
installer /i "$package" ADDLOCAL=Measurement
state bare
grep -qE 'XK(TR|IQ)2x.dll' "$work/bare.disk" && fail 'it is there'
installer /x "$package"

said='unregistered, from a folder of its own'
mkdir "$work/own"
(cd "$work/own" && unzip -q -o -j ../../package/TVN2x-*-"$bits".zip)
cp "$work/scan.exe" "$work/own"
mv "$work/own/program.exe.manifest" "$work/own/scan.exe.manifest"
(cd "$work/own" && wine scan.exe first-scan.ini first-scan-network.ini) | tr -d '\r' >"$work/own/out" ||
    [ $? -eq 1 ] || fail "the program ended with $?: $(tail -3 "$work/own/out")"
[ "$(tail -1 "$work/own/out")" = '7 of 8 channels synchronised' ] || fail "the program: $(tail -3 "$work/own/out")"

said=signed
openssl req -x509 -newkey rsa:2048 -nodes -keyout "$work/key" -out "$work/certificate" -days 2 -subj /CN=test 2>/dev/null
openssl pkcs12 -export -inkey "$work/key" -in "$work/certificate" -out "$work/both.p12" -passout pass:secret
echo -n secret >"$work/password"
tools/sign "$work/both.p12" "$work/password" >/dev/null
osslsigncode verify -CAfile "$work/certificate" build/package/TVN2x-*-"$bits".msi >"$work/verified" 2>&1 || fail "$(tail -3 "$work/verified")"
(cd build/package && sha256sum --quiet -c SHA256SUMS)
echo 'installed, upgraded and gone without a trace'
