#!/usr/bin/env bash
# Runs a fuzz target (the reader's or the store's) for a bounded number of
# inputs over a seed corpus made from files our own tool writes (plus the
# reference files when they are present).
set -euo pipefail
fuzzer=$1 tool=$2 fixtures=$3 runs=${4:-20000}
work=$(mktemp -d -p /tmp velmora-fuzz-XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir "$work/corpus"
"$tool" new "$work/corpus/prepared.mdb"
"$tool" sample "$work/corpus/sample.mdb" --years 1 --ops-per-month 3 --seed 7
if [ -d "$fixtures" ]; then
    cp "$fixtures"/*.mdb "$work/corpus/" 2>/dev/null || true
else
    echo "reference files not found at $fixtures: seeding with our own files only"
fi
cd "$work"
# No input may hang (ten seconds: generous on a busy machine) or allocate more
# than a small multiple of its size: the target checks what it decoded,
# libFuzzer the time and each allocation.
"$fuzzer" -runs="$runs" -max_len=400000 -timeout=10 -rss_limit_mb=1024 -malloc_limit_mb=64 \
    -print_final_stats=1 corpus
