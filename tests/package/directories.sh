#!/usr/bin/env bash
# Everything goes where the GNU directory variables say, and finds the rest from there.
. "$(dirname "$0")/common.sh"

fresh directories
quietly "$CMAKE" -S "$SOURCES" -B . -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_INSTALL_PREFIX=/opt/chosen \
  -DCMAKE_INSTALL_LIBDIR=libraries/here -DCMAKE_INSTALL_BINDIR=programs/here \
  -DCMAKE_INSTALL_INCLUDEDIR=/opt/headers -DCMAKE_INSTALL_DOCDIR=documents -DCMAKE_INSTALL_MANDIR=pages \
  -DCMAKE_INSTALL_DATADIR=data

find . -name cmake_install.cmake -exec cat {} + |
  grep -oE '(DESTINATION|FILES) "(/opt/headers|\$\{CMAKE_INSTALL_PREFIX\}/[a-z]+)' |
  sed -E 's/.*"(\$\{CMAKE_INSTALL_PREFIX\}\/)?//' | sort -u >used.txt
printf '%s\n' /opt/headers data documents libraries pages programs | sort >wanted.txt
diff -u wanted.txt used.txt || fail "something goes elsewhere"

grep -qF '$ORIGIN/../../libraries/here' application/cmake_install.cmake || fail "the program does not find the libraries"
cat >wanted.pc <<'END'
prefix=${pcfiledir}/../../..
libdir=${prefix}/libraries/here
includedir=/opt/headers
END
head -3 package/RAIDMonitoring.pc | diff -u wanted.pc - || fail "pkg-config tells other folders"
