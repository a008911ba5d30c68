# Sourced by ./play and ./test: installs the packages of packages.txt that are missing.

vorn_missing_packages() {
    local package
    grep -v '^#' packages.txt | while read -r package; do
        [ -n "$package" ] || continue
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
            echo "$package"
    done
}

vorn_install_packages() {
    local missing as_root=""
    missing=$(vorn_missing_packages)
    [ -n "$missing" ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        as_root=sudo
        command -v sudo >/dev/null || { echo "Needs root or sudo to install: $missing" >&2; return 1; }
    fi
    echo "Installing:" $missing
    # shellcheck disable=SC2086
    { $as_root apt-get update -qq &&
      $as_root env DEBIAN_FRONTEND=noninteractive \
          apt-get install -y -qq --no-install-recommends $missing; } > out/setup.log 2>&1 ||
        { tail -n 20 out/setup.log >&2; return 1; }
    missing=$(vorn_missing_packages)
    [ -z "$missing" ] || { echo "Could not be installed:" $missing >&2; return 1; }
}

# vorn_build PRESET [target...]: configures where needed and builds; the output goes to a log.
vorn_build() {
    local preset=$1
    shift
    echo "Building ($preset) ..."
    { [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"; } > out/build.log 2>&1 &&
        cmake --build --preset "$preset" ${1:+--target "$@"} >> out/build.log 2>&1 ||
        { tail -n 40 out/build.log >&2; return 1; }
}
