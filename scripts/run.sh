#!/usr/bin/env bash
# Installs what is missing, builds, and runs the program's main job.
#
# Without --port= it syncs the demo: the phone emulator serves a copy of
# demo/phone on a pseudo-terminal, a copy of demo/pim is the PIM store, and one
# AutoSync of both lists runs headless; then both sides are shown.
#   scripts/run.sh                       the demo, headless
#   scripts/run.sh --gui                 the main window on the demo (needs a display)
#   scripts/run.sh --port=/dev/ttyUSB0   a real phone and your own store and settings
# Any other argument goes to tessarine (e.g. VCAL, VCARD, --verbose).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" --target tessarine phone-emulator

program=build/default/src/app/tessarine
gui=0
port=""
args=()
for arg in "$@"; do
    case "$arg" in
    --gui) gui=1 ;;
    --port=*) port="${arg#--port=}"; args+=("$arg") ;;
    *) args+=("$arg") ;;
    esac
done
# One AutoSync of both lists unless the arguments name another switch.
case " ${args[*]^^} " in
*" BOTH "* | *" VCAL "* | *" VCARD "* | *" OPTIONS "*) ;;
*) [ "$gui" = 1 ] || args+=(BOTH) ;;
esac

if [ -n "$port" ]; then
    if [ "$gui" = 1 ]; then exec "$program" "${args[@]}"; fi
    exec "$program" --headless "${args[@]}"
fi

# The demo: fresh copies of both sides, so every run starts from the same state.
work="$PWD/build/demo"
rm -rf "$work"
mkdir -p "$work"
cp -r demo/phone demo/pim demo/config "$work/"
emulator_log="$work/emulator.log"
build/default/tools/phone-emulator/phone-emulator --dir "$work/phone" --link "$work/phone.tty" \
    --manufacturer Tessarine --model "Demo phone" --last 200 >"$emulator_log" 2>&1 &
emulator=$!
trap 'kill $emulator 2>/dev/null || true' EXIT
for _ in $(seq 50); do
    [ -e "$work/phone.tty" ] && break
    sleep 0.1
done
[ -e "$work/phone.tty" ] || { echo "run.sh: the phone emulator did not start:" >&2; cat "$emulator_log" >&2; exit 1; }

count() { find "$1" -maxdepth 1 -name "*.$2" | wc -l; }
sides() {
    printf '  phone: %2d calendar entries, %2d contacts   (%s)\n' \
        "$(count "$work/phone/cal" vcs)" "$(count "$work/phone/pb" vcf)" "$work/phone"
    printf '  store: %2d appointments,     %2d contacts   (%s)\n' \
        "$(count "$work/pim/calendar" ics)" "$(count "$work/pim/contacts" vcf)" "$work/pim"
}
if [ "$gui" = 1 ]; then echo "The demo's two sides (the window reads the phone when it starts):"; else echo "Before the sync:"; fi
sides
echo

common=("--config=$work/config" "--home=$work/home" "--pim=$work/pim" "--port=$work/phone.tty")
status=0
if [ "$gui" = 1 ]; then
    "$program" "${common[@]}" "${args[@]}" || status=$?
else
    "$program" --headless "${common[@]}" "${args[@]}" || status=$?
fi

echo
if [ "$gui" = 1 ]; then echo "After the window closed:"; else echo "After the sync:"; fi
sides
echo "The log of the run: $work/home/logFile.rtf"
exit "$status"
