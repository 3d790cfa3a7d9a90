#!/usr/bin/env bash
# Makes the source archive and the Debian package of the commit that is checked out.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/package.sh [FOLDER]

Installs what is missing (Debian, Ubuntu), and makes in FOLDER (build/package unless given):

  dravik-VERSION.tar.xz           the sources of the commit that is checked out
  dravik_VERSION-1_ARCH.deb       the package, built from that archive

FOLDER/work is made for that and removed at the end; it must not be there yet.

Fails when there are changes that are in no commit: they would be in neither. Options for cmake, as
-DDRAVIK_WEB_SITE=..., are taken from the variable DRAVIK_CMAKE_OPTIONS; they are parted by blanks, so that no
value can hold one.
TEXT
}
case "${1-}" in
    -h | --help)
        usage
        exit 0
        ;;
    -*)
        usage >&2
        exit 2
        ;;
esac
if [ $# -gt 1 ]; then
    usage >&2
    exit 2
fi

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mkdir -p "${1:-$root/build/package}"
folder=$(cd "${1:-$root/build/package}" && pwd)
cd "$root"
# shellcheck source=scripts/deps.sh
. scripts/deps.sh
step() { echo "==> $*" >&2; }

if [ -n "$(git status --porcelain)" ]; then
    git status --short >&2
    echo "==> These changes are in no commit. Commit them or put them away first." >&2
    exit 1
fi
dravik_install build package

version=$(sed -n 's/^project(dravik VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
commit=$(git rev-parse --short HEAD)
# The time of the commit, so that the same commit gives the same bytes on every day.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH
# One name each time, so that no path in what is built differs.
work=$folder/work
mkdir "$work" 2>/dev/null || {
    echo "==> $work cannot be made, or is there already: move it away, or name another folder." >&2
    exit 1
}
trap 'rm -rf "$work"' EXIT

step "Packing the sources of $commit"
name=dravik-$version
echo "$commit" >"$work/COMMIT"
git archive --format=tar --prefix="$name/" --add-file="$work/COMMIT" HEAD | xz -6 >"$work/$name.tar.xz"
tar -C "$work" -xf "$work/$name.tar.xz"

step "Building the package from them"
options=()
read -r -a options <<<"${DRAVIK_CMAKE_OPTIONS-}"
hardening="-D_FORTIFY_SOURCE=2 -fstack-protector-strong"
# ccache finds objects again when the folder is another one.
export CCACHE_BASEDIR=$work
(
    cd "$work/$name"
    cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr -DDRAVIK_TESTS=OFF \
        -DCMAKE_CXX_FLAGS="$hardening" -DCMAKE_EXE_LINKER_FLAGS="-Wl,-z,relro,-z,now" \
        -DCMAKE_MODULE_LINKER_FLAGS="-Wl,-z,relro,-z,now" \
        -DDRAVIK_DEBIAN=ON -DDRAVIK_ZSH_FOLDER=share/zsh/vendor-completions "${options[@]}" >&2
    cmake --build build >&2
    cd build
    cpack -G DEB >&2
)

step "Checking it"
packages=("$work/$name"/build/*.deb)
package=$folder/$(basename "${packages[0]}")
mv "$work/$name.tar.xz" "${packages[@]}" "$folder/"
# Tags that stay: there is no bug to close in a distribution that the program is not part of.
lintian --allow-root --suppress-tags initial-upload-closes-no-bugs "$package" >&2
printf '%s\n' "$folder/$name.tar.xz" "$package"
