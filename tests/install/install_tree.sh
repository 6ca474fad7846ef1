#!/usr/bin/env bash
# Installs a finished build into an empty folder and looks for what a packager expects.
#   install_tree.sh CMAKE BUILD PREFIX
set -euo pipefail
cmake=$1 build=$2 prefix=$3

rm -rf "$prefix"
"$cmake" --install "$build" --prefix "$prefix" >/dev/null

missing=0
for file in include/orvanta/Orvanta.h include/orvanta/OrvantaWorker.h include/orvanta/orvanta_c.h share/doc/orvanta/LICENSE \
    share/doc/orvanta/CHANGELOG.md share/doc/orvanta/architecture.md share/doc/orvanta/examples/host/main.cpp \
    include/orvanta/CameraPath.h 'lib*/libOrvanta.so.0' 'lib*/libOrvantaCamera.so.0' 'lib*/pkgconfig/orvanta-camera.pc' \
    'lib*/cmake/Orvanta/OrvantaConfigVersion.cmake' 'lib*/pkgconfig/orvanta.pc' \
    'lib*/libOrvantaC.so.0' 'lib*/pkgconfig/orvanta-c.pc'; do
    if ! compgen -G "$prefix/$file" >/dev/null && ! compgen -G "$prefix/${file/lib\*/lib/*}" >/dev/null; then
        echo "not installed: $file"
        missing=1
    fi
done
# A path of the machine that built it has no business in what others get.
if grep -rIl --exclude-dir=doc -e "$build" "$prefix"; then
    echo "these files name the build folder"
    missing=1
fi
exit $missing
