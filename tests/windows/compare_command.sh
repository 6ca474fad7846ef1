#!/usr/bin/env bash
# Gives the command for Windows, under wine, and the one for this machine the same calls, and compares what they print, their
# messages, their status and the files that they write, byte for byte.
#   ORVANTA_WINE=WINE compare_command.sh NATIVE WINDOWS FOLDER
set -euo pipefail
native=$(realpath "$1") windows=$(realpath "$2")
sources=$(cd "$(dirname "$0")/../.." && pwd)
rm -rf "$3"
mkdir -p "$3"
cd "$3"

failed=0
compared=0
input=/dev/null
differs() {
    echo "differs on Windows: $*"
    failed=1
}

# [-t FROM TO] ARGUMENTS...: with -t, the program for Windows finds FROM as TO in its arguments, and may say so, and parts
# folders by backslashes.
compare() {
    local from='' to='' status=0 windows_status=0
    if [ "${1:-}" = -t ]; then
        from=$2 to=$3
        shift 3
    fi
    "$native" "$@" >said 2>messages <"$input" || status=$?
    local arguments=("$@")
    if [ -n "$from" ]; then
        arguments=("${@//"$from"/"$to"}")
    fi
    "$ORVANTA_WINE" "$windows" "${arguments[@]}" >said.windows 2>messages.windows <"$input" || windows_status=$?
    if [ -n "$from" ]; then
        for text in said messages; do
            python3 -c 'import sys; text = sys.stdin.read(); print(text.replace(sys.argv[1], sys.argv[2]), end="")' \
                "$to" "$from" <"$text.windows" | sed 's|\\|/|g' >back
            mv back "$text.windows"
        done
    fi
    compared=$((compared + 1))
    if [ "$status" != "$windows_status" ]; then
        differs "orvanta $* (status $status here, $windows_status there)"
    elif ! diff said said.windows >difference || ! diff messages messages.windows >>difference; then
        differs "orvanta $*"
        head -n 6 difference
    fi
}

cp "$sources"/tests/golden/recordings/*.jsonl "$sources"/examples/recordings/* .
for recording in *.jsonl; do
    for engine in value voting director; do
        for format in csv json table; do
            compare keyframes "$recording" --size 640x400 --engine "$engine" --format "$format"
        done
        compare frame "$recording" --size 640x400 --engine "$engine" --at 10
    done
    compare keyframes "$recording" --size 9:16 --sample 30 --format csv
    compare -t "$PWD/" "Z:$PWD/" keyframes "$recording" --size 640x400 --format mlt
    compare keyframes "$recording" --size 640x400 --format ffmpeg
    compare frame "$recording" --size 640x400 --window
    compare inspect "$recording" --size 640x400
    compare inspect "$recording" --size 640x400 --engine director --format json
    compare info "$recording"
    compare info "$recording" --format json
    compare keyframes "$recording" --size 63x400 --messages json
done

# The standard input, packed recordings.
input=browser.jsonl
compare keyframes - --size 640x400
gzip -nc browser.jsonl >packed.jsonl.gz
zstd -qc browser.jsonl >packed.jsonl.zst
input=packed.jsonl.gz
compare info -
input=/dev/null
compare info packed.jsonl.gz
compare info packed.jsonl.zst
compare info -

# Help, versions, mistakes.
for word in keyframes frame inspect info score report render; do
    compare "$word" --help
done
compare
compare --help
compare --version
compare version
compare keyframs
compare keyframes browser.jsonl
compare keyframes browser.jsonl --size 640x400 --engine valu
compare keyframes browser.jsonl --size 640x
compare keyframes browser.jsonl --sise 640x400
compare info none.jsonl
compare info none/browser.jsonl
compare info browser.mp4
: >empty.jsonl
compare info empty.jsonl
printf '{"format":"orvanta-recording","version":1,"timeScale":1000}\n[0,"region",0,0,1]\n' >broken.jsonl
compare info broken.jsonl
compare info broken.jsonl --messages json
# Lines that end as Windows ends them.
sed 's/$/\r/' browser.jsonl >crlf.jsonl
compare info crlf.jsonl
compare keyframes crlf.jsonl --size 640x400 --format csv

# Names beyond ASCII, blanks in names, backslashes, drives, a slash at the beginning.
mkdir -p 'Überblick 録画'
cp browser.jsonl 'Überblick 録画/ž € 😀.jsonl'
compare info 'Überblick 録画/ž € 😀.jsonl'
compare -t / "\\" info 'Überblick 録画/ž € 😀.jsonl'
compare -t "$PWD/" "Z:${PWD//\//\\}\\" info "$PWD/browser.jsonl"
compare -t "$PWD/" "Z:$PWD/" info "$PWD/none.jsonl"
compare info "$PWD/browser.jsonl"
compare info 'Überblick 録画/keine.jsonl'
compare info 'Überblick 録画'
compare 'Überblick 録画/ž € 😀.jsonl'
cp browser.mp4 'Überblick 録画/ž € 😀.mp4'
compare -t / "\\" keyframes 'Überblick 録画/ž € 😀.jsonl' --size 640x400 --format ffmpeg

# FILE: what the call wrote into it, and nothing beside it.
compare_file() {
    local file=$1
    shift
    for kind in here there; do
        rm -rf "$kind"
        mkdir "$kind"
        echo older >"$kind/older.csv"
    done
    "$native" "$@" -o "here/$file" >said 2>&1
    "$ORVANTA_WINE" "$windows" "$@" -o "there/$file" >said.windows 2>&1 || failed=1
    compared=$((compared + 1))
    sed -i 's|there/|here/|g' said.windows
    diff said said.windows || differs "orvanta $* -o $file"
    diff -r here there || differs "orvanta $* -o $file"
}
compare_file new.csv keyframes browser.jsonl --size 640x400
compare_file older.csv keyframes browser.jsonl --size 640x400
compare_file 'ž € 😀.json' keyframes browser.jsonl --size 640x400
compare_file new.json inspect browser.jsonl --size 640x400 --format json
compare_file plan.html report browser.jsonl --size 640x400
compare_file plan.mlt keyframes browser.jsonl --size 640x400

# What cannot be written stays as it was, and nothing is left beside it.
mkdir -p kept
echo kept >kept/file.csv
chmod a-w kept/file.csv
compare keyframes browser.jsonl --size 640x400 -o kept/file.csv
compare keyframes browser.jsonl --size 640x400 -o kept
compare keyframes browser.jsonl --size 640x400 -o kept/none/file.csv
compare keyframes browser.jsonl --size 640x400 -o browser.jsonl
compare keyframes broken.jsonl --size 640x400 -o kept/file.csv
if [ "$(ls kept)" != file.csv ] || [ "$(cat kept/file.csv)" != kept ]; then
    differs "what was in a folder: $(ls kept)"
fi
cmp browser.jsonl "$sources/examples/recordings/browser.jsonl" || differs "an input"

# Several recordings. Those for this machine run side by side, so one at a time is compared.
rm -rf here there
compare -t here there keyframes browser.jsonl editor.jsonl broken.jsonl --size 640x400 --out-dir here --jobs 1
diff -r here there || differs "the files of --out-dir"

# A pipe whose reader leaves.
{ "$ORVANTA_WINE" "$windows" inspect editor.jsonl --size 640x400 --format json 2>messages.windows || true; } |
    head -n 1 >said.windows
"$native" inspect editor.jsonl --size 640x400 --format json | cat | sed -n 1p >said
compared=$((compared + 1))
diff said said.windows || differs "a pipe whose reader leaves"

echo "$compared calls of the command compared"
exit $failed
