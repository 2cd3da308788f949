# shellcheck shell=bash
# What the scripts share. To be sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
logs=$root/build/logs
mkdir -p "$logs"

say() {
    printf '\n== %s\n' "$*"
}

# logged NAME COMMAND...: runs it with all output in build/logs/NAME.log; on failure prints the end of the log.
logged() {
    local log=$logs/$1.log code=0
    shift
    "$@" >"$log" 2>&1 || code=$?
    if ((code != 0)); then
        echo "failed: $*" >&2
        echo "---- the end of ${log#"$root"/}" >&2
        tail -n 40 "$log" >&2
    fi
    return "$code"
}

# The compiler cache is optional: without it, building again is slower.
launcher_options() {
    if command -v ccache >/dev/null; then
        echo -DCMAKE_CXX_COMPILER_LAUNCHER=ccache
    fi
}

# configure PRESET [OPTION...]
configure() {
    local preset=$1
    shift
    # shellcheck disable=SC2046  # no option, or one without blanks
    (cd "$root" && logged "configure-$preset" cmake --preset "$preset" $(launcher_options) "$@")
}

# build PRESET [OPTION...]
build() {
    local preset=$1
    shift
    logged "build-$preset" cmake --build "$root/build/$preset" "$@"
}
