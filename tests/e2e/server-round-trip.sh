#!/usr/bin/env bash
# The store after an unattended run is one the user's own tools can carry: the
# demo is synced into a vdir store, vdirsyncer takes that store to a Radicale
# server on 127.0.0.1 and from there into a second, empty vdir, and khal lists
# the same appointments on the same days in both.
#   server-round-trip.sh TESSARINE PHONE_EMULATOR SOURCE_DIR
set -euo pipefail
program=$1
emulator=$2
source=$3

work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT

cp -r "$source/demo/phone" "$source/demo/pim" "$source/demo/config" "$work/"
"$emulator" --dir "$work/phone" --link "$work/phone.tty" --last 200 --baud 0 >"$work/emulator.log" 2>&1 &
pids+=($!)
for _ in $(seq 50); do [ -e "$work/phone.tty" ] && break; sleep 0.1; done

XDG_RUNTIME_DIR="$work" "$program" --headless --config="$work/config" --home="$work/home" --pim="$work/pim" \
    --port="$work/phone.tty" VCAL >"$work/run.log" 2>&1 || { cat "$work/run.log"; exit 1; }

# A free port on the loopback, then the server on it with no authentication.
port=$(/usr/bin/python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])')
mkdir -p "$work/radicale"
cat >"$work/radicale.conf" <<EOF
[server]
hosts = 127.0.0.1:$port
[auth]
type = none
[storage]
filesystem_folder = $work/radicale
[logging]
level = warning
EOF
radicale --config "$work/radicale.conf" >"$work/radicale.log" 2>&1 &
pids+=($!)
for _ in $(seq 100); do
    (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null && break
    sleep 0.1
done

mkdir -p "$work/second" "$work/vdirsyncer"
cat >"$work/vdirsyncer.conf" <<EOF
[general]
status_path = "$work/vdirsyncer/status"

[pair up]
a = "store"
b = "server"
collections = ["calendar"]

[pair down]
a = "second"
b = "server"
collections = ["calendar"]

[storage store]
type = "filesystem"
path = "$work/pim"
fileext = ".ics"

[storage second]
type = "filesystem"
path = "$work/second"
fileext = ".ics"

[storage server]
type = "caldav"
url = "http://127.0.0.1:$port/tester/"
username = "tester"
password = "unused"
EOF
export VDIRSYNCER_CONFIG="$work/vdirsyncer.conf"
printf 'y\ny\ny\n' | vdirsyncer discover up >"$work/sync.log" 2>&1 || { cat "$work/sync.log"; exit 1; }
vdirsyncer sync up >>"$work/sync.log" 2>&1 || { cat "$work/sync.log"; exit 1; }
printf 'y\ny\ny\n' | vdirsyncer discover down >>"$work/sync.log" 2>&1 || { cat "$work/sync.log"; exit 1; }
vdirsyncer sync down >>"$work/sync.log" 2>&1 || { cat "$work/sync.log"; exit 1; }

listing() {
    cat >"$work/khal-$1.conf" <<EOF
[calendars]
[[c]]
path = $2
[locale]
timeformat = %H:%M
dateformat = %Y-%m-%d
longdateformat = %Y-%m-%d
datetimeformat = %Y-%m-%d %H:%M
longdatetimeformat = %Y-%m-%d %H:%M
local_timezone = UTC
default_timezone = UTC
EOF
    khal -c "$work/khal-$1.conf" list --format '{start} {title}' --day-format '' 2027-01-01 90d | sed '/^$/d'
}
listing first "$work/pim/calendar" >"$work/first.txt"
listing second "$work/second/calendar" >"$work/second.txt"

written=$(grep -c . "$work/first.txt")
if [ "$written" -lt 20 ]; then
    echo "the synced store lists only $written appointments"; cat "$work/first.txt"; exit 1
fi
# Entries the run brought from the phone stand in both listings.
for title in "Budget review" "Concert: Brahms Requiem" "Choir"; do
    grep -q "$title" "$work/second.txt" || { echo "missing after the round trip: $title"; exit 1; }
done
if ! diff "$work/first.txt" "$work/second.txt"; then
    echo "the round trip changed the listing"; exit 1
fi
echo "round trip: $written occurrences listed alike in both stores"
