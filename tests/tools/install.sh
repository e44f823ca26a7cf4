#!/usr/bin/env bash
# What is installed: by component, in a folder that may be moved, and of use from there.
. "$SOURCE_DIR/tests/tools/lib/check.sh"
# A program would have to be built with the same sanitizers.
! "$XRF" --version | grep -q '^sanitizers' || exit 77
build=$(dirname "$(dirname "$XRF")")
last_run='cmake --install'
for component in runtime development command; do
  cmake --install "$build" --prefix "$work/$component" --component $component >log 2>&1 ||
    fail "cmake --install --component $component: $(cat log)"
  (cd "$component" && find . ! -type d | sort) >"$component.files"
done
has runtime.files 'libxrf.so.0'
lines runtime.files "$(grep -c 'libxrf[.]so[.]0\|share/doc' runtime.files)"
for file in include/xrf/crossreference/XRF_RTL2LL.h \
  include/xrf/ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.h xrf-config.cmake \
  xrf-config-version.cmake xrf-targets.cmake pkgconfig/xrf.pc libxrf.so; do
  has development.files $file
done
hasnt development.files libxrf.so.0
for file in bin/xrf man/man1/xrf.1.gz man/man1/xrf-find.1.gz man/man5/xrf.5.gz \
  bash-completion/completions/xrf zsh/site-functions/_xrf vendor_completions.d/xrf.fish; do
  has command.files $file
done
hasnt command.files libxrf

# As below /usr/local, where Debian's Python looks.
package=$(/usr/bin/python3 -c "
import sysconfig
print(sysconfig.get_path('purelib', 'posix_local', {'base': '', 'installed_base': ''}).strip('/'))")/xrf
package=${package#local/}
if [ -d "$build/python" ]; then
  cmake --install "$build" --prefix "$work/python" --component python >log 2>&1 ||
    fail "cmake --install --component python: $(cat log)"
  (cd python && find . ! -type d | sort) >python.files
  for file in __init__.py py.typed _xrf.pyi metadata/_elements.py; do
    has python.files "$package/$file"
  done
  checks=$((checks + 1))
  grep -qE "$package/_xrf[.]cpython-.*[.]so$" python.files || fail "no extension: $(cat python.files)"
fi

# Moved, and used from there, by the command itself and through both ways to find the library.
cmake --install "$build" --prefix "$work/first" >log 2>&1 || fail "cmake --install: $(cat log)"
mv first moved
cp "$data_dir/small.xrf" .
checks=$((checks + 1))
moved/bin/xrf info --quiet small.xrf >out 2>err || fail "the installed command: $(cat err)"
has out rtl
if [ -d "$build/python" ]; then
  checks=$((checks + 1))
  PYTHONPATH=$(dirname "moved/$package") /usr/bin/python3 -B -c "
import xrf
print('version', xrf.__version__)
print(xrf.Design.load('small.xrf').bit('gen_2__u/cnt[1]').frame)" >out 2>err ||
    fail "the installed package for Python: $(cat err)"
  has out 4194561
  has out "version $(moved/bin/xrf --version | sed -n '1s/^xrf //p')"
fi
cat >program.cpp <<'END'
#include <crossreference/XRF_RTL2LL.h>
#include <cstdio>

int main(int, char** arguments) {
  XRF_RTL2LL::Design design(XRF_RTL2LL::Matching::Extended);
  design.parse_xrf(arguments[1]);
  const XRF_RTL2LL::Signal* signal = design.findSignal(XRF_RTL2LL::RTL, "/top/gen_2__u/cnt");
  std::printf("%u\n", signal->getBitRef(1)->getBit()->getStateLoc1());
}
END
PKG_CONFIG_PATH=$(dirname "$(find moved -name xrf.pc)")
export PKG_CONFIG_PATH
libraries=$(dirname "$PKG_CONFIG_PATH")
checks=$((checks + 3))
# shellcheck disable=SC2046
c++ -std=c++20 program.cpp $(pkg-config --cflags --libs xrf) -o program 2>log ||
  fail "pkg-config: $(cat log)"
LD_LIBRARY_PATH=$libraries ./program small.xrf 2>/dev/null | tail -1 >out
has out 4194561
mkdir consumer
cat >consumer/CMakeLists.txt <<'END'
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES CXX)
find_package(xrf 0.1 REQUIRED)
find_package(xrf 1 QUIET)
if(xrf_FOUND)
  message(FATAL_ERROR "version 1 was found")
endif()
add_executable(consumer ../program.cpp)
target_link_libraries(consumer PRIVATE xrf::xrf)
END
cmake -S consumer -B consumer/build -D CMAKE_PREFIX_PATH="$work/moved" >log 2>&1 &&
  cmake --build consumer/build >>log 2>&1 || fail "find_package: $(cat log)"
consumer/build/consumer small.xrf 2>/dev/null | tail -1 >out
has out 4194561
finish
