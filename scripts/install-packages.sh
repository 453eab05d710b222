#!/usr/bin/env bash
# SPDX-License-Identifier: LicenseRef-Proprietary
# Installs the Debian packages that a purpose needs and that are missing. Does nothing, and needs no
# rights, when all are installed.
#   scripts/install-packages.sh [--list] PURPOSE…
# Purposes: build run test demo kernel lint memcheck coverage fuzz benchmark wayland package
#   package-test windows windows-sdk wine. --list prints the packages and installs nothing.
set -euo pipefail

packages_for() {
    case $1 in
        # Compilers and the headers of what the program and its tools link.
        build) echo g++ cmake ninja-build ccache pkg-config git ca-certificates \
            qtbase5-dev qtdeclarative5-dev libqt5svg5-dev qttools5-dev qttools5-dev-tools libusb-1.0-0-dev zlib1g-dev \
            libjs-underscore fonts-open-sans librsvg2-bin libumockdev-dev libglib2.0-dev ;;
        # What the program loads when it runs: QML modules, the image plugin for icons, a font, and
        # OpenGL for machines without a graphics card.
        run) echo qml-module-qtquick2 qml-module-qtquick-window2 qml-module-qtquick-layouts \
            qml-module-qtquick-controls qml-module-qtqml-statemachine \
            qml-module-qtgraphicaleffects libqt5svg5 libusb-1.0-0 fonts-dejavu-core \
            libgl1-mesa-dri ;;
        # The virtual bus, third-party tools that judge the virtual units, and assistive technology.
        test) echo qml-module-qttest openssl umockdev dfu-util usbutils python3 python3-jsonschema dbus-daemon fonts-wqy-microhei \
            xvfb xdotool imagemagick at-spi2-core python3-pyatspi strace ;;
        # A screen without a monitor, and what drives a window on it.
        demo) echo umockdev xvfb xdotool imagemagick dbus-daemon at-spi2-core python3-pyatspi ;;
        # A virtual machine that boots parts of Debian's kernel, and what runs in it.
        kernel) echo qemu-system-x86 busybox-static cpio kmod xz-utils udev util-linux umockdev xvfb \
            xdotool imagemagick dbus-daemon at-spi2-core python3-pyatspi ;;
        # The Windows programs, cross-built, and the two packages of them.
        windows) echo g++-mingw-w64-x86-64-posix libz-mingw-w64-dev icoutils librsvg2-bin \
            qtdeclarative5-dev-tools python3-pefile nsis zip osslsigncode xz-utils pandoc ;;
        # What building Qt and libusb for Windows needs besides.
        windows-sdk) echo autoconf automake libtool make dpkg-dev perl python3 ;;
        # What runs Windows programs, on a screen without a monitor, and the font of their windows.
        wine) echo wine wine64 fonts-wine fonts-dejavu-core fonts-wqy-microhei locales xvfb xdotool imagemagick \
            dbus-daemon openssl unzip ;;
        lint) echo clang-format clang-tidy clazy cppcheck qtdeclarative5-dev-tools shellcheck ;;
        memcheck) echo valgrind ;;
        coverage) echo gcovr ;;
        fuzz) echo clang libclang-rt-dev ;;
        benchmark) echo libbenchmark-dev ;;
        wayland) echo qtwayland5 ;;
        package) echo debhelper pandoc python3 ;;
        # Checks of a package, and a new system to install it into.
        package-test) echo lintian appstream desktop-file-utils piuparts mmdebstrap man-db ;;
        *)
            echo "install-packages.sh: unknown purpose: $1" >&2
            return 2
            ;;
    esac
}

# The packages of the list given as arguments that are not installed.
missing_of() {
    local installed package
    # dpkg-query reports unknown names as errors; those are missing as well.
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        grep -qxF "installed $package" <<<"$installed" || echo "$package"
    done
}

main() {
    local list_only=
    if [[ ${1:-} == --list ]]; then
        list_only=1
        shift
    fi
    local purpose names wanted=() missing=() as_root=()
    for purpose in "$@"; do
        names=$(packages_for "$purpose") || exit 2
        read -ra names <<<"$names"
        wanted+=("${names[@]}")
    done
    if [[ ${#wanted[@]} -eq 0 ]]; then
        echo "usage: install-packages.sh [--list] PURPOSE…" >&2
        exit 2
    fi
    mapfile -t wanted < <(printf '%s\n' "${wanted[@]}" | sort -u)
    if [[ -n $list_only ]]; then
        printf '%s\n' "${wanted[@]}"
        return
    fi
    if ! command -v dpkg-query >/dev/null; then
        echo "install-packages.sh: this is not a Debian system; install the equivalents of:" \
            "${wanted[*]}" >&2
        exit 1
    fi

    mapfile -t missing < <(missing_of "${wanted[@]}")
    [[ ${#missing[@]} -gt 0 ]] || return 0
    echo "Installing Debian packages: ${missing[*]}"
    if [[ $(id -u) -ne 0 ]]; then
        if ! command -v sudo >/dev/null; then
            echo "install-packages.sh: not root and no sudo; run as root:" \
                "apt-get install ${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y
        -o DPkg::Lock::Timeout=300)
    "${apt[@]}" update
    "${apt[@]}" install --no-install-recommends "${missing[@]}" </dev/null
}

main "$@"
