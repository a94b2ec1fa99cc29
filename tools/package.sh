# shellcheck shell=bash

# Part of ./dev: builds and tests the Debian packages.

package_folder=build/deb

make_packages() {
  rm -rf "$package_folder"
  configure package && build package &&
    cpack -G DEB --config build/package/CPackConfig.cmake -B "$package_folder" &&
    rm -rf "$package_folder/_CPack_Packages"
}

command_package() {
  no_arguments package "$@"
  ensure_packages package
  say "Building the Debian packages (first time: 2 to 4 minutes on two cores)"
  make_packages >"$(log_file package)" 2>&1 || {
    tail -n 30 "$(log_file package)" >&2
    fail "cannot build the packages; see build/log/package.log"
  }
  say "Install them with: apt-get install ./$package_folder/*.deb"
}

# Builds the packages, installs them on a clean system and removes them. Without root, or if no clean
# system can be created, only builds the packages and a host that uses them, and skips the rest.
stage_package() { make_packages && tests/package/debian.sh "$package_folder" build/debian-root; }
