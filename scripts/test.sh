#!/usr/bin/env bash
# Checks the format, then builds and runs every test: the Release build, then the AddressSanitizer+UndefinedBehaviorSanitizer
# build and the ThreadSanitizer build (both with assertions on). Fails on the first failure; a test
# that runs past five minutes counts as failed, so a hang cannot stall CI. Each stage turns the tests on
# itself (run.sh leaves them off in build/release) and fails when it finds none to run.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
. "$root/scripts/prerequisites.sh"
jobs="$(nproc)"

# Every C++ file keeps the committed .clang-format style; a file that drifts fails the run at once.
echo "=== format"
find "$root/src" "$root/tests" "$root/bench" "$root/egbb" -name '*.cpp' -o -name '*.h' |
  xargs clang-format --dry-run --Werror

build() {  # build <dir> <cmake args...>
  local dir="$root/build/$1"; shift
  echo "=== build $dir"
  cmake -S "$root" -B "$dir" -DBUILD_TESTING=ON -DKELVRA_WERROR=ON "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
}

build release -DCMAKE_BUILD_TYPE=Release
ctest --test-dir "$root/build/release" --no-tests=error --output-on-failure --timeout 300 -j "$jobs"

# Under the sanitizers KELVRA_SANITIZED=1 tells tests to shrink their heavy loops (deep perft and the like).
for san in address thread; do
  build "$san" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g" -DKELVRA_SANITIZE=$san
  KELVRA_SANITIZED=1 ASAN_OPTIONS=detect_leaks=1 TSAN_OPTIONS=halt_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir "$root/build/$san" --no-tests=error --output-on-failure --timeout 300 -j "$jobs"
done
echo "all tests passed"
