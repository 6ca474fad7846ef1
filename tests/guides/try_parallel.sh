#!/usr/bin/env bash
# Runs the GNU parallel command of docs/archives.md on two recordings, twice: the second run has nothing left to do.
#   try_parallel.sh ORVANTA GUIDE FOLDER RECORDING...
set -euo pipefail
orvanta=$1
guide=$(realpath "$2")
folder=$3
shift 3
rm -rf "$folder"
mkdir -p "$folder/recordings"
cp "$@" "$folder/recordings"
cd "$folder"
PATH="$(dirname "$orvanta"):$PATH"
export PATH
# The section's one block.
# shellcheck disable=SC2016 # The marks are the guide's.
awk '/^## / { here = ($0 == "## GNU parallel") } here' "$guide" | sed -n '/^```sh/,/^```/p' | sed '/^```/d' >commands
[ -s commands ]
bash -e commands
count=0
for recording in recordings/*.jsonl; do
    orvanta keyframes "$recording" --size 640x400 --format json -o expected
    cmp expected "results/$(basename "$recording" .jsonl).path.json"
    count=$((count + 1))
done
rm results/*.path.json
bash -e commands
[ "$(find results -name '*.path.json' | wc -l)" -eq 0 ] # All stand in the log.
[ "$(wc -l <results/jobs.log)" -eq $((count + 1)) ]
echo "$count recordings planned once"
