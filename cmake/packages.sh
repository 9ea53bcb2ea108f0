# Sourced by ./run and ./test: makes sure that Debian packages are installed.

# require_packages PACKAGE...: installs those that are missing, through sudo when not root, and says so.
require_packages() {
    if ! command -v dpkg-query >/dev/null; then
        echo "This is not a Debian system; what Debian calls these packages must be there: $*" >&2
        return
    fi
    missing=()
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "Please install as root: ${missing[*]}" >&2; exit 1; }
        as_root=(sudo)
    fi
    echo "Installing with apt-get: ${missing[*]}" >&2
    "${as_root[@]}" apt-get update -qq >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}
