#!/usr/bin/env bash
# Copies an example away, builds it alone, runs it.
#   try_example.sh package|makefile|subproject EXAMPLE SOURCES PREFIX FOLDER
set -euo pipefail
kind=$1 example=$2 sources=$3 prefix=$4 folder=$5

rm -rf "$folder"
mkdir -p "$folder"
cp "$sources/examples/$example"/* "$folder"
cd "$folder"
libraries=$(dirname "$(find "$prefix" -name orvanta.pc)")/..

case $kind in
package)
    cmake -S . -B build -DCMAKE_PREFIX_PATH="$prefix" >log
    cmake --build build >>log
    build/host
    # The version file: the same minor version is taken, another is not.
    sed -i 's/Orvanta 0.1 /Orvanta 0.2 /' CMakeLists.txt
    if cmake -S . -B build-other -DCMAKE_PREFIX_PATH="$prefix" >log 2>&1; then
        echo "a host of another minor version was not refused" >&2
        exit 1
    fi
    ;;
makefile)
    PKG_CONFIG_PATH=$libraries/pkgconfig make PKG_CONFIG="$PKG_CONFIG" CXX="$CXX" >log
    LD_LIBRARY_PATH=$libraries ./host
    ;;
subproject)
    # Static here, so that both kinds are built by the tests; by a host that compiles many sources as one, which the
    # project takes part in; and installed from there, for a second host to find.
    cmake -S . -B build -DORVANTA_SOURCES="$sources" -DBUILD_SHARED_LIBS=OFF -DORVANTA_INSTALL=ON \
        -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=16 -DCMAKE_CXX_COMPILER_LAUNCHER="$LAUNCHER" >log
    cmake --build build --parallel 2 >>log
    build/host
    if compgen -G 'build/orvanta/*.so*' >/dev/null || [ -e build/orvanta/tools ] || [ -e build/orvanta/tests ]; then
        echo "more was built than a static library" >&2
        exit 1
    fi
    cmake --install build --prefix "$PWD/installed" >>log
    cp -r "$sources/examples/host" "$sources/examples/makefile" .
    cmake -S host -B host/build -DCMAKE_PREFIX_PATH="$PWD/installed" >>log
    cmake --build host/build >>log
    host/build/host
    libraries=$(dirname "$(find "$PWD/installed" -name orvanta.pc)")
    PKG_CONFIG_PATH=$libraries make -C makefile PKG_CONFIG="$PKG_CONFIG --static" CXX="$CXX" >>log
    makefile/host
    ;;
esac
