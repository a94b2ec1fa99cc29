#!/usr/bin/env bash
# What a shared library exports, by name.
#   exports.sh list LIBRARY        prints the names, sorted
#   exports.sh check LIBRARY LIST  compares them with the file LIST
set -euo pipefail
export LC_ALL=C

fail() {
  printf '%s\n' "$@" >&2
  exit 1
}

# With the short names of the standard's texts, so that a signature can be read.
list() {
  local traits='std::char_traits<\1>' allocator='std::allocator<\1>'
  local text="std::__cxx11::basic_string<\\(char\\|char16_t\\), $traits, $allocator >"
  local view="std::basic_string_view<\\(char\\|char16_t\\), $traits >"
  "${NM:-nm}" --dynamic --defined-only --demangle --without-symbol-versions "$1" |
    sed -e 's/^[0-9a-f]* [A-Za-z] //' -e "s/$text/std::basic_string<\\1>/g" \
      -e "s/$view/std::basic_string_view<\\1>/g" -e 's/basic_string\(_view\)\?<char>/string\1/g' \
      -e 's/basic_string\(_view\)\?<char16_t>/u16string\1/g' |
    sort -u
}

check() {
  local library=$1 file=$2 name names
  name=$(basename "$file" .txt)
  names=$(list "$library")
  local foreign kind='(typeinfo|typeinfo name|vtable|VTT) for |(non-)?virtual thunk to '
  foreign=$(grep -vE "^($kind)?$name::" <<<"$names" || true)
  [[ -z $foreign ]] ||
    fail "$library exports names that are not of the namespace $name:" "$foreign" \
      "Look at cmake/Exports.map.in."
  diff --unified=0 --label "$file" --label "$library" "$file" - <<<"$names" >&2 ||
    fail "The names that $name exports have changed; a host built before may need the old." \
      "Where that is meant, write the lists anew with ./dev exports, and commit them."
}

case "${1:-} $#" in
  'list 2') list "$2" ;;
  'check 3') check "$2" "$3" ;;
  *) fail 'usage: exports.sh list LIBRARY | exports.sh check LIBRARY LIST' ;;
esac
