# What the application, its build and its tests need of the system, as Debian packages; sourced by ./run and
# ./test after steps.sh. All names exist on Debian 12 and 13; one that ends in "?" is taken where it exists.
# shellcheck shell=bash disable=SC2034

packages_build=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-base-private-dev qt6-declarative-dev qt6-declarative-dev-tools qt6-svg-dev
    qt6-shadertools-dev qt6-shader-baker
    # Draws the icon in the sizes that desktops want.
    librsvg2-bin
    libsqlite3-dev libical-dev libxml2-dev libxcb1-dev libxcb-randr0-dev libxcb-shape0-dev libxcb-sync-dev
    libxcb-xfixes0-dev libxcb-xinput-dev
    libwayland-dev wayland-protocols plasma-wayland-protocols
    # Of the desktop's calendars alone, in whose place there is a file.
    libecal2.0-dev?
)

# Of the web player alone, without which everything else works.
packages_webplayer=(qt6-webengine-dev? qt6-webchannel-dev?)

# What the linked libraries don't tell, of each package that scripts/package.sh makes.
packages_runtime_quillbar=(
    qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtquick-layouts
    qml6-module-qtquick-templates qml6-module-qtquick-controls qml6-module-qtquick-dialogs
    qt6-translations-l10n qt6-svg-plugins? libgl1-mesa-dri qt6-wayland
    xdg-utils desktop-file-utils
)
packages_runtime_webplayer=(libqt6webenginecore6-bin?)
packages_runtime=("${packages_runtime_quillbar[@]}" "${packages_runtime_webplayer[@]}")

packages_virtual_desktop=(
    xvfb openbox picom xdotool maim hsetroot x11-utils x11-xserver-utils x11-xkb-utils xterm
    dbus libglib2.0-bin python3 python3-pil fonts-inter fonts-noto-core
    # What is shown is read as assistive tools read it.
    at-spi2-core python3-gi
)

# A Wayland desktop for the tests, the tool that works its pointer and keyboard, and a terminal.
packages_wayland_desktop=(sway swaybg grim foot libxkbcommon-dev)

# The calendar server itself, for the tests that ask it.
packages_servers=(evolution-data-server?)

packages_benchmarks=(libbenchmark-dev)

# The window managers are there for the system tests, which leave out those that are missing: here kwin-x11 and
# kwin-wayland, which would bring 150 packages along.
packages_checks=(clang-format lld? appstream xfwm4? mutter? i3-wm? xwayland? python3-dbus?)

# The driver of scripts/fuzz.sh, with its sanitizers.
packages_fuzzing=(clang)

packages_packaging=(dpkg-dev file)

# For the bare systems in which the packages are tried.
packages_trial=(debootstrap lintian)

# Prints those of the given packages that are not installed.
missing_packages() {
    local -A installed=()
    local name package
    while read -r name; do
        installed[$name]=1
    done < <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' 2>/dev/null | sed -n 's/^installed //p')
    for package in "$@"; do
        name=${package%\?}
        [[ -n ${installed[$name]:-} ]] || echo "$package"
    done
}

# Prints the given packages without those optional ones that are neither installed nor in the package lists.
available_packages() {
    local package
    for package in "$@"; do
        if [[ $package != *\? ]]; then
            echo "$package"
        elif [[ -z $(missing_packages "${package%\?}") ]]; then
            echo "${package%\?}"
        elif [[ -n $(apt-cache madison "${package%\?}" 2>/dev/null) ]]; then
            echo "${package%\?}"
        fi
    done
}

# How far apt-get is: "Installing: 43 %".
apt_state() {
    local percent
    percent=$(tail -c 4000 "$1" | grep -aoE '^(dl|pm)status:[^:]*:[0-9]+' | tail -n1) || return 0
    [[ $percent == dl* ]] && printf 'Downloading: %d %%' "${percent##*:}" || printf 'Installing: %d %%' "${percent##*:}"
}

# apt_get <log> <argument> …: apt-get as the superuser, with its output in the log.
apt_get() {
    local log=$1 command=(env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600 -o APT::Status-Fd=1)
    shift
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "sudo is missing, which is needed to install packages"
        # The password is asked for here, where it can be seen.
        sudo true || fail "without the superuser's rights no package can be installed"
        command=(sudo "${command[@]}")
    fi
    watched "$log" apt_state "${command[@]}" "$@" </dev/null 2>/dev/null \
        || fail "apt-get $1 failed: $(grep -am1 '^E: ' "$log" || tail -n1 "$log") (see $log)"
}

