#!/usr/bin/env bash
# Builds the example host with the contents of the Debian packages. Then installs the packages on a
# clean system, runs the program, removes the packages, and fails if files remain.
# usage: debian.sh PACKAGES CACHE
# PACKAGES is the folder with the *.deb files. CACHE is a folder in which the script stores the clean
# system for the next run. If this machine cannot create a clean system, the script prints the reason
# to standard output and exits with status 77.
set -euo pipefail

skip() {
  printf 'skipped: %s\n' "$*"
  exit 77
}

tools=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../../tools")
packages=$(realpath "$1")
mkdir -p "$2"
cache=$(realpath "$2")
work=$(mktemp -d -p "$cache" work.XXXXXX)
root=$work/root
mkdir -m 755 "$root"
# An interrupted debootstrap leaves /proc mounted in the new system.
trap 'umount --lazy "$root/proc" 2>/dev/null || true; rm -rf --one-file-system "$work"' EXIT

# Unpacks the packages, and builds and runs the example host with their contents. Checks that pkg-config
# finds the library.
build_example() {
  local unpacked=$work/unpacked built=$work/built file
  for file in "$packages"/*.deb; do dpkg-deb --extract "$file" "$unpacked"; done
  local example=$unpacked/usr/share/ornwhatsnew/examples/host
  cmake -S "$example" -B "$built" -DCMAKE_PREFIX_PATH="$unpacked/usr" &&
    cmake --build "$built" && diff "$example/output.txt" <("$built/herbarium") &&
    # PKG_CONFIG_LIBDIR excludes all other packages, because a host of the shared library must not
    # need their pkg-config files.
    PKG_CONFIG_LIBDIR=$(echo "$unpacked"/usr/lib/*/pkgconfig) pkg-config --cflags --libs ornwhatsnew
}

