#!/bin/sh
# Stands in for a port: notes beside itself what it is started with, then does what the argument behind -do says.
notes=$(dirname "$0")
for word; do printf '[%s]' "$word"; done > "$notes/arguments.new"
pwd > "$notes/folder"
patch=
log=
do=
while [ $# -gt 0 ]; do
    case "$1" in
    -deh) patch=$2; cp "$2" "$notes/patch" ;;
    -dehout) log=$2 ;;
    -do) do=$2 ;;
    *testmap.wad) cp "$1" "$notes/map" ;;
    */plinket3-run-*/data.wad) cp "$1" "$notes/wad" ;;
    esac
    shift
done
mv "$notes/arguments.new" "$notes/arguments"
case "$do" in
warn) echo "$patch:6: warning: a strange number"; exec sleep 30 ;;
fail) echo 'W_GetNumForName: NOSUCH not found!' >&2; echo >&2; exit 3 ;;
crash) kill -SEGV $$ ;;
flood) head -c 20000000 /dev/zero | tr '\0' 'x' ;;
longlog) { echo "$patch:6: warning: a strange number"; head -c 20000000 /dev/zero | tr '\0' 'x'; } > "$log" ;;
stay) sleep 1; echo 'still here'; echo yes > "$notes/stayed" ;;
esac
