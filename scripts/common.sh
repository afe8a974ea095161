# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# What the scripts share. Sourced, not run. Leaves the caller in the project's folder.

set -euo pipefail

callerFolder=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")/.."
projectFolder=$PWD
# Compilers and tests run at once; QUIB_JOBS sets another number than that of the processors.
jobs=${QUIB_JOBS:-$(nproc)}
export callerFolder projectFolder jobs

Say() { printf '%s\n' "$*"; }

Fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Prints the comment that a script opens with, without its licence line.
Usage() { sed -n '2,/^[^#]/{/^# SPDX/d;s/^# \{0,1\}//p}' "$0"; }

# Ends the script after its usage text when that was asked for.
HelpIfAsked() {
    case ${1:-} in
        -h | --help) Usage && exit 0 ;;
    esac
}

# Configure PRESET [CMAKE-ARGUMENT...]
Configure() { cmake --preset "$@"; }

# Build PRESET [TARGET...]: everything when no target is named.
Build() {
    local preset=$1
    shift
    local arguments=(--build --preset "$preset" --parallel "$jobs")
    if (($# > 0)); then arguments+=(--target "$@"); fi
    ForPreset "$preset" cmake "${arguments[@]}"
}

# ForPreset PRESET COMMAND...: runs a command that may start programs of that build. The compiler's
# ThreadSanitizer does not bear the address layout that newer kernels choose at random.
ForPreset() {
    local prefix=()
    if [[ $1 == tsan ]] && setarch -R true 2>/dev/null; then prefix=(setarch -R); fi
    "${prefix[@]}" "${@:2}"
}

# The lines of C++ below some folders that are neither blank nor comment, but for scores, tables and texts.
CodeLines() {
    find "$@" -type f \( -name '*.h' -o -name '*.cpp' \) ! -name '*Scores.*' ! -name '*Table.h' ! -path '*/tables/*' -print0 |
        xargs -0 cat | grep -cvE '^[[:space:]]*(//.*)?$'
}

# The C++ files of the project, each ended by a null byte.
SourceFiles() {
    find src plugins tests fuzz bench -type f \( -name '*.h' -o -name '*.cpp' \) -print0 | sort -z
}
