#!/usr/bin/env bash
# Fails when a C++ file of the repository differs from the project's .clang-format.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
mapfile -t files < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run --Werror "${files[@]}"
echo "Formatting checked: ${#files[@]} files"
