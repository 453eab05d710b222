# SPDX-License-Identifier: LicenseRef-Proprietary
# shellcheck shell=bash
# What the project's commands share. To be sourced.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# One language and encoding in the output of all tools, regardless of the machine's locale.
export LC_ALL=C.UTF-8

# A service account may have no writable home.
if [[ ! -w ${HOME:-/nonexistent} ]]; then
    mkdir -p "$root/build/home"
    export HOME=$root/build/home
fi

say() { printf '%s\n' "$*"; }

# die STEP REASON: exits with 1; the last line names the step that failed.
die() {
    printf '%s: FAILED: %s\n' "$1" "$2" >&2
    exit 1
}

as_root() { if [[ $(id -u) -eq 0 ]]; then "$@"; else sudo "$@"; fi; }

# The mirror of Debian to make further systems from: ASU_DEBIAN_MIRROR, or the first one that apt uses.
debian_mirror() {
    # shellcheck disable=SC2016 # expanded by apt-get
    say "${ASU_DEBIAN_MIRROR:-$(apt-get indextargets --format '$(REPO_URI)' \
        'Created-By: Packages' 'Label: Debian' | head -n 1)}"
}

# build PRESET [TARGET…]: configures and builds; all targets by default.
build() {
    local preset=$1
    shift
    local targets=("${@:-all}")
    say "== configure ($preset)"
    (cd "$root" && cmake --preset "$preset") || die configure "see the messages of cmake above"
    say "== build ($preset)"
    (cd "$root" && cmake --build --preset "$preset" -j "$(nproc)" --target "${targets[@]}") ||
        die build "see the messages of the compiler above"
}

# make_bundles TREE FOLDER BYTES TARGET: makes images of version 1.3.1 with the programs of a build tree,
# FOLDER/aquen.bin and, a byte longer, FOLDER/solvar.bin, and bundles of them in TARGET. They are no real
# firmware and must not come near a program that could find a real unit.
make_bundles() {
    local tree=$1 folder=$2 size=$3 target=$4 kind
    for kind in aquen solvar; do
        "$tree/simulator/virtualbus/virtualbus" --make-image "1.3.1:$((size++)):$folder/$kind.bin" ||
            die "make a firmware image" "see the messages above"
        "$tree/tools/tarnware/tarnware" pack --version 10301 "$folder/$kind.bin" \
            "$target/$kind-v1.3.1.tarnware" || die "make a firmware bundle" "see the messages above"
    done
}

# install_updater TREE FOLDER BYTES: installs the updater of a build tree into FOLDER/updater, with
# bundles of make_bundles in it.
install_updater() {
    local tree=$1 folder=$2
    rm -rf "$folder/updater"
    cmake --install "$tree" --prefix "$folder/updater" >"$folder/install.txt" ||
        die "install the updater" "see $folder/install.txt"
    make_bundles "$tree" "$folder" "$3" "$folder/updater/lib/aquen-solvar-updater/Resources/Firmwares"
}

# holds_image REPORT IMAGE: whether the washing unit in a report of the virtual bus runs the image.
holds_image() {
    local unit sent
    unit=$(grep '^unit=aquen ' "$1")
    sent=$(sha256sum <"$2")
    say "Image sent: SHA-256 ${sent%% *}, version 1.3.1"
    say "The unit:   $unit"
    [[ " $unit " == *" sha256=${sent%% *} "* && $unit == *" mode=application firmware=1.3.1 "* ]]
}
