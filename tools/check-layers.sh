#!/usr/bin/env bash
# Fails when a file of the logic includes a header of a folder above its own in the layer
# order core -> synthesis -> entry -> schematic -> analysis -> design -> shell ->
# {shell/qt, batch}. The link order catches calls; this catches headers.
set -euo pipefail
cd "$(dirname "$0")/.."
rank() {
    case "$1" in
    core) echo 0 ;; synthesis) echo 1 ;; entry) echo 2 ;; schematic) echo 3 ;;
    analysis) echo 4 ;; design) echo 5 ;; shell) echo 6 ;; shell/qt) echo 7 ;; batch) echo 7 ;;
    *) echo -1 ;;
    esac
}
bad=0
for dir in core synthesis entry schematic analysis design shell shell/qt batch; do
    mine=$(rank "$dir")
    for f in "$dir"/*.h "$dir"/*.cpp; do
        [ -e "$f" ] || continue
        case "$f" in *_test.cpp) continue ;; esac # tests may drive any layer
        while IFS= read -r line; do
            inc=$(sed -E 's/^[[:space:]]*#[[:space:]]*include[[:space:]]+"([^"]+)".*/\1/' <<<"$line")
            folder=${inc%/*}
            [ "$folder" = "$inc" ] && continue
            theirs=$(rank "$folder")
            [ "$theirs" -lt 0 ] && continue
            if [ "$theirs" -gt "$mine" ] || { [ "$theirs" -eq "$mine" ] && [ "$folder" != "$dir" ]; }; then
                echo "$f: includes $inc, a folder above $dir" >&2
                bad=1
            fi
        done < <(grep -E '^[[:space:]]*#[[:space:]]*include[[:space:]]+"' "$f" || true)
    done
done
if [ "$bad" -ne 0 ]; then
    echo "check-layers: includes against the layer order (see docs/architecture.md)" >&2
    exit 1
fi
echo "check-layers: every include follows the layer order"
