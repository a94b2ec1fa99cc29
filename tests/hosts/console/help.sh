#!/usr/bin/env bash
# Compares the help of the program and of each command with FILE. If an intended change makes the test fail,
# regenerate FILE: with FILE '-', the script prints the help instead.
# usage: help.sh FILE PROGRAM
set -euo pipefail

file=$1 program=$2

# Omits empty lines, because their number depends on the version of CLI11.
print_help() {
  local command words
  for command in '' show status why rate state 'state show' 'state reset' import add messages console lint \
    preview; do
    read -r -a words <<<"$command"
    printf '$ ornwhatsnew %s--help\n' "${command:+$command }"
    "$program" "${words[@]}" --help
  done | sed '/^$/d'
}

if [[ $file == - ]]; then
  print_help
else
  print_help | diff --unified --label "$file" --label "the program's help" "$file" -
fi
