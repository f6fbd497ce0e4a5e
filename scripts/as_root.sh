# To be sourced: as_root COMMAND... runs the command as root, through sudo where that is needed.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        printf 'this needs root, and there is no sudo: %s\n' "$*" >&2
        return 1
    fi
}
