#!/usr/bin/env bash
# Has the desktop's own programs judge the files of packaging/, and asks one of them what type a patch is.
#   files.sh PROJECT FOLDER-OF-MADE-FILES
set -euo pipefail
project=$1
made=$2
for tool in appstreamcli desktop-file-validate update-mime-database gio man; do
    command -v "$tool" >/dev/null || { echo "skipped: $tool is not installed"; exit 77; }
done
folder=$(mktemp --directory --tmpdir plinket3_XXXXXX)
trap 'rm --recursive --force "$folder"' EXIT
failed=0
fail() {
    echo "FAILED: $*"
    failed=1
}
# silent COMMAND...: whatever it prints is a fault, as some of them end with 0 after a warning.
silent() {
    local printed
    printed=$("$@" 2>&1) || fail "$* ended with $?"
    [ -z "$printed" ] || fail "$*: $printed"
}

desktop=$project/packaging/plinket3.desktop
silent desktop-file-validate "$desktop"
name=$(sed -n 's/.*setDesktopFileName(QStringLiteral("\(.*\)")).*/\1/p' "$project/ui/main.cpp")
[ -e "$project/packaging/$name.desktop" ] || fail "ui/main.cpp names \"$name.desktop\""

metainfo=$made/plinket3.metainfo.xml
printed=$(appstreamcli validate --no-net --no-color "$metainfo" 2>&1) || fail "$metainfo: $printed"

set_page() {
    LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings --encoding=UTF-8 --local-file -Tutf8 --ditroff "$1" \
        >"$folder/page"
    [ -s "$folder/page" ]
}
silent set_page "$made/plinket3.1"
silent set_page "$made/plinket3-cli.1"

# Without what is installed, which may be an older package of ours.
export XDG_DATA_DIRS=$folder XDG_DATA_HOME=$folder/none
mkdir --parents "$folder/mime/packages"
cp /usr/share/mime/packages/freedesktop.org.xml "$folder/mime/packages"
cp "$project/packaging/plinket3.mime.xml" "$folder/mime/packages/plinket3.xml"
silent update-mime-database "$folder/mime"
type=$(sed -n 's/^MimeType=\(.*\);$/\1/p' "$desktop")
grep --quiet --fixed-strings "<mediatype>$type</mediatype>" "$metainfo" || fail "$metainfo does not name $type"
while IFS='|' read -r file content expected; do
    printf %b "$content" >"$folder/$file"
    got=$(gio info --attributes standard::content-type "$folder/$file" | sed -n 's/.*standard::content-type: //p')
    [ "$got" = "$expected" ] || fail "$file is taken for \"$got\", not for \"$expected\""
done <<END
by_name.deh|Doom version = 19\n|$type
by_name.bex|[STRINGS]\n|$type
BY_NAME.DEH|Thing 1\n|$type
by_header|Patch File for DeHackEd v3.0\r\n|$type
by_header.txt|Patch File for DeHackEd v3.0\r\n|text/plain
not_at_its_start|A Patch File for DeHackEd v3.0\n|text/plain
END
exit "$failed"