# Builds the example host of the Qt companion with the contents of the packages. Checks that pkg-config
# finds the companion.
build_qt_example() {
  local unpacked=$work/unpacked built=$work/built-qt
  cmake -S "$unpacked/usr/share/ornwhatsnew/examples/qt" -B "$built" \
    -DCMAKE_PREFIX_PATH="$unpacked/usr" && cmake --build "$built" &&
    PKG_CONFIG_PATH=$(echo "$unpacked"/usr/lib/*/pkgconfig) pkg-config --cflags --libs ornwhatsnewqt
}

# Checks that the documentation folder of each package has the most important pages, that all links
# between the documents work, and that mandoc accepts ornwhatsnew(5).
check_documents() {
  local unpacked=$work/unpacked file name page
  for file in "$packages"/*.deb; do
    name=$(dpkg-deb --field "$file" Package)
    for page in README.md CHANGELOG.md docs/host-guide.md docs/data-file.md; do
      [[ -f $unpacked/usr/share/doc/$name/$page ]] || {
        printf 'not in the packages: /usr/share/doc/%s/%s\n' "$name" "$page" >&2
        return 1
      }
    done
  done
  python3 "$tools/check_links.py" "$unpacked/usr/share" &&
    mandoc -Tlint -Wwarning "$unpacked/usr/share/man/man5/ornwhatsnew.5"
}

printf '== building the example host with the packages\n'
build_example
if compgen -G "$packages/ornwhatsnew-qt-dev_*.deb" >/dev/null; then build_qt_example; fi
printf '== checking the documents\n'
check_documents

((EUID == 0)) || skip 'creating a clean system requires root'
# shellcheck source=/dev/null
. /etc/os-release
release=${VERSION_CODENAME:-}
[[ -n $release ]] || skip "'/etc/os-release' has no VERSION_CODENAME"
export DEBIAN_FRONTEND=noninteractive LC_ALL=C

# Prints the Debian package sources of this machine in the format of sources.list.
# shellcheck disable=SC2016  # apt-get expands these names, not the shell
sources() {
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' \
    'Created-By: Packages' 'Origin: Debian'
}

# Runs a command in the clean system.
in_root() { chroot "$root" "$@"; }

# Creates a clean system in $root and stores it in the cache, or unpacks the cached system. Ignores a
# cached system that is older than a week, because its package lists may contain packages that the Debian
# archive has removed.
clean_system() {
  local archive=$cache/$release.tar mirror
  if [[ -n $(find "$archive" -mtime -7 2>/dev/null) ]]; then
    tar --extract --file "$archive" --directory "$root"
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    return
  fi
  mirror=$(sources | awk -v release="$release" '$3 == release { print $2; exit }')
  [[ -n $mirror ]] || skip "apt has no Debian mirror for '$release'"
  debootstrap --variant=minbase "$release" "$root" "$mirror" ||
    skip 'debootstrap failed; see its messages above'
  sources >"$root/etc/apt/sources.list"
  apt-config dump Acquire::http Acquire::https >"$root/etc/apt/apt.conf.d/90machine"
  in_root apt-get -qq update
  in_root apt-get clean
  tar --create --one-file-system --file "$archive.new" --directory "$root" .
  mv "$archive.new" "$archive"
}

# Prints the files of the clean system. Omits /proc, /dev, temporary files, caches, logs, and the records of
# apt and dpkg.
list_files() {
  find "$root" -xdev \( -path "$root/proc" -o -path "$root/dev" -o -path "$root/tmp" \
    -o -path "$root/var/cache" -o -path "$root/var/lib/apt" -o -path "$root/var/lib/dpkg" \
    -o -path "$root/var/log" \) -prune -o -printf '%y %P\n' | sort
}

# Runs a shell command in the clean system, as an unprivileged user, in the folder examples/herbarium.
as_user() {
  in_root chroot --userspec=nobody:nogroup / env -i HOME=/tmp/home PATH=/usr/bin:/bin \
    sh -c "cd /usr/share/ornwhatsnew/examples/herbarium && $1"
}

# Fails unless the string $1 contains the string $2.
expect() {
  grep -qF -e "$2" <<<"$1" || {
    printf 'expected "%s" in:\n%s\n' "$2" "$1" >&2
    return 1
  }
}

run_program() {
  install -d -o nobody -g nogroup "$root/tmp/home"
  local show='ornwhatsnew show whatsnew.csv --host host.json --only-new --platform'
  expect "$(as_user "$show")" 'Map of finds' &&
    expect "$(as_user "$show")" 'all caught up' &&
    expect "$(as_user 'ornwhatsnew console ValidateWhatsNew whatsnew.csv')" 'finished' &&
    rm -rf "$root/tmp/home"
}

clean_system
printf '== installing\n'
list_files >"$root/tmp/before"
mkdir "$root/tmp/packages"
# Omit ornwhatsnew-qt-dev, because it would install the development files of Qt.
find "$packages" -name '*.deb' ! -name 'ornwhatsnew-qt-dev_*' -exec cp -t "$root/tmp/packages" {} +
mapfile -t names < <(for file in "$root"/tmp/packages/*.deb; do
  dpkg-deb --field "$file" Package
done)
in_root sh -c 'apt-get -qq install --yes --no-install-recommends /tmp/packages/*.deb'
list_files >"$root/tmp/installed"
grep -q ' usr/bin/ornwhatsnew$' "$root/tmp/installed"
if compgen -G "$packages/ornwhatsnew-qt_*.deb" >/dev/null; then
  grep -q ' usr/bin/ornwhatsnew-panel$' "$root/tmp/installed"
fi

printf '== running\n'
run_program

printf '== removing %s\n' "${names[*]}"
in_root apt-get -qq purge --yes --auto-remove "${names[@]}"
in_root dpkg --audit
list_files >"$root/tmp/after"
diff "$root/tmp/before" "$root/tmp/after" || {
  printf 'removing the packages did not restore the files above\n' >&2
  exit 1
}
if compgen -G "$root/var/lib/dpkg/info/ornwhatsnew*" >/dev/null; then
  printf 'dpkg still has records of the packages\n' >&2
  exit 1
fi
printf '== no files remain\n'
