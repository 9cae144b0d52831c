#!/usr/bin/env bash
# Builds the engine (Release) and runs it; arguments are passed to the engine.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
. "$root/scripts/prerequisites.sh"
cmake -S "$root" -B "$root/build/release" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF >/dev/null
cmake --build "$root/build/release" --target kelvra -j "$(nproc)" >/dev/null
exec "$root/build/release/kelvra" "$@"