# install_packages <package> …: installs what is missing; silent if nothing is. Where there is no apt-get, nothing
# happens: what is missing is found out when it is looked for.
install_packages() {
    command -v apt-get >/dev/null && command -v dpkg-query >/dev/null || return 0
    local missing log
    mapfile -t missing < <(missing_packages "$@")
    mapfile -t missing < <(available_packages "${missing[@]}")
    ((${#missing[@]})) || return 0
    log=$(mktemp --tmpdir quillbar-apt-XXXXXX.log)
    # A foreign package source that fails to update is no reason to stop.
    (apt_get "$log" update) 2>/dev/null || true
    # Only now is it known which of the optional ones there are.
    mapfile -t missing < <(missing_packages "$@")
    mapfile -t missing < <(available_packages "${missing[@]}")
    echo "Installing ${#missing[@]} packages that are missing: ${missing[*]}"
    apt_get "$log" install -y --no-install-recommends "${missing[@]}"
    rm -f "$log"
}

# What CMake did not find, by its name there, and the package that has it: Debian, Fedora, Arch, openSUSE.
requirements=(
    "C++ compiler|g++|gcc-c++|gcc|gcc-c++"
    "cmake|cmake|cmake|cmake|cmake"
    "ninja|ninja-build|ninja-build|ninja|ninja"
    "PkgConfig|pkg-config|pkgconf-pkg-config|pkgconf|pkgconf-pkg-config"
    "Qt6|qt6-base-dev|qt6-qtbase-devel|qt6-base|qt6-base-devel"
    "Qt6GuiPrivate|qt6-base-private-dev|qt6-qtbase-private-devel|qt6-base|qt6-base-private-devel"
    "Qt6Quick|qt6-declarative-dev|qt6-qtdeclarative-devel|qt6-declarative|qt6-declarative-devel"
    "Qt6ShaderTools|qt6-shadertools-dev|qt6-qtshadertools-devel|qt6-shadertools|qt6-shadertools-devel"
    "Qt6Svg|qt6-svg-dev|qt6-qtsvg-devel|qt6-svg|qt6-svg-devel"
    "SQLite3|libsqlite3-dev|sqlite-devel|sqlite|sqlite3-devel"
    "libxml-2.0|libxml2-dev|libxml2-devel|libxml2|libxml2-devel"
    "libical|libical-dev|libical-devel|libical|libical-devel"
    "xcb|libxcb1-dev, libxcb-randr0-dev, libxcb-shape0-dev, libxcb-sync-dev, libxcb-xfixes0-dev, libxcb-xinput-dev|libxcb-devel|libxcb|libxcb-devel"
    "wayland|libwayland-dev, wayland-protocols, plasma-wayland-protocols|wayland-devel, wayland-protocols-devel, plasma-wayland-protocols|wayland, wayland-protocols, plasma-wayland-protocols|wayland-devel, wayland-protocols-devel, plasma-wayland-protocols"
    "libecal-2.0|libecal2.0-dev|evolution-data-server-devel|evolution-data-server|evolution-data-server-devel"
    "Qt6WebEngineCore|qt6-webengine-dev|qt6-qtwebengine-devel|qt6-webengine|qt6-webenginecore-devel"
    "benchmark|libbenchmark-dev|google-benchmark-devel|benchmark|benchmark-devel"
)

# name_missing_packages <configure.log>: the packages to install by hand, for what the log says is missing.
name_missing_packages() {
    local requirement name debian fedora arch suse
    local -a names=()
    mapfile -t names < <(sed -n 's/^.*Missing: //p' "$1" | tr ' ' '\n')
    command -v c++ >/dev/null || names+=("C++ compiler")
    command -v ninja >/dev/null || names+=(ninja)
    command -v cmake >/dev/null || names+=(cmake)
    for requirement in "${requirements[@]}"; do
        IFS='|' read -r name debian fedora arch suse <<<"$requirement"
        [[ " ${names[*]} " == *" $name "* ]] || continue
        printf '%s is missing.\n    Debian: %s\n    Fedora: %s\n    Arch: %s\n    openSUSE: %s\n' \
            "$name" "$debian" "$fedora" "$arch" "$suse" >&2
    done
}
