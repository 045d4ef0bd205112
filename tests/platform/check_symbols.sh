#!/bin/sh
# Compares the symbols that a shared library exports with the committed list: check_symbols.sh LIBRARY LIST [--update]
# Weak ones are left out: they are the toolchain's shared copies of inline code and differ from compiler to compiler.
set -eu
library=$1
list=$2
exported=$(mktemp)
trap 'rm -f "$exported"' EXIT
nm -D --defined-only "$library" |
    awk '$2 ~ /^[TDBRGSi]$/ { sub(/@.*/, "", $3); print $3 }' |
    grep -vE '^(_init|_fini|_edata|_end|__bss_start|__(asan|odr_asan|ubsan|tsan|sanitizer|gcov|llvm)|qt_resourceFeature)' |
    LC_ALL=C sort -u > "$exported"
if [ "${3:-}" = --update ]; then
    cp "$exported" "$list"
elif ! diff -u "$list" "$exported"; then
    echo "$library does not export what $list says (+ new, - missing); a wanted change: $0 $library $list --update" >&2
    exit 1
fi
