"""The stand-in tools' scripts by their path below .tools."""

PRELUDE = r"""#!/bin/sh
# Stands in for @NAME@ in a sample home; its state is in state/@NAME@.
set -eu
PATH=/usr/bin:/bin
root=$(cd "$(dirname "$0")/@UP@" && pwd -P)
state=$root/state/@NAME@
tab=$(printf '\t')
call=@NAME@
for argument in "$@"; do call=$call$tab$argument; done
printf '%s\n' "$call" >>"$root/state/calls.log"
fail() {
    printf '@NAME@: %s\n' "$1" >&2
    exit 1
}
if [ -e "$state/fail" ]; then fail "failing because $state/fail exists"; fi
"""

TMUTIL = r"""
case "$*" in
"listlocalsnapshots /")
    echo "Snapshots for disk /:"
    cat "$state/snapshots"
    ;;
"deletelocalsnapshots "*)
    name=com.apple.TimeMachine.$2.local
    grep -qxF -e "$name" "$state/snapshots" || fail "no snapshot $2"
    grep -vxF -e "$name" "$state/snapshots" >"$state/snapshots.new" || true
    mv "$state/snapshots.new" "$state/snapshots"
    echo "Deleted local snapshot '$2'"
    ;;
*) fail "unknown arguments: $*" ;;
esac
"""

XCRUN = r"""
case "$*" in
"simctl list devices unavailable -j") cat "$state/unavailable.json" ;;
"simctl delete unavailable") printf '{\n  "devices": {}\n}\n' >"$state/unavailable.json" ;;
*) fail "unknown arguments: $*" ;;
esac
"""

BREW = r"""
case "$*" in
"cleanup --dry-run -s")
    sed 's/^/Would remove: /' "$state/leftovers"
    if [ -s "$state/leftovers" ]; then echo "==> This operation would free approximately 51.6MB of disk space."; fi
    ;;
"cleanup -s")
    sed 's/ (/... (/; s/^/Removing: /' "$state/leftovers"
    if [ -s "$state/leftovers" ]; then echo "==> This operation has freed approximately 51.6MB of disk space."; fi
    : >"$state/leftovers"
    ;;
*) fail "unknown arguments: $*" ;;
esac
"""

DOCKER = r"""
case "$*" in
"system df --format {{json .}}") cat "$state/rows" ;;
*) fail "unknown arguments: $*" ;;
esac
"""

FLATPAK = r"""
case "$*" in
"list --app --columns=ref,runtime") cat "$state/apps" ;;
"list --user --runtime --all --columns=ref,size,runtime") cat "$state/runtimes" ;;
"pin --user")
    echo "Pinned patterns:"
    sed 's/^/  /' "$state/pins"
    ;;
"uninstall --user --noninteractive --no-related runtime/"*)
    reference=${5#runtime/}
    if cut -f 2 "$state/apps" | grep -qxF -e "$reference"; then fail "$reference is needed"; fi
    cut -f 1 "$state/runtimes" | grep -qxF -e "$reference" || fail "$reference not installed"
    grep -vF -e "$reference$tab" "$state/runtimes" >"$state/runtimes.new" || true
    mv "$state/runtimes.new" "$state/runtimes"
    echo "Uninstalling $5"
    ;;
*) fail "unknown arguments: $*" ;;
esac
"""

PODMAN = r"""
case "$*" in
"--remote=false images --filter dangling=true --quiet --no-trunc")
    awk '$1 == "<none>" && $2 == "<none>" { print "sha256:" $3 "'"$(printf '%052d' 0)"'" }' "$state/images"
    ;;
"--remote=false system df --verbose")
    printf 'Images space usage:\n\n'
    printf 'REPOSITORY                TAG         IMAGE ID      CREATED      SIZE        '
    printf 'SHARED SIZE  UNIQUE SIZE  CONTAINERS\n'
    cat "$state/images"
    printf '\nContainers space usage:\n\n'
    printf 'CONTAINER ID  IMAGE       COMMAND     LOCAL VOLUMES  SIZE        CREATED      STATUS      NAMES\n'
    ;;
"--remote=false image rm "*)
    grep -q "  $4  " "$state/images" || fail "$4: image not known"
    grep -v "  $4  " "$state/images" >"$state/images.new" || true
    mv "$state/images.new" "$state/images"
    echo "Deleted: $4"
    ;;
*) fail "unknown arguments: $*" ;;
esac
"""


def _script(path, body):
    folders, _, name = path.rpartition("/")
    up = "/".join([".."] * len(folders.split("/")))
    return PRELUDE.replace("@NAME@", name).replace("@UP@", up) + body


SCRIPTS = {
    path: _script(path, body)
    for path, body in (
        ("usr/bin/tmutil", TMUTIL),
        ("usr/bin/xcrun", XCRUN),
        ("opt/homebrew/bin/brew", BREW),
        ("usr/local/bin/docker", DOCKER),
        ("usr/bin/flatpak", FLATPAK),
        ("usr/bin/podman", PODMAN),
    )
}
