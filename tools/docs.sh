# shellcheck shell=bash

# Part of ./dev: generates the API reference from the public headers with Doxygen. Undocumented names
# and references to unknown names are errors.

make_reference() {
  local version
  version=$(sed -n 's/.*kVersionText = "\(.*\)";/\1/p' ornwhatsnew/Version.h)
  rm -rf build/docs && mkdir -p build/docs &&
    ORNWHATSNEW_VERSION=$version ORNWHATSNEW_DOCS=build/docs doxygen docs/api/Doxyfile
}

command_docs() {
  no_arguments docs "$@"
  ensure_packages docs
  make_reference || fail "comments of public headers are missing or wrong; see the messages above"
  say "Built the API reference: build/docs/html/index.html"
}

stage_docs() { make_reference && list_files '*.md' | xargs -0 tools/check_links.py; }
