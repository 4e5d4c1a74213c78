#!/usr/bin/env bash
# Tests the guard with a small tree that fetches Debian packages only in ./dev, and with other ways to fetch.
# shellcheck source=/dev/null
. "$(dirname "$0")/rules.sh"

# shellcheck disable=SC2016
put tree/dev '#!/usr/bin/env bash
need() {
  apt-get -qq update && apt-get install -y "$@"
}
unpack() {
  apt-get -qq download "$1"
}
peers_environment() {
  build/peers/bin/pip install --require-hashes --no-deps -r $wanted
}
git ls-files --cached'
put tree/tests/run.sh '#!/bin/sh
echo \
  "Packages are missing: apt-get install them"
dpkg-query -W make'
chmod +x tree/dev
keeps 'a tree that fetches in ./dev alone' tree

n=0
# breach FILE LINE
breach() {
  n=$((n + 1))
  cp -r tree "breach$n"
  mkdir -p "$(dirname "breach$n/$1")"
  printf '%s\n' "$2" >>"breach$n/$1"
  [[ $2 != '#!'* ]] || chmod +x "breach$n/$1"
  breaks "$2 in $1" "${2##*$'\n'}" "breach$n"
}
for line in 'apt-get install make' 'apt-get -o x install make' 'apt -y -q install make' 'sudo apt-get -qq -o Dir=/ download make' \
  'aptitude install make' 'dpkg -i make.deb' 'dpkg --force-all --install make.deb' 'apt-get build-dep make' \
  'git clone x' 'git -C x clone y' 'git -c a=b submodule update' 'git --git-dir=x fetch' 'git pull' \
  'curl -O x' 'x | wget -i -' 'exec 3<>/dev/tcp/host/80' 'rsync host::x .' 'scp host:x .' 'aria2c x' 'svn checkout x' \
  'pip install x' 'pip3 install x' 'python3 -m pip install x' 'python3 -m ensurepip' 'uv sync' 'npm ci' 'npx x' 'yarn add x' \
  'cargo install x' 'conan install .' 'vcpkg install x' 'gem install x' 'go install x' 'conda install x' 'docker pull x' \
  'snap install x'; do
  breach tests/run.sh "$line"
done
breach dev 'apt-get install make'
breach .ci/run '#!/bin/sh
curl -O x'
breach cmake/x.cmake 'FetchContent_Declare(x)'
breach cmake/x.cmake 'ExternalProject_Add(x)'
breach CMakeLists.txt 'file(DOWNLOAD x y)'
breach CMakeLists.txt 'include(CPM.cmake)'
breach CMakePresets.json '"x": "vcpkg install"'
breach tests/x.py 'from urllib.request import urlopen'
breach tests/x.py 'import requests'
breach tests/x.py 'subprocess.run(["git", "clone", "x"])'
breach tests/x.py 'subprocess.run(["apt-get", "-y", "install", "x"])'
breach Makefile '	wget x'
cp -r tree unpinned
sed -i 's/--require-hashes //' unpinned/dev
breaks 'a peer without a hash' 'installs something without a hash' unpinned
cp -r tree unlisted
sed -i 's/-r [$]wanted/x/' unlisted/dev
breaks 'a peer that the list lacks' 'installs something without a hash' unlisted
mkdir bare
breaks 'a tree without scripts' 'no scripts found' bare
finish
