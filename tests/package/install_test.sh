#!/usr/bin/env bash
# The packages as a person gets them: made twice, unpacked, installed, started, upgraded and removed. Runs on
# the desktop that scripts/with-desktop gives it, after scripts/package.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
[ -n "${QUON_DESKTOP:-}" ] || { echo "Run it with scripts/with-desktop." >&2; exit 2; }

packages=$PWD/build/package
setup=$packages/QuonSetup.exe
installed=$(wine cmd /c 'echo %LOCALAPPDATA%' 2>/dev/null | tr -d '\r')'\Programs\Quon'
folder=$(winepath -u "$installed" 2>/dev/null)
menu=$(winepath -u "$(wine cmd /c 'echo %APPDATA%' 2>/dev/null | tr -d '\r')" 2>/dev/null)
link="$menu/Microsoft/Windows/Start Menu/Programs/Quon.lnk"
uninstall='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Quon'
run='HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\Run'

version=$(sed -nE 's/^project\(Quon VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
failed=0
# expect TEXT COMMAND...: the command succeeds.
expect() {
    local text=$1
    shift
    if "$@"; then echo "ok: $text"; else echo "FAILED: $text" >&2; failed=1; fi
}
absent() { [ ! -e "$1" ]; }
# Where Wine for 32 bits is there too, "reg" is of that kind and would see another part of the registry.
value() { wine reg query "$1" /v "$2" /reg:64 2>/dev/null | tr -d '\r' | sed -nE "s/^ +$2 +REG_[A-Z]+ +//p"; }
has_value() { [ "$(value "$1" "$2")" = "$3" ]; }
no_key() { ! wine reg query "$1" >/dev/null 2>&1; }
panels() { [ "$(xwininfo -root -tree | grep -c '"Quon": ("quon.exe"')" = "$1" ]; }
# until_true COMMAND...: waits until it succeeds, at most a minute.
until_true() {
    local deadline=$((SECONDS + 60))
    until "$@"; do
        ((SECONDS < deadline)) || return 1
        sleep 0.1
    done
}
install() { wine "$setup" /S; }
# windows NAME: what Wine is from now on, by its own name for it.
windows() { wine reg add 'HKCU\Software\Wine' /v Version /d "${1#default}" /f >/dev/null; }
refuses() { ! install; }
# The uninstaller goes on from a copy of itself; its own file goes last but for the folder.
remove() { wine "$folder/Uninstall/Uninstall.exe" /S "$@" && until_true no_key "$uninstall"; }

# A former try on this desktop may have left them.
rm -rf "$QUON_DESKTOP/first" "$QUON_DESKTOP/unpacked"
cp -R "$packages" "$QUON_DESKTOP/first"
scripts/package >/dev/null
expect "the packages are the same when they are made again" diff -r "$QUON_DESKTOP/first" "$packages"

zip=$(echo "$packages"/Quon-*.zip)
expect "the zip holds what is needed" [ "$(unzip -Z1 "$zip" | sort | paste -sd' ')" = \
    "Fresh.ini License.txt Manual.chm Quon.exe Quon.ini ReadMe.txt ThirdParty.txt" ]
mkdir "$QUON_DESKTOP/unpacked"
(cd "$QUON_DESKTOP/unpacked" && unzip -q "$zip")
expect "a fresh Quon.ini is the shipped one" cmp -s "$QUON_DESKTOP/unpacked/Fresh.ini" packaging/Quon.ini
# The eighth field of "Main". The left edge is the one that neither the taskbar nor close buttons lie on.
expect "the panel hides at the left edge" [ "$(sed -n 's/^Main=//p' packaging/Quon.ini | cut -d, -f8)" = 1 ]
expect "the notices of the runtimes are in it" grep -q 'winpthreads' "$QUON_DESKTOP/unpacked/ThirdParty.txt"
expect "its text names its version and systems" \
    grep -q "^Quon $version, .*Windows 10 version 1903 and later" "$QUON_DESKTOP/unpacked/ReadMe.txt"

windows win81
expect "does not install on a Windows that is too old" refuses
expect "and leaves nothing there" absent "$folder"
windows win10

install
for file in Quon.exe Quon.ini Fresh.ini Manual.chm License.txt ReadMe.txt ThirdParty.txt; do
    expect "installs $file" cmp -s "$folder/$file" "$QUON_DESKTOP/unpacked/$file"
done
expect "makes an entry in the Start menu" [ -s "$link" ]
expect "tells Windows where it is" has_value "$uninstall" InstallLocation "$installed"
expect "tells Windows its version" has_value "$uninstall" DisplayVersion "$version"
expect "tells Windows how to remove it" has_value "$uninstall" UninstallString "\"$installed\\Uninstall\\Uninstall.exe\""
expect "puts no other program beside Quon, for its menu to offer" [ "$(ls "$folder" | grep -i '\.exe$')" = Quon.exe ]

(cd "$folder" && exec setsid wine Quon.exe </dev/null >/dev/null 2>&1) &
expect "starts" until_true panels 1
# Started later, its window is found first.
(cd "$QUON_DESKTOP/unpacked" && exec setsid wine Quon.exe </dev/null >/dev/null 2>&1) &
second=$!
# No test after this one may find it on the screen.
trap 'kill "$second" 2>/dev/null || true; windows default' EXIT
expect "starts from another folder as well" until_true panels 2

printf '[Cuts]\r\nMine=C:\\windows\r\n' >>"$folder/Quon.ini"
echo old >"$folder/ReadMe.txt"
# Earlier versions put it there.
echo old >"$folder/Uninstall.exe"
expect "upgrades a running Quon" install
expect "ends it first, and only it" panels 1
expect "which saves its settings" grep -q '^popdelay=500' "$folder/Quon.ini"
expect "puts the new files in place" cmp -s "$folder/ReadMe.txt" "$QUON_DESKTOP/unpacked/ReadMe.txt"
kill "$second"
expect "leaves the other alone until then" until_true panels 0
expect "takes away the uninstaller that lay beside it" absent "$folder/Uninstall.exe"
expect "keeps what the user stored" grep -q '^Mine=C:\\windows' "$folder/Quon.ini"

wine reg add "$run" /v Quon /d "$installed\\Quon.exe" /f /reg:64 >/dev/null
expect "is removed" remove
expect "with its entry in the Start menu" absent "$link"
expect "with the entry that starts it" has_value "$run" Quon ''
expect "with its files" until_true absent "$folder/Uninstall"
expect "but for what the user stored" [ "$(ls "$folder")" = Quon.ini ]

install
expect "finds what the user stored before" grep -q '^Mine=' "$folder/Quon.ini"
wine reg add "$run" /v Quon /d 'D:\Other\Quon.exe' /f /reg:64 >/dev/null
expect "is removed with all of it" remove /INI
expect "so that no folder is left" until_true absent "$folder"
expect "but another Quon still starts with Windows" has_value "$run" Quon 'D:\Other\Quon.exe'
wine reg delete "$run" /v Quon /f /reg:64 >/dev/null

other='C:\Tools\Quon'
wine "$setup" /S "/D=$other"
expect "installs where it is told to" [ -e "$(winepath -u "$other" 2>/dev/null)/Quon.exe" ]
exit $failed
