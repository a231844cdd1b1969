#!/usr/bin/env bash
# Checks the Debian packages as a user gets them: builds them, validates the desktop
# entry, the AppStream metadata and the manual pages, installs both packages with
# apt-get, runs the installed program's --version and one unattended sync of the
# shipped demo, removes the packages again and checks that nothing is left behind.
# Needs root (CI runs as root); changes nothing else on the machine.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
[ "$(id -u)" -eq 0 ] || { echo "package-check.sh: needs root to install the packages" >&2; exit 2; }

bash scripts/package.sh >/dev/null
packages=("$root"/build/default/packages/tessarine_*.deb "$root"/build/default/packages/tessarine-phone-emulator_*.deb)

echo "== metadata"
desktop-file-validate dist/org.tessarine.Tessarine.desktop
appstreamcli validate --no-net dist/metainfo/org.tessarine.Tessarine.metainfo.xml
for page in build/default/man/*.1.gz; do
    warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>&1 >/dev/null)
    [ -z "$warnings" ] || { echo "$page: $warnings"; exit 1; }
    echo "$page: formats without warnings"
done

scratch=$(mktemp -d)
emulator=""
cleanup() {
    [ -n "$emulator" ] && kill "$emulator" 2>/dev/null || true
    rm -rf "$scratch"
}
trap cleanup EXIT

# What the file tree holds, less the caches that triggers rebuild.
snapshot() {
    find /usr /etc -xdev -not -name '*.cache' -not -path '/etc/ld.so.cache' 2>/dev/null | sort
}
snapshot >"$scratch/before"

echo "== install"
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${packages[@]}" >"$scratch/apt.log" 2>&1 ||
    { cat "$scratch/apt.log"; exit 1; }
tessarine --version
man -l /usr/share/man/man1/tessarine.1.gz >/dev/null
[ -f /usr/share/bash-completion/completions/tessarine ]
[ -f /usr/lib/systemd/user/tessarine.timer ]

echo "== a sync of the demo from the installed files"
work=$scratch/demo
cp -r /usr/share/tessarine/demo "$work"
export HOME=$scratch/home XDG_CONFIG_HOME=$scratch/home/.config XDG_DATA_HOME=$scratch/home/.local/share
tessarine-phone-emulator --dir "$work/phone" --link "$work/phone.tty" --manufacturer Tessarine \
    --model "Demo phone" --last 200 >"$scratch/emulator.log" 2>&1 &
emulator=$!
for _ in $(seq 50); do [ -e "$work/phone.tty" ] && break; sleep 0.1; done
before=$(find "$work/pim/calendar" -name '*.ics' | wc -l)
tessarine --headless --config="$work/config" --home="$work/home" --pim="$work/pim" --port="$work/phone.tty" BOTH
after=$(find "$work/pim/calendar" -name '*.ics' | wc -l)
echo "store appointments: $before before, $after after"
[ "$after" -gt "$before" ] || { echo "the sync moved nothing into the store"; exit 1; }
if grep -q HomeDir "$work/config/machine.ini"; then echo "the run wrote a HomeDir into the copied settings"; exit 1; fi
kill "$emulator" 2>/dev/null || true
wait "$emulator" 2>/dev/null || true
emulator=""

echo "== remove"
DEBIAN_FRONTEND=noninteractive apt-get purge -y -qq tessarine tessarine-phone-emulator >>"$scratch/apt.log" 2>&1 ||
    { cat "$scratch/apt.log"; exit 1; }
snapshot >"$scratch/after"
if ! diff "$scratch/before" "$scratch/after"; then
    echo "the packages left these behind (>) or took these away (<)"
    exit 1
fi
echo "package check: built, validated, installed, synced the demo, removed without a trace"
