#!/usr/bin/env bash
# Installs a Debian package of ours in a Debian 12 that holds nothing else, uses what is in it, removes it and looks
# whether anything stays behind. Needs root, debootstrap and Debian's mirror.
#   install.sh PACKAGE BASE         BASE: the folder of a bare Debian 12, which is made when it is not there. It is copied.
set -euo pipefail
package=$(readlink --canonicalize-existing -- "$1")
base=$(readlink --canonicalize-missing -- "$2")
exec </dev/null
cd -- "$(dirname -- "$(readlink --canonicalize -- "${BASH_SOURCE[0]}")")"
if [ -z "${OWN_NAMESPACE:-}" ]; then # in which mounts and processes end with this script
    exec env OWN_NAMESPACE=1 unshare --mount --pid --fork --kill-child bash install.sh "$package" "$base"
fi

fail() {
    echo "FAILED: $*" >&2
    exit 1
}
# expect PATTERN COMMAND...: the command succeeds and prints the pattern, which is not empty.
expect() {
    local pattern=$1 printed
    shift
    printed=$("$@" 2>&1) || fail "$* ended with $?: $printed"
    grep --quiet --extended-regexp -- "$pattern" <<<"$printed" || fail "$* should print \"$pattern\", but prints: $printed"
}

if [ ! -e "$base/bin/bash" ]; then
    echo "== A bare Debian 12"
    eval "$(apt-config shell http_proxy Acquire::http::Proxy)"
    # shellcheck disable=SC2016 # apt-get puts the value in
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' 'Component: main' 'Created-By: Packages' |
        head -1)
    http_proxy=${http_proxy:-} debootstrap --variant=minbase bookworm "$base.part" "$mirror" >"$base.log" ||
        fail "see $base.log"
    mv "$base.part" "$base"
fi
root=$(mktemp --directory --tmpdir plinket3_XXXXXX)
trap 'umount "$root/proc" 2>/dev/null || true; rm --recursive --force --one-file-system "$root"' EXIT
cp --archive "$base/." "$root"
mount -t proc proc "$root/proc"
cp /etc/resolv.conf "$root/etc/resolv.conf"
apt-config dump | grep -i '^Acquire::.*proxy' >"$root/etc/apt/apt.conf.d/proxy" || true
printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # no service is to start
chmod +x "$root/usr/sbin/policy-rc.d"
cp "$package" ../system/{start_and_end,driven}.py "$root/tmp"

# inside COMMAND...: in that Debian, as a new account would.
inside() {
    env --ignore-environment PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        chroot "$root" "$@"
}
# get PACKAGE...
get() {
    inside apt-get install --quiet --yes --no-install-recommends "$@" >"$root/tmp/apt.log" 2>&1 ||
        { cat "$root/tmp/apt.log"; fail "could not install $*"; }
}

# traces: what is there of the package, by the names of files and by what stands in them.
traces() {
    cd "$root"
    find . -xdev -path ./tmp -prune -o -iname '*plinket3*' -print
    grep --recursive --files-with-matches --extended-regexp 'plinket3|x-dehacked' etc usr var/lib || true
}

echo "== Installing $(basename "$package")"
inside apt-get update --quiet >/dev/null
get "/tmp/$(basename "$package")"
[ -z "$(inside dpkg --verify plinket3)" ] || fail "what is installed is not what was packed"
inside dpkg --listfiles plinket3 >"$root/tmp/files"

echo "== The command line"
cd "$root/tmp"
printf '%s\n' 'Patch File for DeHackEd v3.0' 'Doom version = 21' 'Patch format = 6' 'Thing 1 (Player)' 'Hit points = 101' \
    >patch.deh
cp patch.deh patch.bex
expect '^ultimate.cfg	' inside plinket3-cli engines
expect '^Plinket3 ' inside plinket3 --version
inside plinket3-cli convert -e ultimate /tmp/patch.deh /tmp/out.deh
grep --quiet '^Hit points = 101' out.deh || fail "the converted patch has lost its line"

echo "== The window, without a window system"
mkdir --mode=700 runtime
inside env QT_QPA_PLATFORM=offscreen SDL_AUDIODRIVER=dummy XDG_RUNTIME_DIR=/tmp/runtime plinket3 /tmp/patch.deh \
    >window.log 2>&1 &
window=$!
log=$root/root/.config/Plinket3/plinket3.log
for _ in $(seq 100); do
    [ ! -s "$log" ] || break
    sleep 0.1
done
grep --quiet 'Plinket3 version' "$log" || { cat window.log; fail "the window program wrote no log"; }
sleep 2
kill "$window" 2>/dev/null || { cat window.log; fail "the window program ended by itself"; }
wait "$window" || true
# The platform's own habit, and the notice at each start.
! grep --invert-match --regexp='This plugin does not support propagateSizeHints()' \
    --regexp='This is a beta release' window.log || fail "the window program complains"

echo "== The desktop"
get libglib2.0-bin desktop-file-utils
expect 'standard::content-type: text/x-dehacked' inside gio info --attributes standard::content-type /tmp/patch.deh
expect 'standard::content-type: text/x-dehacked' inside gio info --attributes standard::content-type /tmp/patch.bex
expect 'plinket3\.desktop' inside gio mime text/x-dehacked

echo "== The window under an X server: the editor's own first two runs"
get python3 xvfb xdotool jwm freedoom
expect 'Both runs are as they should be' inside python3 /tmp/start_and_end.py /usr/lib/plinket3/plinket3

echo "== Removing it"
grep --quiet mime/mime.cache <<<"$(traces)" || fail "the search for what stays behind does not find what is there"
inside apt-get purge --quiet --yes plinket3 >"$root/tmp/apt.log" 2>&1 || { cat "$root/tmp/apt.log"; fail "cannot be removed"; }
rm --recursive "$root/root/.config" # the settings are the user's own
while read -r file; do
    if [ -e "$root$file" ] || [ -L "$root$file" ]; then
        inside dpkg --search "$file" >/dev/null 2>&1 || fail "$file stays behind"
    fi
done <files
[ -z "$(traces)" ] || fail "stay behind: $(traces)"
expect 'standard::content-type: text/plain' inside gio info --attributes standard::content-type /tmp/patch.deh
echo "Installed, used and removed"
