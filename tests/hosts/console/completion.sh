#!/usr/bin/env bash
# Tests the bash completion. usage: completion.sh COMPLETIONS PROGRAM
set -euo pipefail
export LC_ALL=C

# shellcheck disable=SC1090  # the file under test
. "$1"
program=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
touch host.json 'what is new.csv'
failures=0

# offer WORD...
# Sets `offered` to the sorted completions of the last word of the command line.
offer() {
  COMP_WORDS=(ornwhatsnew "$@")
  COMP_CWORD=$#
  local previous=ornwhatsnew
  (($# < 2)) || previous=${*: -2:1}
  _ornwhatsnew "$program" "${*: -1}" "$previous"
  offered=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd ' ')
}

# expect WANTED WORD...
# Checks that the sorted completions of the last word are WANTED.
expect() {
  local wanted=$1
  shift
  offer "$@"
  [[ $offered == "$wanted" ]] || {
    printf 'after "ornwhatsnew %s": "%s" instead of "%s"\n' "$*" "$offered" "$wanted" >&2
    failures=$((failures + 1))
  }
}

# expect_all_of SECTION WORD...
# Checks that the completions of the last word are exactly the names in SECTION of the --help output. The
# other words select the command.
expect_all_of() {
  local section=$1 wanted
  shift
  wanted=$("$program" "${@:1:$#-1}" --help | sed -n "/^$section:/,/^$/p" |
    sed -En 's/^  (-[a-z],)?([a-z-]+) .*/\2/p' | sort | paste -sd ' ')
  [[ -n $wanted ]] || {
    printf 'the help of "ornwhatsnew %s" lists no %s\n' "$*" "$section" >&2
    failures=$((failures + 1))
  }
  expect "$wanted" "$@"
}

expect_all_of Subcommands ''
expect_all_of Options --
expect_all_of Subcommands state ''
for command in show status why rate 'state show' 'state reset' import add messages console lint preview; do
  read -ra words <<<"$command"
  expect_all_of Options "${words[@]}" --
done

expect 'show state status' s
expect '--state' show --st
expect '--no-remember' show --no
expect 'host.json what is new.csv' show ''
expect 'what is new.csv' show --only-new w
expect 'host.json' show --host h
expect 'host.json' show 'what is new.csv' --host h
expect 'html json markdown plain text' show --format ''
expect 'markdown' show --format m
expect 'json' status --format = j
expect 'json text' status --format =
expect 'always auto never' show --color ''
expect '' show --width ''
expect '' why --line ''
expect 'host.json what is new.csv' import -o ''
expect 'what is new.csv' import --output w
expect 'what is new.csv' preview --seen w
expect '' add --message ''
expect 'ValidateWhatsNew help' console ''
expect 'host.json' console ValidateWhatsNew h
expect '' state show ''
expect 'reset' state r

((failures == 0))
