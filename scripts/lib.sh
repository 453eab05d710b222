# shellcheck shell=bash
# What the project's commands share: where the tree is, how they speak, and the build. To be sourced.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# One language and encoding in all tools' output, whatever the machine is set to.
export LC_ALL=C.UTF-8

# A service account may have no home to write to.
if [[ ! -w ${HOME:-/nonexistent} ]]; then
    mkdir -p "$root/build/home"
    export HOME=$root/build/home
fi

say() { printf '%s\n' "$*"; }

# die STEP REASON: ends the command; the last line says which step failed.
die() {
    printf '%s: FAILED: %s\n' "$1" "$2" >&2
    exit 1
}

# build PRESET [TARGET…]: configures and builds, all targets by default.
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
