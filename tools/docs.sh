# shellcheck shell=bash
# Part of ./dev: the API reference, made of the public headers. A name without a comment, and a
# comment that speaks of what is not there, are errors.

make_reference() {
  local version
  version=$(sed -n 's/.*kVersionText = "\(.*\)";/\1/p' ornwhatsnew/Version.h)
  rm -rf build/docs && mkdir -p build/docs &&
    ORNWHATSNEW_VERSION=$version ORNWHATSNEW_DOCS=build/docs doxygen docs/api/Doxyfile
}

command_docs() {
  no_arguments docs "$@"
  ensure_packages docs
  make_reference || fail "the lines above say which comments are missing or wrong"
  say "Made the API reference: build/docs/html/index.html"
}

stage_docs() { make_reference; }
