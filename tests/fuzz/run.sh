#!/usr/bin/env bash
# Runs a fuzzer of the 'fuzz' build for TVN_FUZZ_SECONDS seconds (10): tests/fuzz/run.sh loader|engine|recording [fuzzer option...]
# What it learns stays in build/fuzz/corpus; an input that breaks something is left in build/fuzz/found.
set -euo pipefail
cd "$(dirname "$0")/../.."
name=$1
shift
program=build/fuzz/tests/fuzz/fuzz_$name
[ -x "$program" ] || { echo "build it first: cmake --preset fuzz && cmake --build build/fuzz --target fuzz_$name" >&2; exit 2; }

seeds=build/fuzz/seeds/$name
mkdir -p "$seeds" "build/fuzz/corpus/$name" build/fuzz/found
# Each seed of the engine ends in steps that meet: a key changed, gone and back, lines behind and before a new section.
steps='\x1ewFrequency List\x1fCount\x1f3\x1edFrequency List\x1fFrequency   02\x1ewFrequency List\x1fFrequency   02\x1f7'
steps+='\x1ewNew\x1fk\x1f v \x1ewX-Axis\x1fn\x1f"1"\x1ewNew\x1fl\x1f\x1edNew\x1fk\x1esNotes'
words=setup
if [ "$name" = engine ]; then
    # The code page is chosen by the size: in one of them bytes are a character once the file is UTF-16, not before.
    for rest in '' x xx; do
        printf '[a]\r\n\xED\x40=\xED\x40\r\n\x1ewa\x1fk\x1f\xC2\xB5%s' "$rest" >"$seeds/page$rest"
    done
elif [ "$name" = recording ]; then
    words=recording
    printf '{"global":{"core:datatype":"ci8","core:sample_rate":1e7,"tvn2x:full_scale_dbuv":90},"captures":[{"core:frequency":1},%s]}' \
        '{"core:sample_start":9,"core:frequency":2.5e8}' >"$seeds/metadata"
    printf 'RIFF\0\0\0\0WAVEfmt \x10\0\0\0\1\0\2\0\0\0\x20\0\0\0\x80\0\4\0\x10\0data\xff\xff\xff\xff1234567890' >"$seeds/wave"
fi
for file in tests/data/setups/*.ini tests/data/*.ini; do
    [ "$name" != recording ] || break
    cp "$file" "$seeds"
    [ "$name" = loader ] || printf "$steps" >>"$seeds/${file##*/}"
done

# Its list of words for a dictionary is of no use to a reader.
"$program" -max_total_time="${TVN_FUZZ_SECONDS:-10}" -timeout=10 -rss_limit_mb=1024 -malloc_limit_mb=64 -max_len=16384 \
    "-dict=tests/fuzz/$words.dict" -artifact_prefix="build/fuzz/found/$name-" -print_final_stats=1 -verbosity=0 \
    "$@" "build/fuzz/corpus/$name" "$seeds" 2>&1 | sed '/^###### Recommended/,/^###### End/d'
