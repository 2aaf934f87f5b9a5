#!/usr/bin/env bash
# Starts the real program in a new account under Xvfb, adds Freedoom's IWADs, makes a patch, ends it, and opens a patch
# with -load in a second run. Compares the log of both runs line by line.
#   start_and_end.sh PROGRAM
set -euo pipefail
program=$1
iwad=/usr/share/games/doom/freedoom2.wad
for tool in xvfb-run xdotool jwm; do
    command -v "$tool" >/dev/null || { echo "skipped: $tool is not installed"; exit 77; }
done
[ -e "$iwad" ] || { echo "skipped: $iwad is not there"; exit 77; }

if [ -z "${INSIDE_XVFB:-}" ]; then
    exec env INSIDE_XVFB=1 QT_QPA_PLATFORM=xcb xvfb-run --auto-servernum \
        --server-args='-screen 0 1280x1024x24 -nolisten tcp' bash "$0" "$program"
fi

folder=$(mktemp --directory --tmpdir plinket3_XXXXXX)
export HOME=$folder XDG_RUNTIME_DIR=$folder/run SDL_AUDIODRIVER=dummy
unset XDG_CONFIG_HOME
mkdir --mode=700 "$XDG_RUNTIME_DIR"
printf '%s\n' '<?xml version="1.0"?>' '<JWM><FocusModel>click</FocusModel></JWM>' >"$folder/jwmrc"
jwm -f "$folder/jwmrc" 2>/dev/null &
manager=$!
trap 'kill "$manager" 2>/dev/null || true; rm --recursive --force "$folder"' EXIT
log=$folder/.config/Plinket3/plinket3.log

fail() {
    echo "FAILED: $*"
    [ ! -e "$log" ] || cat "$log"
    exit 1
}
# answer NAME KEY: waits for a window of that name and presses a key in it.
answer() {
    local window
    for _ in $(seq 200); do # a search can hit a window that is just going, and fail for it
        window=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1) || true
        [ -z "$window" ] || break
        sleep 0.1
    done
    [ -n "$window" ] || fail "no window \"$1\""
    xdotool windowactivate --sync "$window" 2>/dev/null || true
    sleep 0.3
    xdotool key "$2"
}
# wait_for_log TEXT
wait_for_log() {
    for _ in $(seq 100); do
        ! grep --quiet --fixed-strings "$1" "$log" || return 0
        sleep 0.1
    done
    fail "the log never says \"$1\""
}
# compare_log NAME: standard input is what the log must say behind its banner, without the times.
compare_log() {
    tail --lines=+6 "$log" | tr --delete '\r' | sed 's/^\[..:..:..\]  //' >"$folder/got"
    diff - "$folder/got" || fail "the log of the $1 run is another"
}
windows='  Loaded frmEditThings
  Loaded frmEditStates
  Loaded frmEditSounds
  Loaded frmEditStrings
  Loaded frmEditWeapons
  Loaded frmEditAmmo
  Loaded frmEditCheats
  Loaded frmEditMisc
  Loaded frmEditPars
  Loaded frmPropSound
  Loaded frmPropString
  Loaded frmSelectSprite
  Loaded frmSelectState
  Loaded frmSelectAction'
ending='Closed IWAD
Writing configuration file...
Freeing BASS library...
Unloading forms...
Buh-bye...'
session='Loading IWAD...
Registering WAD files...
  Loaded PLAYPAL lump'

echo "First run"
"$program" &
app=$!
answer '^Plinket3$' Return # the beta notice
sleep 0.5
answer '^Plinket3$' Return # the first run
answer '^Options$' Return  # Find IWADs is the next step
answer '^IWADs found$' Return
sleep 0.5
answer '^Options$' alt+g
xdotool key Tab Tab Tab Tab space # from the tabs over the three options to OK
answer '^Welcome to Plinket3$' alt+n
answer '^New file$' Return
wait_for_log 'Loaded PLAYPAL lump'
sleep 0.5
answer '^Plinket3 - ' ctrl+q
wait "$app" || fail "the first run ended with $?"
compare_log first <<END
Setting program defaults...
Loading IWAD detect configuration...
Loading program configuration...
First run, displaying Options dialog.
  Loaded frmOptions
Loading engine configurations...
  Loaded 8 configuration files
Loaing custom fonts...
Loading forms...
  Loaded frmMain
$windows
  Loaded frmAbout
  Loaded frmNewFile
  Loaded frmStartup
Initialising BASS library...
Applying program settings...
Ready.
Loading engine configuration...
  Using 'Boom 2.02 (Doom version 19)' as the current engine
  Using engine version 19
Loading table...
  Loading tables from $(dirname "$program")/tables/boom.tbl...
    Loaded 139 things
    Loaded 968 states
    Loaded 109 sounds
    Loaded 139 sprites
    Loaded 75 code pointers
    Loaded 309 strings
    Loaded 9 weapons
    Loaded 4 ammo entries
    Loaded 17 cheat strings
  Reset patch data
$session
$ending
END

echo "Second run, with -load"
printf '%s\n' 'Patch File for DeHackEd v3.0' 'Doom version = 21' 'Patch format = 6' 'Engine config = ultimate.cfg' \
    'IWAD = freedoom: phase 2' >"$folder/Mine.deh"
cd "$folder" # the option takes no path with a dash in it, which that of a temporary folder may have
"$program" -load Mine.deh &
app=$!
answer '^Plinket3$' Return
answer '^File settings of Mine.deh$' Return
wait_for_log 'Loaded PLAYPAL lump'
sleep 0.5
answer '^Plinket3 - ' ctrl+q
wait "$app" || fail "the second run ended with $?"
grep --quiet --fixed-strings "Mine.deh" "$folder/.config/Plinket3/plinket3.cfg" || fail "the patch is no recent file"
grep --quiet --fixed-strings 'lastConfig = 7;' "$folder/.config/Plinket3/plinket3.cfg" ||
    fail "the recommended engine was not taken"
compare_log second <<END
Setting program defaults...
Loading IWAD detect configuration...
Loading program configuration...
Loading engine configurations...
  Loaded 8 configuration files
Loaing custom fonts...
Loading forms...
  Loaded frmMain
$windows
  Loaded frmOptions
  Loaded frmAbout
  Loaded frmNewFile
  Loaded frmStartup
Initialising BASS library...
Applying program settings...
Ready.
Loading patch file mine.deh...
Loading engine configuration...
  Using 'Ultimate and Final Doom 1.9' as the current engine
  Using engine version 21
Loading table...
  Loading tables from $(dirname "$program")/tables/ultimate.tbl...
    Loaded 137 things
    Loaded 967 states
    Loaded 109 sounds
    Loaded 138 sprites
    Loaded 75 code pointers
    Loaded 1187 strings
    Loaded 9 weapons
    Loaded 4 ammo entries
    Loaded 17 cheat strings
  Reset patch data
$session
$ending
END
echo "Both runs are as they should be"
