# shellcheck shell=bash
# Part of ./dev: the API reference, generated from the public headers. A name without a comment and a
# comment that refers to an unknown name are errors.

make_reference() {
  local version
  version=$(sed -n 's/.*kVersionText = "\(.*\)";/\1/p' ornwhatsnew/Version.h)
  rm -rf build/docs && mkdir -p build/docs &&
    ORNWHATSNEW_VERSION=$version ORNWHATSNEW_DOCS=build/docs doxygen docs/api/Doxyfile
}

command_docs() {
  no_arguments docs "$@"
  ensure_packages docs
  make_reference || fail "see the lines above for the missing or wrong comments"
  say "Built the API reference: build/docs/html/index.html"
}

stage_docs() { make_reference; }
