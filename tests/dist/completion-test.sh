#!/usr/bin/env bash
# The bash completion offers the options for a partial option, the switches for a
# partial switch, the dialects after --dialect= and the serial devices after --port=.
set -u
source "$1"
failures=0
complete_line() {
    COMP_WORDS=(tessarine "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _tessarine
    printf '%s\n' "${COMPREPLY[@]}"
}
expect() {
    local want=$1
    shift
    local got
    got=$(complete_line "$@" | tr '\n' ' ')
    if [ "$got" != "$want" ]; then
        echo "completing '$*': got '$got', want '$want'"
        failures=$((failures + 1))
    fi
}
expect "--headless --help " --he
expect "--verbose --version " --ve
expect "--dialect= " --di
expect "reference records " --dialect=re
expect "VCAL VCARD " vc
expect "BOTH " --headless bo
got=$(complete_line --port=/dev/)
for dev in $got; do
    [ -e "$dev" ] || { echo "offered a device that does not exist: $dev"; failures=$((failures + 1)); }
done
[ $failures -eq 0 ] && echo "completion: all cases" || exit 1
