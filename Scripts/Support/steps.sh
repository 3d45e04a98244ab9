# shellcheck shell=bash
# What the scripts share; sourced, never run. The sourcing script has set -euo pipefail.

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# Says what comes next, so that whoever watches knows what a wait is for.
step() {
  printf '==> %s\n' "$*"
}

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# Prints what the head of the script says of it.
print_help() {
  sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0"
}

# help_if_asked ARGUMENT…: where the first one asks for help, gives it and ends the script.
help_if_asked() {
  if [[ ${1:-} == --help || ${1:-} == -h ]]; then
    print_help
    exit 0
  fi
}

# Ends a script that was called in another way than its head says.
refuse_call() {
  print_help >&2
  exit 2
}

# run_quietly LOG COMMAND…: shows what COMMAND says only if it fails, and keeps it in LOG.
run_quietly() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  if ! "$@" </dev/null >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    printf '%s: "%s" failed; all it said is in %s\n' "${0##*/}" "$*" "$log" >&2
    return 1
  fi
}

# build_preset PRESET DIRECTORY [TARGET…]: configures and builds, everything or the targets named.
# On a terminal the build shows its progress; elsewhere it speaks up only when it fails.
build_preset() {
  local preset=$1 directory=$2
  shift 2
  local targets=()
  if [[ $# -gt 0 ]]; then
    targets=(--target "$@")
  fi
  step "Configuring the $preset build"
  run_quietly "$directory/configure.log" cmake -S "$project" --preset "$preset" || return 1
  step "Building it in ${directory#"$project/"}"
  if [[ -t 1 ]]; then
    cmake --build "$directory" "${targets[@]}"
  else
    run_quietly "$directory/build.log" cmake --build "$directory" "${targets[@]}"
  fi
}
