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
    # Of the web player alone, without which everything else works.
    qt6-webengine-dev? qt6-webchannel-dev?
)

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

# apt_get <log> <argument> …: apt-get as the superuser, with its output in the log.
apt_get() {
    local log=$1 command=(env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600)
    shift
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "sudo fehlt, um Pakete zu installieren"
        command=(sudo "${command[@]}")
    fi
    "${command[@]}" "$@" </dev/null >>"$log" 2>&1 \
        || fail "apt-get $1 ist gescheitert: $(grep -m1 '^E: ' "$log" || tail -n1 "$log") (siehe $log)"
}

# install_packages <package> …: installs what is missing; silent if nothing is.
install_packages() {
    command -v dpkg-query >/dev/null || fail "Pakete lassen sich nur auf Debian und Verwandten installieren"
    local missing log
    mapfile -t missing < <(missing_packages "$@")
    mapfile -t missing < <(available_packages "${missing[@]}")
    ((${#missing[@]})) || return 0
    echo "Installiere, was fehlt: ${missing[*]}"
    log=$(mktemp --tmpdir quillbar-apt-XXXXXX.log)
    # A foreign package source that fails to update is no reason to stop.
    (apt_get "$log" update) 2>/dev/null || true
    # Only now is it known which of the optional ones there are.
    mapfile -t missing < <(missing_packages "$@")
    mapfile -t missing < <(available_packages "${missing[@]}")
    apt_get "$log" install -y --no-install-recommends "${missing[@]}"
    rm -f "$log"
}
