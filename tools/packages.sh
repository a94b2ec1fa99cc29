# shellcheck shell=bash

# Part of ./dev: lists and installs the Debian packages that each command needs.

build_packages=(
  g++ cmake ninja-build ccache pkgconf
  libboost-dev libicu-dev
  nlohmann-json3-dev libcli11-dev libcsv-dev libboost-locale-dev libssl-dev
  libgtest-dev libgmock-dev libmurmurhash-dev libcmark-dev python3-jsonschema mandoc gettext
  qt6-base-dev qt6-base-private-dev qt6-l10n-tools desktop-file-utils
)
bench_packages=(libbenchmark-dev valgrind python3)
package_packages=(dpkg-dev file lowdown)
docs_packages=(doxygen)
check_packages=(
  clang libclang-rt-dev clang-format clang-tidy cppcheck shellcheck git gcovr
  debootstrap g++-mingw-w64-x86-64-posix python3
)
robustness_packages=(python3 strace)
browser_packages=(chromium nodejs)
xvfb_packages=(xvfb xauth)
picture_packages=(aha chromium fonts-dejavu-core fonts-noto-core fonts-wqy-microhei)

packages_for() {
  case $1 in
    build) printf '%s\n' "${build_packages[@]}" ;;
    bench) printf '%s\n' "${build_packages[@]}" "${bench_packages[@]}" ;;
    package) printf '%s\n' "${build_packages[@]}" "${package_packages[@]}" ;;
    docs) printf '%s\n' "${docs_packages[@]}" ;;
    check)
      printf '%s\n' "${build_packages[@]}" "${bench_packages[@]}" "${package_packages[@]}" \
        "${docs_packages[@]}" "${check_packages[@]}"
      ;;
    robustness) printf '%s\n' "${build_packages[@]}" "${robustness_packages[@]}" ;;
    browser) printf '%s\n' "${build_packages[@]}" "${browser_packages[@]}" ;;
    xvfb) printf '%s\n' "${build_packages[@]}" "${xvfb_packages[@]}" ;;
    picture) printf '%s\n' "${build_packages[@]}" "${picture_packages[@]}" ;;
  esac
}

is_installed() {
  [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

# Installs the missing packages of a command. If this machine has no dpkg, installs nothing. In this case,
# CMake reports the missing dependencies.
ensure_packages() {
  command -v dpkg-query >/dev/null || return 0
  local missing=() package
  while IFS= read -r package; do
    is_installed "$package" || missing+=("$package")
  done < <(packages_for "$1")
  ((${#missing[@]} == 0)) || install_packages "${missing[@]}"
}

install_packages() {
  local as_root=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null || fail_with_missing_packages "$@"
    as_root=(sudo)
  fi
  say "Installing from Debian (1 to 3 minutes): $*"
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
    apt-get -qq -o DPkg::Lock::Timeout=300)
  local log
  log=$(log_file packages)
  # The package lists of a new machine may be empty or outdated, so update them if the first attempt
  # fails.
  "${apt[@]}" install --yes --no-install-recommends "$@" </dev/null >"$log" 2>&1 ||
    { "${apt[@]}" update && "${apt[@]}" install --yes --no-install-recommends "$@"; } \
      </dev/null >>"$log" 2>&1 ||
    { tail -n 20 "$log" >&2 && fail_with_missing_packages "$@"; }
}

fail_with_missing_packages() {
  fail "cannot install missing packages; install them as root with
  apt-get install $*"
}
