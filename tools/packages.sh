# shellcheck shell=bash disable=SC2034
# What the program needs from Debian, for run and test to source: nothing is downloaded from anywhere else.

RUN_PACKAGES="g++ cmake ninja-build pkg-config qt6-base-dev librtmidi-dev libasound2-dev libjack-jackd2-dev
  libfluidsynth-dev libsndfile1-dev faust timgm6mb-soundfont fonts-inter ableton-link-dev"
TEST_PACKAGES="$RUN_PACKAGES clang clang-format clang-tidy libclang-rt-14-dev libgtest-dev libgmock-dev
  libbenchmark-dev python3 python3-mido fluidsynth jackd2 xvfb xauth xdotool"
# For the emulated machine of ./test --machine.
MACHINE_PACKAGES="debootstrap qemu-system-x86 e2fsprogs gcc libasound2-dev python3"

# missing_packages PACKAGE...: prints those that are not installed.
missing_packages() {
    local package installed
    installed=" $(dpkg-query -W -f='${db:Status-Abbrev}${Package}\n' "$@" 2>/dev/null |
        sed -n 's/^ii *//p' | tr '\n' ' ')"
    for package in "$@"; do
        case $installed in
            *" $package "*) ;;
            *) printf ' %s' "$package" ;;
        esac
    done
}

# need_packages PACKAGE...: installs those that are missing, in one command, as root or through sudo.
need_packages() {
    local missing as_root=""
    missing=$(missing_packages "$@")
    [ -z "$missing" ] && return 0
    if ! command -v apt-get >/dev/null; then
        echo "This is not a Debian system. The program needs what these Debian packages hold:$missing"
        return 1
    fi
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
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing \
            >/dev/null && return 0
    echo "Debian's packages could not be installed; what apt-get said stands above."
    return 1
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
