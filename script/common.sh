# What the scripts share: where the repository is, how to report, how to build one preset.
# Sourced by the scripts of this folder.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

if [ -t 1 ] && [ -z "${NO_COLOR:-}" ]; then
    bold=$'\e[1m' plain=$'\e[0m'
else
    bold='' plain=''
fi

# A heading for each step, so that long work shows where it is.
step() { printf '%s==> %s%s\n' "$bold" "$*" "$plain"; }

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# build PRESET [cmake argument...]: configures and builds; the compiler's output shows only when it
# fails or the build is watched on a terminal.
build() {
    local preset=$1
    shift
    step "build: $preset"
    cmake --preset "$preset" "$@" >"$root/build/$preset.configure.log" 2>&1 ||
        { cat "$root/build/$preset.configure.log" >&2; fail "configuring '$preset' failed"; }
    cmake --build --preset "$preset" || fail "building '$preset' failed"
}
mkdir -p "$root/build"
