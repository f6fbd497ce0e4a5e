# Source this file. as_root COMMAND... runs the command as root, with sudo if necessary.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        printf 'cannot run as root, because sudo is not installed: %s\n' "$*" >&2
        return 1
    fi
}
