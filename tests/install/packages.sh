#!/usr/bin/env bash
# Run by scripts/fresh_packages as root in a bare system: installs the packages in first/, uses them, upgrades them to those
# in next/, uses them again, removes them, and looks for what is left.
set -euo pipefail

export DEBIAN_FRONTEND=noninteractive HOME=/tmp/home
readonly LOG=/tmp/apt.log
NAMES=()
for package in first/*.deb; do
    NAMES+=("$(dpkg-deb --field "$package" Package)")
done

say() { printf '== %s\n' "$*" >&2; }
die() { printf 'packages: %s\n' "$*" >&2; exit 1; }

# expect WHAT EXPECTED ACTUAL
expect() { [ "$2" = "$3" ] || die "$1: expected '$2', got '$3'"; }

apt() { apt-get -y -q "$@" >>"$LOG" 2>&1 || { tail -n 20 "$LOG" >&2; die "apt-get $* failed"; }; }

# 0.18 in sRGB is 0.4614 (IEC 61966-2-1), 117.6 of 255.
use_images() {
    python3 -c 'import numpy, qb_colorio
qb_colorio.write_image("gray.exr", numpy.full((4, 6, 3), 0.18, numpy.float32))'
    colorio convert gray.exr gray.png --from linear --to sRGB -d uint8 >/dev/null
    expect "the converted image" "(4, 6, 3) uint8 118 118" "$(python3 -c 'import qb_colorio
pixels = qb_colorio.read_image("gray.png").pixels
print(pixels.shape, pixels.dtype, pixels.min(), pixels.max())')"
}

use_packages() {
    say "using the packages"
    mkdir -p "$HOME/work"
    (
        cd "$HOME/work"
        colorio --version | grep -q '[0-9]\.[0-9]' || die "colorio --version shows no version"
        colorio list spaces | grep -qF 'Tavelion|sRGB' || die "colorio list spaces does not list sRGB"
        use_images
        # shellcheck disable=SC2046 # several flags
        g++ /project/list_spaces.cpp $(pkg-config --cflags --libs qb_colorio) -o list_spaces
        expect "the color spaces of a C++ program" "sRGB Cineon linear" "$(./list_spaces | tr '\n' ' ' | sed 's/ $//')"
        gzip -cd /usr/share/man/man1/colorio.1.gz | grep -q colorio || die "the man page of colorio is missing"
        [ -s /usr/share/doc/qb-colorio-doc/docs/guide.md ] || die "the user guide is missing"
        bash -c 'source /usr/share/bash-completion/completions/colorio && complete -p colorio' >/dev/null
    )
    rm -rf "$HOME"
}

check_versions() {
    local package
    for package in "$1"/*.deb; do
        expect "the version of $package" "$(dpkg-deb --field "$package" Version)" \
            "$(dpkg-query -W -f '${Version}' "$(dpkg-deb --field "$package" Package)")"
    done
}

check_removed() {
    local file left
    while IFS= read -r file; do
        [ -d "$file" ] || { [ ! -e "$file" ] && [ ! -L "$file" ]; } || die "$file is left"
    done </tmp/installed_files
    left=$(find / \( -path /proc -o -path /sys -o -path /dev -o -path /project \) -prune -o \
        \( -name '*qb_colorio*' -o -name '*qb-colorio*' -o -name 'colorio*' -o -name '_colorio*' -o -name 'libqb_*' \) -print)
    expect "files after the removal" "" "$left"
    expect "packages after the removal" "" "$(dpkg-query -W -f '${Package} ' "${NAMES[@]}" 2>/dev/null || true)"
    ! ldconfig -p | grep -q libqb_ || die "the loader still lists the libraries"
}

expect "number of packages" 5 "${#NAMES[@]}"
say "installing the packages"
apt update
apt install --no-install-recommends g++ pkg-config
apt install --no-install-recommends ./first/*.deb
check_versions first
dpkg -L "${NAMES[@]}" >/tmp/installed_files
use_packages

say "upgrading the packages"
apt install --no-install-recommends ./next/*.deb
check_versions next
use_packages

say "removing the packages"
apt purge "${NAMES[@]}"
check_removed
