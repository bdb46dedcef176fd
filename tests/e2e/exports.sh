#!/usr/bin/env bash
# exports.sh MODULE: the module exports one function and nothing else, and has no symbol that would keep it in memory when
# it is unloaded.
set -euo pipefail
got=$(nm -D --defined-only "$1" | awk '{print $3}')
if [ "$got" != CreateEntity ]; then
    printf 'exported:\n%s\n' "$got"
    exit 1
fi
if readelf -Ws --dyn-syms "$1" | grep -w UNIQUE; then
    exit 1
fi
