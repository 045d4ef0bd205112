#!/bin/bash
# velmora-contract says that the reference keyboard holds, and that a library without its functions does not.
# usage: contract_test.sh VELMORA-CONTRACT KEYBOARD OTHER-LIBRARY
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" --library "$2" | tee "$folder/table"
[ "$(grep -c '^holds ' "$folder/table")" -ge 8 ]
! grep -v '^holds ' "$folder/table"
cp "$3" "$folder/libQtVirtualKb.so.1"
status=0
"$1" --library "$folder/libQtVirtualKb.so.1" >"$folder/table" || status=$?
[ "$status" = 1 ]
grep -q '^fails ' "$folder/table"
! grep '^holds ' "$folder/table"
