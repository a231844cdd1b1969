# bash completion for tessarine                                  -*- shell-script -*-

_tessarine_ports() {
    local dev
    for dev in /dev/ttyUSB* /dev/ttyACM* /dev/rfcomm* /dev/ttyS*; do
        [ -e "$dev" ] && printf '%s\n' "$dev"
    done
}

_tessarine() {
    local cur=${COMP_WORDS[COMP_CWORD]}
    local options="--home= --config= --pim= --port= --dialect= --headless --verbose --undo --help --version"
    local switches="BOTH VCAL VCARD OPTIONS KILL NOORG DEBUG D CALLER= TIMER="
    COMPREPLY=()
    case "$cur" in
    --port=*)
        local ports
        ports=$(_tessarine_ports)
        mapfile -t COMPREPLY < <(compgen -W "$ports" -- "${cur#--port=}")
        ;;
    --dialect=*)
        mapfile -t COMPREPLY < <(compgen -W "automatic reference records irmc" -- "${cur#--dialect=}")
        ;;
    --home=* | --config=* | --pim=*)
        mapfile -t COMPREPLY < <(compgen -d -- "${cur#*=}")
        ;;
    -*)
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
        ;;
    *)
        mapfile -t COMPREPLY < <(compgen -W "$switches" -- "${cur^^}")
        ;;
    esac
    # An option that takes a value goes on without a blank after its "=".
    if [ ${#COMPREPLY[@]} -eq 1 ] && [[ ${COMPREPLY[0]} == *= ]]; then
        compopt -o nospace 2>/dev/null
    fi
}
complete -F _tessarine tessarine
