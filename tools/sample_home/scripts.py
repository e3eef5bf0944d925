"""The stand-in tools' scripts by their path below .tools."""

PRELUDE = r"""#!/bin/sh
# Stands in for @NAME@ in a sample home; what it knows is in state/@NAME@.
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
answer=ask
columns=application,arch,branch,size
command=
for argument in "$@"; do
    case "$argument" in
    --assumeyes | -y | --noninteractive) answer=y ;;
    --columns=*) columns=${argument#--columns=} ;;
    *) command="$command $argument" ;;
    esac
done
case "$command" in
" --user list --runtime")
    awk -F "$tab" -v wanted="$columns" '
        BEGIN { split("application arch branch size", names, " "); count = split(wanted, columns, ",") }
        {
            for (i = 1; i <= 4; i++) value[names[i]] = $i
            line = value[columns[1]]
            for (i = 2; i <= count; i++) line = line "\t" value[columns[i]]
            print line
        }' "$state/in-use" "$state/unused"
    ;;
" --user uninstall --unused")
    if [ ! -s "$state/unused" ]; then
        echo "Nothing unused to uninstall"
        exit 0
    fi
    printf '\n        ID\tBranch\tOp\n'
    awk -F "$tab" '{ printf " %d.\t%s\t%s\tr\n", NR, $1, $3 }' "$state/unused"
    if [ "$answer" = ask ]; then
        printf '\nProceed with these changes to the user installation? [Y/n]: '
        read -r answer || answer=n
    fi
    case "$answer" in
    "" | y | Y | yes)
        : >"$state/unused"
        printf '\nUninstall complete.\n'
        ;;
    *) exit 1 ;;
    esac
    ;;
*) fail "unknown arguments: $*" ;;
esac
"""

PODMAN = r"""
usage=$state/before.json
if [ -e "$state/pruned" ]; then usage=$state/pruned.json; fi
case "$*" in
"system df --format json") cat "$usage" ;;
"system prune" | "system prune --force" | "system prune -f")
    if [ $# -eq 2 ]; then
        echo "WARNING! This command removes: stopped containers, unused networks, dangling images, dangling build cache"
        printf 'Are you sure you want to continue? [y/N] '
        read -r answer || answer=n
        case "$answer" in y | Y) ;; *) exit 0 ;; esac
    fi
    if [ -e "$state/pruned" ]; then
        echo "Total reclaimed space: 0B"
    else
        echo "Total reclaimed space: 2.25GB"
        : >"$state/pruned"
    fi
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
