#!/usr/bin/env bash
# Prints or checks the symbols that the shared library exports.
#   exports.sh list LIBRARY        prints the demangled symbols, sorted
#   exports.sh check LIBRARY LIST  compares the symbols with the file LIST
set -euo pipefail
export LC_ALL=C

fail() {
  printf '%s\n' "$@" >&2
  exit 1
}

# Prints the exported symbols of a library. Replaces the standard string types with short names to make
# the signatures readable.
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
  local library=$1 file=$2 names
  names=$(list "$library")
  local foreign kind='(typeinfo|typeinfo name|vtable|VTT) for |(non-)?virtual thunk to '
  foreign=$(grep -vE "^($kind)?(orncore|ornappsupport|ornui|ornwhatsnew)::" <<<"$names" || true)
  [[ -z $foreign ]] ||
    fail "$library exports symbols of other namespaces:" "$foreign" "see cmake/Exports.map"
  diff --unified=0 --label "$file" --label "$library" "$file" - <<<"$names" >&2 ||
    fail 'the exported symbols have changed; existing hosts may need the removed symbols' \
      "if the change is intended, run './dev exports' and commit the list"
}

case "${1:-} $#" in
  'list 2') list "$2" ;;
  'check 3') check "$2" "$3" ;;
  *) fail 'usage: exports.sh list LIBRARY | exports.sh check LIBRARY LIST' ;;
esac
