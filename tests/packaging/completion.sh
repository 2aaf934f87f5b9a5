#!/usr/bin/env bash
# What bash offers behind lines that are being typed.
#   completion.sh COMPLETION-FILE PROGRAM-FOLDER
set -eo pipefail # no -u: the library does without
library=/usr/share/bash-completion/bash_completion
[ -e "$library" ] || { echo "skipped: bash-completion is not installed"; exit 77; }
completion=$(readlink --canonicalize-existing -- "$1")
programs=$(readlink --canonicalize-existing -- "$2")
PATH=$programs:$PATH
folder=$(mktemp --directory --tmpdir plinket3_XXXXXX)
trap 'rm --recursive --force "$folder"' EXIT
cd "$folder"
mkdir --parents one/config sub
cp "$programs/config/mbf19.cfg" one/config/convert.cfg # a name that is a command's, too
touch a.deh b.BEX c.wad d.cfg e.tbl f.txt g.ppm
# shellcheck source=/dev/null
source "$library"
# shellcheck source=/dev/null
source "$completion"

# offered LINE: what completes its last word, sorted, in one line.
offered() {
    local COMP_LINE=$1 COMP_POINT=${#1} COMP_TYPE=9 COMP_KEY=9 COMP_WORDS COMP_CWORD COMPREPLY=()
    read -r -a COMP_WORDS <<<"${1//=/ = }" # bash parts words at "=", too
    [[ $1 != *[\ =] ]] || COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _plinket3_cli "${COMP_WORDS[0]}" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
    printf '%s\n' "${COMPREPLY[@]}" | sort --unique | paste --serial --delimiters=' '
}

failed=0
checked=0
while IFS='|' read -r line expected; do
    got=$(offered "plinket3-cli $line")
    checked=$((checked + 1))
    if [ "$got" != "$expected" ]; then
        echo "behind \"$line\": offers \"$got\", should be \"$expected\""
        failed=1
    fi
done <<'END'
co|config convert copy
--|--data --help --rules --version
--rules e|engine
--data one p|paste picture
--data |one sub
convert -e mbf|mbf19 mbf203 mbf21
convert --to i|id24
convert --to=ds|dsdhacked
--data one diff -e |convert
--data=one diff -e |convert
--data convert diff --i|
check -|--data --data-wad --help --iwad --lump --rules --version -e
convert -e doom19 --i|--iwad
convert -e doom19 --t|--to
convert --iwad |c.wad one sub
convert --data-wad=|c.wad one sub
convert -e doom19 a.deh |a.deh b.BEX c.wad one sub
convert --lump |
merge --base |a.deh b.BEX c.wad one sub
diff |a.deh b.BEX c.wad one sub
table -e doom19 |a.deh b.BEX c.wad e.tbl one sub
config |d.cfg one sub
wad |c.wad one sub
wad --sprite |
picture STF |c.wad g.ppm one sub
engines |
uses s|sound sprite state string sub
free state 12 o|one
END
echo "$checked lines"
exit "$failed"
