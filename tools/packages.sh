# What the program needs from Debian, for run and test to source: nothing is downloaded from anywhere else.

RUN_PACKAGES="g++ cmake ninja-build pkg-config qt6-base-dev librtmidi-dev libjack-jackd2-dev
  libfluidsynth-dev timgm6mb-soundfont fonts-inter"
TEST_PACKAGES="$RUN_PACKAGES clang clang-format clang-tidy libclang-rt-14-dev libgtest-dev libgmock-dev
  libbenchmark-dev python3 python3-mido fluidsynth jackd2 xvfb xauth xdotool git"

# need_packages PACKAGE...: installs those that are missing, in one command, as root or through sudo.
need_packages() {
    local missing="" package
    for package in "$@"; do
        case $(dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null) in
            ii*) ;;
            *) missing="$missing $package" ;;
        esac
    done
    [ -z "$missing" ] && return 0
    local as_root=""
    if [ "$(id -u)" != 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "These Debian packages are missing:$missing"
            echo "Please install them as root (apt-get install ...): this user is not root and there is no sudo."
            return 1
        fi
        as_root="sudo"
    fi
    echo "Installing from Debian:$missing"
    # shellcheck disable=SC2086
    $as_root apt-get update -qq &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

# build PRESET TARGET... [-- CMAKE_OPTION...]: configures where that is still to do, and builds.
build() {
    local preset=$1 targets="" options=""
    shift
    while [ $# -gt 0 ] && [ "$1" != "--" ]; do targets="$targets $1" && shift; done
    [ $# -gt 0 ] && shift && options="$*"
    if [ ! -e "build/$preset/build.ninja" ]; then
        # shellcheck disable=SC2086
        cmake --preset "$preset" -G Ninja $options || return 1
    fi
    # shellcheck disable=SC2086
    cmake --build "build/$preset" --target $targets
}
