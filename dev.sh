#!/usr/bin/env bash
# Set-up, build and test in one place, for a fresh Debian 12 machine and for CI.
#   ./dev.sh run    build, list the demo scene's pickers, and start the picker on the demo
#   ./dev.sh test   build with Qt 6, Qt 5 and the sanitizers, and run every test
set -euo pipefail
cd "$(dirname "$0")"

packages=(g++ cmake ninja-build pkg-config ccache zlib1g-dev qt6-base-dev qtbase5-dev libbenchmark-dev
    xvfb xauth)
jobs=$(nproc 2>/dev/null || echo 2)
# Paths relative to the checkout, so every clone of it shares one compiler cache.
export CCACHE_BASEDIR=$PWD
# And without the working directory in the key, which -g would otherwise add.
export CCACHE_NOHASHDIR=1

ensure_packages() {
    local missing=()
    for p in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if [ "$(id -u)" -eq 0 ]; then
        echo "== installing ${missing[*]}"
        export DEBIAN_FRONTEND=noninteractive
        apt-get update -qq
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
    else
        echo "Missing system packages. Install them with:" >&2
        echo "  sudo apt-get install -y ${missing[*]}" >&2
        exit 1
    fi
}

# configure DIR [cmake options...]
configure() {
    local dir=$1
    shift
    cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@" >/dev/null
}

# check DIR NAME [cmake options...]
check() {
    local dir=$1 name=$2
    shift 2
    echo "== $name: build"
    # Tests on whatever an earlier configure of this folder chose: a folder without them must not pass.
    configure "$dir" -DPICKER_TESTS=ON "$@"
    cmake --build "$dir" -j"$jobs"
    echo "== $name: test"
    ctest --test-dir "$dir" --output-on-failure --no-tests=error -j"$jobs"
}

case "${1:-}" in
run)
    ensure_packages
    # The same folder as the Qt 6 test build, so neither command undoes the other's work.
    configure build/qt6
    cmake --build build/qt6 -j"$jobs" --target talvora-picker pkrtool
    build/qt6/tools/pkrtool/pkrtool scene build/qt6/app/demo/demo_scene.ma
    if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
        exec build/qt6/app/talvora-picker
    fi
    echo "== no display: starting talvora-picker offscreen for a moment"
    QT_QPA_PLATFORM=offscreen build/qt6/app/talvora-picker --smoke
    echo "== talvora-picker came up and quit cleanly; the demo picker as a picture instead:"
    QT_QPA_PLATFORM=offscreen build/qt6/tools/pkrtool/pkrtool render build/qt6/app/demo/demo.pkr \
        -o build/qt6/demo-picker.png
    echo "$PWD/build/qt6/demo-picker.png"
    ;;
test)
    ensure_packages
    check build/qt6 "Qt 6"
    echo "== Qt 6: the program's end-to-end tests again, under a real X server"
    xvfb-run -a env QT_QPA_PLATFORM=xcb build/qt6/tests/app/tst_talvora_program
    check build/qt5 "Qt 5" -DPICKER_QT_MAJOR=5
    check build/sanitize "Qt 6 with ASan and UBSan" -DPICKER_SANITIZE=ON -DPICKER_BENCH=OFF
    ;;
*)
    echo "usage: ./dev.sh run | test" >&2
    exit 2
    ;;
esac
