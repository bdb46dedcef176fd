#!/usr/bin/env bash
# fuzz.sh NAME SECONDS: runs one fuzzer on a copy of its corpus, so that the committed one stays as it is.
set -euo pipefail
name=$1 seconds=$2
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
if ! "$root/build/fuzz/bin/fuzz_$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        "$work" "$root/fuzz/corpus/$name" >"$work/log" 2>&1; then
    tail -60 "$work/log"
    mkdir -p "$root/build/fuzz-failures"
    cp "$work"/crash-* "$work"/timeout-* "$work"/oom-* "$root/build/fuzz-failures/" 2>/dev/null || true
    echo "fuzz_$name failed; its input is in build/fuzz-failures"
    exit 1
fi
echo "fuzz_$name: $(grep -o 'number_of_executed_units: *[0-9]*' "$work/log" | tr -s ' ')"
