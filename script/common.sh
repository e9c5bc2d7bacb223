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

# Steps of a build on a terminal, or each fiftieth of them in a log; all that a compiler says.
progress() {
    if [ -t 1 ]; then
        cat
    else
        awk '/^\[[0-9]+\/[0-9]+\] / { if (++steps % 50 == 0) { print; fflush() }; next } { print; fflush() }'
    fi
}

# build PRESET [target...]: configures and builds, all unless told what; what configuring says shows
# only when it fails.
build() {
    local preset=$1
    shift
    step "build: $preset"
    cmake --preset "$preset" >"$root/build/$preset.configure.log" 2>&1 ||
        { cat "$root/build/$preset.configure.log" >&2; fail "configuring '$preset' failed"; }
    cmake --build --preset "$preset" ${1:+--target "$@"} | progress || fail "building '$preset' failed"
}
mkdir -p "$root/build"
