# shellcheck shell=bash
# Source this file. find_base_commit prints the commit that changes are compared with: the branch point from origin/HEAD, or
# for that itself the last 30 commits.
find_base_commit() {
    local base
    base=$(git merge-base HEAD origin/HEAD 2>/dev/null) || base=$(git rev-parse HEAD)
    [ "$base" != "$(git rev-parse HEAD)" ] || base=$(git rev-list --max-count=31 HEAD | tail -1)
    printf '%s\n' "$base"
}
