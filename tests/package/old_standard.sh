#!/usr/bin/env bash
# Compiles each header as C++17. The first error must say that the library requires C++20.
# usage: old_standard.sh COMPILER INCLUDE_FOLDER HEADER...
set -euo pipefail

compiler=$1 folder=$2
shift 2
for header in "$@"; do
  error=$("$compiler" -std=c++17 -fsyntax-only -fmax-errors=1 -I "$folder" -x c++ \
    -include "$header" /dev/null 2>&1 | grep -m 1 'error:' || true)
  [[ $error == *'ornwhatsnew requires C++20'* ]] || {
    printf '%s: the first error in C++17 is: %s\n' "$header" "${error:-none}" >&2
    exit 1
  }
done
